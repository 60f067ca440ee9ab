#pragma once

#include <csetjmp>
#include <csignal>

// The way back to the command loop out of a command that a fault has cut off.

extern jmp_buf EstadoGuardado;                ///< restart point, saved by main before the loop
extern volatile std::sig_atomic_t HaySenales; ///< when not 0, a failed read does not end the shell

/// The handler that takes the shell back to the start of its loop. What the interrupted command had printed
/// goes out first. The plain longjmp leaves the signal blocked, as it was while this runs: a second fault of
/// its kind ends the shell.
void VolverAMain(int senal);
