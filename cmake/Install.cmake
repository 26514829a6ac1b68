# What `cmake --install build --prefix P` lays out, and the Debian package made from it:
#   P/bin/wrighttool                   finds the library through a run path $ORIGIN/../lib/...
#   P/lib/iconwright/IconwrightFoundation.framework/libIconwrightFoundation.so.<version>
#   P/lib/iconwright/IconwrightKit.framework/libIconwrightKit.so   (when the Kit is built)
#   P/include/iconwright/foundation/...  the headers, included as "foundation/..."
#   P/lib/pkgconfig/iconwright-foundation.pc and P/lib/cmake/IconwrightFoundation/
#   P/share/man/man1/wrighttool.1, P/share/bash-completion/completions/wrighttool
#   P/share/doc/iconwright/            README, docs and the embedding example
# Every file refers to the others by relative paths, so the tree may be moved as a whole.
# The programs in the build directory run there as before.
include(CMakePackageConfigHelpers)

set(ICONWRIGHT_FRAMEWORKS_DIR ${CMAKE_INSTALL_LIBDIR}/iconwright)
set(ICONWRIGHT_FOUNDATION_FRAMEWORK_DIR ${ICONWRIGHT_FRAMEWORKS_DIR}/IconwrightFoundation.framework)
set(iconwright_doc_dir ${CMAKE_INSTALL_DATADIR}/doc/iconwright)
set(iconwright_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/IconwrightFoundation)
set(iconwright_generated_dir ${CMAKE_BINARY_DIR}/packaging)

# The path from one install directory to another, both relative to the prefix.
function(iconwright_relative_install_path out from to)
  file(RELATIVE_PATH path /prefix/${from} /prefix/${to})
  string(REGEX REPLACE "/$" "" path "${path}")
  if(path STREQUAL "")
    set(path .)
  endif()
  set(${out} ${path} PARENT_SCOPE)
endfunction()

# The library, the program and, beside the library's framework where the command registry
# looks for it, the Kit. Each is linked with the run path it is installed with, one that holds
# in both layouts, so that installing rewrites none: a run path that CMake rewrites at install
# time is padded in the build with an empty entry, which the loader takes as the current
# directory.
set_target_properties(IconwrightFoundation PROPERTIES BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "")
install(TARGETS IconwrightFoundation EXPORT IconwrightFoundationTargets
  LIBRARY DESTINATION ${ICONWRIGHT_FOUNDATION_FRAMEWORK_DIR})
if(TARGET wrighttool)
  # Beside the program in build/, in ../lib/iconwright from bin/.
  iconwright_relative_install_path(bin_to_foundation ${CMAKE_INSTALL_BINDIR} ${ICONWRIGHT_FOUNDATION_FRAMEWORK_DIR})
  set_target_properties(wrighttool PROPERTIES BUILD_WITH_INSTALL_RPATH ON
    INSTALL_RPATH "$ORIGIN/IconwrightFoundation.framework:$ORIGIN/${bin_to_foundation}")
  install(TARGETS wrighttool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
if(TARGET IconwrightKit)
  set_target_properties(IconwrightKit PROPERTIES BUILD_WITH_INSTALL_RPATH ON
    INSTALL_RPATH "$ORIGIN/../IconwrightFoundation.framework")
  install(TARGETS IconwrightKit LIBRARY DESTINATION ${ICONWRIGHT_FRAMEWORKS_DIR}/IconwrightKit.framework)
endif()

# Headers, with the include paths the code uses. None includes a third-party header.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/foundation/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/iconwright/foundation
  FILES_MATCHING PATTERN "*.hpp")

# pkg-config and CMake packages.
iconwright_relative_install_path(ICONWRIGHT_PC_TO_PREFIX ${CMAKE_INSTALL_LIBDIR}/pkgconfig .)
configure_file(${PROJECT_SOURCE_DIR}/packaging/iconwright-foundation.pc.in
  ${iconwright_generated_dir}/iconwright-foundation.pc @ONLY)
install(FILES ${iconwright_generated_dir}/iconwright-foundation.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(EXPORT IconwrightFoundationTargets NAMESPACE Iconwright:: DESTINATION ${iconwright_package_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/packaging/IconwrightFoundationConfig.cmake.in
  ${iconwright_generated_dir}/IconwrightFoundationConfig.cmake INSTALL_DESTINATION ${iconwright_package_dir}
  PATH_VARS ICONWRIGHT_FOUNDATION_FRAMEWORK_DIR)
write_basic_package_version_file(${iconwright_generated_dir}/IconwrightFoundationConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${iconwright_generated_dir}/IconwrightFoundationConfig.cmake
  ${iconwright_generated_dir}/IconwrightFoundationConfigVersion.cmake DESTINATION ${iconwright_package_dir})

# The manual page: the template with one section per command, from wrighttool/man/<command>.man
# and, when the Kit is built, kit/man/<command>.man, in the order of the command names.
file(GLOB man_parts CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/wrighttool/man/*.man)
if(TARGET IconwrightKit)
  file(GLOB kit_man_parts CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/kit/man/*.man)
  list(APPEND man_parts ${kit_man_parts})
endif()
set(man_entries)
foreach(part IN LISTS man_parts)
  get_filename_component(part_name ${part} NAME)
  list(APPEND man_entries "${part_name}|${part}")
endforeach()
list(SORT man_entries)
set(WRIGHTTOOL_MAN_COMMANDS)
foreach(entry IN LISTS man_entries)
  string(REGEX REPLACE "^[^|]*\\|" "" part ${entry})
  file(READ ${part} text)
  string(STRIP "${text}" text)
  string(APPEND WRIGHTTOOL_MAN_COMMANDS "${text}\n")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${part})
endforeach()
string(STRIP "${WRIGHTTOOL_MAN_COMMANDS}" WRIGHTTOOL_MAN_COMMANDS)
set(ICONWRIGHT_MAN_FRAMEWORKS_DIR ${ICONWRIGHT_FRAMEWORKS_DIR})
set(ICONWRIGHT_MAN_DOC_DIR ${iconwright_doc_dir})
configure_file(${PROJECT_SOURCE_DIR}/packaging/man/wrighttool.1.in ${iconwright_generated_dir}/wrighttool.1 @ONLY)
install(FILES ${iconwright_generated_dir}/wrighttool.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# The bash completion, generated from the code by a program that holds the built-in commands
# and loads the Kit from the build directory when it is built.
if(TARGET wrighttool)
  get_target_property(command_sources wrighttool SOURCES)
  list(FILTER command_sources EXCLUDE REGEX "/main\\.cpp$")
  add_executable(wrighttool_completion_data ${PROJECT_SOURCE_DIR}/packaging/completion/CompletionData.cpp
    ${command_sources})
  get_target_property(command_libraries wrighttool LINK_LIBRARIES)
  get_target_property(command_definitions wrighttool COMPILE_DEFINITIONS)
  target_link_libraries(wrighttool_completion_data PRIVATE ${command_libraries})
  if(command_definitions)
    target_compile_definitions(wrighttool_completion_data PRIVATE ${command_definitions})
  endif()
  set_target_properties(wrighttool_completion_data PROPERTIES
    BUILD_RPATH "${CMAKE_BINARY_DIR}/IconwrightFoundation.framework")
  set(completion_template ${PROJECT_SOURCE_DIR}/packaging/completion/wrighttool.bash.in)
  set(completion_script ${iconwright_generated_dir}/wrighttool.bash)
  set(completion_depends wrighttool_completion_data ${completion_template})
  if(TARGET IconwrightKit)
    list(APPEND completion_depends IconwrightKit)
  endif()
  add_custom_command(OUTPUT ${completion_script}
    COMMAND ${CMAKE_COMMAND} -E env --unset=DYLD_FRAMEWORK_PATH ASAN_OPTIONS=detect_leaks=0
            $<TARGET_FILE:wrighttool_completion_data> ${completion_template} ${completion_script}
    DEPENDS ${completion_depends}
    COMMENT "Generating the bash completion of wrighttool")
  add_custom_target(wrighttool_completion ALL DEPENDS ${completion_script})
  install(FILES ${completion_script} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME wrighttool)
endif()

# Documents and the embedding example.
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${iconwright_doc_dir})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${iconwright_doc_dir})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/embed DESTINATION ${iconwright_doc_dir}/examples)

include(${CMAKE_CURRENT_LIST_DIR}/Package.cmake)
