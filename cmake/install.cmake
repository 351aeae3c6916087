# What is installed where: the libraries, what others need to build with them, and kssub.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(cmake_files ${CMAKE_INSTALL_LIBDIR}/cmake/kssubtitle)
set(pkgconfig_files ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The path of `target` for a file in `directory`, which calls that directory `here`. Where both lie
# under the prefix it is relative, so that the installation may be moved.
function(kssubtitle_path_from here directory target result)
  cmake_path(ABSOLUTE_PATH target BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} OUTPUT_VARIABLE path)
  if(NOT IS_ABSOLUTE "${directory}" AND NOT IS_ABSOLUTE "${target}")
    cmake_path(RELATIVE_PATH path BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${directory})
    set(path ${here}/${path})
  endif()
  set(${result} ${path} PARENT_SCOPE)
endfunction()

# What goes with every component, which may be packed alone.
function(kssubtitle_install_documents component)
  install(FILES LICENSE CHANGELOG.md
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT ${component})
endfunction()

# Installs the library `target` as `name`, with its headers and what CMake (`component` of
# find_package) and pkg-config (`description`) need, as components ${part}Library and
# ${part}Development. Hosts that link it also link the pkg-config modules behind these arguments.
function(kssubtitle_install_library target name component part description)
  install(TARGETS ${target} EXPORT kssubtitle-${component}
    LIBRARY COMPONENT ${part}Library NAMELINK_COMPONENT ${part}Development
    ARCHIVE COMPONENT ${part}Development
    FILE_SET HEADERS COMPONENT ${part}Development)
  install(EXPORT kssubtitle-${component} NAMESPACE kssubtitle::
    DESTINATION ${cmake_files} COMPONENT ${part}Development)

  kssubtitle_install_documents(${part}Development)
  if(BUILD_SHARED_LIBS)
    kssubtitle_install_documents(${part}Library)
  endif()

  set(pc_name ${name})
  set(pc_description ${description})
  list(JOIN ARGN ", " pc_requires)
  kssubtitle_path_from("\${pcfiledir}" ${pkgconfig_files} ${CMAKE_INSTALL_LIBDIR} pc_libdir)
  kssubtitle_path_from("\${pcfiledir}" ${pkgconfig_files} ${CMAKE_INSTALL_INCLUDEDIR} pc_includedir)
  configure_file(cmake/library.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
    DESTINATION ${pkgconfig_files} COMPONENT ${part}Development)
endfunction()

kssubtitle_install_library(kssubtitle kssubtitle core "" "${PROJECT_DESCRIPTION}")
if(KSSUBTITLE_BUILD_IMPORT)
  set(kssubtitle_modules_import "")
  if(NOT BUILD_SHARED_LIBS)
    set(kssubtitle_modules_import pugixml uchardet)
  endif()
  kssubtitle_install_library(kssubtitle_import kssubtitle-import import Import
    "Reads subtitle files of any encoding and reports which subtitle is shown at a moment"
    kssubtitle ${kssubtitle_modules_import})
endif()

configure_file(cmake/kssubtitleConfig.cmake.in ${PROJECT_BINARY_DIR}/kssubtitleConfig.cmake @ONLY)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kssubtitleConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kssubtitleConfig.cmake
  ${PROJECT_BINARY_DIR}/kssubtitleConfigVersion.cmake
  DESTINATION ${cmake_files} COMPONENT Development)

# Pictures in a page are for those who read it in the source tree.
file(READ docs/limits.md limits)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS docs/limits.md)
string(REGEX REPLACE "!\\[[^\n]*\n\n" "" limits "${limits}")
file(WRITE ${PROJECT_BINARY_DIR}/limits.md "${limits}")
install(FILES docs/behaviour.md ${PROJECT_BINARY_DIR}/limits.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development)

if(KSSUBTITLE_BUILD_TOOLS)
  kssubtitle_path_from("\$ORIGIN" ${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_LIBDIR} rpath)
  set_target_properties(kssub PROPERTIES INSTALL_RPATH "${rpath}")
  install(TARGETS kssub COMPONENT Kssub)
  install(FILES tools/kssub/kssub.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Kssub)

  # Debian's zsh has another place for these than zsh by itself.
  set(KSSUBTITLE_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
    CACHE STRING "Where the completions of kssub for zsh are installed")
  foreach(shell bash fish zsh)
    set(completions_${shell} ${PROJECT_BINARY_DIR}/completions.${shell})
    add_custom_command(OUTPUT ${completions_${shell}}
      COMMAND kssub completion ${shell} > ${completions_${shell}} DEPENDS kssub VERBATIM)
    list(APPEND completions ${completions_${shell}})
  endforeach()
  add_custom_target(completions ALL DEPENDS ${completions})
  install(FILES ${completions_bash} RENAME kssub
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT Kssub)
  install(FILES ${completions_fish} RENAME kssub.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT Kssub)
  install(FILES ${completions_zsh} RENAME _kssub
    DESTINATION ${KSSUBTITLE_ZSH_COMPLETIONS} COMPONENT Kssub)
  kssubtitle_install_documents(Kssub)
endif()
