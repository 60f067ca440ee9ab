// SPDX-License-Identifier: MIT

#pragma once

// The variables of an environment array: null-terminated, each entry NAME=value. The shell has up to two of
// them, main3arg and environ. Strings placed here come from the heap; the first 4095 are released at exit,
// the ones that they replace are not.

extern char **main3arg;      ///< main's third argument: the environment array that the process started with
extern char ***addrmain3arg; ///< where main holds it

constexpr int kTamVariable = 512; ///< bytes for a name, "=" and the closing null: a name has at most 510

/// Index of the first entry that begins with `nombre` and "=", or -1: ENOENT, or ENAMETOOLONG (a name of more
/// than 510 characters). `entorno` may be null (no entry).
int BuscarVariable(const char *nombre, char *const entorno[]);

/// Puts a new nombre=valor in the place of the variable's entry. Returns its index, or -1: those of
/// BuscarVariable, ENOMEM.
int CambiarVariable(const char *nombre, const char *valor, char *entorno[]);

/// putenv() of a new nombre=valor. Returns what putenv returned, or -1: ENAMETOOLONG, ENOMEM.
int CambiarVariablePutenv(const char *nombre, const char *valor);

/// Puts a new nombre2=valor in the place of the entry of nombre1. Returns its index, or -1: EEXIST (nombre2
/// has an entry), those of CambiarVariable.
int SustituirVariable(const char *nombre1, const char *nombre2, const char *valor, char *entorno[]);

/// Prints every entry with its address and that of its slot, each behind `etiqueta` and its index.
void MostrarEntorno(char *const entorno[], const char *etiqueta);

/// Releases the strings that have been placed; the entries that hold them are left as they are.
void EntornoClear();
