// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>

// The short names of the signals, in the order that decides which name a number gets.

/// One name of a signal.
struct SignalEntry {
    const char *nombre; ///< without the "SIG" prefix, in capitals
    int senal;
};

constexpr int kMaxSenal = 31; ///< the signals that the commands go through are 1 to kMaxSenal

/// Closed by a row without a name, of number -1. A signal that the platform lacks has no row.
constexpr SignalEntry SignalTable[] = {
    {"HUP", SIGHUP},     {"INT", SIGINT},   {"QUIT", SIGQUIT}, {"ILL", SIGILL},       {"TRAP", SIGTRAP},
    {"ABRT", SIGABRT},
#ifdef SIGIOT
    {"IOT", SIGIOT},
#endif
    {"BUS", SIGBUS},     {"FPE", SIGFPE},   {"KILL", SIGKILL}, {"USR1", SIGUSR1},     {"SEGV", SIGSEGV},
    {"USR2", SIGUSR2},   {"PIPE", SIGPIPE}, {"ALRM", SIGALRM}, {"TERM", SIGTERM},     {"CHLD", SIGCHLD},
    {"CONT", SIGCONT},   {"STOP", SIGSTOP}, {"TSTP", SIGTSTP}, {"TTIN", SIGTTIN},     {"TTOU", SIGTTOU},
    {"URG", SIGURG},     {"XCPU", SIGXCPU}, {"XFSZ", SIGXFSZ}, {"VTALRM", SIGVTALRM}, {"PROF", SIGPROF},
#ifdef SIGWINCH
    {"WINCH", SIGWINCH},
#endif
#ifdef SIGIO
    {"IO", SIGIO},
#endif
    {"SYS", SIGSYS},
#ifdef SIGEMT
    {"EMT", SIGEMT},
#endif
#ifdef SIGINFO
    {"INFO", SIGINFO},
#endif
    {nullptr, -1}};

/// The number of the signal with this short name (case matters), or -1.
int ValorSenal(const char *nombre);

/// The first name of this number, "SIGUNKNOWN" when it has none.
const char *NombreSenal(int senal);
