// SPDX-License-Identifier: MIT

#include "signals/handler_settings.h"

volatile std::sig_atomic_t cont[kNumAjustes];
volatile std::sig_atomic_t v[kNumAjustes];
volatile std::sig_atomic_t r[kNumAjustes];
volatile std::sig_atomic_t delay[kNumAjustes];
