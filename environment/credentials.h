// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

/// The user id of the login, or -1 (as uid_t) when there is no such user.
uid_t UidUsuario(const char *login);

/// Makes the user of that login the effective one. Returns 0, or -1: ENOENT (no such user), those of
/// seteuid().
int CambiarCredencial(const char *login);
