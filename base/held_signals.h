// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>

// The signals that are held off while the shell writes to descriptor 1: those whose handlers print there.
// Without that a notice could cut a line in two.
//
// The invariant: from RetenerSenales to the DevolverSenales that answers it one write is under way, no
// handler that prints can start, and the mask from before is kept twice: with the writer, who puts it back,
// and here, for a recovery jump that cuts the writer off (SoltarRetenidas). Whoever writes meanwhile, a
// fault's handler, finds the write under way and leaves the mask alone.

/// What a write has changed, to be handed to DevolverSenales.
struct Retencion {
    bool cambiada; ///< whether the mask was
    sigset_t previa;
};

/// Before a write: holds the signals off. Async-signal-safe.
Retencion RetenerSenales();

/// After it: lets them go. Async-signal-safe; keeps `errno`.
void DevolverSenales(const Retencion &retencion);

/// From now on signal `sig` is held off while standard output is being written, when its handler prints
/// (`imprime`); no more when it does not, or has gone: a default action is not put off. `unaVez`: the system
/// takes the handler away as it runs (SA_RESETHAND), so each write asks whether it is still there. The faults
/// are never held off.
void RetenerAlVolcar(int sig, bool imprime, bool unaVez = false);

/// To be called where a recovery jump lands: lets the signals go that a write cut off by the jump was
/// holding.
void SoltarRetenidas();
