# How the project's libraries, tests, fuzz targets and benchmarks are built.

find_package(Threads REQUIRED)

set(SDP_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/sdp_negotiator)

# While the major version is 0, a minor version may change the ABI. The records' size depends on the attribute
# capacity, so a library built with another one than the default has a name of its own (docs/abi.md).
set(SDP_SOVERSION ${PROJECT_VERSION_MAJOR})
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(SDP_SOVERSION 0.${PROJECT_VERSION_MINOR})
endif()
set(SDP_LIBRARY_VERSION ${PROJECT_VERSION})
if(NOT SDP_ATTRIBUTE_CAPACITY EQUAL 40)
  string(APPEND SDP_SOVERSION -a${SDP_ATTRIBUTE_CAPACITY})
  string(APPEND SDP_LIBRARY_VERSION -a${SDP_ATTRIBUTE_CAPACITY})
endif()

add_library(sdp_build_flags INTERFACE)
target_compile_options(sdp_build_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-qual -Wformat=2
  -Wnon-virtual-dtor -Wold-style-cast $<$<BOOL:${SDP_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # At -O3 it takes a literal plus a temporary string for overlapping copies (GCC bug 105651).
  target_compile_options(sdp_build_flags INTERFACE -Wno-restrict)
endif()

# sdp_add_library(<name> SOURCES ... HEADERS ... [PUBLIC_LIBS ...] [PRIVATE_LIBS ...])
# A library with hidden visibility whose public headers stand in h/.
function(sdp_add_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;PUBLIC_LIBS;PRIVATE_LIBS" ${ARGN})
  add_library(${name} ${ARG_SOURCES})
  add_library(sdp_negotiator::${name} ALIAS ${name})
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_include_directories(${name}
    PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/h>
           $<INSTALL_INTERFACE:${SDP_INSTALL_INCLUDEDIR}>
    PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_PUBLIC_LIBS}
                                PRIVATE $<BUILD_INTERFACE:sdp_build_flags> $<BUILD_INTERFACE:sdp_hardening>
                                         $<BUILD_INTERFACE:sdp_text>
                                        ${ARG_PRIVATE_LIBS})
  set_target_properties(${name} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON
    INSTALL_RPATH "$ORIGIN"
    VERSION ${SDP_LIBRARY_VERSION}
    SOVERSION ${SDP_SOVERSION})
  if(SDP_INSTALL)
    install(TARGETS ${name} EXPORT sdp_negotiator_targets
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
    list(TRANSFORM ARG_HEADERS PREPEND h/)
    install(FILES ${ARG_HEADERS} DESTINATION ${SDP_INSTALL_INCLUDEDIR} COMPONENT development)
  endif()
endfunction()

# sdp_use_host_library(<name> <library> <include dir> <own include dir> HEADERS ...)
# Stands in for a library of this project: links the host's own and gives its headers.
function(sdp_use_host_library name library include_dir own_include_dir)
  cmake_parse_arguments(ARG "" "" "HEADERS" ${ARGN})
  add_library(${name} INTERFACE)
  add_library(sdp_negotiator::${name} ALIAS ${name})
  target_compile_features(${name} INTERFACE cxx_std_20)
  target_link_libraries(${name} INTERFACE ${library})
  if(include_dir)
    # The host's headers stay where they are; the package configuration names the folder (SdpPackage.cmake).
    target_include_directories(${name} INTERFACE $<BUILD_INTERFACE:${include_dir}>)
  else()
    target_include_directories(${name} INTERFACE $<BUILD_INTERFACE:${own_include_dir}>
                                                 $<INSTALL_INTERFACE:${SDP_INSTALL_INCLUDEDIR}>)
  endif()
  if(SDP_INSTALL)
    install(TARGETS ${name} EXPORT sdp_negotiator_targets)
    if(NOT include_dir)
      list(TRANSFORM ARG_HEADERS PREPEND ${own_include_dir}/)
      install(FILES ${ARG_HEADERS} DESTINATION ${SDP_INSTALL_INCLUDEDIR} COMPONENT development)
    endif()
  endif()
endfunction()

# sdp_add_test(<name> SOURCES ... LIBS ...)  a GoogleTest executable, one CTest entry
function(sdp_add_test name)
  if(NOT SDP_BUILD_TESTS)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} sdp_build_flags GTest::gtest GTest::gtest_main Threads::Threads)
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/test ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE SDP_TEST_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  # What is tested is optimized; the tests themselves take much longer to compile when they are too.
  target_compile_options(${name} PRIVATE -O0)
  target_precompile_headers(${name} PRIVATE <gtest/gtest.h> <algorithm> <functional> <memory> <string> <vector>)
  add_test(NAME ${name} COMMAND ${name})
  # Under the sanitizers a test may want more time than the default on a loaded machine.
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()

# sdp_add_fuzzer(<name> SOURCES ... LIBS ... [SEEDS <folder>])
# With SDP_BUILD_FUZZ a libFuzzer target; otherwise the same target replays its seeds as a test.
function(sdp_add_fuzzer name)
  cmake_parse_arguments(ARG "" "SEEDS" "SOURCES;LIBS" ${ARGN})
  if(SDP_BUILD_FUZZ)
    add_executable(${name} ${ARG_SOURCES})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/fuzz)
    file(WRITE ${PROJECT_BINARY_DIR}/fuzz/${name}.seeds "${ARG_SEEDS}\n")
  elseif(SDP_BUILD_TESTS)
    add_executable(${name} ${ARG_SOURCES} ${PROJECT_SOURCE_DIR}/tests/fuzzReplay.cpp)
    target_compile_options(${name} PRIVATE -O0)
    add_test(NAME ${name} COMMAND ${name} ${ARG_SEEDS})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600 LABELS fuzz-replay)
  else()
    return()
  endif()
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} sdp_build_flags)
endfunction()

# sdp_add_benchmark(<name> SOURCES ... LIBS ...)  a Google Benchmark program, never a test
function(sdp_add_benchmark name)
  if(NOT SDP_BUILD_BENCH)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} sdp_build_flags benchmark::benchmark)
endfunction()
