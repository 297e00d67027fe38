# Compiler settings that every target of ours gets, and the kinds of target we have: tavlen_module, tavlen_fuzzer (and
# tavlen_test, in tests/).

include(ThirdParty)

option(TVPT_BUILD_TESTS "Build the tests" ON)
option(TVPT_BUILD_BENCHMARKS "Build the benchmarks (Linux)" OFF)
option(TVPT_BUILD_FUZZERS "Build the fuzz targets (clang)" OFF)
option(TVPT_DOCUMENT_DUMPS "Write the documents of a conversion to the folder TVPT_DUMP_FOLDER names" OFF)
option(TVPT_JOIN_SOURCES "Compile several sources at a time: the compilers read the large headers once for all of them. \
That each source stands alone is seen by a build without" OFF)
set(TVPT_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize= takes them")

# The compiler cache, where the machine has one. What one checkout compiled serves every other: paths below the source
# folder count relative to it. A cache chosen by hand (-DCMAKE_CXX_COMPILER_LAUNCHER=...) stays.
find_program(TVPT_CCACHE ccache)
if(TVPT_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
    "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" CCACHE_NOHASHDIR=1 "${TVPT_CCACHE}")
  set(CMAKE_C_COMPILER_LAUNCHER ${CMAKE_CXX_COMPILER_LAUNCHER})
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(TAVLEN_CMAKE_FOLDER "${CMAKE_CURRENT_LIST_DIR}")
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Everything that runs lies in one folder, as an installed driver's files do.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_BUILD_RPATH "$ORIGIN")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN")

add_library(tavlen_warnings INTERFACE)
target_compile_options(tavlen_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Woverloaded-virtual
  -Wdeprecated-copy-dtor -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # Optimised, GCC 12 sees overlapping copies in every "literal" + std::string (its bug 105651).
  target_compile_options(tavlen_warnings INTERFACE -Wno-restrict)
endif()

add_library(tavlen_options INTERFACE)
target_include_directories(tavlen_options INTERFACE "${CMAKE_SOURCE_DIR}")
target_link_libraries(tavlen_options INTERFACE tavlen_warnings)

if(WIN32)
  target_compile_definitions(tavlen_options INTERFACE
    UNICODE _UNICODE NOMINMAX WINVER=0x0A00 _WIN32_WINNT=0x0A00)
  # The platform's headers declare GetVersionExW deprecated and cast function pointers.
  target_compile_options(tavlen_options INTERFACE -Wno-deprecated-declarations -Wno-cast-function-type)
  # Only system imports remain: the modules run in processes that have no MinGW runtime beside them.
  target_link_options(tavlen_options INTERFACE -static)
else()
  target_compile_definitions(tavlen_options INTERFACE WINPORT_WIDE_LITERAL)
  target_link_libraries(tavlen_options INTERFACE winport)
  if(TVPT_SANITIZE STREQUAL "")
    target_link_options(tavlen_options INTERFACE -Wl,-z,defs)
  endif()
endif()

if(NOT TVPT_SANITIZE STREQUAL "")
  add_compile_options(-fsanitize=${TVPT_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TVPT_SANITIZE})
  # The standard library checks its own preconditions too: an index, a dereferenced optional.
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

if(WIN32)
  set(TAVLEN_EXPORT "__declspec(dllexport)")
  set(TAVLEN_IMPORT "__declspec(dllimport)")
else()
  set(TAVLEN_EXPORT "__attribute__((visibility(\"default\")))")
  set(TAVLEN_IMPORT "__attribute__((visibility(\"default\")))")
endif()

# tavlen_join_sources(TARGET): may be compiled several sources at a time (TVPT_JOIN_SOURCES). Left out are the sources that
# tavlen_compile_alone names, which have a name of their own that another source of the target has too, and those that
# report failures: each has its kSourceFile.
function(tavlen_join_sources name)
  if(NOT TVPT_JOIN_SOURCES)
    return()
  endif()
  get_target_property(sources ${name} SOURCES)
  foreach(source IN LISTS sources)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
    file(STRINGS "${source}" own_name REGEX "kSourceFile(\\[\\])? = ")
    if(own_name)
      tavlen_compile_alone("${source}")
    endif()
  endforeach()
  set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 10
    UNITY_BUILD_CODE_BEFORE_INCLUDE "// NOLINTNEXTLINE(bugprone-suspicious-include)")
endfunction()
function(tavlen_compile_alone)
  set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# tavlen_module(NAME MACRO SOURCE...): a shared library of ours. MACRO, on its exported classes, is the platform's
# export mark inside the library and the import mark in its users.
function(tavlen_module name macro)
  add_library(${name} SHARED ${ARGN})
  set_target_properties(${name} PROPERTIES PREFIX "")
  target_compile_definitions(${name}
    PRIVATE "${macro}=${TAVLEN_EXPORT}"
    INTERFACE "${macro}=${TAVLEN_IMPORT}")
  target_link_libraries(${name} PUBLIC tavlen_options)
  tavlen_join_sources(${name})
  set_property(GLOBAL APPEND PROPERTY TAVLEN_MODULES ${name})
endfunction()

# tavlen_know_folders(PROGRAM): gives it tests/common/testfolders.h.
function(tavlen_know_folders name)
  set(source "${CMAKE_SOURCE_DIR}/tests/common/testfolders.cpp")
  target_sources(${name} PRIVATE "${source}")
  tavlen_compile_alone("${source}")
  set_source_files_properties("${source}" PROPERTIES COMPILE_DEFINITIONS
    "TVPT_TEST_DATA_FOLDER=\"${CMAKE_SOURCE_DIR}/tests/data\";TVPT_MODELS_FOLDER=\"${CMAKE_SOURCE_DIR}/models\";TVPT_BINARY_FOLDER=\"${CMAKE_BINARY_DIR}/bin\"")
endfunction()

# tavlen_windows_manifest(PROGRAM): lets the program see the Windows version that it runs on.
function(tavlen_windows_manifest name)
  if(WIN32)
    target_sources(${name} PRIVATE "${TAVLEN_CMAKE_FOLDER}/windows10.rc")
  endif()
endfunction()

# tavlen_fuzzer(NAME SOURCES SOURCE... [SEEDS FOLDER...] [DICTIONARY FILE]): a libFuzzer program, run by make fuzz. The
# seeds are folders of the tree whose files are inputs as they stand; the names of both are left beside the program for
# scripts/fuzz.sh. NAME ends in _fuzzer.
function(tavlen_fuzzer name)
  cmake_parse_arguments(PARSE_ARGV 1 fuzzer "" "DICTIONARY" "SOURCES;SEEDS")
  add_executable(${name} ${fuzzer_SOURCES})
  target_link_libraries(${name} PRIVATE tavlen_options)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  add_dependencies(fuzzers ${name})
  set(inputs "")
  foreach(folder IN LISTS fuzzer_SEEDS)
    string(APPEND inputs "${CMAKE_SOURCE_DIR}/${folder}\n")
  endforeach()
  file(WRITE "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}.seeds" "${inputs}")
  if(fuzzer_DICTIONARY)
    configure_file("${fuzzer_DICTIONARY}" "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}.dict" COPYONLY)
  endif()
endfunction()
