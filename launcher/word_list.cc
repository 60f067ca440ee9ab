// SPDX-License-Identifier: MIT

// Prints a line for each command: its name and its aliases. The launcher completes these words and finds with
// them the command that an alias stands for.

#include <cstdio>
#include <cstring>

#include "shell/command_table.h"

int main() {
    for (const CommandEntry *comando = CommandTable.data(); comando->nombre; comando++) {
        fputs(comando->nombre, stdout);
        for (const AliasEntry *par = AliasTable.data(); par->comando; par++)
            if (strcmp(par->comando, comando->nombre) == 0) printf(" %s", par->alias);
        putchar('\n');
    }
}
