dnl Builds the PHP extension without CMake, as PIE does it: phpize && ./configure && make && make install.
dnl The sources are those of the CMake build, the exported names come from the same lists.

PHP_ARG_ENABLE([sepa],
  [whether to enable SEPA payments],
  [AS_HELP_STRING([--enable-sepa], [Enable SEPA payments])],
  [yes])

if test "$PHP_SEPA" != "no"; then
  : ${CXXFLAGS="-O3 -DNDEBUG"}
  PHP_REQUIRE_CXX()
  CXXFLAGS="$CXXFLAGS -std=c++20 -fvisibility=hidden -fvisibility-inlines-hidden"
  CXXFLAGS="$CXXFLAGS -fno-exceptions -fno-rtti -fno-threadsafe-statics"

  sepa_sources=`cd "PHP_EXT_SRCDIR()" && echo php/*.c src/*/*.cpp`
  PHP_NEW_EXTENSION([sepa], [$sepa_sources],
    [$ext_shared],,
    [-I@ext_srcdir@ -I@ext_srcdir@/include -I@ext_srcdir@/src -D_GNU_SOURCE])

  dnl Linked as C, because it needs libc and nothing else; a name that is missing fails here and not in PHP.
  $SED '/^@%:@/d' "PHP_EXT_SRCDIR()/src/exported-names.txt" "PHP_EXT_SRCDIR()/php/exported-names.txt" >exported-names
  SEPA_SHARED_LIBADD="-export-symbols exported-names -Wl,-z,defs -Wl,--as-needed"
  PHP_SUBST([SEPA_SHARED_LIBADD])
fi
