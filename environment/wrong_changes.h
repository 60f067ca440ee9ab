// SPDX-License-Identifier: MIT

#pragma once

// Three wrong ways of changing a variable, kept to show what comes of them: each leaves in the environment
// storage that is not kept for it. `entorno` null stands for putenv.
//
// All return the variable's index in `entorno` (what putenv returned without one), or -1: those of
// BuscarVariable, and those told below.

/// Writes nombre=valor over the characters of the entry. EINVAL: no array. ENAMETOOLONG: nombre=valor has
/// more than 511 characters. ENOSPC: it is longer than the text that the entry holds.
int CambiarVariableMalOverwrite(const char *nombre, const char *valor, char *entorno[]);

/// Puts in the environment an automatic variable, which ends with the call: from then on the entry shows
/// whatever later calls leave there. ENAMETOOLONG: nombre=valor has more than 511 characters.
int CambiarVariableMalAutomatic(const char *nombre, const char *valor, char *entorno[]);

/// Puts in the environment the one static buffer of this function: every variable changed in this way shows
/// the text of the last change. ENAMETOOLONG: nombre=valor has more than 511 characters.
int CambiarVariableMalStatic(const char *nombre, const char *valor, char *entorno[]);
