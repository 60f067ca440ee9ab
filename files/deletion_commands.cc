// SPDX-License-Identifier: MIT

// delete takes one name at a time away, deltree whole trees. One that stays does not keep the others.

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/output.h"
#include "files/commands.h"
#include "files/deletion.h"
#include "files/directory.h"

namespace {

/// Deletes every name by `borrar`, going on after a failure; without names shows the current directory.
void BorrarNombres(char *const nombres[], int (*borrar)(const char *)) {
    if (!nombres[0]) PrintDirActual();
    for (; *nombres; nombres++)
        if (borrar(*nombres) == -1) Imprimir("Imposible borrar %s: %s\n", *nombres, strerror(errno));
}

int BorrarArbol(const char *nombre) {
    return EsDirectorio(nombre) ? BorrarDirectorio(nombre) : remove(nombre);
}

} // namespace

void Cmd_delete(char *args[]) { BorrarNombres(args, remove); }

void Cmd_deltree(char *args[]) { BorrarNombres(args, BorrarArbol); }
