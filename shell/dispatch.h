// SPDX-License-Identifier: MIT

#pragma once

/// Runs one split line: help asked for, a built-in command by any of its names, or a program in the
/// foreground.
void ProcesarEntrada(char *palabras[]);
