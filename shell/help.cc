// SPDX-License-Identifier: MIT

#include "shell/help.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstring>

#include "base/output.h"
#include "shell/command_names.h"
#include "shell/command_table.h"
#include "shell/commands.h"
#include "shell/help_topics.h"

namespace {

struct Topic {
    int bit;
    const char *ingles;
    const char *espanol;
};

constexpr Topic kTopics[] = {
    {kInfo, "info", "information"},
    {kFicheros, "files", "ficheros"},
    {kEntorno, "environ", "entorno"},
    {kMemoria, "memory", "memoria"},
    {kListaMemoria, "memlist", "listamemoria"},
    {kProcesos, "processes", "procesos"},
    {kSenales, "signals", "senales"},
    {kSFMemoria, "memoryFS", "SFmemoria"},
    {kOtros, "others", "otros"},
    {},
};
static_assert(sizeof kTopics / sizeof *kTopics == 9 + 1, "nine topics and the closing row");

constexpr int kTodosLosTopics = 0xFFFF;

void DescribirComando(const char *palabra) {
    const char *nombre = RealCommand(palabra);
    if (!nombre) {
        Imprimir("abreviatura no unica: %s\n", palabra);
        return;
    }
    if (const CommandEntry *comando = BuscarComando(nombre))
        Imprimir("%s %s\n", palabra, comando->ayuda);
    else
        Imprimir("%s no encontrado\n", palabra);
}

} // namespace

int GetTopic(const char *nombre) {
    for (const Topic *t = kTopics; t->ingles; t++)
        if (strcmp(t->ingles, nombre) == 0 || strcmp(t->espanol, nombre) == 0) return t->bit;
    return 0;
}

void ListTopics(int espanol) {
    for (const Topic *t = kTopics; t->ingles; t++) Imprimir("%s ", espanol ? t->espanol : t->ingles);
    EscribirTexto("\n");
}

int NumberOfColumns() {
    struct winsize ventana;
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &ventana) == -1) return -1;
    return ventana.ws_col;
}

void ListCommands(int mascara) {
    int columna = 0;
    for (const CommandEntry *fila = CommandTable.data(); fila->nombre; fila++) {
        if ((fila->topics & mascara) == 0) continue;
        const int largo = static_cast<int>(strlen(fila->nombre));
        // The width is asked for each time: the window may change while the listing goes out.
        if (columna + largo > NumberOfColumns()) {
            EscribirTexto("\n");
            columna = 1;
        }
        Imprimir("%s ", fila->nombre);
        columna += largo + 1;
        if (columna + GetAliasesLength(fila->nombre) > NumberOfColumns()) {
            EscribirTexto("\n");
            columna = 1;
        }
        columna += PrintAlias(fila->nombre);
    }
    EscribirTexto("\n");
}

void ListDebugCommands() {
    for (const CommandEntry *fila = CommandTable.data(); fila->nombre; fila++)
        if (fila->topics == kSinTopic) Imprimir("%s ", fila->nombre);
    EscribirTexto("\n");
}

void Cmd_help(char *args[]) {
    if (!args[0]) {
        Imprimir("'%s [cmd|-lt|-T topic|-all]' ayuda sobre comandos\n\t\tComandos disponibles:\n", args[-1]);
        ListCommands(kTodosLosTopics);
    } else if (strcmp(args[0], "-lt") == 0) {
        ListTopics(strcmp(args[-1], "help") != 0);
    } else if (strcmp(args[0], "-T") == 0) {
        int mascara = 0;
        for (int i = 1; args[i]; i++) mascara |= GetTopic(args[i]);
        ListCommands(mascara);
    } else if (strcmp(args[0], "-all") == 0) {
        for (const Topic *t = kTopics; t->ingles; t++) {
            Imprimir("\n**********%s (%s) \n", t->ingles, t->espanol);
            ListCommands(t->bit);
        }
    } else if (strcmp(args[0], "-debug") == 0) {
        ListDebugCommands();
    } else {
        DescribirComando(args[0]);
    }
}

int PideAyuda(char *palabras[]) {
    if (!palabras[1]) return 0;
    if (strcmp(palabras[1], "-help") != 0 && strcmp(palabras[1], "-?") != 0) return 0;
    // The list that help receives begins at the first word, so what stands before it is laid out here:
    // "help", by which the line "-lt -help" gets the English names.
    char ayuda[] = "help";
    char *lista[] = {ayuda, palabras[0], palabras[1], nullptr};
    Cmd_help(lista + 1);
    return 1;
}
