// Commands that are still to come.

#include "shell/output.h"
#include "signals/commands.h"

namespace {
void Pendiente(char *args[]) { Imprimir("%s: todavia no disponible\n", args[-1]); }
} // namespace

void Cmd_sighandler(char *args[]) { Pendiente(args); }
void Cmd_sigaction(char *args[]) { Pendiente(args); }
void Cmd_limitresend(char *args[]) { Pendiente(args); }
void Cmd_sigcount(char *args[]) { Pendiente(args); }
void Cmd_sigaltstack(char *args[]) { Pendiente(args); }
void Cmd_bucle(char *args[]) { Pendiente(args); }
void Cmd_segmentation(char *args[]) { Pendiente(args); }
void Cmd_fpe(char *args[]) { Pendiente(args); }
void Cmd_usesignals(char *args[]) { Pendiente(args); }
void Cmd_protectsegv(char *args[]) { Pendiente(args); }
void Cmd_protectfpe(char *args[]) { Pendiente(args); }
