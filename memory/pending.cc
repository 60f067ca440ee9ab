// Commands that are still to come.

#include "memory/commands.h"
#include "shell/output.h"

namespace {
void Pendiente(char *args[]) { Imprimir("%s: todavia no disponible\n", args[-1]); }
} // namespace

void Cmd_recurse(char *args[]) { Pendiente(args); }
void Cmd_i_o(char *args[]) { Pendiente(args); }
void Cmd_readfile(char *args[]) { Pendiente(args); }
void Cmd_writefile(char *args[]) { Pendiente(args); }
void Cmd_memdump(char *args[]) { Pendiente(args); }
void Cmd_memfill(char *args[]) { Pendiente(args); }
void Cmd_deallocate(char *args[]) { Pendiente(args); }
void Cmd_allocate(char *args[]) { Pendiente(args); }
void Cmd_malloc(char *args[]) { Pendiente(args); }
void Cmd_mmap(char *args[]) { Pendiente(args); }
void Cmd_shared(char *args[]) { Pendiente(args); }
void Cmd_createshared(char *args[]) { Pendiente(args); }
void Cmd_memshared(char *args[]) { Pendiente(args); }
void Cmd_memdeshared(char *args[]) { Pendiente(args); }
void Cmd_memmalloc(char *args[]) { Pendiente(args); }
void Cmd_memdemalloc(char *args[]) { Pendiente(args); }
void Cmd_memmmap(char *args[]) { Pendiente(args); }
void Cmd_memdemmap(char *args[]) { Pendiente(args); }
void Cmd_free(char *args[]) { Pendiente(args); }
void Cmd_delkey(char *args[]) { Pendiente(args); }
void Cmd_memory(char *args[]) { Pendiente(args); }
void Cmd_memcopy(char *args[]) { Pendiente(args); }
void Cmd_stringcopy(char *args[]) { Pendiente(args); }
