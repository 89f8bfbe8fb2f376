# The live engine's threads on an in-process plug-in, built from the engine's sources so that the
# tsan preset, which builds no host library, runs it too.
find_package(PkgConfig REQUIRED)
pkg_check_modules(STRESS_JACK REQUIRED IMPORTED_TARGET jack)
pkg_check_modules(STRESS_SNDFILE REQUIRED IMPORTED_TARGET sndfile)
spatiola_add_test(test_live_engine_stress
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/test_live_engine_stress.cpp
          ${PROJECT_SOURCE_DIR}/host/live/automation_recorder.cpp
          ${PROJECT_SOURCE_DIR}/host/live/callback_timing.cpp
          ${PROJECT_SOURCE_DIR}/host/live/file_player.cpp
          ${PROJECT_SOURCE_DIR}/host/live/live_engine.cpp
          ${PROJECT_SOURCE_DIR}/host/runtime/crash_guard.cpp
          ${PROJECT_SOURCE_DIR}/host/runtime/interrupt_guard.cpp
          $<TARGET_OBJECTS:spatiola_shell> ${PROJECT_SOURCE_DIR}/plugin/editor_absent.cpp
  LIBS spatiola_state spatiola_engine PkgConfig::STRESS_JACK PkgConfig::STRESS_SNDFILE)
