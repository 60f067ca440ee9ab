// SPDX-License-Identifier: MIT

// assign and the list of labels: names that the commands of memory file systems take for addresses.

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/output.h"
#include "memfs/commands.h"
#include "memfs/label_list.h"
#include "memfs/sf_identifier.h"

namespace {

void Cmd_addAssign(const char *comando, char *args[]) {
    if (!args[0] || !args[1]) {
        Imprimir("uso: %s -add nombre addr\n", comando);
        return;
    }
    void *dir = reinterpret_cast<void *>(strtoull(args[1], nullptr, 16));
    if (!dir)
        Imprimir("direccion de memoria no valida: %s\n", args[1]);
    else if (LabelAdd(args[0], dir) == -1)
        Imprimir("Imposible aniadir assign: %s\n", strerror(errno));
}

void Cmd_delAssign(const char *comando, char *args[]) {
    if (!args[0])
        Imprimir("uso: %s -del nombre\n", comando);
    else if (LabelDel(args[0]) == -1)
        Imprimir("Imposible eliminar assign: %s\n", strerror(errno));
}

} // namespace

void Cmd_printAssign(char *[]) {
    // By entry and not by address: labels may share one.
    for (int n = 0; LabelEntrada(n).dir; n++) {
        const EntradaLabel &entrada = LabelEntrada(n);
        Imprimir("LABEL: %8s, ADDR: %p %s\n", entrada.label, entrada.dir,
                 ValidSFAddr(entrada.dir) ? "Sistema de Ficheros valido" : "");
    }
}

void Cmd_assign(char *args[]) {
    const char *comando = args[-1];
    if (!args[0])
        Cmd_printAssign(args);
    else if (strcmp(args[0], "-add") == 0)
        Cmd_addAssign(comando, args + 1);
    else if (strcmp(args[0], "-del") == 0)
        Cmd_delAssign(comando, args + 1);
    else if (strcmp(args[0], "-clear") == 0)
        InitLabel();
    else if (args[1] && !args[2])
        Cmd_addAssign(comando, args);
    else
        Imprimir("uso: %s [-add|-del|-clear] ....\n", comando);
}
