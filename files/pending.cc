// Commands that are still to come.

#include "files/commands.h"
#include "shell/output.h"

namespace {
void Pendiente(char *args[]) { Imprimir("%s: todavia no disponible\n", args[-1]); }
} // namespace

void Cmd_open(char *args[]) { Pendiente(args); }
void Cmd_close(char *args[]) { Pendiente(args); }
void Cmd_listopen(char *args[]) { Pendiente(args); }
void Cmd_dup(char *args[]) { Pendiente(args); }
void Cmd_dup2(char *args[]) { Pendiente(args); }
void Cmd_read(char *args[]) { Pendiente(args); }
void Cmd_write(char *args[]) { Pendiente(args); }
void Cmd_lseek(char *args[]) { Pendiente(args); }
void Cmd_readstr(char *args[]) { Pendiente(args); }
void Cmd_writestr(char *args[]) { Pendiente(args); }
void Cmd_hardlink(char *args[]) { Pendiente(args); }
void Cmd_symlink(char *args[]) { Pendiente(args); }
void Cmd_link(char *args[]) { Pendiente(args); }
void Cmd_create(char *args[]) { Pendiente(args); }
void Cmd_makefile(char *args[]) { Pendiente(args); }
void Cmd_makedir(char *args[]) { Pendiente(args); }
void Cmd_delete(char *args[]) { Pendiente(args); }
void Cmd_deltree(char *args[]) { Pendiente(args); }
void Cmd_redin(char *args[]) { Pendiente(args); }
void Cmd_redout(char *args[]) { Pendiente(args); }
void Cmd_rederr(char *args[]) { Pendiente(args); }
void Cmd_initredir(char *args[]) { Pendiente(args); }
void Cmd_clearredir(char *args[]) { Pendiente(args); }
