#include "memfs/sf_identifier.h"

#include <cstdlib>
#include <cstring>

#include "memfs/file_system.h"
#include "memfs/label_list.h"
#include "memory/block_list.h"

int ValidAddrForMakingFS(const void *dir) {
    const int tipo = TipoNodoDireccion(&L, dir);
    return tipo != -1 && (tipo & (TIPO_MALLOC | TIPO_SHARED)) != 0;
}

int ValidSFAddr(const void *dir) {
    return ValidAddrForMakingFS(dir) && TamanoNodoDireccion(&L, dir) >= kBytesValidez && EsValidoSF(dir);
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
