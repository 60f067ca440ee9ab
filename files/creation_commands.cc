// SPDX-License-Identifier: MIT

// The commands that create empty files and directories. A name that exists, of whatever kind, is refused.

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "base/descriptor.h"
#include "base/output.h"
#include "files/commands.h"
#include "files/directory.h"

namespace {

/// Creates the empty regular file `nombre`, which must not exist. Returns 0, or -1 with the `errno` of
/// open(): EEXIST for an existing name of any kind.
int CreateFile(const char *nombre) {
    Descriptor fichero(open(nombre, O_CREAT | O_EXCL, 0777));
    return fichero.df() == -1 ? -1 : fichero.Cerrar();
}

int CrearDirectorio(const char *nombre) { return mkdir(nombre, 0777); }

/// Creates `nombre` by `crear`; without a name shows the current directory.
void Crear(const char *nombre, int (*crear)(const char *)) {
    if (!nombre)
        PrintDirActual();
    else if (crear(nombre) == -1)
        Imprimir("Imposible crear %s: %s", nombre, strerror(errno)); // and the prompt in the same line
}

} // namespace

void Cmd_makefile(char *args[]) { Crear(args[0], CreateFile); }

void Cmd_makedir(char *args[]) { Crear(args[0], CrearDirectorio); }

void Cmd_create(char *args[]) {
    if (args[0] && strcmp(args[0], "-f") == 0)
        Crear(args[1], CreateFile);
    else
        Crear(args[0], CrearDirectorio);
}
