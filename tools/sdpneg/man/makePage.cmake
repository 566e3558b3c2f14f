# Writes the manual page: the template with what the program tells about its commands.
#   cmake -DPROGRAM=... -DVERSION=... -DTEMPLATE=... -DPAGE=... -P makePage.cmake
execute_process(COMMAND ${PROGRAM} --manual-commands OUTPUT_VARIABLE COMMANDS RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} --manual-commands failed: ${status}")
endif()
string(STRIP "${COMMANDS}" COMMANDS)
configure_file(${TEMPLATE} ${PAGE} @ONLY)
