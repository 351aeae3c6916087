# Builds on Debian for another processor, with its cross compiler. KSSUBTITLE_PLATFORM is aarch64,
# armhf, i386 or riscv64, and KSSUBTITLE_LIBRARIES a directory into which the packages of that
# processor's libraries are unpacked. scripts/platforms prepares both.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KSSUBTITLE_PLATFORM KSSUBTITLE_LIBRARIES)

if(KSSUBTITLE_PLATFORM STREQUAL "armhf")
  set(CMAKE_SYSTEM_PROCESSOR arm)
  set(triplet arm-linux-gnueabihf)
elseif(KSSUBTITLE_PLATFORM STREQUAL "i386")
  set(CMAKE_SYSTEM_PROCESSOR i686)
  set(triplet i686-linux-gnu)
else()
  set(CMAKE_SYSTEM_PROCESSOR ${KSSUBTITLE_PLATFORM})
  set(triplet ${KSSUBTITLE_PLATFORM}-linux-gnu)
endif()
string(REPLACE i686 i386 CMAKE_LIBRARY_ARCHITECTURE ${triplet})  # as the libraries' packages say it
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_CXX_COMPILER ${triplet}-g++)

# Headers and libraries are never those of the machine that builds; CMake files may be.
set(runtime /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH ${KSSUBTITLE_LIBRARIES} ${runtime})
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${KSSUBTITLE_LIBRARIES})
set(ENV{PKG_CONFIG_LIBDIR} ${KSSUBTITLE_LIBRARIES}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig)

string(CONCAT library_path "${runtime}/lib:"
  "${KSSUBTITLE_LIBRARIES}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}:"
  "${KSSUBTITLE_LIBRARIES}/lib/${CMAKE_LIBRARY_ARCHITECTURE}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,${library_path}")
# What iconv() loads for an encoding comes with the unpacked C library.
set(gconv GCONV_PATH=${KSSUBTITLE_LIBRARIES}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/gconv)
if(KSSUBTITLE_PLATFORM STREQUAL "i386")
  # An x86-64 kernel runs these programs as they are, if they name their own dynamic linker.
  string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT
    " -Wl,--dynamic-linker=${runtime}/lib/ld-linux.so.2,--disable-new-dtags,-rpath,${library_path}")
  set(CMAKE_CROSSCOMPILING_EMULATOR env ${gconv})
else()
  set(CMAKE_CROSSCOMPILING_EMULATOR
    qemu-${CMAKE_SYSTEM_PROCESSOR} -L ${runtime} -E LD_LIBRARY_PATH=${library_path} -E ${gconv})
endif()
