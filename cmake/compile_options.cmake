# How every target of the project is compiled.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Files of 2 GiB and more can be opened on 32-bit systems as well.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_compile_definitions(_FILE_OFFSET_BITS=64)
endif()

function(kssubtitle_compile_options target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual
    -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Wformat=2 -Wundef
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>  # g++ 12 reports std::string's own copies
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<EQUAL:${CMAKE_SIZEOF_VOID_P},4>>:-Wno-array-bounds>  # the same
    # Vectors are handed on within the library alone.
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<EQUAL:${CMAKE_SIZEOF_VOID_P},4>>:-Wno-psabi>
    $<$<BOOL:${KSSUBTITLE_WARNINGS_AS_ERRORS}>:-Werror>)
  if(KSSUBTITLE_CLANG_TIDY)
    set_target_properties(${target} PROPERTIES CXX_CLANG_TIDY "clang-tidy;--quiet")
  endif()
  if(KSSUBTITLE_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${KSSUBTITLE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${KSSUBTITLE_SANITIZE})
  endif()
endfunction()
