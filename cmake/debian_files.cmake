# Run by cpack on the staged files of its packages: in Debian manual pages are compressed.
if(CPACK_GENERATOR STREQUAL "DEB")
  file(GLOB_RECURSE pages ${CPACK_TEMPORARY_DIRECTORY}/*.1)
  list(FILTER pages INCLUDE REGEX "/man1/")
  if(pages)
    execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
  endif()
endif()
