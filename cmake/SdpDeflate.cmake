# What deflates the texts of long bodies: sets SDP_DEFLATE_LIBRARIES, and SDP_DEFLATE_PACKAGES as pkg-config names them.
# With libdeflate, zlib is needed still, for bodies that libdeflate does not make small enough.

find_package(ZLIB REQUIRED)
find_package(Libdeflate QUIET)

set(sdp_deflate_default zlib)
if(Libdeflate_FOUND)
  set(sdp_deflate_default libdeflate)
endif()
set(SDP_DEFLATE ${sdp_deflate_default} CACHE STRING "What deflates long bodies: libdeflate, which is faster, or zlib")
set_property(CACHE SDP_DEFLATE PROPERTY STRINGS libdeflate zlib)

set(SDP_DEFLATE_LIBRARIES ZLIB::ZLIB)
set(SDP_DEFLATE_PACKAGES zlib)
if(SDP_DEFLATE STREQUAL "libdeflate")
  if(NOT Libdeflate_FOUND)
    message(FATAL_ERROR "SDP_DEFLATE is libdeflate, which is not found. Install it (on Debian libdeflate-dev), or configure "
                        "with -DSDP_DEFLATE=zlib.")
  endif()
  list(APPEND SDP_DEFLATE_LIBRARIES Libdeflate::Libdeflate)
  list(APPEND SDP_DEFLATE_PACKAGES libdeflate)
elseif(NOT SDP_DEFLATE STREQUAL "zlib")
  message(FATAL_ERROR "SDP_DEFLATE is \"${SDP_DEFLATE}\"; it can be libdeflate or zlib.")
endif()
list(JOIN SDP_DEFLATE_PACKAGES ", " SDP_DEFLATE_PACKAGES)
