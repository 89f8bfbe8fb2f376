# A 32-bit build on a 64-bit machine starts its programs (tests, replays, custom commands) through
# cmake/run32.sh, which runs them natively where the kernel can and through qemu-i386 where it
# cannot. The decision is made at each start, so SPATIOLA_RUN32 can force either way.
if(NOT CMAKE_SIZEOF_VOID_P EQUAL 4)
  return()
endif()

set(SPATIOLA_RUN32_PROBE ${CMAKE_BINARY_DIR}/run32_probe)
try_compile(probe_built ${CMAKE_BINARY_DIR}/run32_probe.dir
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/run32_probe.cpp
  COPY_FILE ${SPATIOLA_RUN32_PROBE}
  OUTPUT_VARIABLE probe_log)
if(NOT probe_built)
  message(FATAL_ERROR "Cannot build a 32-bit program (is g++-multilib installed? scripts/deps.sh "
                      "installs it):\n${probe_log}")
endif()

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run32.sh ${SPATIOLA_RUN32_PROBE})
execute_process(COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} --way OUTPUT_VARIABLE way
                OUTPUT_STRIP_TRAILING_WHITESPACE)
message(STATUS "32-bit programs: ${way}")
