// SPDX-License-Identifier: MIT

#include "memfs/file_system.h"

#include <algorithm>
#include <cstring>

#include "base/dates.h"
#include "base/failure.h"
#include "base/output.h"
#include "memory/block_list.h"

namespace {

/// Bytes of the recorded block that starts at `sf`; 0 when there is none.
uint64_t BytesBloque(const SF *sf) {
    const unsigned long long tam = TamanoNodoDireccion(&L, sf);
    return tam == kSinTamano ? 0 : tam;
}

/// Entries in use that lie within the block.
uint64_t EntradasEnUso(const SF *sf) { return std::min<uint64_t>(sf->numFicheros, Alcance(sf).entradas); }

/// The most bytes that can be free. In 32 bits, as the validity is defined.
uint32_t MaxLibres(const SF *sf) { return sf->tamTotal - static_cast<uint32_t>(TamanoSF(sf->capacidad)); }

/// Whether file i can be taken out: all entries in use, the later files and the places that they move to lie
/// within the block, and the SF remains valid.
bool PuedeQuitarse(const SF *sf, uint32_t i) {
    const AlcanceSF alcance = Alcance(sf);
    const EntradaSF *entradas = Entradas(sf);
    const uint64_t libres = sf->libres;
    if (sf->numFicheros > alcance.entradas || libres + entradas[i].tam > MaxLibres(sf)) return false;
    uint64_t fin = NuevoDesplazamiento(sf, i);
    for (uint32_t j = i + 1; j < sf->numFicheros; j++) {
        const uint64_t tam = entradas[j].tam;
        fin += tam;
        if (fin > alcance.datos || entradas[j].desplazamiento + tam > alcance.datos) return false;
    }
    return true;
}

} // namespace

int EsValidoSF(const void *dir) {
    const SF *sf = static_cast<const SF *>(dir);
    if (!sf || sf->magico != kMagicoSF || sf->numFicheros > sf->capacidad) return 0;
    return sf->libres <= MaxLibres(sf);
}

int EspacioInsuficiente(uint32_t capacidad, uint64_t tam) { return tam <= TamanoSF(capacidad); }

AlcanceSF Alcance(const SF *sf) {
    const uint64_t bytes = BytesBloque(sf), fijo = TamanoSF(sf->capacidad);
    return {bytes < sizeof *sf ? 0 : (bytes - sizeof *sf) / sizeof(EntradaSF),
            bytes < fijo ? 0 : std::min<uint64_t>(bytes - fijo, UINT32_MAX)};
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

uint64_t NuevoDesplazamiento(const SF *sf, uint32_t i) {
    if (i == 0) return 0;
    const EntradaSF &anterior = Entradas(sf)[i - 1];
    return uint64_t{anterior.desplazamiento} + anterior.tam;
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
    const time_t fecha = BytesBloque(sf) < sizeof *sf ? 0 : sf->fecha; // the block may end before it
    Imprimir("SF de %u bytes con capacidad para %u ficheros %s\n", sf->tamTotal, sf->capacidad,
             TextoFecha(fecha));
    Imprimir("      %u bytes desponibles. Total %u fichero(s) \n", sf->libres, sf->numFicheros);
    const uint64_t num = EntradasEnUso(sf);
    for (uint32_t i = 0; i < num; i++) {
        const EntradaSF &entrada = Entradas(sf)[i];
        // The precision stops at the end of the field a name that another program left without its null.
        Imprimir("(%p): %10u bytes  %s %.*s\n", static_cast<void *>(DirPrincipioDatosFichero(sf, i)),
                 entrada.tam, TextoFecha(entrada.fecha), static_cast<int>(kMaxNombreSF), entrada.nombre);
    }
}

int BuscarFicheroSF(const SF *sf, const char *nombre) {
    const size_t n = strlen(nombre);
    if (n > kMaxNombreSF) return Fallo(ENOENT);
    // The first 8 characters at once, those beyond the end of `nombre` masked: they settle most comparisons.
    uint64_t inicio = 0, mascara = 0;
    const size_t enInicio = std::min(n, sizeof inicio);
    memcpy(&inicio, nombre, enInicio);
    memset(&mascara, 0xff, enInicio);
    const EntradaSF *entradas = Entradas(sf);
    const uint64_t num = EntradasEnUso(sf);
    for (size_t i = 0; i < num; i++) {
        uint64_t suyo;
        memcpy(&suyo, entradas[i].nombre, sizeof suyo);
        if ((suyo & mascara) == inicio && memcmp(entradas[i].nombre, nombre, n) == 0)
            return static_cast<int>(i);
    }
    return Fallo(num < sf->numFicheros ? EIO : ENOENT);
}

int BorrarFicheroSF(const Idfich &id) {
    SF *sf = DirSF(id);
    if (!EsValidoSF(sf)) return Fallo(ENXIO);
    const int encontrado = BuscarFicheroSF(sf, id.nombre);
    if (encontrado == -1) return -1;
    const uint32_t i = static_cast<uint32_t>(encontrado);
    if (!PuedeQuitarse(sf, i)) return Fallo(EIO);
    EntradaSF *entradas = Entradas(sf);
    unsigned char *datos = DirPrincipioDatos(sf);
    const uint32_t tam = entradas[i].tam;
    uint32_t fin = static_cast<uint32_t>(NuevoDesplazamiento(sf, i));
    const uint32_t quedan = sf->numFicheros - 1;
    memmove(&entradas[i], &entradas[i + 1], (quedan - i) * sizeof *entradas); // the old last one stays
    for (uint32_t j = i; j < quedan; j++) {
        memmove(datos + fin, datos + entradas[j].desplazamiento, entradas[j].tam);
        entradas[j].desplazamiento = fin;
        fin += entradas[j].tam;
    }
    sf->numFicheros = quedan;
    sf->libres += tam;
    return 0;
}
