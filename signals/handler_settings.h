// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>

#include "signals/signal_names.h"

// The settings of the counting handler, one entry for each signal number (entry 0 belongs to none). Commands
// write them, the handler reads them and counts at any instant.

constexpr int kNumAjustes = kMaxSenal + 1;

extern volatile std::sig_atomic_t cont[kNumAjustes];  ///< times that the handler ran for the signal
extern volatile std::sig_atomic_t v[kNumAjustes];     ///< when not 0, the handler says that it runs
extern volatile std::sig_atomic_t r[kNumAjustes];     ///< when not 0, it sends the signal again
extern volatile std::sig_atomic_t delay[kNumAjustes]; ///< seconds that it sleeps
