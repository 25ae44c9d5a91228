# pointloom_module(NAME [UNITY] SOURCES ... USES ...): one folder of src/ as a static library.
# USES names the modules below it and outside libraries; scripts/check-dependencies.sh holds
# the includes to the same picture. UNITY compiles its files a dozen at a time, since most of the time goes into
# the headers of libraries; names in their anonymous namespaces must then differ.
function(pointloom_module name)
  cmake_parse_arguments(MODULE "UNITY" "" "SOURCES;USES" ${ARGN})
  add_library(pointloom_${name} STATIC ${MODULE_SOURCES})
  if(MODULE_UNITY)
    pointloom_compile_together(pointloom_${name})
  endif()
  target_link_libraries(pointloom_${name} PRIVATE pointloom_options PUBLIC ${MODULE_USES})
endfunction()

# pointloom_test(NAME [WIDGETS] [UNITY] SOURCES ... USES ...): one test program, run by CTest. WIDGETS starts a
# QApplication instead of a QGuiApplication, and brings Qt Test's input events. UNITY as above.
function(pointloom_test name)
  cmake_parse_arguments(TEST "WIDGETS;UNITY" "" "SOURCES;USES" ${ARGN})
  set(main main.cpp)
  if(TEST_WIDGETS)
    set(main widgets_main.cpp)
    list(APPEND TEST_USES Qt6::Widgets Qt6::Test)
  endif()
  add_executable(test_${name} ${TEST_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/${main})
  if(TEST_UNITY)
    pointloom_compile_together(test_${name})
    # Fixtures stand in anonymous namespaces, which a file that is included may not hand out.
    target_compile_options(test_${name} PRIVATE -Wno-subobject-linkage)
  endif()
  target_link_libraries(test_${name} PRIVATE pointloom_options pointloom_test_support Qt6::Gui ${TEST_USES})
  set_target_properties(test_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${name} COMMAND test_${name})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8" TIMEOUT 900)
endfunction()

function(pointloom_compile_together target)
  if(POINTLOOM_UNITY)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 12)
  endif()
endfunction()
