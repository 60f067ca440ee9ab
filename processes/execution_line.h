// SPDX-License-Identifier: MIT

#pragma once

#include "base/words.h"

// The words of an execution line beside the program and its arguments:
//
//   [NULLENV | VAR... | NAME=value...] program [argument...] [@priority] [<file] [>file] [*file] [&]
//
// A line is a null-terminated part of the command loop's word array; it is cut by writing a null over a word.

constexpr int kSinRedireccion = kMaxPalabras; ///< an index that no word has
constexpr int kMaxEntorno = 127;              ///< variables of an environment made from a line

/// Cuts the line at its first "&" and returns 1; 0 when it has none.
int ComprobarSegundoPlano(char *linea[]);

/// Index of the first word that begins with "@", its number stored in `prioridad`; 0 when there is none, so a
/// word in the program's place is no priority.
int ComprobarPrioridad(char *linea[], int *prioridad);

/// Opens, for reading and writing, the file glued to the first word that begins with `marca`, creates it when
/// missing, and puts it on descriptor `df`; the descriptor that the opening gave stays open beside it (unless
/// `df` was closed and the opening gave just that one). A file that cannot be opened is told and the next
/// such word tried. Returns the index of the word, or kSinRedireccion.
int doRedirExec(char *linea[], int df, char marca);

/// Does the redirections of a line: "<" for descriptor 0, ">" for 1 and "*" for 2, in this order. Returns the
/// smallest index of a word that took effect, or kSinRedireccion.
int ComprobarRedireccionExec(char *linea[]);

/// Collects the leading environment words in `entorno` (kMaxEntorno + 1 slots). Returns the index of the
/// program word (0: no environment of its own), or -1: E2BIG (more than kMaxEntorno variables).
int ComprobarEntorno(char *linea[], char *entorno[]);
