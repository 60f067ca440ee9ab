// SPDX-License-Identifier: MIT

#include "signals/counting_handler.h"

#include <unistd.h>

#include <cerrno>

#include "signals/handler_settings.h"
#include "signals/handler_text.h"
#include "signals/signal_names.h"

volatile std::sig_atomic_t maxreenvios;

namespace {

/// `marco`: an address in the handler's frame, which shows on which stack it runs and how deep.
int AvisarRecibida(int senal, int veces, const void *marco) {
    TextoManejador aviso;
    aviso.Poner("Recibida senal ");
    aviso.Poner(NombreSenal(senal));
    aviso.Poner(" ");
    aviso.PonerNumero(veces);
    aviso.Poner(" veces en ");
    aviso.PonerDireccion(marco);
    aviso.Poner("\n");
    return EscribirAviso(aviso);
}

} // namespace

void handler(int senal) {
    const int motivo = errno; // the interrupted code may be about to tell it
    // In one step: with SA_NODEFER the same signal may interrupt between a read and a write.
    const int veces = __atomic_add_fetch(&cont[senal], 1, __ATOMIC_RELAXED);
    // A notice of PIPE or XFSZ that cannot be written is the last one: the refusal itself would bring the
    // next.
    if (v[senal] && AvisarRecibida(senal, veces, &senal) == -1 && (senal == SIGPIPE || senal == SIGXFSZ))
        v[senal] = 0;
    if (r[senal] && (maxreenvios == 0 || cont[senal] < maxreenvios)) kill(getpid(), senal);
    if (delay[senal] > 0) sleep(static_cast<unsigned>(delay[senal]));
    errno = motivo;
}
