// SPDX-License-Identifier: MIT

// The commands that make, close and show descriptors.

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/output.h"
#include "base/synchronisation.h"
#include "files/commands.h"
#include "files/open_file_table.h"

namespace {

constexpr int kTodos = -1; // ListOpenFiles: the default listing

constexpr struct {
    const char *palabra;
    int flag;
} kModosApertura[] = {
    {"cr", O_CREAT}, {"ex", O_EXCL},   {"ro", O_RDONLY}, {"wo", O_WRONLY},
    {"rw", O_RDWR},  {"ap", O_APPEND}, {"tr", O_TRUNC},
};

/// The flags that the leading mode words ask for, or-ed; the first other word ends them.
int LeerModos(char *const palabras[]) {
    int flags = 0;
    for (; *palabras; palabras++) {
        bool conocida = false;
        for (const auto &modo : kModosApertura) {
            if (strcmp(*palabras, modo.palabra) != 0) continue;
            flags |= modo.flag;
            conocida = true;
        }
        if (!conocida) break;
    }
    return flags;
}

/// The descriptor that a word names, or -1 without a word; any negative number names none.
int LeerDescriptor(const char *palabra) { return palabra ? atoi(palabra) : -1; }

/// Enters `nuevo`, a duplicate of df, in the table.
void AnotarDuplicado(int nuevo, int df) {
    constexpr size_t kTamNombre = 1024; // a longer name is cut
    const char *original = NombreFicheroDescriptor(df);
    char nombre[kTamNombre];
    snprintf(nombre, sizeof nombre, "dupplicado de %d (%s)", df, original ? original : "desconocido");
    AddOpenFile(nuevo, nombre, fcntl(nuevo, F_GETFL), 0);
}

} // namespace

void Cmd_open(char *args[]) {
    SincronizarES();
    if (!args[0]) {
        ListOpenFiles(kTodos);
        return;
    }
    const int flags = LeerModos(args + 1);
    const int df = open(args[0], flags, 0777);
    if (df == -1) {
        InformarError("Imposible abrir fichero");
        return;
    }
    // Entry -1 for a number beyond the table: the descriptor is open all the same.
    Imprimir("Anadida entrada %d a la tabla ficheros abiertos\n", AddOpenFile(df, args[0], flags, 0));
}

void Cmd_close(char *args[]) {
    SincronizarES();
    const int df = LeerDescriptor(args[0]);
    if (df < 0)
        ListOpenFiles(kTodos);
    else if (DescriptorRedireccion(df))
        EscribirTexto("No se hace: descriptor involucrado en redireccion.\n");
    else if (close(df) == -1)
        InformarError("Inposible cerrar descriptor");
    else
        RemoveOpenFile(df);
}

void Cmd_listopen(char *args[]) {
    SincronizarES(); // the offsets shown are those of the moment
    ListOpenFiles(args[0] ? atoi(args[0]) : kTodos);
}

void Cmd_dup(char *args[]) {
    SincronizarES();
    const int df = LeerDescriptor(args[0]);
    if (df < 0) {
        ListOpenFiles(kTodos);
        return;
    }
    const int nuevo = dup(df);
    if (nuevo == -1)
        InformarError("Inposible duplicar descriptor");
    else
        AnotarDuplicado(nuevo, df);
}

void Cmd_dup2(char *args[]) {
    SincronizarES();
    const int df = LeerDescriptor(args[0]);
    const int df2 = args[0] ? LeerDescriptor(args[1]) : -1;
    if (df < 0 || df2 < 0) {
        ListOpenFiles(kTodos);
        return;
    }
    const int nuevo = dup2(df, df2);
    if (nuevo == -1)
        InformarError("Inposible duplicar descriptor");
    else
        AnotarDuplicado(nuevo, df);
}
