// SPDX-License-Identifier: MIT

#pragma once

// The names by which a command can be called: its own, its aliases and, when enabled, abbreviations of
// either.

void HabilitarAbreviaturas(); ///< from now on abbreviations are resolved; at start they are not
void DeshabilitarAbreviaturas();
int EstadoAbreviaturas(); ///< 1 when abbreviations are enabled, else 0

/// 1 when `nombre` is the command of some pair of the AliasTable, else 0. (checkalias has none.)
int IsInternalCommand(const char *nombre);

/// The command whose alias equals `palabra`, else `palabra` itself.
const char *RealCommandNoAbrev(const char *palabra);

/// The command of the one pair that `palabra` abbreviates, `palabra` itself when none fits, null when more
/// than one fits (two pairs of one command are two).
const char *RealCommandAbrev(const char *palabra);

/// The name that `palabra` stands for, or null for an ambiguous abbreviation. Exact names and aliases win.
const char *RealCommand(const char *palabra);

/// Total length of a command's aliases, a blank after each included; prints them when `imprimir` is not 0.
int PrintGetAlias(const char *comando, int imprimir);
int GetAliasesLength(const char *comando); ///< PrintGetAlias without printing
int PrintAlias(const char *comando);       ///< PrintGetAlias with printing
