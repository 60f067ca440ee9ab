// SPDX-License-Identifier: MIT

#include "base/synchronisation.h"

#include "base/input.h"
#include "base/output.h"

namespace {

bool cadaLinea_;

} // namespace

void SincronizarES() {
    DevolverEntrada();
    VolcarSalida();
}

void SincronizarCadaLinea() { cadaLinea_ = true; }

void SincronizarTrasDanos() {
    if (cadaLinea_) SincronizarES();
}
