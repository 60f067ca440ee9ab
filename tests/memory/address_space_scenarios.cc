// SPDX-License-Identifier: MIT

#include <sys/stat.h>

#include <cstdio>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(AddressSpace, EveryAddressLiesInItsRegionAndOrder) {
    Sesion s;
    const std::string todo = s.Linea("mem");
    const std::string globales = todo.substr(todo.find("Variables globales"));
    EXPECT_EQ(globales.substr(globales.find("Funciones")), s.Linea("mem -funcs") + s.Linea("mem -blocks"));
    s.Seguir({{"mem -all", "~*" + globales}, {"mem -vars", "~Variables locales*\n"}});
    std::string esperado;
    unsigned long v[21];
    static constexpr const char *titulos[] = {
        "Variables locales   ", "Variables globales  ", "Var (N.I.)globales  ", "Variables staticas  ",
        "Var (N.I.)staticas  ", "Funciones programa  ", "Funciones libreria  "};
    for (int i = 0; i < 21; i++) {
        v[i] = Valor(Direccion(todo, i));
        char direccion[32];
        snprintf(direccion, sizeof direccion, "%#18lx%c", v[i], i % 3 == 2 ? '\n' : ',');
        esperado += (i % 3 == 0 ? titulos[i / 3] : std::string()) + direccion;
    }
    EXPECT_TRUE(todo.starts_with(esperado)) << todo;
    // Locals from the highest down; h, pi, e of pi < e < h; statics upwards; all next to each other.
    static constexpr int vecinas[][3] = {{2, 1, 4},  {1, 0, 4},   {4, 5, 4},  {5, 3, 4},
                                         {9, 10, 4}, {10, 11, 4}, {13, 14, 8}};
    for (const auto &[menor, mayor, distancia] : vecinas)
        EXPECT_EQ(v[mayor] - v[menor], static_cast<unsigned long>(distancia)) << menor;

    SALTAR_SIN_PROC();
    EXPECT_EQ(s.Region(v[0]), "rw-p [stack]");
    const std::string programa = s.Region(v[15]).substr(5);
    for (int i : {15, 16, 17}) EXPECT_EQ(s.Region(v[i]), "r-xp " + programa) << i;
    for (int i : {3, 9}) EXPECT_EQ(s.Region(v[i]), "rw-p " + programa) << i;
    // Zero-filled data follows the initialised data of the program; the file may end between them.
    for (int nula : {6, 12})
        EXPECT_TRUE(s.Region(v[nula]).starts_with("rw-p") && v[nula] > v[3] && v[nula] > v[9] &&
                    v[nula] - v[3] < 1ul << 24)
            << nula;
    SALTAR_SI(kSaneado, "the sanitizers put functions of their own before the library's");
    for (int i : {18, 19, 20}) EXPECT_TRUE(Casa(s.Region(v[i]), "r-xp *libc*")) << s.Region(v[i]);
}

TEST(AddressSpace, TheMapIsShownByTheFirstToolThatExists) {
    DirectorioTemporal dir;
    Sesion s({.entorno = {"PATH=" + dir.ruta()}});
    const std::string errores = "cannot execute pmap (linux, solaris): No such file or directory\n"
                                "cannot execute procstat (FreeBSD): No such file or directory\n"
                                "cannot execute procmap (OpenBSD): No such file or directory\n";
    s.Seguir({{"mem -pmap", errores + "cannot execute vmmap (Mac-OS): No such file or directory\n"},
              {"mem -x", "Opcion -x no contemplada\n"}});
    EscribirFichero(dir / "vmmap", "#!/bin/sh\necho \"mapa $*\"\n");
    chmod((dir / "vmmap").c_str(), 0755);
    EXPECT_EQ(s.Linea("mem -pmap"), errores + "mapa -interleave " + std::to_string(s.pid()) + "\n");
}

} // namespace
