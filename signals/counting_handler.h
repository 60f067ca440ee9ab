// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>

/// How many runs for one signal may send it again; 0: no limit. A handler that sends its signal again without
/// a limit keeps it coming for ever, and with SA_NODEFER runs nested until the stack is used up: that is the
/// lesson, and the limit is what bounds it.
extern volatile std::sig_atomic_t maxreenvios;

/// The handler that the user installs: counts its run and, as the signal's settings say, shows itself, sends
/// the signal again and sleeps (not for a negative number of seconds, which sleep() would take for a
/// century). Safe at any instant of the main flow; keeps `errno`.
void handler(int senal);
