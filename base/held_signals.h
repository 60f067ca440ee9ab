// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>
#include <type_traits>

// The signals that are held off while the shell writes to descriptor 1: those whose handlers print there.
// Without that a notice could cut a line in two.
//
// The invariant: from RetenerSenales to the DevolverSenales that answers it one write is under way, and no
// handler that prints can start. Its mask from before hangs on one variable from before anything is held
// until all of it has been let go: a recovery jump that cuts the write off finds at every instant what it
// leaves held. Handlers write too, in those two calls among other places: writes under way form a list.

/// A write under way. It lies in the writer's frame, from RetenerSenales to DevolverSenales.
struct Retencion {
    sigset_t previa; ///< the mask from before
    const Retencion *anterior;
    bool hecha; ///< whether there is something to put back
};
static_assert(std::is_trivially_destructible_v<Retencion>); // the jump may cut off the frame that it lies in

/// Before a write: holds the signals off. Async-signal-safe.
void RetenerSenales(Retencion *retencion);

/// After it: lets them go. Async-signal-safe; keeps `errno`.
void DevolverSenales(const Retencion &retencion);

/// From now on signal `sig` is held off while standard output is being written, when its handler prints
/// (`imprime`); no more when it does not, or has gone: a default action is not put off. `unaVez`: the system
/// takes the handler away as it runs (SA_RESETHAND), so each write asks whether it is still there. The faults
/// are never held off.
void RetenerAlVolcar(int sig, bool imprime, bool unaVez = false);

/// To be called just before a recovery jump: notes what the write that it cuts off, if any, is holding.
/// Async-signal-safe.
void ApuntarRetenidas();

/// To be called where the jump lands: lets them go.
void SoltarRetenidas();
