#include "memfs/file_system.h"

#include <cstring>

#include "base/dates.h"
#include "base/failure.h"
#include "base/output.h"

namespace {

/// Whether files i and later, and what their places are computed from, stay within the data area when i is
/// taken out, and the free bytes too.
bool PuedeQuitarse(const SF *sf, uint32_t i) {
    const EntradaSF *entradas = Entradas(sf);
    if (i > 0 && !FicheroEnArea(sf, i - 1)) return false;
    uint64_t fin = NuevoDesplazamiento(sf, i);
    for (uint32_t j = i; j < sf->numFicheros; j++) {
        if (!FicheroEnArea(sf, j)) return false;
        if (j > i) fin += entradas[j].tam;
    }
    const uint64_t area = static_cast<uint64_t>(TamanoAreaDatos(sf));
    const uint64_t libres = sf->libres;
    return fin <= area && libres + entradas[i].tam <= area;
}

/// Moves the bytes of the files after i down over those of i. Files that lie one after the other, in a sound
/// SF all of them, move together.
void BajarDatos(SF *sf, uint32_t i) {
    const EntradaSF *entradas = Entradas(sf);
    unsigned char *destino = DirPrincipioDatos(sf) + NuevoDesplazamiento(sf, i);
    for (uint32_t j = i + 1; j < sf->numFicheros;) {
        const unsigned char *origen = DirPrincipioDatosFichero(sf, j);
        const uint32_t desde = entradas[j].desplazamiento;
        size_t tam = entradas[j++].tam;
        while (j < sf->numFicheros && entradas[j].desplazamiento == desde + tam) tam += entradas[j++].tam;
        memmove(destino, origen, tam);
        destino += tam;
    }
}

/// Moves the entries after i down by one; the old last one stays as it was.
void BajarEntradas(SF *sf, uint32_t i) {
    EntradaSF *entradas = Entradas(sf);
    const uint32_t ultima = sf->numFicheros - 1;
    memmove(&entradas[i], &entradas[i + 1], (ultima - i) * sizeof *entradas);
    for (; i < ultima; i++) entradas[i].desplazamiento = NuevoDesplazamiento(sf, i);
}

} // namespace

int EsValidoSF(const void *dir) {
    const SF *sf = static_cast<const SF *>(dir);
    if (!sf || sf->magico != kMagicoSF || sf->numFicheros > sf->capacidad) return 0;
    return sf->libres <= sf->tamTotal - static_cast<uint32_t>(TamanoSF(sf->capacidad));
}

int EsValidoSFEnBloque(const void *dir, uint64_t tam) {
    if (tam < sizeof(SF) || !EsValidoSF(dir)) return 0;
    const SF *sf = static_cast<const SF *>(dir);
    return sf->tamTotal <= tam && TamanoSF(sf->capacidad) <= sf->tamTotal;
}

int EspacioInsuficiente(uint32_t capacidad, uint64_t tam) { return tam <= TamanoSF(capacidad); }

int64_t TamanoAreaDatos(const SF *sf) {
    const uint64_t fijo = TamanoSF(sf->capacidad);
    if (fijo > sf->tamTotal) return Fallo(EIO);
    return static_cast<int64_t>(sf->tamTotal - fijo);
}

bool FicheroEnArea(const SF *sf, uint32_t i) {
    const EntradaSF &entrada = Entradas(sf)[i];
    return static_cast<int64_t>(entrada.desplazamiento) + entrada.tam <= TamanoAreaDatos(sf);
}

unsigned char *DirPrincipioDatos(SF *sf) {
    return reinterpret_cast<unsigned char *>(sf) + TamanoSF(sf->capacidad);
}

unsigned char *DirPrincipioDatosFichero(SF *sf, uint32_t i) {
    return DirPrincipioDatos(sf) + Entradas(sf)[i].desplazamiento;
}

unsigned char *DirFinalDatos(SF *sf) {
    return DirPrincipioDatos(sf) + NuevoDesplazamiento(sf, sf->numFicheros);
}

uint32_t NuevoDesplazamiento(const SF *sf, uint32_t i) {
    if (i == 0) return 0;
    const EntradaSF &anterior = Entradas(sf)[i - 1];
    return anterior.desplazamiento + anterior.tam;
}

int FormatearSF(void *dir, uint32_t capacidad, uint64_t tam) {
    if (tam > UINT32_MAX) return Fallo(EFBIG); // the header holds sizes in 32 bits
    if (EspacioInsuficiente(capacidad, tam)) return Fallo(ENOSPC);
    SF *sf = static_cast<SF *>(dir);
    sf->magico = kMagicoSF;
    sf->capacidad = capacidad;
    sf->numFicheros = 0;
    sf->tamTotal = static_cast<uint32_t>(tam);
    sf->libres = static_cast<uint32_t>(tam - TamanoSF(capacidad));
    sf->fecha = time(nullptr);
    memset(Entradas(sf), 0, sizeof(EntradaSF) * capacidad);
    return 0;
}

void ListarSF(SF *sf) {
    LeerZonaHoraria();
    Imprimir("SF de %u bytes con capacidad para %u ficheros %s\n", sf->tamTotal, sf->capacidad,
             TextoFecha(sf->fecha));
    Imprimir("      %u bytes desponibles. Total %u fichero(s) \n", sf->libres, sf->numFicheros);
    for (uint32_t i = 0; i < sf->numFicheros; i++) {
        const EntradaSF &entrada = Entradas(sf)[i];
        // The precision stops at the end of the field a name that another program left without its null.
        Imprimir("(%p): %10u bytes  %s %.*s\n", static_cast<void *>(DirPrincipioDatosFichero(sf, i)),
                 entrada.tam, TextoFecha(entrada.fecha), static_cast<int>(kMaxNombreSF), entrada.nombre);
    }
}

int BuscarFicheroSF(const SF *sf, const char *nombre) {
    const size_t n = strlen(nombre);
    if (n > kMaxNombreSF) return -1;
    const EntradaSF *entradas = Entradas(sf);
    for (uint32_t i = 0; i < sf->numFicheros; i++)
        if (memcmp(entradas[i].nombre, nombre, n) == 0) return static_cast<int>(i);
    return -1;
}

int BorrarFicheroSF(const Idfich &id) {
    SF *sf = DirSF(id);
    if (!EsValidoSF(sf)) return Fallo(ENXIO);
    if (TamanoAreaDatos(sf) == -1) return -1;
    const int encontrado = BuscarFicheroSF(sf, id.nombre);
    if (encontrado == -1) return Fallo(ENOENT);
    const uint32_t i = static_cast<uint32_t>(encontrado);
    if (!PuedeQuitarse(sf, i)) return Fallo(EIO);
    const uint32_t tam = Entradas(sf)[i].tam;
    BajarDatos(sf, i);
    BajarEntradas(sf, i);
    sf->numFicheros--;
    sf->libres += tam;
    return 0;
}
