// SPDX-License-Identifier: MIT

// The commands that give a file another name: one of the same standing, or one that only points to it.

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/output.h"
#include "files/commands.h"

namespace {

/// Whether both names of a link are there; says how the command is used when they are not.
bool HayNombres(char *const args[]) {
    if (args[0] && args[1]) return true;
    Imprimir("uso: %s f1 f2\n", args[-1]);
    return false;
}

} // namespace

void Cmd_hardlink(char *args[]) {
    if (!HayNombres(args)) return;
    if (link(args[0], args[1]) == -1)
        Imprimir("Imposible crear enlace real a %s: %s\n", args[0], strerror(errno));
}

void Cmd_symlink(char *args[]) {
    if (!HayNombres(args)) return;
    // The link holds the first name as typed: looked up from where the link is, whether there is such a file
    // or not.
    if (symlink(args[0], args[1]) == -1)
        Imprimir("Imposible crear enlace simbolico a %s: %s\n", args[0], strerror(errno));
}

void Cmd_link(char *args[]) {
    if (!HayNombres(args)) return;
    if (strcmp(args[0], "-s") != 0) {
        Cmd_hardlink(args);
        return;
    }
    static char comando[] = "symlink"; // the command word that symlink sees and shows
    args[0] = comando;
    Cmd_symlink(args + 1);
}
