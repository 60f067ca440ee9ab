// SPDX-License-Identifier: MIT

#include <sys/shm.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

std::string Cabecera(const Sesion &s, const std::string &que) {
    return "******Lista de bloques asignados" + que + " para el proceso " + std::to_string(s.pid()) + "\n";
}

TEST(Allocation, ASegmentIsSharedByTheKeyThatTheSystemKeeps) {
    Sesion s, otra;
    const long k = -ClaveUnica();
    const std::string clave = std::to_string(static_cast<unsigned long>(k));
    s.Linea("shared -create " + std::to_string(k) + " 100");
    // The key of a number above 32 bits is its low half.
    const time_t antes = time(nullptr);
    const std::string asignada = s.Linea("memshared " + std::to_string((9L << 32) + k)),
                      a = Direccion(asignada);
    EXPECT_EQ(asignada, "Memoria compartida de clave " + clave + "  en " + a + "\n");
    const std::string ajena = otra.Dir("allocate -shared " + clave);
    s.Seguir({{"delkey " + clave, ""}, {"shared -free " + clave, ""}}); // the earlier of the two
    char fila[64];
    snprintf(fila, sizeof fila, "%20s  %15d ", a.c_str(), 100);
    EXPECT_TRUE(
        DeAhora(s.Linea("shared"), antes, (fila + ("%b %e %H:%M shared (key " + clave + ")\n")).c_str()));
    s.Linea("stringcopy " + a + " comun");
    EXPECT_TRUE(Contiene(otra.Linea("memdump " + ajena), "  c  o  m  u  n"));
}

TEST(Allocation, ASegmentThatCannotBeAttachedIsNotLeft) {
    SALTAR_SI_SANEADO();
    Sesion s({.antesDeExec = Limitar<RLIMIT_AS, 100'000'000>});
    const std::string clave = std::to_string(ClaveUnica()),
                      falla = "Imposible asignar memoria compartida clave " + clave + ": ";
    s.Seguir({{"memcreateshared " + clave + " 200000000", falla + "Cannot allocate memory\n"},
              {"memshared " + clave, falla + "No such file or directory\n"}});
}

TEST(Allocation, WhatIsReleasedIsGoneFromTheProcess) {
    SALTAR_SI(kSaneado, "the sanitizers keep what is freed");
    SALTAR_SIN_PROC();
    Sesion s;
    EscribirFichero(s / "f", "x");
    const std::string clave = std::to_string(ClaveUnica());
    const Paso filas[] = {{"malloc 1000000", "memdemalloc 1000000"},
                          {"allocate -malloc 9000000", "free "},
                          {"memcreateshared " + clave + " 100", "memdeshared " + clave},
                          {"shared " + clave, "free "},
                          {"memmmap f r", "memdemmap f"},
                          {"allocate -mmap f rw", "deallocate "}};
    for (const auto &[obtener, soltar] : filas) {
        const std::string a = s.Dir(obtener);
        EXPECT_NE(s.Region(Valor(a)), "") << obtener;
        EXPECT_EQ(s.Linea(soltar.ends_with(" ") ? soltar + a : soltar), "");
        EXPECT_EQ(s.Region(Valor(a)), "") << soltar;
        EXPECT_EQ(s.Linea("mem -blocks"), Cabecera(s, "")) << soltar;
    }
    EXPECT_EQ(s.Linea("borrarclave " + clave), "");
}

TEST(Allocation, TheListIsFullAt4096BlocksAndExitReleasesThemAll) {
    const DirectorioTemporal dir;
    const int clave = ClaveUnica();
    EscribirFichero(dir / "f", "x");
    std::string guion = "mmap f r\nshared -create " + std::to_string(clave) + " 10\n";
    for (int i = 0; i < 4094; i++) guion += "malloc 1\n";
    if (!kSaneado) guion += "malloc 77\n"; // unrecorded, it would be a leak
    guion += "mmap f r\n";                 // unrecorded too, without a word
    const Resultado r = Ejecutar(guion + "malloc -free 1\nmalloc\nexit\n", {.directorio = dir.ruta()});
    EXPECT_EQ(r.estado, 0) << r.salida.substr(r.salida.size() - 2000); // the sanitizers tell leaks in it
    EXPECT_EQ(Veces(r.salida, "\nImposible insertar en lista: No space left on device\n"), kSaneado ? 0 : 1);
    EXPECT_EQ(Veces(r.salida, " malloc\n"), 4093);
    EXPECT_EQ(shmctl(shmget(clave, 0, 0), IPC_RMID, nullptr), 0) << "detached, not removed";
}

} // namespace
