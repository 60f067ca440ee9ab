#pragma once

// The built-in commands. The order of the rows is the order of every listing.

/// One built-in command.
struct CommandEntry {
    const char *nombre;
    void (*manejador)(char *args[]); ///< receives the words after the command word
    const char *ayuda;               ///< usage words, as a rule a tab, and the description
    int topics;                      ///< the help topics under which it is listed; 0: `help -debug` only
};

constexpr int kNumComandos = 122;
extern const CommandEntry CommandTable[kNumComandos + 1]; ///< closed by a row without a name

/// The row of the command with exactly this name, or null.
const CommandEntry *BuscarComando(const char *nombre);
