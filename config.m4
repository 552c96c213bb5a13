dnl Builds the PHP extension without CMake, as PIE does it: phpize && ./configure && make && make install.
dnl The sources are those of the CMake build, the exported names come from the same lists.

dnl SEPA_ADD_FLAG(FLAG): adds a flag to the module's where the compiler knows it
AC_DEFUN([SEPA_ADD_FLAG], [
  sepa_saved_cflags=$CFLAGS
  CFLAGS="$CFLAGS -Werror $1"
  AC_MSG_CHECKING([whether $CC takes $1])
  AC_COMPILE_IFELSE([AC_LANG_PROGRAM([], [])],
    [AC_MSG_RESULT([yes]); sepa_flags="$sepa_flags $1"],
    [AC_MSG_RESULT([no])])
  CFLAGS=$sepa_saved_cflags
])

PHP_ARG_ENABLE([sepa],
  [whether to enable SEPA payments],
  [AS_HELP_STRING([--enable-sepa], [Enable SEPA payments])],
  [yes])

if test "$PHP_SEPA" != "no"; then
  : ${CXXFLAGS="-O3 -DNDEBUG"}
  PHP_REQUIRE_CXX()
  CXXFLAGS="$CXXFLAGS -std=c++20 -fvisibility=hidden -fvisibility-inlines-hidden"
  CXXFLAGS="$CXXFLAGS -fno-exceptions -fno-rtti -fno-threadsafe-statics"

  AC_LANG_PUSH([C++])
  AC_COMPILE_IFELSE([AC_LANG_PROGRAM([
    #include <bit>
    #include <span>
    #if defined __clang__ ? __clang_major__ < 13 : __GNUC__ < 10
    #error too old
    #endif
  ], [])], [], [AC_MSG_ERROR([libvelmora needs GCC 10, Clang 13 or later: $CXX is older])])
  AC_LANG_POP([C++])

  dnl Hardened as in cmake/Hardening.cmake. _FORTIFY_SOURCE needs an optimising compiler.
  sepa_flags=
  SEPA_ADD_FLAG([-fstack-protector-strong])
  SEPA_ADD_FLAG([-fstack-clash-protection])
  SEPA_ADD_FLAG([-fcf-protection=full])
  SEPA_ADD_FLAG([-mbranch-protection=standard])
  case " $CFLAGS $CXXFLAGS " in
    *" -O0 "*) ;;
    *) sepa_flags="$sepa_flags -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2" ;;
  esac

  dnl On i386 the compiler would calculate with more than a double's precision, and round some amounts otherwise.
  AC_COMPILE_IFELSE([AC_LANG_PROGRAM([#include <float.h>], [char exact@<:@FLT_EVAL_METHOD == 0 ? 1 : -1@:>@; (void)exact])],
    [], [sepa_flags="$sepa_flags -msse2 -mfpmath=sse"])

  sepa_sources=`cd "PHP_EXT_SRCDIR()" && echo php/*.c src/*/*.cpp`
  PHP_NEW_EXTENSION([sepa], [$sepa_sources],
    [$ext_shared],,
    [-I@ext_srcdir@ -I@ext_srcdir@/include -I@ext_srcdir@/src -D_GNU_SOURCE $sepa_flags])

  dnl Linked as C, because it needs libc and nothing else; a name that is missing fails here and not in PHP.
  $SED '/^@%:@/d' "PHP_EXT_SRCDIR()/src/exported-names.txt" "PHP_EXT_SRCDIR()/php/exported-names.txt" >exported-names
  SEPA_SHARED_LIBADD="-export-symbols exported-names -Wl,-z,defs -Wl,-z,relro,-z,now,-z,noexecstack -Wl,--as-needed -ldl"
  PHP_SUBST([SEPA_SHARED_LIBADD])
fi
