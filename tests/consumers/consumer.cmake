# One step of installing the library and building hosts with it, as other projects do.
#   cmake -D step=STEP -D work=DIR ... -P consumer.cmake    see CMakeLists.txt beside this file
cmake_minimum_required(VERSION 3.25)
cmake_path(SET source NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../..)
set(smallest ${source}/examples/smallest)
set(exact ${source}/examples/exact)
set(film ${source}/examples/film)
set(warnings "-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast -Werror")

function(run)
  execute_process(COMMAND ${ARGV} OUTPUT_VARIABLE output ECHO_OUTPUT_VARIABLE
    COMMAND_ERROR_IS_FATAL ANY)
  set(output "${output}" PARENT_SCOPE)
endfunction()

function(require value relation expected)
  if(NOT "${value}" ${relation} "${expected}")
    message(FATAL_ERROR "Not true: '${value}' ${relation} '${expected}'")
  endif()
endfunction()

function(run_smallest host)
  run(${host} ${film}/lighthouse.srt)
  require("${output}" MATCHES
    "^15000 ms of subtitles\n1000:\nThe lamp has been dark.*\n15000:\nNobody answered")
  run(${host} ${film}/lighthouse-wide.srt)
  require("${output}" MATCHES "^15000 ms of subtitles\n1000:(\nМаяк не горит| 26 wide characters)")
endfunction()

function(build_project project binaries)
  run(${CMAKE_COMMAND} -G ${generator} -S ${project} -B ${binaries}
    -D CMAKE_CXX_COMPILER=${compiler} "-DCMAKE_CXX_FLAGS=${warnings}" ${ARGN})
  run(${CMAKE_COMMAND} --build ${binaries} --parallel 2)
endfunction()

# The host of one library; where another library is asked for by name, it is beside the system's.
function(build_with_pkg_config library_directory host module)
  set(ENV{PKG_CONFIG_PATH} ${library_directory}/pkgconfig)
  run(${pkg_config} --modversion ${module})
  require("${output}" STREQUAL "${version}\n")
  run(${pkg_config} --cflags --libs ${module})
  separate_arguments(flags UNIX_COMMAND "${warnings} ${output}")
  run(${compiler} -std=c++20 ${host}/host.cpp ${flags} -o ${work}/host)
  set(ENV{LD_LIBRARY_PATH} ${library_directory})
  run_smallest(${work}/host)
endfunction()

# The README shows the smallest host as it is.
function(test_readme)
  file(READ ${source}/README.md readme)
  foreach(file host.cpp CMakeLists.txt)
    file(READ ${smallest}/${file} text)
    string(FIND "${readme}" "\n${text}```\n" position)
    require(${position} GREATER 0)
  endforeach()
endfunction()

# The second installation is staged, as packagers do it: it was meant for another place.
function(test_install)
  file(REMOVE_RECURSE ${installed} ${moved})
  run(${CMAKE_COMMAND} --install ${build} --prefix ${installed})
  set(ENV{DESTDIR} ${work})
  run(${CMAKE_COMMAND} --install ${build} --prefix /meant)
  file(RENAME ${work}/meant ${moved})
  file(GLOB_RECURSE texts ${moved}/*.cmake ${moved}/*.pc)
  require("${texts}" MATCHES "Config.cmake;.*[.]pc")
  foreach(text IN LISTS texts)
    file(STRINGS ${text} fixed_paths REGEX "${source}|${build}|${work}|/meant")
    require("${fixed_paths}" STREQUAL "")
  endforeach()
endfunction()

function(test_find_package)
  foreach(host smallest exact)
    build_project(${${host}} ${work}/${host} -D CMAKE_PREFIX_PATH=${prefix})
    run_smallest(${work}/${host}/host)
  endforeach()
endfunction()

function(test_pkg_config)
  build_with_pkg_config(${prefix}/${libdir} ${smallest} kssubtitle-import)
  build_with_pkg_config(${prefix}/${libdir} ${exact} kssubtitle)
endfunction()

function(test_threaded)
  build_project(${source}/examples/threaded ${work} -D CMAKE_PREFIX_PATH=${prefix})
  run(${work}/host ${film}/lighthouse.srt ${film}/lighthouse.ass ${film}/lighthouse-wide.srt)
  require("${output}" MATCHES
    "lighthouse.srt: 15000 ms, 7 changes\n.*wide.srt: [0-9]+ ms, [1-9][0-9]* changes\n$")
endfunction()

function(test_kssub)
  run(${prefix}/bin/kssub at ${film}/lighthouse.srt 1000)
  require("${output}" MATCHES "The lamp has been dark")
endfunction()

function(test_other_major)
  string(REGEX MATCH "^[0-9]+" major ${version})
  math(EXPR other "${major} + 1")
  find_package(kssubtitle ${other} QUIET CONFIG PATHS ${prefix} NO_DEFAULT_PATH)
  require("${kssubtitle_FOUND}" EQUAL 0)
  require("${kssubtitle_CONSIDERED_VERSIONS}" STREQUAL "${version}")
endfunction()

function(find_components components)
  file(WRITE ${work}/finding/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)
project(host LANGUAGES NONE)
find_package(kssubtitle 0.1 REQUIRED COMPONENTS ${components})
get_property(targets DIRECTORY PROPERTY IMPORTED_TARGETS)
message(\"It has: \${targets}\")
")
  execute_process(COMMAND ${CMAKE_COMMAND} --fresh -S ${work}/finding -B ${work}/finding
    -D CMAKE_PREFIX_PATH=${prefix} OUTPUT_VARIABLE output ERROR_VARIABLE output)
  string(REGEX REPLACE "\n  +" " " output "${output}")
  set(output "${output}" PARENT_SCOPE)
endfunction()

function(test_components)
  find_components("import OPTIONAL_COMPONENTS pictures")
  require("${output}" MATCHES "It has: kssubtitle::kssubtitle;kssubtitle::import\n")
  find_components("core pictures")
  require("${output}" MATCHES "'pictures' of kssubtitle ${version} is not installed[.]")

  # What a packager does who ships the core alone.
  file(COPY ${prefix}/ DESTINATION ${work}/core)
  file(GLOB import_targets ${work}/core/${libdir}/cmake/kssubtitle/kssubtitle-import*)
  file(REMOVE ${import_targets})
  set(prefix ${work}/core)
  find_components("core")
  require("${output}" MATCHES "It has: kssubtitle::kssubtitle\n")
  find_components("import")
  require("${output}" MATCHES "'import' of kssubtitle ${version} is not installed[.]")
endfunction()

# As a subproject the library installs nothing unless asked to, here with its libraries elsewhere.
function(test_subproject)
  file(READ ${smallest}/CMakeLists.txt project)
  string(REGEX REPLACE "find_package[^\n]*" "add_subdirectory(${source} kssubtitle)" project
    "${project}")
  file(WRITE ${work}/source/CMakeLists.txt "${project}")
  file(COPY ${smallest}/host.cpp DESTINATION ${work}/source)
  build_project(${work}/source ${work}/build -D CMAKE_INSTALL_PREFIX=${work}/installed)
  run_smallest(${work}/build/host)
  run(${CMAKE_COMMAND} --install ${work}/build)
  file(GLOB installed_files ${work}/installed/*)
  require("${installed_files}" STREQUAL "")

  run(${CMAKE_COMMAND} ${work}/build -D KSSUBTITLE_INSTALL=ON
    -D CMAKE_INSTALL_LIBDIR=${work}/libraries)
  run(${CMAKE_COMMAND} --build ${work}/build --parallel 2)
  run(${CMAKE_COMMAND} --install ${work}/build)
  build_with_pkg_config(${work}/libraries ${smallest} kssubtitle-import)
endfunction()

function(test_static)
  set(prefix ${work}/installed)
  run(${CMAKE_COMMAND} -G ${generator} -S ${source} -B ${work}/build
    -D CMAKE_CXX_COMPILER=${compiler} -D CMAKE_INSTALL_PREFIX=${prefix}
    -D CMAKE_INSTALL_LIBDIR=${libdir} -D BUILD_SHARED_LIBS=OFF
    -D KSSUBTITLE_BUILD_TESTS=OFF -D KSSUBTITLE_BUILD_TOOLS=OFF)
  run(${CMAKE_COMMAND} --build ${work}/build --target install --parallel 2)
  file(GLOB libraries RELATIVE ${prefix}/${libdir} ${prefix}/${libdir}/lib*)
  require("${libraries}" STREQUAL "libkssubtitle-import.a;libkssubtitle.a")
  test_find_package()
  test_pkg_config()

  set(ENV{PKG_CONFIG_PATH} "")
  set(ENV{PKG_CONFIG_LIBDIR} ${work}/none)
  find_components("core")
  require("${output}" MATCHES "It has: kssubtitle::kssubtitle\n")
  find_components("import")
  require("${output}" MATCHES "'import' of kssubtitle ${version} is not installed with uchardet,")
endfunction()

# `files` is a pattern of all that the package holds apart from headers and what each one has.
function(require_package name files depends)
  file(GLOB package ${work}/${name}_${version}-*.deb)
  run(dpkg-deb --field ${package} Depends)
  require("${output}" MATCHES "^${depends}\n$")
  run(dpkg-deb --contents ${package})
  string(REGEX MATCHALL "[.]/usr/[^ \n]*[^ /\n]( ->[^\n]*)?\n" paths "${output}")
  list(TRANSFORM paths REPLACE "^[.]/usr/| ->.*|\n" "")
  list(FILTER paths EXCLUDE REGEX "^include/kssubtitle/.*[.]h$")
  foreach(document changelog.Debian.gz changelog.gz copyright)
    require("share/doc/${name}/${document}" IN_LIST paths)
    list(REMOVE_ITEM paths share/doc/${name}/${document})
  endforeach()
  list(SORT paths)
  require("${paths}" MATCHES "^${files}$")
endfunction()

function(test_packages)
  run(cpack --config ${build}/CPackConfig.cmake -G DEB -B ${work})
  string(REGEX MATCH "^[0-9]+" major ${version})
  set(library libkssubtitle${major})
  set(system "libc6 [^,]*, libgcc-s1 [^,]*")
  set(cxx "libstdc[+][+]6 [^,]*")
  require_package(${library}
    "${libdir}/libkssubtitle.so.${major};${libdir}/libkssubtitle.so.${version}" "${system}, ${cxx}")
  require_package(libkssubtitle-import${major}
    "${libdir}/libkssubtitle-import.so.${major};${libdir}/libkssubtitle-import.so.${version}"
    "${library} \\(>= ${version}\\), ${system}, libpugixml1v5 [^,]*, ${cxx}, libuchardet0.*")
  require_package(libkssubtitle-import-dev
    "(${libdir}/cmake/kssubtitle/kssubtitle[^;]*.cmake;)+${libdir}/libkssubtitle-import.so;\
${libdir}/pkgconfig/kssubtitle-import.pc"
    "libkssubtitle-import${major} \\(= ${version}-[a-z0-9]+\\), libkssubtitle-dev \\(= .*")
  require_package(libkssubtitle-dev
    "(${libdir}/cmake/kssubtitle/kssubtitle[^;]*.cmake;)+${libdir}/libkssubtitle.so;\
${libdir}/pkgconfig/kssubtitle.pc;share/doc/libkssubtitle-dev/behaviour.md;\
share/doc/libkssubtitle-dev/limits.md" "${library} \\(= ${version}-[a-z0-9]+\\)")
  require_package(kssub "bin/kssub;share/bash-completion/completions/kssub;\
share/fish/vendor_completions.d/kssub.fish;share/man/man1/kssub.1.gz;share/zsh/[a-z-]+/_kssub"
    "${library} \\(>= ${version}\\), libkssubtitle-import${major} \\(>= ${version}\\), libc6 [^,]*, \
libcairo2 [^,]*, libgcc-s1 [^,]*, libpng16-16 [^,]*, ${cxx}.*")
  file(GLOB package ${work}/${library}_*.deb)
  run(dpkg-deb --info ${package} shlibs triggers)
  require("${output}" MATCHES "libkssubtitle ${major} ${library} .*activate-noawait ldconfig")
endfunction()

file(REMOVE_RECURSE ${work})
file(MAKE_DIRECTORY ${work})
cmake_language(CALL test_${step})
