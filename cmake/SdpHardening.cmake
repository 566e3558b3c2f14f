# What the installed binaries do against an attack through a fault in them or in what uses them:
#   -fstack-clash-protection   a frame larger than the guard page below a thread's stack touches it instead of jumping it
#   -fcf-protection            only marked places can be jumped to (x86)
#   -fstack-protector-strong   a frame that was written over ends the process before it returns
#   _FORTIFY_SOURCE            the C library's functions know the size of what they write to; takes optimization
#   _GLIBCXX_ASSERTIONS        so do the C++ library's containers and views
#   relro, now                 what the dynamic linker has filled in becomes read-only before the program starts
# The sanitizers find more, and some of them do not go with it.

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CMakePushCheckState)

set(default ON)
if("${CMAKE_CXX_FLAGS}" MATCHES "-fsanitize")
  set(default OFF)
endif()
option(SDP_HARDENING "Harden the installed binaries, as far as the compiler can" ${default})

add_library(sdp_hardening INTERFACE)
# What is in use, for scripts/check-hardening.
set(SDP_HARDENING_FLAGS "" CACHE INTERNAL "")
if(NOT SDP_HARDENING)
  return()
endif()

set(flags "")
cmake_push_check_state(RESET)
set(CMAKE_REQUIRED_FLAGS -Werror)
foreach(flag -fstack-clash-protection -fcf-protection=full -fstack-protector-strong)
  string(MAKE_C_IDENTIFIER "SDP_HAS${flag}" has)
  check_cxx_compiler_flag(${flag} ${has})
  if(${has})
    list(APPEND flags ${flag})
  endif()
endforeach()
cmake_pop_check_state()
target_compile_options(sdp_hardening INTERFACE ${flags})
target_compile_definitions(sdp_hardening INTERFACE _GLIBCXX_ASSERTIONS)
list(APPEND flags _GLIBCXX_ASSERTIONS)

# A level that comes with the flags from outside stays.
if(NOT "${CMAKE_CXX_FLAGS}" MATCHES "_FORTIFY_SOURCE" AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_options(sdp_hardening INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  list(APPEND flags _FORTIFY_SOURCE)
endif()

foreach(keyword relro now)
  check_linker_flag(CXX LINKER:-z,${keyword} SDP_HAS_Z_${keyword})
  if(SDP_HAS_Z_${keyword})
    target_link_options(sdp_hardening INTERFACE LINKER:-z,${keyword})
    list(APPEND flags ${keyword})
  endif()
endforeach()
set(SDP_HARDENING_FLAGS "${flags}" CACHE INTERNAL "")
