#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// The n-th address of a text.
unsigned long Numero(const std::string &texto, int n) { return std::stoul(Direccion(texto, n), nullptr, 16); }

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
    const std::string texto = s.Linea("mem -vars"), funciones = s.Linea("mem -funcs");
    unsigned long v[15];
    for (int i = 0; i < 15; i++) v[i] = Numero(texto, i);
    char esperado[512];
    snprintf(esperado, sizeof esperado,
             "Variables locales   %#18lx,%#18lx,%#18lx\nVariables globales  %#18lx,%#18lx,%#18lx\n"
             "Var (N.I.)globales  %#18lx,%#18lx,%#18lx\nVariables staticas  %#18lx,%#18lx,%#18lx\n"
             "Var (N.I.)staticas  %#18lx,%#18lx,%#18lx\n",
             v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9], v[10], v[11], v[12], v[13], v[14]);
    EXPECT_EQ(texto, esperado);
    // Locals from the highest down; h, pi, e of pi < e < h; statics upwards; all next to each other.
    static constexpr struct {
        int menor, mayor, distancia;
    } vecinas[] = {{2, 1, 4},  {1, 0, 4},   {4, 5, 4},   {5, 3, 4},
                   {9, 10, 4}, {10, 11, 4}, {12, 13, 8}, {13, 14, 8}};
    for (const auto &par : vecinas)
        EXPECT_EQ(v[par.mayor] - v[par.menor], static_cast<unsigned long>(par.distancia)) << par.menor;

    if (access("/proc/self/maps", R_OK) == -1) GTEST_SKIP() << "no /proc here";
    EXPECT_EQ(Region(s.pid(), v[0]), "rw-p [stack]");
    const std::string programa = Region(s.pid(), Numero(funciones, 0)).substr(5);
    EXPECT_EQ(Region(s.pid(), Numero(funciones, 0)), "r-xp " + programa);
    for (int i : {3, 4, 5, 9, 10, 11}) EXPECT_EQ(Region(s.pid(), v[i]), "rw-p " + programa) << i;
    // Zero-filled data follows the initialised data of the program; the file may end between them.
    for (int nula : {6, 7, 8, 12, 13, 14}) {
        EXPECT_EQ(Region(s.pid(), v[nula]).substr(0, 4), "rw-p") << nula;
        for (int inicial : {3, 9}) EXPECT_GT(v[nula], v[inicial]);
        EXPECT_LT(v[nula] - v[3], 1ul << 24);
    }
    for (int i : {1, 2}) EXPECT_EQ(Region(s.pid(), Numero(funciones, i)), "r-xp " + programa);
    if (kSaneado) return; // the sanitizers put functions of their own before the library's
    for (int i : {3, 4, 5}) {
        const std::string biblioteca = Region(s.pid(), Numero(funciones, i));
        EXPECT_EQ(biblioteca.substr(0, 5), "r-xp ");
        EXPECT_NE(biblioteca.substr(5), programa);
    }
}

TEST(AddressSpace, TheWholePictureIsVariablesFunctionsAndBlocks) {
    Sesion s;
    s.Linea("malloc 33");
    const std::string todo = s.Linea("mem");
    EXPECT_EQ(s.Linea("mem -all -x"), todo);
    EXPECT_EQ(todo.substr(todo.find("Funciones")), s.Linea("mem -funcs") + s.Linea("mem -blocks"));
    const std::string variables = s.Linea("mem -vars").substr(1),
                      globales = variables.substr(variables.find('V'));
    EXPECT_NE(todo.find(globales + "Funciones"), std::string::npos);
    EXPECT_EQ(s.Linea("mem -x"), "Opcion -x no contemplada\n");
}

TEST(AddressSpace, TheMapIsShownByTheFirstToolThatExists) {
    DirectorioTemporal dir;
    Opciones o;
    o.entorno = {"PATH=" + dir.ruta()};
    Sesion s(o);
    std::string errores = "cannot execute pmap (linux, solaris): No such file or directory\n"
                          "cannot execute procstat (FreeBSD): No such file or directory\n"
                          "cannot execute procmap (OpenBSD): No such file or directory\n";
    EXPECT_EQ(s.Linea("mem -pmap"), errores + "cannot execute vmmap (Mac-OS): No such file or directory\n");
    EscribirFichero(dir / "vmmap", "#!/bin/sh\necho \"mapa $*\"\n");
    chmod((dir / "vmmap").c_str(), 0755);
    EXPECT_EQ(s.Linea("mem -pmap"), errores + "mapa -interleave " + std::to_string(s.pid()) + "\n");
}

} // namespace
