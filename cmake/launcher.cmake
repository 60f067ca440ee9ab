# SPDX-License-Identifier: MIT

# The launcher with what it reads beside it. The build tree is laid out as an installation is (bin/, and the data in
# share/shell-docente), so that the same script finds its way in both.
include(GNUInstallDirs)

# The word list comes out of the program's own table. A build for another processor runs the generator through its
# emulator, or goes without.
add_executable(word_list EXCLUDE_FROM_ALL launcher/word_list.cc)
target_link_libraries(word_list PRIVATE core options)
set_target_properties(word_list PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/launcher)
set(launcher_build_data ${CMAKE_BINARY_DIR}/share/shell-docente)
file(MAKE_DIRECTORY ${launcher_build_data} ${CMAKE_BINARY_DIR}/bin)
add_custom_command(OUTPUT ${launcher_build_data}/palabras
  COMMAND word_list > ${launcher_build_data}/palabras DEPENDS word_list VERBATIM)
if(NOT CMAKE_CROSSCOMPILING OR CMAKE_CROSSCOMPILING_EMULATOR)
  add_custom_target(launcher ALL DEPENDS ${launcher_build_data}/palabras)
  add_dependencies(launcher shell)
  if(TARGET mirador)
    add_dependencies(launcher mirador)
  endif()
endif()

foreach(link practicas:practicas manual:docs/manual)
  string(REPLACE : ";" link ${link})
  list(GET link 0 name)
  list(GET link 1 target)
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${target} ${launcher_build_data}/${name} SYMBOLIC)
endforeach()
file(CREATE_LINK ${CMAKE_SOURCE_DIR}/launcher/mirar ${CMAKE_BINARY_DIR}/bin/mirar SYMBOLIC)

# Forms OUTPUT for an installation in which the three directories are these, below the prefix when relative.
function(configure_launcher output bin libexec data)
  set(launcher_bin ${bin})
  foreach(directory libexec data)
    if(IS_ABSOLUTE ${${directory}})
      set(launcher_${directory} ${${directory}})
    else()
      set(launcher_${directory} "$raiz/${${directory}}")
    endif()
  endforeach()
  configure_file(${CMAKE_SOURCE_DIR}/launcher/shell-docente.in ${output} @ONLY
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endfunction()

configure_launcher(${CMAKE_BINARY_DIR}/bin/shell-docente bin bin share/shell-docente)
configure_launcher(${CMAKE_BINARY_DIR}/launcher/shell-docente ${CMAKE_INSTALL_BINDIR}
  ${CMAKE_INSTALL_LIBEXECDIR}/shell-docente ${CMAKE_INSTALL_DATADIR}/shell-docente)
