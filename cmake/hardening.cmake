# SPDX-License-Identifier: MIT

# The library "hardening": what every optimised build of a program of ours is compiled and linked with, as far as the
# compiler has it for the processor. "optimised" says whether this is such a build.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)

string(REGEX MATCH "^(Release|RelWithDebInfo|MinSizeRel)$" optimised "${CMAKE_BUILD_TYPE}")
add_library(hardening INTERFACE)
foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection -mbranch-protection=standard)
  string(MAKE_C_IDENTIFIER "HAVE${flag}" known)
  check_cxx_compiler_flag("-Werror ${flag}" ${known})
  if(${known})
    target_compile_options(hardening INTERFACE ${flag})
  endif()
endforeach()
# Compilers and packagers that choose a level of their own keep it.
check_cxx_source_compiles("#ifdef _FORTIFY_SOURCE\n#error\n#endif\nint main() {}" FORTIFY_IS_OURS)
if(FORTIFY_IS_OURS)
  target_compile_options(hardening INTERFACE -D_FORTIFY_SOURCE=3)
endif()
target_link_options(hardening INTERFACE -pie -Wl,-z,relro,-z,now,-z,noexecstack)

# The same bytes wherever the sources and the build lie.
foreach(directory ${CMAKE_SOURCE_DIR}=. ${CMAKE_BINARY_DIR}=build) # the last that fits counts
  add_compile_options(-ffile-prefix-map=${directory})
endforeach()
