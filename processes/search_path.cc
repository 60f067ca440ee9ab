// SPDX-License-Identifier: MIT

#include "processes/search_path.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/bounded_text.h"
#include "base/element_list.h"
#include "base/large_storage.h"

namespace {

alignas(kAparte) ListaElementos ruta_;

constexpr size_t kTamPath = 2048;
constexpr size_t kTamCandidato = 1024;

bool EmpiezaPor(const char *texto, const char *principio) {
    return strncmp(texto, principio, strlen(principio)) == 0;
}

} // namespace

int PathAdd(const char *dir) { return AniadirElemento(&ruta_, dir); }
int PathDel(const char *dir) { return BorrarElemento(&ruta_, dir); }
void PathClear() { BorrarLista(&ruta_); }
char *PathFirst() { return GetFirstNextElement(&ruta_, 1); }
char *PathNext() { return GetFirstNextElement(&ruta_, 0); }
void PathPrint() { ImprimirListaCompleta(&ruta_, 0); }

int PathAddPath() {
    const char *path = getenv("PATH");
    if (!path) return 0;
    char copia[kTamPath];
    snprintf(copia, sizeof copia, "%s", path);
    int campos = 0;
    char *resto = nullptr;
    for (char *dir = strtok_r(copia, ":", &resto); dir; dir = strtok_r(nullptr, ":", &resto)) {
        PathAdd(dir);
        campos++;
    }
    return campos;
}

const char *Ejecutable(const char *nombre) {
    alignas(kAparte) static char candidato[kTamCandidato];
    if (!nombre) return nullptr;
    if (EmpiezaPor(nombre, "/") || EmpiezaPor(nombre, "./") || EmpiezaPor(nombre, "../")) return nombre;
    for (const char *dir = PathFirst(); dir; dir = PathNext()) {
        TextoAcotado ruta(candidato, sizeof candidato);
        ruta.Poner(dir);
        ruta.Poner('/');
        ruta.Poner(nombre);
        if (!ruta.Cabe()) continue; // the next directory may hold it
        struct stat st;
        if (lstat(candidato, &st) == 0) return candidato;
    }
    return nombre;
}
