// SPDX-License-Identifier: MIT

#include "shell/command_names.h"

#include <cstring>

#include "base/output.h"
#include "shell/alias_fingerprints.h"
#include "shell/command_table.h"

namespace {

int abreviaturas_;

/// strcmp for the table scans: most rows differ in the first character.
bool Iguales(const char *a, const char *b) { return *a == *b && strcmp(a, b) == 0; }

} // namespace

void HabilitarAbreviaturas() { abreviaturas_ = 1; }
void DeshabilitarAbreviaturas() { abreviaturas_ = 0; }
int EstadoAbreviaturas() { return abreviaturas_; }

int IsInternalCommand(const char *nombre) {
    for (const AliasEntry *fila = AliasTable.data(); fila->comando; fila++)
        if (Iguales(fila->comando, nombre)) return 1;
    return 0;
}

const char *RealCommandNoAbrev(const char *palabra) {
    const unsigned char huella = Huella(palabra);
    const unsigned char *fin = kHuellasAliases.data() + kHuellasAliases.size();
    const unsigned char *pos = kHuellasAliases.data();
    while ((pos = static_cast<const unsigned char *>(memchr(pos, huella, static_cast<size_t>(fin - pos))))) {
        const AliasEntry &fila = AliasTable[pos - kHuellasAliases.data()];
        if (strcmp(fila.alias, palabra) == 0) return fila.comando;
        pos++;
    }
    return palabra;
}

const char *RealCommandAbrev(const char *palabra) {
    const size_t n = strlen(palabra);
    const AliasEntry *encontrada = nullptr;
    for (const AliasEntry *fila = AliasTable.data(); fila->comando; fila++) {
        if (strncmp(fila->comando, palabra, n) != 0 && strncmp(fila->alias, palabra, n) != 0) continue;
        if (encontrada) return nullptr;
        encontrada = fila;
    }
    return encontrada ? encontrada->comando : palabra;
}

const char *RealCommand(const char *palabra) {
    const char *comando = RealCommandNoAbrev(palabra);
    if (!abreviaturas_ || IsInternalCommand(comando)) return comando;
    return RealCommandAbrev(palabra);
}

int PrintGetAlias(const char *comando, int imprimir) {
    int largo = 0;
    for (const AliasEntry *fila = AliasTable.data(); fila->comando; fila++) {
        if (!Iguales(fila->comando, comando)) continue;
        if (imprimir) Imprimir("%s ", fila->alias);
        largo += static_cast<int>(strlen(fila->alias)) + 1;
    }
    return largo;
}

int GetAliasesLength(const char *comando) { return PrintGetAlias(comando, 0); }
int PrintAlias(const char *comando) { return PrintGetAlias(comando, 1); }
