// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

// Making and awaiting children. A child before its exec is not a shell: it has none of the parent's unwritten
// output, none of its read-ahead input, and none of its handlers. A fault in it ends it, and does not jump
// into the command loop; no handler of the user's prints, sends or sleeps in it: a signal finds it as it
// would find the program.

/// fork() for a child that is to become a program. Standard output is written out and the input put where the
/// user sees it, so that the child neither prints again what the parent had printed nor reads again what it
/// had read. Returns what fork() returned.
pid_t Bifurcar();

/// fork() for a child that goes on as a second shell: with the same care for output and input, and with the
/// parent's handlers, recovery included. Returns what fork() returned.
pid_t BifurcarShell();

/// waitpid() for the end of child `pid`, and for no other: one call. A handler without SA_RESTART ends the
/// wait (-1, EINTR), and the child goes on alone; after one with it the wait goes on. Returns what waitpid()
/// returned.
pid_t EsperarHijo(pid_t pid);

/// Ends a child whose program could not be executed, with status 255: what it has still to say is written,
/// and nothing of what it shares with the shell (the place in the input, the exit handlers) is touched.
[[noreturn]] void TerminarHijo();
