# scribo_test(<name> SOURCES <src>... [LIBS <lib>...] [DEPENDS <target>...])
# One GoogleTest executable registered as one ctest test. Tests find built bundles through
# SCRIBO_BUILD_DIR and the example scores through SCRIBO_SOURCE_DIR.
function(scribo_test name)
  cmake_parse_arguments(T "" "" "SOURCES;LIBS;DEPENDS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE GTest::gtest GTest::gtest_main ${T_LIBS} ${CMAKE_DL_LIBS} Threads::Threads)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support)
  if(T_DEPENDS)
    add_dependencies(${name} ${T_DEPENDS})
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "SCRIBO_BUILD_DIR=${CMAKE_BINARY_DIR};SCRIBO_SOURCE_DIR=${PROJECT_SOURCE_DIR};LC_ALL=C")
endfunction()
