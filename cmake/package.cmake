# What cpack makes of each component: an archive and a Debian package.
set(CPACK_GENERATOR TGZ DEB)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # or it would precede each package's own
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian_documents.cmake)

# Who answers for a package is whoever builds it, named as for Debian's own tools. The project has
# an issue tracker and no address, and says so with a domain that can never exist.
if(DEFINED ENV{DEBFULLNAME} AND DEFINED ENV{DEBEMAIL})
  set(CPACK_PACKAGE_CONTACT "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
else()
  set(CPACK_PACKAGE_CONTACT "The kssubtitle authors <use-the-issue-tracker@kssubtitle.invalid>")
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE kssubtitle)
set(CPACK_DEBIAN_PACKAGE_RELEASE 0upstream1)  # older than the first of a distribution
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/kssubtitle ${PROJECT_BINARY_DIR}/kssubtitle/import)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(package_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

# The package `name` of a component: its section, what it depends on beside shared libraries of
# other projects, and its description, whose first line is apart.
macro(kssubtitle_package component name section depends description)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${description}")
endmacro()

set(library libkssubtitle${PROJECT_VERSION_MAJOR})
set(library_same "")
set(library_newer "")
if(BUILD_SHARED_LIBS)
  set(library_same "${library} (= ${package_version})")
  set(library_newer "${library} (>= ${PROJECT_VERSION})")
  file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers)
  kssubtitle_package(Library ${library} libs "" "library that reads subtitle files
It reports which subtitle of a SubRip, Advanced SubStation Alpha or SubStation
Alpha file is shown at a moment, and reads VobSub indexes and the units of
their pictures. It is made for media players: it starts no threads, writes
nothing, and needs no library but that of C++.")
endif()
kssubtitle_package(Development libkssubtitle-dev libdevel "${library_same}"
  "library that reads subtitle files - development files
It reports which subtitle of a file is shown at a moment.
.
This package holds what is needed to build with the library: its headers,
files for CMake and pkg-config, and what it answers in every odd case.")
set(import_library libkssubtitle-import${PROJECT_VERSION_MAJOR})
set(import_same "libkssubtitle-dev (= ${package_version})")
set(kssub_depends "")
if(BUILD_SHARED_LIBS)
  string(PREPEND import_same "${import_library} (= ${package_version}), ")
  set(kssub_depends "${library_newer}, ${import_library} (>= ${PROJECT_VERSION})")
  set(CPACK_DEBIAN_IMPORTLIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers)
  kssubtitle_package(ImportLibrary ${import_library} libs "${library_newer}"
    "library that reads subtitle files of any encoding
It reads the subtitle files that people have as a careful person would, and
reports which subtitle is shown at a moment. It is made for media players: it
starts no threads, writes nothing, and asks no locale.")
endif()
kssubtitle_package(ImportDevelopment libkssubtitle-import-dev libdevel "${import_same}"
  "library that reads subtitle files of any encoding - development files
It reads the subtitle files that people have as a careful person would, and
reports which subtitle is shown at a moment.
.
This package holds what is needed to build with the library: its headers, and
files for CMake and pkg-config.")
kssubtitle_package(Kssub kssub video "${kssub_depends}" "report which subtitle is shown at a moment
On the command line, kssub lists the subtitles of a file, reports which are
shown at given times, plays them, checks, mends and converts them, draws them
over the time of the film, and writes the pictures of VobSub files as PNG
files. It shows what a media player with these libraries would.")

include(CPack)
