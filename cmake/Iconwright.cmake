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

# iconwright_runtime_library(<name> <target> <library name>)
# A third-party library that the Foundation opens at run time instead of linking: the interface
# target iw_<name>_headers gives <target>'s headers and ICONWRIGHT_<NAME>_SONAME, the name to
# open (read from the library file found for <library name>). The Debian package holding that
# file is added to ICONWRIGHT_RUNTIME_PACKAGES, for the package's Depends, which dpkg-shlibdeps
# cannot see.
function(iconwright_runtime_library name target library)
  string(TOUPPER ${name} upper)
  find_library(ICONWRIGHT_${upper}_LIBRARY_FILE ${library} REQUIRED)
  find_program(ICONWRIGHT_READELF NAMES ${CMAKE_READELF} readelf REQUIRED)
  execute_process(COMMAND ${ICONWRIGHT_READELF} -d ${ICONWRIGHT_${upper}_LIBRARY_FILE}
                  OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
  if(NOT dynamic MATCHES "Library soname: \\[([^]]+)\\]")
    message(FATAL_ERROR "No soname in ${ICONWRIGHT_${upper}_LIBRARY_FILE}")
  endif()
  set(soname ${CMAKE_MATCH_1})
  add_library(iw_${name}_headers INTERFACE)
  target_include_directories(iw_${name}_headers INTERFACE $<TARGET_PROPERTY:${target},INTERFACE_INCLUDE_DIRECTORIES>)
  target_compile_definitions(iw_${name}_headers INTERFACE ICONWRIGHT_${upper}_SONAME="${soname}")
  get_filename_component(file ${ICONWRIGHT_${upper}_LIBRARY_FILE} REALPATH)
  execute_process(COMMAND dpkg-query --search ${file} OUTPUT_VARIABLE owner RESULT_VARIABLE failed ERROR_QUIET)
  if(NOT failed AND owner MATCHES "^([^:,]+)")
    set(package ${CMAKE_MATCH_1})
    execute_process(COMMAND dpkg-query --show --showformat=\${Version} ${package} OUTPUT_VARIABLE version)
    string(REGEX REPLACE "-[^-]*$" "" version "${version}")
    set_property(GLOBAL APPEND PROPERTY ICONWRIGHT_RUNTIME_PACKAGES "${package} (>= ${version})")
  endif()
endfunction()
