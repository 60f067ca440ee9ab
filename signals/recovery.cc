// SPDX-License-Identifier: MIT

#include "signals/recovery.h"

#include "base/held_signals.h"
#include "base/output.h"
#include "signals/handler_text.h"
#include "signals/signal_names.h"

jmp_buf EstadoGuardado;
volatile std::sig_atomic_t HaySenales;

namespace {

constexpr int kValorDeVuelta = 23; // what setjmp returns in main

} // namespace

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
    ApuntarRetenidas();
    longjmp(EstadoGuardado, kValorDeVuelta);
}
