// Commands that are still to come.

#include "environment/commands.h"
#include "shell/output.h"

namespace {
void Pendiente(char *args[]) { Imprimir("%s: todavia no disponible\n", args[-1]); }
} // namespace

void Cmd_showenv(char *args[]) { Pendiente(args); }
void Cmd_showvar(char *args[]) { Pendiente(args); }
void Cmd_changevar(char *args[]) { Pendiente(args); }
void Cmd_subsvar(char *args[]) { Pendiente(args); }
void Cmd_changevarWrong(char *args[]) { Pendiente(args); }
void Cmd_getuid(char *args[]) { Pendiente(args); }
void Cmd_setuid(char *args[]) { Pendiente(args); }
void Cmd_uid(char *args[]) { Pendiente(args); }
