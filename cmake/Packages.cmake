# `cpack` makes three Debian packages: libvelmora, the library with its development files; velmora, the command line
# tool; and php-sepa, which lets the PHP that the binding was built for load the same shared object.
set(VELMORA_MAINTAINER "libvelmora maintainers <maintainers@velmora.invalid>" CACHE STRING
    "Maintainer of the Debian packages, with an address")

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_PACKAGE_CONTACT "${VELMORA_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# The extension goes to PHP's absolute paths.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)

# What a package needs beside the files of its component; not part of `cmake --install`.
set(debian ${CMAKE_CURRENT_BINARY_DIR}/debian)
function(install_for_package component destination)
  install(FILES ${ARGN} DESTINATION ${destination} COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libvelmora)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "A C library that writes direct debits (pain.008) and credit transfers
(pain.001) under German, Austrian and Dutch rulebooks, checks IBANs, BICs and
German account numbers, finds banks in a directory of its own and reads MT940
account statements. With its header, manual and what pkg-config and CMake need.")
install_for_package(library share/doc/libvelmora cmake/debian/copyright)

if(TARGET velmora_tool)
  list(APPEND CPACK_COMPONENTS_ALL tool)
  set(CPACK_DEBIAN_TOOL_PACKAGE_NAME velmora)
  set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
  set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
  # So that libvelmora.so is found before it is installed; it is named here.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_CURRENT_BINARY_DIR})
  set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "libvelmora (= ${PROJECT_VERSION}-1)")
  set(CPACK_COMPONENT_TOOL_DESCRIPTION "A command line tool that checks IBANs, writes payment files out of CSV,
and turns account statements into tables. With its manual page and completion for
bash, zsh and fish.")
  install_for_package(tool share/doc/velmora cmake/debian/copyright)
endif()

if(TARGET velmora_php)
  foreach(name phpapi extension_dir vernum)
    get_directory_property(php_${name} DIRECTORY php DEFINITION php_${name})
  endforeach()
  math(EXPR php_major "${php_vernum} / 10000")
  math(EXPR php_minor "${php_vernum} / 100 % 100")
  set(php_series ${php_major}.${php_minor})

  list(APPEND CPACK_COMPONENTS_ALL php)
  set(CPACK_DEBIAN_PHP_PACKAGE_NAME php-sepa)
  set(CPACK_DEBIAN_PHP_PACKAGE_SECTION php)
  set(CPACK_DEBIAN_PHP_PACKAGE_DEPENDS "libvelmora (= ${PROJECT_VERSION}-1), phpapi-${php_phpapi}, php-common")
  set(CPACK_COMPONENT_PHP_DESCRIPTION "The PHP extension SEPA with its classes SEPA and SEPAStatementParser, out of
libvelmora.")

  # The extension is the library: a link keeps the two from ever being of different versions.
  file(RELATIVE_PATH target ${php_extension_dir} /usr/${CMAKE_INSTALL_LIBDIR}/libvelmora.so.${PROJECT_VERSION_MAJOR})
  file(MAKE_DIRECTORY ${debian})
  file(CREATE_LINK ${target} ${debian}/sepa.so SYMBOLIC)
  # No configuration file in dpkg's sense: there is nothing to configure, and nothing stays behind.
  file(WRITE ${debian}/sepa.ini "; priority=20\nextension=sepa.so\n")
  install_for_package(php ${php_extension_dir} ${debian}/sepa.so)
  install_for_package(php /etc/php/${php_series}/mods-available ${debian}/sepa.ini)
  install_for_package(php share/doc/php-sepa cmake/debian/copyright)

  foreach(script postinst prerm postrm)
    configure_file(cmake/debian/${script}.in ${debian}/${script} @ONLY
                   FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    list(APPEND CPACK_DEBIAN_PHP_PACKAGE_CONTROL_EXTRA ${debian}/${script})
  endforeach()
endif()

include(CPack)
