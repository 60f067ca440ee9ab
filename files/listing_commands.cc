// SPDX-License-Identifier: MIT

// stat and the listings. Option words come first; the first word that is none is a name, and so are all after
// it.

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "base/output.h"
#include "files/commands.h"
#include "files/directory.h"
#include "files/file_details.h"
#include "files/listing.h"

namespace {

/// Which options a command knows besides -long, -link and -acc.
enum { kSoloComunes = 0, kConOcultos = 1, kConRecursion = 2 };

/// Reads the options from the first word on. Returns the list of the names that follow them.
char **LeerOpciones(char *args[], int conocidas, OpcionesListado *o) {
    for (; *args; args++) {
        if (strcmp(*args, "-long") == 0)
            o->corto = 0;
        else if (strcmp(*args, "-link") == 0)
            o->link = 1;
        else if (strcmp(*args, "-acc") == 0)
            o->acc = 1;
        else if ((conocidas & kConOcultos) && strcmp(*args, "-hid") == 0)
            o->hid = 1;
        else if ((conocidas & kConRecursion) && strcmp(*args, "-reca") == 0)
            o->rec = 1;
        else if ((conocidas & kConRecursion) && strcmp(*args, "-recb") == 0)
            o->rec = 2;
        else
            break;
    }
    return args;
}

void ImprimirDetalles(const char *nombre, const OpcionesListado &o) {
    EscribirTexto(DetallesFichero(o.corto, AT_FDCWD, nombre, o.link, o.acc));
    EscribirTexto("\n");
}

void ListarNombres(char *args[], int conocidas, int recursion) {
    OpcionesListado o;
    o.rec = recursion;
    char **nombres = LeerOpciones(args, conocidas, &o);
    if (!*nombres) PrintDirActual();
    IniciarDetalles();
    for (; *nombres; nombres++) {
        if (!EsDirectorio(*nombres))
            ImprimirDetalles(*nombres, o);
        else if (ListarDirectorio({AT_FDCWD, *nombres, *nombres}, o) == -1)
            Imprimir("Error al listar directorio %s:%s\n", *nombres, strerror(errno));
    }
}

} // namespace

void Cmd_stat(char *args[]) {
    OpcionesListado o;
    char **nombres = LeerOpciones(args, kSoloComunes, &o);
    if (!*nombres) PrintDirActual();
    IniciarDetalles();
    for (; *nombres; nombres++) ImprimirDetalles(*nombres, o);
}

void Cmd_listdir(char *args[]) { ListarNombres(args, kConOcultos, 0); }
void Cmd_listrec(char *args[]) { ListarNombres(args, kConOcultos, 1); }
void Cmd_listrev(char *args[]) { ListarNombres(args, kConOcultos, 2); }
void Cmd_list(char *args[]) { ListarNombres(args, kConOcultos | kConRecursion, 0); }
