# Header-only libraries from Debian's packages: targets nlohmann_headers and cli11_headers. Each is seen through a folder
# of its own, because its place, /usr/include, must not become an include folder of the cross build.
include_guard(GLOBAL)

# tavlen_third_party(NAME FOLDER HEADER): the interface library NAME over the headers that lie in /usr/include/FOLDER.
function(tavlen_third_party name folder header)
  if(TARGET ${name})
    return()
  endif()
  find_path(${name}_ROOT "${folder}/${header}" PATHS /usr/include /usr/local/include REQUIRED NO_CMAKE_FIND_ROOT_PATH)
  set(own_folder "${CMAKE_BINARY_DIR}/thirdparty/${folder}")
  file(MAKE_DIRECTORY "${own_folder}")
  file(CREATE_LINK "${${name}_ROOT}/${folder}" "${own_folder}/${folder}" SYMBOLIC COPY_ON_ERROR)
  add_library(${name} INTERFACE)
  target_include_directories(${name} SYSTEM INTERFACE "${own_folder}")
endfunction()

tavlen_third_party(nlohmann_headers nlohmann json.hpp)
tavlen_third_party(cli11_headers CLI CLI.hpp)
