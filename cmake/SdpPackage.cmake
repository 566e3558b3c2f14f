# What an installed library needs to be found: the exported targets, find_package(sdp_negotiator CONFIG),
# sdp_negotiator.pc, sdp_document.pc and sdp_offer_answer.pc. Works for relative and absolute CMAKE_INSTALL_LIBDIR and CMAKE_INSTALL_INCLUDEDIR.

include(CMakePackageConfigHelpers)

set(SDP_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/sdp_negotiator)

# The parts a host supplies: <option part> is the library target <name> of this project.
set(SDP_PART_TRACE kvrtt)
set(SDP_PART_IP_ADDRESS msg_ip_address)
set(SDP_PART_CODEC sdp_codec)

# --- find_package ----------------------------------------------------------------------------------------

install(EXPORT sdp_negotiator_targets NAMESPACE sdp_negotiator:: FILE sdp_negotiatorTargets.cmake
        DESTINATION ${SDP_INSTALL_CMAKEDIR} COMPONENT development)

set(SDP_CONFIG_DEPENDENCIES "")
if(NOT BUILD_SHARED_LIBS)
  # Of the libraries, sdp_negotiator alone needs what deflates. Where that is missing, CMake says so to those who link that
  # one.
  string(APPEND SDP_CONFIG_DEPENDENCIES "find_dependency(Threads)\nfind_package(ZLIB QUIET)\n")
  if(SDP_DEFLATE STREQUAL "libdeflate")
    string(APPEND SDP_CONFIG_DEPENDENCIES
           "list(INSERT CMAKE_MODULE_PATH 0 \"\${CMAKE_CURRENT_LIST_DIR}\")\n"
           "find_package(Libdeflate QUIET MODULE)\n"
           "list(REMOVE_AT CMAKE_MODULE_PATH 0)\n")
    install(FILES ${PROJECT_SOURCE_DIR}/cmake/FindLibdeflate.cmake
            DESTINATION ${SDP_INSTALL_CMAKEDIR} COMPONENT development)
  endif()
endif()
# An exported target refuses include folders inside the source tree, where a host that carries this project
# may well have its headers, so they are added when the package is found.
set(SDP_CONFIG_HOST_HEADERS "")
foreach(part TRACE IP_ADDRESS CODEC)
  if(SDP_${part}_LIBRARY AND SDP_${part}_INCLUDE_DIR)
    string(APPEND SDP_CONFIG_HOST_HEADERS
           "set_property(TARGET sdp_negotiator::${SDP_PART_${part}} APPEND PROPERTY\n"
           "             INTERFACE_INCLUDE_DIRECTORIES \"${SDP_${part}_INCLUDE_DIR}\")\n")
  endif()
endforeach()
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/sdp_negotiatorConfig.cmake.in
  ${PROJECT_BINARY_DIR}/sdp_negotiatorConfig.cmake INSTALL_DESTINATION ${SDP_INSTALL_CMAKEDIR})

# While the major version is 0, a minor version may change the interface.
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(compatibility SameMinorVersion)
else()
  set(compatibility SameMajorVersion)
endif()
write_basic_package_version_file(${PROJECT_BINARY_DIR}/sdp_negotiatorConfigVersion.cmake
  COMPATIBILITY ${compatibility})

install(FILES ${PROJECT_BINARY_DIR}/sdp_negotiatorConfig.cmake
              ${PROJECT_BINARY_DIR}/sdp_negotiatorConfigVersion.cmake
        DESTINATION ${SDP_INSTALL_CMAKEDIR} COMPONENT development)

# --- pkg-config ------------------------------------------------------------------------------------------

# sdp_pc_folder(<variable> <folder>)  a folder as a .pc file gives it: below ${prefix} unless it is absolute
function(sdp_pc_folder variable folder)
  if(IS_ABSOLUTE "${folder}")
    set(${variable} "${folder}" PARENT_SCOPE)
  else()
    set(${variable} "\${prefix}/${folder}" PARENT_SCOPE)
  endif()
endfunction()

# sdp_pc_library(<variable> <library>)  a host's library as the linker takes it
function(sdp_pc_library variable library)
  if(TARGET ${library})
    message(WARNING "sdp_negotiator.pc cannot name the CMake target ${library}; "
                    "users of pkg-config must link the library behind it themselves")
    set(flag "")
  elseif(library MATCHES "^-|/")
    set(flag "${library}")
  else()
    set(flag "-l${library}")
  endif()
  set(${variable} "${flag}" PARENT_SCOPE)
endfunction()

sdp_pc_folder(SDP_PC_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
sdp_pc_folder(SDP_PC_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}")
set(SDP_PC_LIBS "-L\${libdir} -lsdp_negotiator")
set(SDP_PC_CFLAGS "-I\${includedir}/sdp_negotiator")
foreach(part CODEC IP_ADDRESS TRACE) # users before what they use, for static libraries
  if(SDP_${part}_LIBRARY)
    sdp_pc_library(flag "${SDP_${part}_LIBRARY}")
    string(APPEND SDP_PC_LIBS " ${flag}")
    if(SDP_${part}_INCLUDE_DIR)
      string(APPEND SDP_PC_CFLAGS " -I${SDP_${part}_INCLUDE_DIR}")
    endif()
  else()
    string(APPEND SDP_PC_LIBS " -l${SDP_PART_${part}}")
  endif()
endforeach()
# The prefix is known only at installation (cmake --install --prefix), so the last value is set then.
set(SDP_PC_PREFIX "@CMAKE_INSTALL_PREFIX@")
foreach(package sdp_negotiator sdp_document sdp_offer_answer)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${package}.pc.in ${PROJECT_BINARY_DIR}/${package}.pc.in @ONLY)
  install(CODE "configure_file(\"${PROJECT_BINARY_DIR}/${package}.pc.in\"
                               \"${PROJECT_BINARY_DIR}/${package}.pc\" @ONLY)" COMPONENT development)
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
          COMPONENT development)
endforeach()
