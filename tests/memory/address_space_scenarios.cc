// SPDX-License-Identifier: MIT

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// What /proc says of the region of process `pid` that holds `dir`: permissions and name ("" anonymous).
std::string Region(pid_t pid, unsigned long dir) {
    std::ifstream mapa("/proc/" + std::to_string(pid) + "/maps");
    for (std::string linea; std::getline(mapa, linea);) {
        unsigned long desde, hasta;
        char permisos[8], nombre[512] = "";
        if (sscanf(linea.c_str(), "%lx-%lx %4s %*s %*s %*s %511s", &desde, &hasta, permisos, nombre) >= 3 &&
            desde <= dir && dir < hasta)
            return std::string(permisos) + " " + nombre;
    }
    return "";
}

TEST(AddressSpace, EveryAddressLiesInItsRegionAndOrder) {
    Sesion s;
    const std::string todo = s.Linea("mem");
    EXPECT_EQ(todo.substr(todo.find("Funciones")), s.Linea("mem -funcs") + s.Linea("mem -blocks"));
    std::string esperado;
    unsigned long v[21];
    static constexpr const char *titulos[] = {
        "Variables locales   ", "Variables globales  ", "Var (N.I.)globales  ", "Variables staticas  ",
        "Var (N.I.)staticas  ", "Funciones programa  ", "Funciones libreria  "};
    for (int i = 0; i < 21; i++) {
        v[i] = std::stoul(Direccion(todo, i), nullptr, 16);
        char direccion[32];
        snprintf(direccion, sizeof direccion, "%#18lx%c", v[i], i % 3 == 2 ? '\n' : ',');
        esperado += (i % 3 == 0 ? titulos[i / 3] : std::string()) + direccion;
    }
    EXPECT_EQ(todo.find(esperado), 0u) << todo;
    // Locals from the highest down; h, pi, e of pi < e < h; statics upwards; all next to each other.
    static constexpr int vecinas[][3] = {{2, 1, 4},  {1, 0, 4},   {4, 5, 4},  {5, 3, 4},
                                         {9, 10, 4}, {10, 11, 4}, {13, 14, 8}};
    for (const auto &[menor, mayor, distancia] : vecinas)
        EXPECT_EQ(v[mayor] - v[menor], static_cast<unsigned long>(distancia)) << menor;

    if (access("/proc/self/maps", R_OK) == -1) GTEST_SKIP() << "no /proc here";
    EXPECT_EQ(Region(s.pid(), v[0]), "rw-p [stack]");
    const std::string programa = Region(s.pid(), v[15]).substr(5);
    for (int i : {15, 16, 17}) EXPECT_EQ(Region(s.pid(), v[i]), "r-xp " + programa) << i;
    for (int i : {3, 9}) EXPECT_EQ(Region(s.pid(), v[i]), "rw-p " + programa) << i;
    // Zero-filled data follows the initialised data of the program; the file may end between them.
    for (int nula : {6, 12}) {
        EXPECT_EQ(Region(s.pid(), v[nula]).substr(0, 4), "rw-p") << nula;
        EXPECT_TRUE(v[nula] > v[3] && v[nula] > v[9] && v[nula] - v[3] < 1ul << 24) << nula;
    }
    if (kSaneado) return; // the sanitizers put functions of their own before the library's
    for (int i : {18, 19, 20}) {
        const std::string biblioteca = Region(s.pid(), v[i]);
        EXPECT_TRUE(biblioteca.substr(0, 5) == "r-xp " && biblioteca.substr(5) != programa) << biblioteca;
    }
}

TEST(AddressSpace, TheMapIsShownByTheFirstToolThatExists) {
    DirectorioTemporal dir;
    Sesion s({.entorno = {"PATH=" + dir.ruta()}});
    std::string errores = "cannot execute pmap (linux, solaris): No such file or directory\n"
                          "cannot execute procstat (FreeBSD): No such file or directory\n"
                          "cannot execute procmap (OpenBSD): No such file or directory\n";
    EXPECT_EQ(s.Linea("mem -pmap"), errores + "cannot execute vmmap (Mac-OS): No such file or directory\n");
    EscribirFichero(dir / "vmmap", "#!/bin/sh\necho \"mapa $*\"\n");
    chmod((dir / "vmmap").c_str(), 0755);
    EXPECT_EQ(s.Linea("mem -pmap"), errores + "mapa -interleave " + std::to_string(s.pid()) + "\n");
    EXPECT_EQ(s.Linea("mem -x"), "Opcion -x no contemplada\n");
}

} // namespace
