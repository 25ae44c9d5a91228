# pointloom_room(NAME SOURCES ... USES ...): one folder of src/ as a static library.
# USES names the rooms below it and outside libraries; scripts/check-dependencies.sh holds
# the includes to the same picture.
function(pointloom_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;USES" ${ARGN})
  add_library(pointloom_${name} STATIC ${ROOM_SOURCES})
  target_link_libraries(pointloom_${name} PRIVATE pointloom_options PUBLIC ${ROOM_USES})
endfunction()

# pointloom_test(NAME [WIDGETS] SOURCES ... USES ...): one test program, run by CTest. WIDGETS starts a
# QApplication instead of a QGuiApplication, and brings Qt Test's input events.
function(pointloom_test name)
  cmake_parse_arguments(TEST "WIDGETS" "" "SOURCES;USES" ${ARGN})
  set(main main.cpp)
  if(TEST_WIDGETS)
    set(main widgets_main.cpp)
    list(APPEND TEST_USES Qt6::Widgets Qt6::Test)
  endif()
  add_executable(test_${name} ${TEST_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/${main})
  target_link_libraries(test_${name} PRIVATE pointloom_options pointloom_test_support Qt6::Gui ${TEST_USES})
  set_target_properties(test_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${name} COMMAND test_${name})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8" TIMEOUT 900)
endfunction()
