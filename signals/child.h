#pragma once

#include <sys/types.h>

/// fork() with standard output written out and the input put where the user sees it, so that the child
/// neither prints again what the parent had printed nor reads again what it had read. Returns what fork()
/// returned.
pid_t Bifurcar();

/// Waits for the end of child `pid`, and for no other. Goes on waiting when a signal interrupts the wait,
/// and only then: with SIGCHLD ignored there is nothing to wait for (ECHILD). `estado` may be null. Returns
/// what waitpid() returned.
int EsperarHijo(pid_t pid, int *estado);

/// Ends a child whose program could not be executed, with status 255: what it has still to say is written,
/// and nothing of what it shares with the shell (the place in the input, the exit handlers) is touched.
[[noreturn]] void TerminarHijo();
