// SPDX-License-Identifier: MIT

// memfs and the commands for its operations: an SF formatted, listed, copied to and from, deleted from.

#include <cstring>

#include "base/output.h"
#include "base/synchronisation.h"
#include "memfs/commands.h"
#include "memfs/file_copy.h"
#include "memfs/file_system.h"
#include "memfs/sf_identifier.h"
#include "memory/block_list.h"

// Each handler that writes or lists inside a block synchronises first: the disk file that it reads may be the
// one that standard output goes to, opening it may take its time, and a block that the system cannot back
// with memory ends the shell.

namespace {

constexpr unsigned long long kMinBloque = 16384;      ///< bytes of the smallest block that is formatted
constexpr unsigned long long kBytesPorFichero = 4096; ///< one directory entry for each of these

void CopiarOMover(char *args[], bool mover) {
    SincronizarES();
    Idfich origen, destino;
    ObtenerIdfich(&origen, args[0]);
    ObtenerIdfich(&destino, args[1]);
    if (mover) {
        if (MoverFicheroSF(origen, destino) == -1) InformarError("Imposible mover fichero");
    } else {
        if (CopiarFicheroSF(origen, destino) == -1) InformarError("Imposible copiar fichero");
    }
}

} // namespace

void MemFSFormat(char *args[]) {
    if (!args[0]) {
        EscribirTexto("   memfs-format id_mem\n");
        return;
    }
    void *dir = ObtenerDireccionSF(args[0]);
    if (!ValidAddrForMakingFS(dir)) {
        EscribirTexto("   id_mem no valido (no corresponde a un bloque de malloc o shared)\n");
        return;
    }
    const unsigned long long tam = TamanoNodoDireccion(&L, dir);
    if (tam < kMinBloque) {
        Imprimir("   tamano bloque memoria demasiado pequeno: %zu (min %d)\n", static_cast<size_t>(tam),
                 static_cast<int>(kMinBloque));
        return;
    }
    SincronizarES();
    if (FormatearSF(dir, static_cast<uint32_t>(tam / kBytesPorFichero + 2), tam) == -1)
        InformarError("Imposible formatear SF");
    else
        ListarSF(static_cast<SF *>(dir));
}

void MemFSListar(char *args[]) {
    if (!args[0]) {
        EscribirTexto("   memfs-ls id_mem\n");
        return;
    }
    SincronizarES();
    void *dir = ObtenerDireccionSF(args[0]);
    if (ValidSFAddr(dir))
        ListarSF(static_cast<SF *>(dir));
    else
        EscribirTexto("Id sistema de ficheros no valido\n");
}

void MemFSCopiar(char *args[]) {
    if (args[0] && args[1])
        CopiarOMover(args, false);
    else
        EscribirTexto("   memfs-cp id1 id2\n");
}

void MemFSMover(char *args[]) {
    if (args[0] && args[1])
        CopiarOMover(args, true);
    else
        EscribirTexto("   memfs-mv id1 id2\n");
}

void MemFSBorrar(char *args[]) {
    if (!args[0]) {
        EscribirTexto("   memfs-rm id_fich\n");
        return;
    }
    SincronizarES();
    Idfich id;
    ObtenerIdfich(&id, args[0]);
    if (BorrarFichero(id) == -1) InformarError("Imposible borrar fichero");
}

void Cmd_memfs(char *args[]) {
    static constexpr struct {
        const char *opcion;
        void (*manejador)(char *args[]);
    } kOpciones[] = {{"-format", MemFSFormat},    {"-list", MemFSListar}, {"-search", MemFSBuscar},
                     {"-label", Cmd_printAssign}, {"-copy", MemFSCopiar}, {"-move", MemFSMover},
                     {"-delete", MemFSBorrar}};
    for (const auto &fila : kOpciones) {
        if (args[0] && strcmp(args[0], fila.opcion) == 0) {
            fila.manejador(args + 1);
            return;
        }
    }
    Imprimir("Uso %s [-format|-list|-search|-label|-copy|-move|-delete] ....\n", args[-1]);
}
