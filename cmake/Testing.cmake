# The programs of a 32-bit build start natively or through qemu-i386, whichever this machine needs.
include(Run32)

# spatiola_add_test(name SOURCES a.cpp ... LIBS lib ...): one GoogleTest binary, one ctest entry.
function(spatiola_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gmock GTest::gtest_main)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
  if(ARG_LABELS)
    set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABELS}")
  endif()
endfunction()
