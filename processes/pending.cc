// Commands that are still to come.

#include "processes/commands.h"
#include "shell/output.h"

namespace {
void Pendiente(char *args[]) { Imprimir("%s: todavia no disponible\n", args[-1]); }
} // namespace

void Cmd_where(char *args[]) { Pendiente(args); }
void Cmd_priority(char *args[]) { Pendiente(args); }
void Cmd_search(char *args[]) { Pendiente(args); }
void Cmd_fork(char *args[]) { Pendiente(args); }
void Cmd_exec(char *args[]) { Pendiente(args); }
void Cmd_execpri(char *args[]) { Pendiente(args); }
void Cmd_execute_as(char *args[]) { Pendiente(args); }
void Cmd_pplano(char *args[]) { Pendiente(args); }
void Cmd_pplanopri(char *args[]) { Pendiente(args); }
void Cmd_splano(char *args[]) { Pendiente(args); }
void Cmd_splanopri(char *args[]) { Pendiente(args); }
void Cmd_pplanoas(char *args[]) { Pendiente(args); }
void Cmd_splanoas(char *args[]) { Pendiente(args); }
void Cmd_listjobs(char *args[]) { Pendiente(args); }
void Cmd_deljobs(char *args[]) { Pendiente(args); }
void Cmd_job(char *args[]) { Pendiente(args); }
void Cmd_pipe(char *args[]) { Pendiente(args); }
void Cmd_backpipe(char *args[]) { Pendiente(args); }
