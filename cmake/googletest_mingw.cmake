# GoogleTest for the cross compilers, from the sources of Debian's package `googletest`: their win32
# threads have no std::mutex, so the one class that needs it is replaced through the library's own
# customisation header.
find_path(GOOGLETEST_SOURCES src/gtest-all.cc PATHS /usr/src/googletest/googletest
          NO_CMAKE_FIND_ROOT_PATH REQUIRED)
add_library(gtest_main STATIC ${GOOGLETEST_SOURCES}/src/gtest-all.cc ${GOOGLETEST_SOURCES}/src/gtest_main.cc)
target_include_directories(gtest_main SYSTEM BEFORE
  PUBLIC ${CMAKE_CURRENT_LIST_DIR}/googletest_mingw ${GOOGLETEST_SOURCES}/include
  PRIVATE ${GOOGLETEST_SOURCES})
target_compile_options(gtest_main PRIVATE -O0)  # built anew in every build folder
add_library(GTest::gtest_main ALIAS gtest_main)
