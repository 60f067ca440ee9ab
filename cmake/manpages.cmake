# SPDX-License-Identifier: MIT

# The manual pages, made where pandoc is installed: docs/man/*.md in Spanish, docs/man/en/*.md in English, each named
# page.section.md. They carry no date of building and are compressed without one.
find_program(PANDOC pandoc)
find_program(GZIP gzip)
if(NOT PANDOC OR NOT GZIP)
  message(STATUS "pandoc or gzip is not installed: the manual pages are left out")
  return()
endif()

set(pages)
foreach(language es en)
  if(language STREQUAL es)
    set(sources docs/man)
    set(target ${CMAKE_INSTALL_MANDIR}/es/man1)
  else()
    set(sources docs/man/en)
    set(target ${CMAKE_INSTALL_MANDIR}/man1)
  endif()
  file(GLOB found CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${sources}/*.1.md)
  foreach(source IN LISTS found)
    cmake_path(GET source STEM LAST_ONLY name)
    set(page ${CMAKE_BINARY_DIR}/man/${language}/${name})
    add_custom_command(OUTPUT ${page}.gz
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/man/${language}
      COMMAND ${PANDOC} --standalone --from markdown-smart --to man
        --metadata "footer=shell-docente ${PROJECT_VERSION}" --output ${page} ${source}
      COMMAND ${GZIP} -9 --no-name --keep --force ${page}
      DEPENDS ${source} VERBATIM)
    list(APPEND pages ${page}.gz)
    install(FILES ${page}.gz DESTINATION ${target})
  endforeach()
endforeach()
add_custom_target(manpages ALL DEPENDS ${pages})
