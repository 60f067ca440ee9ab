// SPDX-License-Identifier: MIT

#include "base/dates.h"

#include <cstdio>

#include "base/bounded_text.h"
#include "base/synchronisation.h"

namespace {

constexpr long kAnioCero = 1900; // that of tm_year; a long, so that every int can be added to it

constexpr const char *kDias[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr const char *kMeses[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

unsigned zona_ = 1; // how often it has been read, and 1

/// The last text of a form, good for the same date in the same zone.
struct UltimoTexto {
    unsigned zona; // 0: it holds none
    time_t cuando;
    char texto[96];
};

/// Forms the text of `cuando` by `formar`, unless it is the one that is there.
const char *Texto(UltimoTexto *ultimo, time_t cuando, void (*formar)(char *, size_t, const struct tm &)) {
    if (ultimo->zona == zona_ && ultimo->cuando == cuando) return ultimo->texto;
    ultimo->zona = 0; // a recovery jump may leave it half formed
    struct tm partes;
    if (localtime_r(&cuando, &partes)) // without looking for the zone, as localtime() would each time
        formar(ultimo->texto, sizeof ultimo->texto, partes);
    else
        snprintf(ultimo->texto, sizeof ultimo->texto, "%lld", static_cast<long long>(cuando));
    ultimo->cuando = cuando;
    ultimo->zona = zona_;
    return ultimo->texto;
}

} // namespace

void LeerZonaHoraria() {
    SincronizarTrasDanos(); // it is found in the environment, which the user may have written over
    tzset();
    zona_++;
}

const char *Fecha2(time_t t) {
    static UltimoTexto ultimo;
    return Texto(&ultimo, t, [](char *lugar, size_t tam, const struct tm &p) {
        // "%4ld/%02d/%02d-%02d:%02d" by hand: tens of thousands of them go out in one listing.
        TextoAcotado texto(lugar, tam);
        texto.PonerNumero(kAnioCero + p.tm_year, 4);
        texto.Poner('/');
        texto.PonerNumero(p.tm_mon + 1, 2, '0');
        texto.Poner('/');
        texto.PonerNumero(p.tm_mday, 2, '0');
        texto.Poner('-');
        texto.PonerNumero(p.tm_hour, 2, '0');
        texto.Poner(':');
        texto.PonerNumero(p.tm_min, 2, '0');
    });
}

const char *ConvertirDia(time_t t) {
    static UltimoTexto ultimo;
    return Texto(&ultimo, t, [](char *lugar, size_t tam, const struct tm &p) {
        snprintf(lugar, tam, "%02d/%02d/%04ld", p.tm_mday, p.tm_mon + 1, kAnioCero + p.tm_year);
    });
}

const char *ConvertirHora(time_t t) {
    static UltimoTexto ultimo;
    return Texto(&ultimo, t, [](char *lugar, size_t tam, const struct tm &p) {
        snprintf(lugar, tam, "%02d:%02d:%02d", p.tm_hour, p.tm_min, p.tm_sec);
    });
}

const char *fecha(time_t t) {
    static UltimoTexto ultimo;
    return Texto(&ultimo, t, [](char *lugar, size_t tam, const struct tm &p) {
        snprintf(lugar, tam, "%4ld/%02d/%02d %02d:%02d:%d", kAnioCero + p.tm_year, p.tm_mon + 1, p.tm_mday,
                 p.tm_hour, p.tm_min, p.tm_sec);
    });
}

const char *ponFecha(time_t t) {
    static UltimoTexto ultimo;
    return Texto(&ultimo, t, [](char *lugar, size_t tam, const struct tm &p) {
        snprintf(lugar, tam, "%s%3d %02d:%02d", kMeses[p.tm_mon], p.tm_mday, p.tm_hour, p.tm_min);
    });
}

const char *TextoFecha(time_t t) {
    static UltimoTexto ultimo;
    return Texto(&ultimo, t, [](char *lugar, size_t tam, const struct tm &p) {
        snprintf(lugar, tam, "%s %s%3d %02d:%02d:%02d %ld", kDias[p.tm_wday], kMeses[p.tm_mon], p.tm_mday,
                 p.tm_hour, p.tm_min, p.tm_sec, kAnioCero + p.tm_year);
    });
}
