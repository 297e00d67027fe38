# Header-only libraries from Debian's packages, through a folder of their own: their place, /usr/include, must not become
# an include folder of the cross build.
include_guard(GLOBAL)

set(TAVLEN_THIRD_PARTY_INCLUDE "${CMAKE_BINARY_DIR}/thirdparty/include")
file(MAKE_DIRECTORY "${TAVLEN_THIRD_PARTY_INCLUDE}")

# tavlen_third_party(NAME FOLDER HEADER): the interface library NAME over the headers that lie in /usr/include/FOLDER.
function(tavlen_third_party name folder header)
  find_path(${name}_ROOT "${folder}/${header}" PATHS /usr/include /usr/local/include REQUIRED NO_CMAKE_FIND_ROOT_PATH)
  if(NOT EXISTS "${TAVLEN_THIRD_PARTY_INCLUDE}/${folder}")
    file(CREATE_LINK "${${name}_ROOT}/${folder}" "${TAVLEN_THIRD_PARTY_INCLUDE}/${folder}" SYMBOLIC COPY_ON_ERROR)
  endif()
  if(NOT TARGET ${name})
    add_library(${name} INTERFACE)
    target_include_directories(${name} SYSTEM INTERFACE "${TAVLEN_THIRD_PARTY_INCLUDE}")
  endif()
endfunction()

