// SPDX-License-Identifier: MIT

#include "signals/handler_text.h"

#include <unistd.h>

#include <type_traits>

#include "base/held_signals.h"
#include "base/write_all.h"

static_assert(std::is_trivially_destructible_v<TextoManejador>, "lives in a frame that the recovery leaves");

int EscribirAviso(const TextoManejador &aviso) {
    Retencion retencion;
    RetenerSenales(&retencion);
    const int resultado = EscribirTodo(STDOUT_FILENO, aviso.texto(), aviso.n());
    DevolverSenales(retencion);
    return resultado;
}
