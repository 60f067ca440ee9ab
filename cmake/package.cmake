# SPDX-License-Identifier: MIT

# cpack -G DEB and cpack -G TGZ.
set(CPACK_PACKAGE_NAME shell-docente)
set(CPACK_PACKAGE_VENDOR "The authors of shell-docente")
set(CPACK_PACKAGE_CONTACT "The authors of shell-docente <autores@shell-docente.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "interactive shell for learning operating systems")
set(CPACK_PACKAGE_DESCRIPTION
"Its 122 commands show, mostly one call at a time, what a POSIX system does
for a process: descriptors and offsets, raw memory, shared segments, the
environment, processes, pipes, signals, faults and the recovery from them,
and a small file system inside a block of memory.
.
Messages, manual and practice sheets are in Spanish.")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION education)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS python3)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "rlwrap, strace, procps, man-db, tmux")
include(CPack)
