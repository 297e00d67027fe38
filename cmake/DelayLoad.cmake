# tavlen_delay_load(TARGET MODULE): TARGET, and what links it, uses the functions of MODULE, one of our shared
# libraries. On Windows it is loaded at the first call, by DllDelayLoader (utilitiesstaticlib/dlldelayloader.h); the
# other platform has no delayed loading, so it is linked as usual.
#
# The delayed archive has functions only: a use of MODULE's data is an undefined symbol at link time.

set(TAVLEN_DELAY_LOAD_DEFINITION "${CMAKE_CURRENT_LIST_DIR}/DelayLoadDefinition.cmake")

function(tavlen_delay_load target module)
  if(NOT WIN32)
    target_link_libraries(${target} PUBLIC ${module})
    return()
  endif()
  if(NOT TARGET ${module}_delayed)
    tavlen_delayed_archive(${module})
  endif()
  target_link_libraries(${target} PUBLIC ${module}_delayed)
endfunction()

# Makes MODULE_delayed: MODULE as its users see it, with another archive to link.
function(tavlen_delayed_archive module)
  set(archive "${CMAKE_BINARY_DIR}/lib/lib${module}.delayed.a")
  set(definition "${CMAKE_CURRENT_BINARY_DIR}/${module}.delayed.def")
  add_custom_command(OUTPUT "${archive}"
    COMMAND "${CMAKE_COMMAND}" "-DNM=${CMAKE_NM}" "-DIMPORT_LIBRARY=$<TARGET_LINKER_FILE:${module}>"
            "-DDEFINITION=${definition}" -P "${TAVLEN_DELAY_LOAD_DEFINITION}"
    # A fixed prefix: the names in the archive are those of the intermediate files.
    COMMAND "${CMAKE_DLLTOOL}" --temp-prefix "${module}_delayed_" --input-def "${definition}"
            --dllname "$<TARGET_FILE_NAME:${module}>" --output-delaylib "${archive}"
    DEPENDS ${module} "${TAVLEN_DELAY_LOAD_DEFINITION}"
    BYPRODUCTS "${definition}"
    COMMENT "Making the delayed archive of ${module}"
    VERBATIM)
  add_custom_target(${module}_delayed_archive DEPENDS "${archive}")

  add_library(${module}_delayed INTERFACE)
  add_dependencies(${module}_delayed ${module}_delayed_archive)
  target_compile_definitions(${module}_delayed INTERFACE
    $<TARGET_PROPERTY:${module},INTERFACE_COMPILE_DEFINITIONS>)
  target_include_directories(${module}_delayed INTERFACE
    $<TARGET_PROPERTY:${module},INTERFACE_INCLUDE_DIRECTORIES>)
  target_link_libraries(${module}_delayed INTERFACE
    "${archive}" dlldelayloader $<TARGET_PROPERTY:${module},INTERFACE_LINK_LIBRARIES>)
  set_property(TARGET ${module}_delayed APPEND PROPERTY INTERFACE_LINK_DEPENDS "${archive}")
endfunction()
