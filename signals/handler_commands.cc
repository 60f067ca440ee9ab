// SPDX-License-Identifier: MIT

// The commands that install the counting handler (counting_handler.h), count its runs and bound its
// resending.

#include <cstdlib>
#include <cstring>

#include "base/held_signals.h"
#include "base/output.h"
#include "signals/commands.h"
#include "signals/counting_handler.h"
#include "signals/dispositions.h"
#include "signals/handler_settings.h"
#include "signals/signal_names.h"

namespace {

/// What the options of sighandler ask for.
struct Instalacion {
    int mostrar = 0;
    int reenviar = 0;
    int dormir = 0;
    int flags = 0;
    sigset_t mascara;
};

/// The rest of `palabra` after `prefijo`, or null.
const char *TrasPrefijo(const char *palabra, const char *prefijo) {
    const size_t n = strlen(prefijo);
    return strncmp(palabra, prefijo, n) == 0 ? palabra + n : nullptr;
}

bool LeerOpcion(const char *palabra, Instalacion *i) {
    if (strcmp(palabra, "-show") == 0)
        i->mostrar = 1;
    else if (strcmp(palabra, "-resend") == 0)
        i->reenviar = 1;
    else if (const char *segundos = TrasPrefijo(palabra, "-sleep"))
        i->dormir = atoi(segundos);
    else if (strcmp(palabra, "-Fonstack") == 0)
        i->flags |= SA_ONSTACK;
    else if (strcmp(palabra, "-Fnodefer") == 0)
        i->flags |= SA_NODEFER;
    else if (strcmp(palabra, "-Fresethand") == 0)
        i->flags |= static_cast<int>(SA_RESETHAND);
    else if (strcmp(palabra, "-Frestart") == 0)
        i->flags |= SA_RESTART;
    else if (const char *nombre = TrasPrefijo(palabra, "-mask"))
        sigaddset(&i->mascara, ValorSenal(nombre)); // which refuses what is no signal
    else
        return false;
    return true;
}

void InstalarContador(int senal, const Instalacion &i) {
    v[senal] = i.mostrar;
    r[senal] = i.reenviar;
    delay[senal] = i.dormir;
    RetenerAlVolcar(senal, i.mostrar != 0, i.flags & static_cast<int>(SA_RESETHAND));
    InstalarManejadorSenal(senal, handler, i.flags, &i.mascara);
}

void MostrarContSenal(const char *nombre) {
    const int senal = ValorSenal(nombre);
    if (senal == -1)
        Imprimir("  senal desconocida:%s\n", nombre);
    else
        Imprimir("  %s=%d\n", nombre, cont[senal]);
}

void MostrarContTodasSenales() {
    for (int senal = 1; senal <= kMaxSenal; senal++) Imprimir("  %s=%d\n", NombreSenal(senal), cont[senal]);
}

int ClearContSenal(const char *nombre) {
    const int senal = ValorSenal(nombre);
    if (senal == -1) return -1;
    cont[senal] = 0;
    return 0;
}

void ClearContTodasSenales() {
    for (int senal = 1; senal <= kMaxSenal; senal++) cont[senal] = 0;
}

void SeninfoCont(char *nombres[]) {
    if (!nombres[0]) MostrarContTodasSenales();
    for (; *nombres; nombres++) MostrarContSenal(*nombres);
}

void SeninfoCero(char *nombres[]) {
    if (!nombres[0]) ClearContTodasSenales();
    for (; *nombres; nombres++) ClearContSenal(*nombres);
}

} // namespace

void Cmd_sighandler(char *args[]) {
    Instalacion i;
    sigemptyset(&i.mascara);
    while (*args && LeerOpcion(*args, &i)) args++;
    for (; *args; args++) {
        const int senal = ValorSenal(*args);
        if (senal == -1)
            Imprimir("No existe senal %s\n", *args);
        else
            InstalarContador(senal, i);
    }
}

void Cmd_sigaction(char *args[]) {
    if (!args[0])
        MostrarInfoTodasSenales();
    else if (strcmp(args[0], "-default") == 0)
        Cmd_sigdefault(args + 1);
    else if (strcmp(args[0], "-ignore") == 0)
        Cmd_sigignore(args + 1);
    else if (strcmp(args[0], "-handler") == 0)
        Cmd_sighandler(args + 1);
    else
        Cmd_siginfo(args);
}

void Cmd_sigcount(char *args[]) {
    if (args[0] && strcmp(args[0], "-zero") == 0)
        SeninfoCero(args + 1);
    else
        SeninfoCont(args);
}

void Cmd_limitresend(char *args[]) {
    if (args[0])
        maxreenvios = atoi(args[0]); // "off" too, as any word, reads as 0
    else if (maxreenvios == 0)
        EscribirTexto("limitresend: off\n");
    else
        Imprimir("limitresend: %d\n", maxreenvios);
}
