// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

/// The user's login name, " ??????" when unknown. Not to be confused with nombreUsuario
/// (processes/process_list.h), the column of a job's line.
const char *NombreUsuario(uid_t uid);

/// The group's name, "??????" when unknown.
const char *NombreGrupo(gid_t gid);

// The same for the lines of a listing, each id looked up once in a command: a tree of 100,000 files has a
// handful of owners.
const char *UsuarioListado(uid_t uid);
const char *GrupoListado(gid_t gid);

/// To be called when a command begins: names are looked up anew, so that a change shows.
void OlvidarListados();
