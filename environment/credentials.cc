// SPDX-License-Identifier: MIT

#include "environment/credentials.h"

#include <pwd.h>
#include <unistd.h>

#include "base/failure.h"

uid_t UidUsuario(const char *login) {
    const struct passwd *usuario = getpwnam(login);
    return usuario ? usuario->pw_uid : static_cast<uid_t>(-1);
}

int CambiarCredencial(const char *login) {
    const uid_t uid = UidUsuario(login);
    return uid == static_cast<uid_t>(-1) ? Fallo(ENOENT) : seteuid(uid);
}
