// SPDX-License-Identifier: MIT

#include "files/listing.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/output.h"
#include "files/directory.h"
#include "files/file_details.h"

namespace {

constexpr size_t kTamRuta = 1024;

bool Oculto(const char *nombre) { return nombre[0] == '.'; }

} // namespace

int ListarDirectorio(const DirectorioListado &dir, const OpcionesListado &o) {
    if (o.rec == 2) ListarSubdirectorios(dir, o);
    const int resultado = ListarDirectorioSimple(dir, o);
    const int motivo = errno; // of this directory: what comes of the subdirectories is not told
    if (o.rec == 1) ListarSubdirectorios(dir, o);
    errno = motivo;
    return resultado;
}

int ListarDirectorioSimple(const DirectorioListado &dir, const OpcionesListado &o) {
    Directorio d = AbrirDirectorioEn(dir.en, dir.nombre);
    if (!d.Abierto()) return -1;
    Imprimir("************%s\n", dir.ruta);
    while (const dirent *entrada = d.Siguiente()) {
        if (!o.hid && Oculto(entrada->d_name)) continue;
        EscribirTexto(DetallesFichero(o.corto, d.df(), entrada->d_name, o.link, o.acc));
        EscribirBytes("\n", 1);
    }
    return d.Cerrar();
}

int ListarSubdirectorios(const DirectorioListado &dir, const OpcionesListado &o) {
    Directorio d = AbrirDirectorioEn(dir.en, dir.nombre);
    if (!d.Abierto()) return -1;
    while (const dirent *entrada = d.Siguiente()) {
        if (EsPuntoOPuntoPunto(entrada->d_name) || (!o.hid && Oculto(entrada->d_name))) continue;
        if (!EntradaEsDirectorio(d.df(), entrada)) continue;
        char ruta[kTamRuta];
        if (snprintf(ruta, sizeof ruta, "%s/%s", dir.ruta, entrada->d_name) < static_cast<int>(sizeof ruta))
            ListarDirectorio({d.df(), entrada->d_name, ruta}, o);
        else // a heading that does not fit is not shown under a shorter name
            Imprimir("Error al listar directorio %s/%s:%s\n", dir.ruta, entrada->d_name,
                     strerror(ENAMETOOLONG));
    }
    return d.Cerrar();
}
