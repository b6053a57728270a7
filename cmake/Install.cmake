# What is installed, in three parts: "runtime", what programs that use the library need; "development", what building
# them needs; "command", the program of this project with its examples.
include(CMakePackageConfigHelpers)

set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/calljournal)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/calljournal)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(example_dir ${CMAKE_INSTALL_DATADIR}/calljournal/examples)

set(targets calljournal calljournal_static calljournal_headers calljournal_platform calljournal_testing)
set_target_properties(calljournal_headers PROPERTIES EXPORT_NAME headers)
set_target_properties(calljournal_platform PROPERTIES EXPORT_NAME platform)
set_target_properties(calljournal_testing PROPERTIES EXPORT_NAME testing)
if(CALLJOURNAL_HOST)
    list(APPEND targets calljournal_host)
    set_target_properties(calljournal_host PROPERTIES EXPORT_NAME host)
endif()

# The folder is named once more for users of a CMake that knows no file sets.
install(TARGETS ${targets} EXPORT calljournal-targets
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development
    FILE_SET HEADERS DESTINATION ${header_dir} COMPONENT development
    INCLUDES DESTINATION ${header_dir})

# For find_package(calljournal).
install(EXPORT calljournal-targets NAMESPACE calljournal:: DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/calljournal-config.cmake.in
    ${PROJECT_BINARY_DIR}/calljournal-config.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/calljournal-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/calljournal-config.cmake ${PROJECT_BINARY_DIR}/calljournal-config-version.cmake
    DESTINATION ${package_dir} COMPONENT development)

# For pkg-config: places relative to the file itself, so that an installed tree can be moved.
file(RELATIVE_PATH prefix_from_file ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_file "${prefix_from_file}")
cmake_path(APPEND pc_libdir "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
cmake_path(APPEND pc_includedir "\${prefix}" ${header_dir})
set(packages calljournal)
if(CALLJOURNAL_HOST)
    list(APPEND packages calljournal-host)
endif()
foreach(package IN LISTS packages)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/${package}.pc.in ${PROJECT_BINARY_DIR}/${package}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${pkgconfig_dir} COMPONENT development)
endforeach()

install(DIRECTORY examples/own-platform DESTINATION ${example_dir} COMPONENT development USE_SOURCE_PERMISSIONS)

if(CALLJOURNAL_HOST AND CALLJOURNAL_COMMAND)
    # The program finds its libraries beside it wherever the tree is; a distribution, whose libraries are where the
    # loader looks anyway, sets CMAKE_SKIP_INSTALL_RPATH. A build's program has the same folders and that of the build:
    # a list that CMake is to change at the installation has an empty element, which is the current folder.
    set(library_folders "$ORIGIN/${CALLJOURNAL_LIB_FROM_BIN}" "$ORIGIN/../lib")
    list(REMOVE_DUPLICATES library_folders)
    set_target_properties(calljournal_command PROPERTIES INSTALL_RPATH "${library_folders}"
                          BUILD_WITH_INSTALL_RPATH ON)
    install(TARGETS calljournal_command RUNTIME COMPONENT command)
    install(TARGETS calljournal_numbering_plans
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/calljournal COMPONENT command)
    install(FILES examples/calls.json DESTINATION ${example_dir} COMPONENT command)
    install(DIRECTORY examples/contacts DESTINATION ${example_dir} COMPONENT command)
    install(FILES docs/man/calljournal.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT command)
    install(FILES ${PROJECT_BINARY_DIR}/man/calljournal.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5 COMPONENT command)
    set(completion ${PROJECT_SOURCE_DIR}/packaging/completion/calljournal)
    install(FILES ${completion}.bash RENAME calljournal
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT command)
    install(FILES ${completion}.zsh RENAME _calljournal
            DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT command)
    install(FILES ${completion}.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT command)
endif()
