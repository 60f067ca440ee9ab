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

int ListarDirectorio(const DirectorioListado &dir, int corto, int hid, int rec, int link, int acc) {
    if (rec == 2) ListarSubdirectorios(dir, corto, hid, rec, link, acc);
    const int resultado = ListarDirectorioSimple(dir, corto, hid, link, acc);
    const int motivo = errno;
    if (rec == 1) ListarSubdirectorios(dir, corto, hid, rec, link, acc);
    errno = motivo;
    return resultado;
}

int ListarDirectorioSimple(const DirectorioListado &dir, int corto, int hid, int link, int acc) {
    Directorio d(AbrirDirectorioEn(dir.en, dir.nombre));
    if (!d.Abierto()) return -1;
    Imprimir("************%s\n", dir.ruta);
    while (const dirent *entrada = d.Siguiente()) {
        if (!hid && Oculto(entrada->d_name)) continue;
        EscribirTexto(DetallesFichero(corto, d.df(), entrada->d_name, link, acc));
        EscribirBytes("\n", 1);
    }
    return d.Cerrar();
}

int ListarSubdirectorios(const DirectorioListado &dir, int corto, int hid, int rec, int link, int acc) {
    Directorio d(AbrirDirectorioEn(dir.en, dir.nombre));
    if (!d.Abierto()) return -1;
    while (const dirent *entrada = d.Siguiente()) {
        if (EsPuntoOPuntoPunto(entrada->d_name) || (!hid && Oculto(entrada->d_name))) continue;
        if (!EntradaEsDirectorio(d.df(), entrada)) continue;
        char ruta[kTamRuta];
        if (snprintf(ruta, sizeof ruta, "%s/%s", dir.ruta, entrada->d_name) < static_cast<int>(sizeof ruta))
            ListarDirectorio({d.df(), entrada->d_name, ruta}, corto, hid, rec, link, acc);
        else // a heading that does not fit is not shown under a shorter name
            Imprimir("Error al listar directorio %s/%s:%s\n", dir.ruta, entrada->d_name,
                     strerror(ENAMETOOLONG));
    }
    return d.Cerrar();
}
