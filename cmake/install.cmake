# SPDX-License-Identifier: MIT

# What an installation holds, where Debian wants it. Sheets, pages and pictures are found, not listed.
set(private_programs ${CMAKE_INSTALL_LIBEXECDIR}/shell-docente)
set(data ${CMAKE_INSTALL_DATADIR}/shell-docente)

install(TARGETS shell DESTINATION ${private_programs})
install(PROGRAMS ${CMAKE_BINARY_DIR}/launcher/shell-docente TYPE BIN)
install(FILES ${launcher_build_data}/palabras DESTINATION ${data})
if(TARGET mirador)
  install(TARGETS mirador)
  install(PROGRAMS launcher/mirar DESTINATION ${private_programs})
endif()
install(DIRECTORY practicas DESTINATION ${data}
  PATTERN pruebas EXCLUDE PATTERN CMakeLists.txt EXCLUDE PATTERN __pycache__ EXCLUDE PATTERN practica EXCLUDE)
install(PROGRAMS practicas/practica DESTINATION ${data}/practicas)
if(EXISTS ${CMAKE_SOURCE_DIR}/docs/manual)
  install(DIRECTORY docs/manual DESTINATION ${data} FILES_MATCHING REGEX "[.](md|svg)$" PATTERN FORMA.md EXCLUDE)
endif()

# The licence as Debian writes it (MIT goes by the name Expat there), and both lists of changes.
file(STRINGS LICENSE licence ENCODING UTF-8)
set(licence_text)
foreach(line IN LISTS licence)
  if(line MATCHES "^Copyright \\(c\\) (.*)")
    set(copyright_line "Copyright: ${CMAKE_MATCH_1}")
  elseif(NOT line STREQUAL "MIT License" AND (line OR licence_text))
    string(APPEND licence_text " ${line}\n")
  endif()
endforeach()
string(REGEX REPLACE "\n +\n" "\n .\n" licence_text "${licence_text}")
configure_file(packaging/copyright.in packaging/copyright @ONLY)
configure_file(packaging/changelog.in packaging/changelog @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/packaging/copyright TYPE DOC)
install(FILES CHANGELOG.md docs/aula.md docs/mirador.md docs/rendimiento.md TYPE DOC)
find_program(GZIP gzip)
if(GZIP)
  add_custom_command(OUTPUT packaging/changelog.gz
    COMMAND ${GZIP} -9 --no-name --keep --force ${CMAKE_BINARY_DIR}/packaging/changelog
    DEPENDS ${CMAKE_BINARY_DIR}/packaging/changelog VERBATIM)
  add_custom_target(changelog ALL DEPENDS packaging/changelog.gz)
  install(FILES ${CMAKE_BINARY_DIR}/packaging/changelog.gz TYPE DOC)
endif()
