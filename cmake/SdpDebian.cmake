# Debian packages by component: the libraries, what an engine is built with, and the tool. They need a build that is
# laid out as Debian has it (preset "packages"): shared libraries for /usr, none of them a host's own.
#   cpack --config build/packages/CPackConfig.cmake      puts them into build/packages/deb

if(NOT BUILD_SHARED_LIBS OR NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr"
   OR SDP_TRACE_LIBRARY OR SDP_IP_ADDRESS_LIBRARY OR SDP_CODEC_LIBRARY)
  return()
endif()

set(SDP_PACKAGE_CONTACT "sdp_negotiator maintainers <maintainers@sdp-negotiator.invalid>" CACHE STRING
    "Maintainer named in the Debian packages")

# A new SONAME is a new package, so that engines built against either can be installed together (docs/abi.md).
set(SDP_PACKAGE_RUNTIME libsdp-negotiator${SDP_SOVERSION})
set(SDP_PACKAGE_DEVELOPMENT libsdp-negotiator-dev)
set(SDP_PACKAGE_TOOLS sdpneg)
set(components runtime development)
if(TARGET sdpneg)
  list(APPEND components tools)
endif()

# --- what each package says of itself --------------------------------------------------------------------

set(SDP_PACKAGE_DEBIAN_VERSION ${PROJECT_VERSION}-1)
string(TIMESTAMP SDP_PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC) # or SOURCE_DATE_EPOCH
configure_file(cmake/debian/changelog.in ${PROJECT_BINARY_DIR}/debian/changelog.Debian @ONLY)
configure_file(cmake/debian/overrides.in ${PROJECT_BINARY_DIR}/debian/overrides @ONLY)
foreach(component ${components})
  string(TOUPPER ${component} upper)
  set(doc ${CMAKE_INSTALL_DATADIR}/doc/${SDP_PACKAGE_${upper}})
  install(FILES ${PROJECT_BINARY_DIR}/debian/changelog.Debian cmake/debian/copyright
          DESTINATION ${doc} COMPONENT ${component})
  install(FILES CHANGELOG.md DESTINATION ${doc} RENAME changelog COMPONENT ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${SDP_PACKAGE_${upper}})
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/debian/overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME ${SDP_PACKAGE_RUNTIME} COMPONENT runtime)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "SDP bodies for SIP call-control engines: libraries
The libraries read the SDP bodies (RFC 4566) that pass through a SIP engine,
keep what they learn in plain records, and rewrite those bodies on request
without disturbing the rest.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS zlib1g-dev) # these are named in sdp_negotiator.pc
if(SDP_DEFLATE STREQUAL "libdeflate")
  string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", libdeflate-dev")
endif()
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "SDP bodies for SIP call-control engines: development files
The libraries read the SDP bodies (RFC 4566) that pass through a SIP engine,
keep what they learn in plain records, and rewrite those bodies on request
without disturbing the rest.

This package has what an engine is built with: the headers, the package files
for CMake and pkg-config, and the links for the linker.")
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)

set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "looks into SDP bodies and edits them
sdpneg shows what the sdp_negotiator libraries make of an SDP body (RFC 4566)
or of the body in a SIP message, compares two of them, and edits one by the
requests that an engine would use.")

# --- how they are made -----------------------------------------------------------------------------------

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/deb)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has a summary of its own
set(CPACK_PACKAGE_CONTACT "${SDP_PACKAGE_CONTACT}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE sdp-negotiator)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/platform/rtt ${PROJECT_BINARY_DIR}/platform/ip
    ${PROJECT_BINARY_DIR}/parsers/sdp ${PROJECT_BINARY_DIR}/parsers/sdp_document
    ${PROJECT_BINARY_DIR}/parsers/sdp_offer_answer ${PROJECT_BINARY_DIR}/parsers/sdp_negotiator)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_SET_DESTDIR ON) # the .pc file names the prefix
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/compress.cmake)
include(CPack)
