# What is installed where: the library, what others need to build with it, and kssub.
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

install(TARGETS kssubtitle EXPORT kssubtitle
  LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
  FILE_SET HEADERS COMPONENT Development)

# The library needs no other package, so its targets are all that find_package() has to read.
install(EXPORT kssubtitle NAMESPACE kssubtitle:: FILE kssubtitleConfig.cmake
  DESTINATION ${cmake_files} COMPONENT Development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kssubtitleConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kssubtitleConfigVersion.cmake
  DESTINATION ${cmake_files} COMPONENT Development)

kssubtitle_path_from("\${pcfiledir}" ${pkgconfig_files} ${CMAKE_INSTALL_LIBDIR} pc_libdir)
kssubtitle_path_from("\${pcfiledir}" ${pkgconfig_files} ${CMAKE_INSTALL_INCLUDEDIR} pc_includedir)
configure_file(cmake/kssubtitle.pc.in ${PROJECT_BINARY_DIR}/kssubtitle.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kssubtitle.pc
  DESTINATION ${pkgconfig_files} COMPONENT Development)

install(FILES CHANGELOG.md docs/behaviour.md docs/limits.md docs/limits.svg
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development)

if(KSSUBTITLE_BUILD_TOOLS)
  kssubtitle_path_from("\$ORIGIN" ${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_LIBDIR} rpath)
  set_target_properties(kssub PROPERTIES INSTALL_RPATH "${rpath}")
  install(TARGETS kssub COMPONENT Runtime)
  install(FILES tools/kssub/kssub.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Runtime)
endif()
