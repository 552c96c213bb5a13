# `cpack` makes the Debian packages: libvelmora2, the library; libvelmora-dev, what programs are compiled with;
# php-sepa, which lets the PHP that the extension was built for load the same shared object; and velmora, the command line tool.
set(VELMORA_MAINTAINER "libvelmora maintainers <maintainers@velmora.invalid>" CACHE STRING
    "Maintainer of the Debian packages, with an address")

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development)
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
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/before-all.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/before-each.cmake)

# add_package(COMPONENT NAME SECTION DESCRIPTION): with what a package needs beside the files of its component and what
# is not part of `cmake --install`.
set(debian ${CMAKE_CURRENT_BINARY_DIR}/debian)
string(TIMESTAMP VELMORA_PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
macro(add_package component name section description)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${description}")
  set(package ${name})
  configure_file(cmake/debian/changelog.in ${debian}/${name}/changelog.Debian @ONLY)
  install(FILES cmake/debian/copyright ${debian}/${name}/changelog.Debian
          DESTINATION share/doc/${name} COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()

set(library_package libvelmora${PROJECT_VERSION_MAJOR})
add_package(library ${library_package} libs "A C library that writes direct debits (pain.008) and credit transfers
(pain.001) under German, Austrian and Dutch rulebooks, checks IBANs, BICs and
German account numbers, finds banks in a directory of its own and reads
account statements.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
file(WRITE ${debian}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${debian}/triggers)
# One package held everything before.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONFLICTS libvelmora)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_REPLACES libvelmora)

set(same_library "${library_package} (= ${PROJECT_VERSION}-1)")
add_package(development libvelmora-dev libdevel "The header of libvelmora, its manual and documents, and what
pkg-config and CMake need to find it.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${same_library}")

if(TARGET velmora_tool AND CMAKE_VERSION VERSION_GREATER_EQUAL 3.20)
  list(APPEND CPACK_COMPONENTS_ALL tool)
  add_package(tool velmora utils "A command line tool that checks IBANs, writes payment files out of CSV,
and turns account statements into tables. With its manual page and completion for
bash, zsh and fish.")
  set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${same_library}")
  set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
  # So that libvelmora.so is found before it is installed; it is named here.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_CURRENT_BINARY_DIR})
endif()

if(TARGET velmora_php)
  foreach(name phpapi extension_dir vernum)
    get_directory_property(php_${name} DIRECTORY php DEFINITION php_${name})
  endforeach()
endif()
if(php_phpapi) # only Debian's php-config names it
  math(EXPR php_major "${php_vernum} / 10000")
  math(EXPR php_minor "${php_vernum} / 100 % 100")
  set(php_series ${php_major}.${php_minor})

  list(APPEND CPACK_COMPONENTS_ALL php)
  add_package(php php-sepa php "The PHP extension SEPA with its classes SEPA and SEPAStatementParser, out of
libvelmora.")
  set(CPACK_DEBIAN_PHP_PACKAGE_DEPENDS "${same_library}, phpapi-${php_phpapi}, php-common")

  # The extension is the library: a link keeps the two from ever being of different versions.
  file(RELATIVE_PATH target ${php_extension_dir} /usr/${CMAKE_INSTALL_LIBDIR}/libvelmora.so.${PROJECT_VERSION_MAJOR})
  file(CREATE_LINK ${target} ${debian}/sepa.so SYMBOLIC)
  file(WRITE ${debian}/conffiles "/etc/php/${php_series}/mods-available/sepa.ini\n")
  set(CPACK_DEBIAN_PHP_PACKAGE_CONTROL_EXTRA ${debian}/conffiles)
  file(WRITE ${debian}/sepa.ini "; priority=20\nextension=sepa.so\n")
  install(FILES ${debian}/sepa.so DESTINATION ${php_extension_dir} COMPONENT php EXCLUDE_FROM_ALL)
  install(FILES ${debian}/sepa.ini DESTINATION /etc/php/${php_series}/mods-available COMPONENT php EXCLUDE_FROM_ALL)

  foreach(script postinst prerm postrm)
    configure_file(cmake/debian/${script}.in ${debian}/${script} @ONLY
                   FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                    WORLD_READ WORLD_EXECUTE)
    list(APPEND CPACK_DEBIAN_PHP_PACKAGE_CONTROL_EXTRA ${debian}/${script})
  endforeach()
endif()

include(CPack)
