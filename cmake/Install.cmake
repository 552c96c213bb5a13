# What `cmake --install` puts where. php/ installs the extension beside it.
include(CMakePackageConfigHelpers)

# Called as the package is, not as the project.
if("$CACHE{CMAKE_INSTALL_DOCDIR}" STREQUAL "")
  set(CMAKE_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/libvelmora)
endif()

install(TARGETS velmora EXPORT velmora
        LIBRARY COMPONENT library NAMELINK_COMPONENT development)
install(FILES include/velmora.h TYPE INCLUDE COMPONENT development)
install(FILES README.md CHANGELOG.md php/sepa.stub.php TYPE DOC COMPONENT development)
install(DIRECTORY docs TYPE DOC COMPONENT development FILES_MATCHING PATTERN "*.md")

# find_package(velmora)
set(config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/velmora)
install(EXPORT velmora FILE velmora-config.cmake NAMESPACE velmora:: DESTINATION ${config_dir} COMPONENT development)
write_basic_package_version_file(velmora-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/velmora-config-version.cmake DESTINATION ${config_dir} COMPONENT development)

# pkg-config. The paths are relative, so that an installed tree can be moved.
set(pkgconfig_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pcfile ${pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pcfile ${prefix_from_pcfile})
file(RELATIVE_PATH libdir_in_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH includedir_in_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/velmora.pc.in velmora.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/velmora.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)

add_custom_target(uninstall COMMAND ${CMAKE_COMMAND} -DCMAKE_BINARY_DIR=${CMAKE_BINARY_DIR}
                                    -P ${CMAKE_CURRENT_SOURCE_DIR}/cmake/uninstall.cmake)
