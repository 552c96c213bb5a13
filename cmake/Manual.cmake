# man 3 velmora, made of the public header's comments, and a page of each function's name that leads to it. Without
# Doxygen there is no manual page and nothing else is missing.
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  message(STATUS "No Doxygen: no manual page")
  return()
endif()

set(page_dir ${CMAKE_CURRENT_BINARY_DIR}/manual/man3)
configure_file(cmake/Doxyfile.in Doxyfile @ONLY)
configure_file(cmake/manual.sed.in manual.sed @ONLY)
add_custom_command(OUTPUT ${page_dir}/velmora.3
                   COMMAND ${CMAKE_COMMAND} -E make_directory manual
                   COMMAND Doxygen::doxygen Doxyfile
                   COMMAND sed -i -f manual.sed ${page_dir}/velmora.h.3
                   COMMAND ${CMAKE_COMMAND} -E rename ${page_dir}/velmora.h.3 ${page_dir}/velmora.3
                   DEPENDS include/velmora.h ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile ${CMAKE_CURRENT_BINARY_DIR}/manual.sed
                   COMMENT "Making the manual page" VERBATIM)
add_custom_target(manual ALL DEPENDS ${page_dir}/velmora.3)
install(FILES ${page_dir}/velmora.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development OPTIONAL)

file(STRINGS src/exported-names.txt functions REGEX "^_*sepa_")
foreach(function ${functions})
  file(WRITE ${page_dir}/${function}.3 ".so man3/velmora.3\n")
  install(FILES ${page_dir}/${function}.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
endforeach()
