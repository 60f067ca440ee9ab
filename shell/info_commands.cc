// SPDX-License-Identifier: MIT

// The commands that tell about the shell, the machine, the date and the current directory.

#include <sys/utsname.h>
#include <unistd.h>

#include <cstring>
#include <ctime>

#include "base/dates.h"
#include "base/output.h"
#include "files/directory.h"
#include "shell/commands.h"
#include "shell/executable_date.h"

time_t FechaEjecutable;

namespace {

constexpr char kVersion[] = "4.L.12";

/// The present time, to be shown in the zone of now.
time_t Ahora() {
    LeerZonaHoraria();
    return time(nullptr);
}

void LineaDia() { Imprimir("%s\n", ConvertirDia(Ahora())); }
void LineaHora() { Imprimir("%s\n", ConvertirHora(Ahora())); }

} // namespace

void Cmd_authors(char *args[]) {
    if (!args[0])
        EscribirTexto("Nombre del autor1: login del autor1\nNombre del autor2: login del autor2\n");
    else if (strcmp(args[0], "-l") == 0)
        EscribirTexto("login del autor1\nlogin del autor2\n");
    else if (strcmp(args[0], "-n") == 0)
        EscribirTexto("Nombre del autor1\nNombre del autor2\n");
}

void Cmd_fecha(char *args[]) {
    if (!args[0]) {
        const time_t ahora = Ahora(); // one instant for both lines, midnight or not
        Imprimir("%s\n%s\n", ConvertirHora(ahora), ConvertirDia(ahora));
    } else if (strcmp(args[0], "-d") == 0) {
        LineaDia();
    } else if (strcmp(args[0], "-t") == 0) {
        LineaHora();
    }
}

void Cmd_date(char *[]) { LineaDia(); }

void Cmd_time(char *[]) { LineaHora(); }

void Cmd_pid(char *args[]) {
    if (args[0] && strcmp(args[0], "-p") == 0)
        Cmd_ppid(args);
    else
        Imprimir("Pid de shell: %d\n", getpid());
}

void Cmd_ppid(char *[]) { Imprimir("Pid del padre del shell: %d\n", getppid()); }

void Cmd_infosys(char *[]) {
    struct utsname s;
    if (uname(&s) == -1) {
        InformarError("Imposible obtener informacion del sistema");
        return;
    }
    Imprimir("%s (%s), OS: %s-%s-%s\n", s.nodename, s.machine, s.sysname, s.release, s.version);
}

void Cmd_version(char *args[]) {
    Imprimir("%s del shell %s ", args[-1], kVersion);
    if (FechaEjecutable != -1) {
        LeerZonaHoraria();
        Imprimir("Fecha ejecutable: %s, %s", ConvertirDia(FechaEjecutable), ConvertirHora(FechaEjecutable));
    }
    EscribirTexto("\n");
}

void Cmd_pwd(char *[]) {
    char dir[4096];
    if (!getcwd(dir, sizeof dir))
        InformarError("imposible obtener directorio actual");
    else
        Imprimir("%s\n", dir);
}

void Cmd_chdir(char *args[]) {
    if (!args[0])
        PrintDirActual();
    else if (chdir(args[0]) == -1)
        InformarError("Imposible cambiar directorio");
}

void Cmd_chroot(char *args[]) {
    if (!args[0])
        PrintDirActual();
    else if (chroot(args[0]) == -1)
        InformarError("Imposible cambiar directorio root");
}
