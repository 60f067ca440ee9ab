// SPDX-License-Identifier: MIT

#include "files/owner_names.h"

#include <grp.h>
#include <pwd.h>

#include <cerrno>
#include <cstring>

#include "base/large_storage.h"

namespace {

/// Names by id, each in the row that its number gives or the first free one behind it.
struct NombresVistos {
    static constexpr unsigned kMax = 4096;
    // Rows looked at; beyond them the first one is given to the new id.
    static constexpr unsigned kIntentos = 16;
    struct Fila {
        unsigned id;
        unsigned orden;  // the command that filled it
        char nombre[56]; // a longer one is looked up for every line
    } filas[kMax];

    Fila *Buscar(unsigned id, unsigned orden) {
        for (unsigned i = 0; i < kIntentos; i++) {
            Fila *fila = &filas[(id + i) % kMax];
            if (fila->orden != orden || fila->id == id) return fila;
        }
        filas[id % kMax].orden = 0;
        return &filas[id % kMax];
    }
};
alignas(kAparte) NombresVistos usuarios_, grupos_;
unsigned orden_ = 1; // a name is good for one command

const char *NombreVisto(NombresVistos *vistos, unsigned id, const char *(*buscar)(unsigned)) {
    NombresVistos::Fila *fila = vistos->Buscar(id, orden_);
    if (fila->orden == orden_) return fila->nombre;
    errno = 0;
    const char *nombre = buscar(id);
    // A database that could not be read (no descriptor left) may be readable at the next file.
    const bool fallida =
        errno == EMFILE || errno == ENFILE || errno == ENOMEM || errno == EIO || errno == EINTR;
    if (fallida || strlen(nombre) >= sizeof fila->nombre) return nombre;
    strcpy(fila->nombre, nombre);
    fila->id = id;
    fila->orden = orden_;
    return fila->nombre;
}

} // namespace

const char *NombreUsuario(uid_t uid) {
    const struct passwd *usuario = getpwuid(uid);
    return usuario ? usuario->pw_name : " ??????";
}

const char *NombreGrupo(gid_t gid) {
    const struct group *grupo = getgrgid(gid);
    return grupo ? grupo->gr_name : "??????";
}

const char *UsuarioListado(uid_t uid) { return NombreVisto(&usuarios_, uid, NombreUsuario); }
const char *GrupoListado(gid_t gid) { return NombreVisto(&grupos_, gid, NombreGrupo); }

void OlvidarListados() { orden_++; }
