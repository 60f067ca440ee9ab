#include <cerrno>
#include <cstring>

#include "shell/output.h"
#include "shell/shell.h"
#include "signals/commands.h"
#include "signals/dispositions.h"
#include "signals/handler_text.h"
#include "signals/signal_names.h"

namespace {

constexpr int kValorDeVuelta = 23; // what setjmp returns in main

/// Takes the shell back to the start of its loop. What the interrupted command had printed goes out first.
/// The plain longjmp leaves the signal blocked, as it was while this runs: a second fault of its kind ends
/// the shell.
void VolverAMain(int senal) {
    VolcarDesdeManejador();
    TextoManejador aviso;
    aviso.Poner("Manejada senal ");
    aviso.Poner(NombreSenal(senal));
    aviso.Poner(" (");
    aviso.PonerNumero(senal);
    aviso.Poner(") en ");
    aviso.PonerDireccion(&senal);
    aviso.Poner("\n");
    EscribirAviso(aviso);
    longjmp(EstadoGuardado, kValorDeVuelta);
}

void Proteger(int senal) {
    Imprimir("Protegiendo de %s, el programa volvera al princiio de main\n", NombreSenal(senal));
    EscribirTexto("El manejador se instala con SA_RESTART, solo se ejecuta una vez\n");
    if (InstalarManejadorSenal(senal, VolverAMain, SA_ONSTACK | SA_RESTART, nullptr) == -1)
        Imprimir("Error al instalar manejador: %s\n", strerror(errno));
}

} // namespace

void Cmd_protectsegv(char *[]) { Proteger(SIGSEGV); }
void Cmd_protectfpe(char *[]) { Proteger(SIGFPE); }

void Cmd_usesignals(char *args[]) {
    if (!args[0]) {
        Imprimir("El shell esta %s para el uso de senales\n", HaySenales ? "preparado" : "no preparado");
        EscribirTexto("\tEsto condiciona si el shell termina cuando la lectura de techado da error\n");
    } else if (strcmp(args[0], "on") == 0) {
        HaySenales = 1;
    } else if (strcmp(args[0], "off") == 0) {
        HaySenales = 0;
    } else {
        Imprimir("parametro no valido: %s\n", args[0]);
    }
}
