# The readers of captures, a library by itself: its input is the most hostile one that the tool takes, so sanitizers and
# fuzz targets have it without the rest of the tool as well.
include_guard(GLOBAL)
if(NOT SDP_BUILD_TOOLS AND NOT SDP_BUILD_TESTS AND NOT SDP_BUILD_FUZZ)
  return()
endif()

find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
  pkg_check_modules(PCAP QUIET IMPORTED_TARGET libpcap)
endif()
if(NOT PCAP_FOUND)
  if(SDP_BUILD_TOOLS)
    message(FATAL_ERROR "The tool needs libpcap (Debian: libpcap-dev, pkg-config); SDP_BUILD_TOOLS=OFF builds without it")
  endif()
  message(STATUS "The readers of captures are not built: there is no libpcap")
  return()
endif()
find_package(ZLIB REQUIRED)

set(tool_dir ${CMAKE_CURRENT_LIST_DIR})
file(GLOB sources CONFIGURE_DEPENDS ${tool_dir}/src/captures/*.cpp ${tool_dir}/src/input/*.cpp)
add_library(sdpneg_captures STATIC EXCLUDE_FROM_ALL ${sources})
target_compile_features(sdpneg_captures PUBLIC cxx_std_20)
target_include_directories(sdpneg_captures PUBLIC ${tool_dir}/src)
target_link_libraries(sdpneg_captures PUBLIC sdp_text PkgConfig::PCAP ZLIB::ZLIB
                                      PRIVATE sdp_build_flags sdp_hardening)

file(GLOB tests CONFIGURE_DEPENDS ${tool_dir}/test/captures/*.cpp)
sdp_add_test(sdpneg_captures_test SOURCES ${tests} LIBS sdpneg_captures)
if(TARGET sdpneg_captures_test)
  target_include_directories(sdpneg_captures_test PRIVATE ${tool_dir}/test)
endif()

# What the messages of a capture come to: calls, what they agree on, and what is wrong in them.
file(GLOB sources CONFIGURE_DEPENDS ${tool_dir}/src/calls/*.cpp)
add_library(sdpneg_calls STATIC EXCLUDE_FROM_ALL ${sources})
target_compile_features(sdpneg_calls PUBLIC cxx_std_20)
if(TARGET sdpneg_offer_answer) # of the tool, to which all is bound statically
  target_link_libraries(sdpneg_calls PUBLIC sdpneg_captures sdpneg_offer_answer)
else()
  target_link_libraries(sdpneg_calls PUBLIC sdpneg_captures sdp_offer_answer)
endif()
target_link_libraries(sdpneg_calls PRIVATE sdp_build_flags sdp_hardening)

file(GLOB tests CONFIGURE_DEPENDS ${tool_dir}/test/calls/*.cpp)
if(tests)
  sdp_add_test(sdpneg_calls_test SOURCES ${tests} LIBS sdpneg_calls)
endif()
if(TARGET sdpneg_calls_test)
  target_include_directories(sdpneg_calls_test PRIVATE ${tool_dir}/test)
endif()

foreach(reader File Frame Fragment Tcp Stream Hep Text)
  sdp_add_fuzzer(capture${reader}Fuzz SOURCES ${tool_dir}/fuzz/capture${reader}Fuzz.cpp LIBS sdpneg_captures
                 SEEDS ${tool_dir}/fuzz/seeds/${reader})
endforeach()
sdp_add_fuzzer(callTableFuzz SOURCES ${tool_dir}/fuzz/callTableFuzz.cpp LIBS sdpneg_calls
               SEEDS ${tool_dir}/fuzz/seeds/Calls)
sdp_add_fuzzer(callTroublesFuzz SOURCES ${tool_dir}/fuzz/callTroublesFuzz.cpp LIBS sdpneg_calls
               SEEDS ${tool_dir}/fuzz/seeds/Troubles)
sdp_add_fuzzer(anonymizeFuzz SOURCES ${tool_dir}/fuzz/anonymizeFuzz.cpp LIBS sdpneg_calls
               SEEDS ${tool_dir}/fuzz/seeds/Anonymize)
