// Commands that are still to come.

#include "memfs/commands.h"
#include "shell/output.h"

namespace {
void Pendiente(char *args[]) { Imprimir("%s: todavia no disponible\n", args[-1]); }
} // namespace

void Cmd_assign(char *args[]) { Pendiente(args); }
void Cmd_memfs(char *args[]) { Pendiente(args); }
void MemFSListar(char *args[]) { Pendiente(args); }
void MemFSFormat(char *args[]) { Pendiente(args); }
void MemFSCopiar(char *args[]) { Pendiente(args); }
void MemFSMover(char *args[]) { Pendiente(args); }
void MemFSBorrar(char *args[]) { Pendiente(args); }
void MemFSBuscar(char *args[]) { Pendiente(args); }
void Cmd_printAssign(char *args[]) { Pendiente(args); }
