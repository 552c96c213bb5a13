# Without this program the packages would not say what they depend on, and cpack would say nothing.
find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
if(NOT DPKG_SHLIBDEPS)
  message(FATAL_ERROR "Debian packages need dpkg-shlibdeps, which is in Debian's package dpkg-dev")
endif()
