# Run by cpack over the installed files: manual pages and changelogs are compressed, as Debian asks for.
file(GLOB pages ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/man/man*/*.[1-9]
                ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/doc/*/changelog
                ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/doc/*/changelog.Debian)
if(NOT pages)
  message(FATAL_ERROR "no manual pages and changelogs below ${CPACK_TEMPORARY_DIRECTORY}")
endif()
execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
