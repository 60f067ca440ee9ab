// SPDX-License-Identifier: MIT

#pragma once

// Where the shell's own buffers meet what others see: a child, a program that replaces the shell, a
// descriptor that a command touches or shows, the last words before a fault.

/// Puts the descriptors in the state that the user sees: writes out standard output and sets the offset of
/// standard input to the byte after the last line read. To be called before a child is made, before a program
/// replaces the shell, before a command touches or shows a descriptor, before a fault can end the shell, and
/// at the end. Keeps `errno`.
void SincronizarES();

/// From now on every line starts synchronised (SincronizarES). For a command that writes wherever the user
/// said: any later one may find the heap broken and end the shell.
void SincronizarCadaLinea();

/// SincronizarES once such a command has run, else nothing: before a line runs, and for what reads a table
/// that the user may have damaged.
void SincronizarTrasDanos();
