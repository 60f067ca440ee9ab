// SPDX-License-Identifier: MIT

#pragma once

#include <csetjmp>
#include <csignal>

// The way back to the command loop out of a command that a fault has cut off.
//
// The rule of recovery. VolverAMain jumps over every frame between main, where EstadoGuardado was saved, and
// the access that faulted. A long jump runs no destructors, and to jump over one that is not trivial is
// undefined. So:
//
// - A function that touches an address typed by the user, or calls one that does (the commands of memory/
//   and memfs/, those of environment/ whose entries the user can write over, read and write of files/), holds
//   numbers, pointers, plain arrays and records: no guard, no string. It closes by hand what it opened.
//   Records that live in such frames are asserted to be trivially destructible where they are declared.
// - Elsewhere guards are welcome (base/descriptor.h, files/directory.h): a fault there can only be one that
//   somebody sent from outside, and what it costs is the descriptor that the guard would have closed. So it
//   is where the kernel makes the access, with EFAULT (memory/file_transfer.cc, memfs/disk_transfer.cc).
// - What main changes after it has saved EstadoGuardado is static, not automatic.
// - State changes last: the few stores that make a list true stand behind everything that can fault.
// - A child that is to become a program drops its handlers (signals/child.h): it never comes back here. The
//   child of `fork` keeps them, being a shell.

extern jmp_buf EstadoGuardado;                ///< restart point, saved by main before the loop
extern volatile std::sig_atomic_t HaySenales; ///< when not 0, a failed read does not end the shell

/// The handler that takes the shell back to the start of its loop. What the interrupted command had printed
/// goes out first. The plain longjmp leaves the signal blocked, as it was while this runs: a second fault of
/// its kind ends the shell.
void VolverAMain(int senal);
