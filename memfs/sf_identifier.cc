// SPDX-License-Identifier: MIT

#include "memfs/sf_identifier.h"

#include <cstdlib>
#include <cstring>

#include "memfs/file_system.h"
#include "memfs/label_list.h"
#include "memory/block_list.h"

/// The recorded heap block or shared segment that starts at `dir`, or null.
static const NodoBloque *BloqueParaSF(const void *dir) {
    const int pos = BuscarNodoDireccion(&L, dir);
    return pos != -1 && (L.nodos[pos]->tipo & (TIPO_MALLOC | TIPO_SHARED)) ? L.nodos[pos] : nullptr;
}

int ValidAddrForMakingFS(const void *dir) { return BloqueParaSF(dir) != nullptr; }

int ValidSFAddr(const void *dir) {
    const NodoBloque *bloque = BloqueParaSF(dir);
    return bloque && bloque->tamano >= kBytesValidez && EsValidoSF(dir);
}

void *ObtenerDireccionSF(const char *palabra) {
    void *dir = LabelAddr(palabra); // first, so that a label may look like a number
    return dir ? dir : reinterpret_cast<void *>(strtoull(palabra, nullptr, 16));
}

void ObtenerIdfich(Idfich *id, char *palabra) {
    if (!palabra) {
        *id = {kSFNoValido, nullptr};
        return;
    }
    char *separador = strchr(palabra, ':'); // a path that has a colon cannot be named
    if (!separador) {
        *id = {kSFDisco, palabra};
        return;
    }
    *separador = '\0';
    void *dir = ObtenerDireccionSF(palabra);
    id->sf = ValidSFAddr(dir) ? reinterpret_cast<uint64_t>(dir) : kSFNoValido;
    id->nombre = separador[1] != '\0' ? separador + 1 : "SinNombre";
}
