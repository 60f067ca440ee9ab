// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

// The words of a line. A handler receives the null-terminated list of the words after the command word;
// element -1 of that list is the command word exactly as typed.

constexpr int kMaxPalabras = 2048; ///< slots of a word array: 2047 words and the closing null
constexpr int kMaxLinea = 4096;    ///< bytes of a line buffer: 4095 characters and the closing null

/// Splits `linea` in place at blanks, tabs and newlines (no quoting) into `palabras` (kMaxPalabras slots),
/// closed by a null pointer. Returns the number of words. Words beyond the 2047th are left out, with a line
/// that says so.
int TrocearCadena(char *linea, char *palabras[]);

/// The words of a null-terminated list joined by single blanks: writes at most tam - 1 characters and a null
/// into `destino` (may be null when tam is 0) and returns the length of the whole text, like snprintf.
size_t UnirPalabras(char *destino, size_t tam, char *const palabras[]);
