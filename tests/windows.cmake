# Windows' tests are built with another system's compiler; GoogleTest comes with its sources there.
set(GOOGLETEST_SOURCES /usr/src/googletest CACHE PATH "Where GoogleTest's sources are")
if(NOT EXISTS ${GOOGLETEST_SOURCES}/CMakeLists.txt)
    message(STATUS "GoogleTest's sources are missing: no tests")
    return()
endif()
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
add_subdirectory(${GOOGLETEST_SOURCES} googletest EXCLUDE_FROM_ALL)
include(GoogleTest)
# The programs don't run where they are built: packaging/windows/test starts them.
set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)

# Without what drives servers and other programs of an X11 desktop.
add_library(test_support STATIC support/files.cpp support/under_wine.cpp)

foreach(kind unit window wine)
    add_subdirectory(${kind})
endforeach()
