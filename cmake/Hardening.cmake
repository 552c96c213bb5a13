# What makes an attack through a fault harder, in every optimised build: as far as compiler and machine have it. Nothing
# here adds to what the shared object needs at run time.
include(CheckCCompilerFlag)

add_library(velmora_hardening INTERFACE)
foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection=full -mbranch-protection=standard)
  string(MAKE_C_IDENTIFIER "VELMORA_HAS${flag}" has_flag)
  check_c_compiler_flag("-Werror ${flag}" ${has_flag})
  if(${has_flag})
    target_compile_options(velmora_hardening INTERFACE ${flag})
  endif()
endforeach()
if(NOT VELMORA_SANITIZE)
  # It needs an optimising compiler. Undefined first: some compilers come with a setting of their own.
  target_compile_options(velmora_hardening INTERFACE
                         $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>)
endif()
target_link_options(velmora_hardening INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
