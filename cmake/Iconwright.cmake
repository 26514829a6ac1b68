# Helpers that keep each subsystem and each test program to one line.

# iconwright_subsystem(<folder> [DEPS <subsystems>...] [LIBS <targets>...])
# LIBS are the third-party libraries whose headers the folder's sources include.
# Compiles foundation/<folder>/*.cpp once into an object library, offered as the static
# library iw_<folder> (tests link only the subsystems they need) and gathered into the
# shared IconwrightFoundation library. A folder with no sources yet is skipped.
function(iconwright_subsystem folder)
  cmake_parse_arguments(ARG "" "" "DEPS;LIBS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
  string(REPLACE "/" "_" name ${folder})
  if(NOT sources)
    return()
  endif()
  set(deps)
  foreach(dep IN LISTS ARG_DEPS)
    string(REPLACE "/" "_" dep_name ${dep})
    if(TARGET iw_${dep_name})
      list(APPEND deps iw_${dep_name})
    endif()
  endforeach()
  add_library(iw_${name}_objects OBJECT ${sources})
  target_include_directories(iw_${name}_objects PUBLIC ${PROJECT_SOURCE_DIR})
  # The object library sees only third-party libraries it names itself, so that subsystems
  # that call one another (document, format, assets, tool) form a cycle of static libraries
  # only, which the linker resolves.
  target_link_libraries(iw_${name}_objects PUBLIC ${ARG_LIBS})
  add_library(iw_${name} STATIC $<TARGET_OBJECTS:iw_${name}_objects>)
  target_include_directories(iw_${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(iw_${name} PUBLIC ${deps} ${ARG_LIBS})
  set_property(GLOBAL APPEND PROPERTY ICONWRIGHT_OBJECTS $<TARGET_OBJECTS:iw_${name}_objects>)
  set_property(GLOBAL APPEND PROPERTY ICONWRIGHT_LIBS ${ARG_LIBS})
endfunction()

# iconwright_test(<folder> LIBS <targets>...)
# One GoogleTest program per test folder: tests/<folder>/*.cpp plus the shared test support.
function(iconwright_test folder)
  cmake_parse_arguments(ARG "" "" "LIBS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  string(REPLACE "/" "_" name ${folder})
  set(target tests_${name})
  add_executable(${target} ${sources})
  target_link_libraries(${target} PRIVATE iw_test_support ${ARG_LIBS} GTest::gmock GTest::gtest_main)
  gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60
    PROPERTIES ENVIRONMENT "ICONWRIGHT_SHARED_DIR=${ICONWRIGHT_SHARED_DIR}")
endfunction()
