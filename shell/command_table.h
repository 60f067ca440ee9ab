// SPDX-License-Identifier: MIT

#pragma once

#include <array>

// The built-in commands. The order of the rows is the order of every listing. A command is one row of
// shell/command_table.cc: all the tables declared here are formed from it.

/// One built-in command.
struct CommandEntry {
    const char *nombre;
    void (*manejador)(char *args[]); ///< receives the words after the command word
    const char *ayuda;               ///< usage words, as a rule a tab, and the description
    int topics;                      ///< the help topics under which it is listed; 0: `help -debug` only
};

/// One name of a command beside its own. A command may have several.
struct AliasEntry {
    const char *comando;
    const char *alias;
};

constexpr int kNumComandos = 122;
constexpr int kNumAliases = 149;

extern const std::array<CommandEntry, kNumComandos + 1> CommandTable; ///< closed by a row without a name
extern const std::array<AliasEntry, kNumAliases + 1>
    AliasTable; ///< in the commands' order, closed by a pair of nulls

/// The row of the command with exactly this name, or null.
const CommandEntry *BuscarComando(const char *nombre);
