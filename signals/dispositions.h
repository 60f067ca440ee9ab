// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>

// What the process does with each signal: disposition and mask. A text that is returned is a static buffer,
// overwritten by the next call of the same function.

/// sigaction() with this handler, these SA_ flags and this mask (empty when null). Returns what it returned.
int InstalarManejadorSenal(int senal, void (*manejador)(int), int flags, const sigset_t *mascara);

/// Whether InstalarManejadorSenal has ever given a signal a handler.
bool HayManejadores();

/// In a child that is not to act as the shell: every signal that InstalarManejadorSenal gave a handler takes
/// its default action.
void SoltarManejadores();

int EnmascararSenal(int senal);    ///< blocks the one signal; 0, or -1 (EINVAL: no such signal)
int DesenmascararSenal(int senal); ///< unblocks it; likewise
bool EstaEnmascaradaSenal(int senal);
bool EstaIgnoradaSenal(int senal);
bool EstaDefectoSenal(int senal);

/// The names of the members 1 to 32 of a set, each followed by a blank; null when there is none.
const char *InfoMascara(const sigset_t *mascara);

/// The flags and the mask of the signal's current action.
const char *InfoHandlerSenal(int senal);

/// A caught signal: the handler's address, its settings, flags and mask.
const char *InfoManejador(int senal);

/// Name, whether it is blocked, and disposition, without a newline.
const char *InfoSenal(int senal);

void MostrarInfoSenal(const char *nombre); ///< prints the line of a signal, or that there is none of the name
void MostrarInfoTodasSenales();            ///< prints the lines of signals 1 to kMaxSenal

// One line with the names of the signals 1 to kMaxSenal that are so.
void MostrarSenalesIgnoradas();
void MostrarSenalesDefecto();
void MostrarSenalesEnmascaradas();
