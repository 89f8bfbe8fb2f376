# GoogleTest from Debian's source package, so that every width and sanitizer gets a matching build.
set(SPATIOLA_GTEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest sources")
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
add_subdirectory(${SPATIOLA_GTEST_SOURCE} ${CMAKE_BINARY_DIR}/_deps/googletest EXCLUDE_FROM_ALL)
