# GoogleTest, as installed. For another processor Debian has its source alone.
if(CMAKE_CROSSCOMPILING)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
else()
  find_package(GTest REQUIRED)
endif()
