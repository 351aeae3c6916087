# Run by cpack on the staged files of its packages: puts into each Debian package what Debian's rules
# ask for, its documents under its own name, licence and changelogs among them, and compresses pages.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()

string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
  set(documents ${share}/doc/${package})
  if(NOT package STREQUAL CPACK_PACKAGE_NAME)
    file(RENAME ${share}/doc/${CPACK_PACKAGE_NAME} ${documents})
  endif()
  file(RENAME ${documents}/LICENSE ${documents}/copyright)
  file(RENAME ${documents}/CHANGELOG.md ${documents}/changelog)
  file(WRITE ${documents}/changelog.Debian "\
${CPACK_DEBIAN_PACKAGE_SOURCE} (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium\n
  * Packaged by the project itself; changelog.gz says what is new.\n
 -- ${CPACK_PACKAGE_CONTACT}  ${now}\n")
  file(GLOB pages ${documents}/changelog* ${share}/man/man1/*)
  execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
