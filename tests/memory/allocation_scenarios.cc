// SPDX-License-Identifier: MIT

#include <sys/shm.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

std::string Cabecera(const Sesion &s, const std::string &que) {
    return "******Lista de bloques asignados" + que + " para el proceso " + std::to_string(s.pid()) + "\n";
}

/// What the process has mapped, as the system tells it; empty where there is no /proc.
std::string Mapa(const Sesion &s) { return LeerFichero("/proc/" + std::to_string(s.pid()) + "/maps"); }

TEST(Allocation, CommandsWithoutWordsListTheirKindAndRefusalsSayWhy) {
    Sesion s;
    const std::string malloc = Cabecera(s, " malloc"), shared = Cabecera(s, " shared"),
                      mmap = Cabecera(s, " mmap"), todos = Cabecera(s, ""),
                      clave = std::to_string(ClaveUnica()),
                      noClave = "Imposible asignar memoria compartida clave ";
    const std::pair<std::string, std::string> filas[] = {
        {"memmalloc", malloc},
        {"shared -create 5", shared},
        {"deallocate -mmap", mmap},
        {"free 0", todos},
        {"mem -blocks", todos},
        {"memdemalloc abc", "No se asignan bloques de 0 bytes\n"},
        {"shared -create 5 0", "No se asignan bloques de 0 bytes\n"},
        {"shared 4294967296", noClave + "0: Invalid argument\n"},
        {"memshared " + clave, noClave + clave + ": No such file or directory\n"},
        {"deallocate -delkey 4294967296", "      delkey necesita clave_valida\n"},
        {"shared -delkey " + clave,
         "shmget: imposible obtener memoria compartida: No such file or directory\n"},
        {"mmap /no/existe r", "Imposible mapear fichero: No such file or directory\n"},
        {"deallocate 0x10", "Direccion 0x10 no asignada con malloc, shared o mmap\n"},
        {"asignar -free 5", "uso: asignar [-malloc|-shared|-createshared|-mmap] ....\n"}};
    for (const auto &[linea, respuesta] : filas) EXPECT_EQ(s.Linea(linea), respuesta) << linea;
    // The sanitizers add a line of their own.
    const std::string excesivo = "Imposible obtener memoria con malloc: Cannot allocate memory\n";
    EXPECT_NE(s.Linea("malloc -1").find(excesivo), std::string::npos);
}

TEST(Allocation, ASegmentIsSharedByKeyAndOutlivesItsKeyWhileAttached) {
    Sesion s, otra;
    const long k = -ClaveUnica();
    const std::string clave = std::to_string(static_cast<unsigned long>(k)); // as the system keeps it
    const std::string creada = s.Linea("shared -create " + std::to_string(k) + " 100");
    EXPECT_EQ(creada, "Asignados 100 bytes en " + Direccion(creada) + "\n");
    EXPECT_EQ(s.Linea("memcreateshared " + clave + " 100"),
              "Imposible asignar memoria compartida clave " + clave + ": File exists\n");
    // The key of a number above 32 bits is its low half.
    const std::string asignada = s.Linea("memshared " + std::to_string((9L << 32) + k));
    const std::string a = Direccion(asignada), ajena = Direccion(otra.Linea("allocate -shared " + clave));
    EXPECT_EQ(asignada, "Memoria compartida de clave " + clave + "  en " + a + "\n");
    EXPECT_EQ(s.Linea("delkey " + clave), "");
    EXPECT_EQ(s.Linea("shared -free " + clave), ""); // the earlier of the two
    const std::string lista = s.Linea("shared"), segmento = " shared (key " + clave + ")\n";
    char fila[64];
    snprintf(fila, sizeof fila, "%20s  %15d ", a.c_str(), 100);
    EXPECT_EQ(lista.find(Cabecera(s, " shared") + fila), 0u) << lista;
    EXPECT_EQ(lista.find(segmento), (Cabecera(s, " shared") + fila).size() + 12) << lista; // after the date
    s.Linea("stringcopy " + a + " comun");
    EXPECT_NE(otra.Linea("memdump " + ajena).find("  c  o  m  u  n"), std::string::npos);
    EXPECT_EQ(s.Linea("free " + a), "");
    EXPECT_EQ(s.Linea("shared"), Cabecera(s, " shared"));
    EXPECT_EQ(Mapa(s).find("/SYSV"), std::string::npos);
}

TEST(Allocation, MappingsGiveWhatTheirPermissionAsksForAndLeaveNoDescriptor) {
    const DirectorioTemporal dir;
    EscribirFichero(dir / "f", "0123456789");
    EscribirFichero(dir / "vacio", "");
    ASSERT_EQ(mkfifo((dir / "cola").c_str(), 0600), 0);
    Sesion s({.directorio = dir.ruta()});
    const std::string antes = s.Linea("listopen"),
                      nada = "No hay bloque de ese tamano asignado con malloc\n"
                             "No hay bloque de esa clave mapeado en el proceso\nFichero ./f no mapeado\n";
    // What may be read can be written to a file, what may be written can be read into; neither faults.
    static constexpr struct {
        const char *perm, *modo;
        bool lee, escribe;
    } filas[] = {{"", "O_RDONLY ", false, false},
                 {" rwxr", "O_RDONLY ", false, false},
                 {" wr", "O_RDWR ", true, true},
                 {" -r", "O_RDONLY ", true, false}};
    for (const auto &f : filas) {
        const std::string hecho = s.Linea(std::string("mmap f") + f.perm), a = Direccion(hecho);
        EXPECT_EQ(hecho, "fichero f mapeado en " + a + "\n");
        EXPECT_NE(s.Linea("mmap").find(" f  (descriptor 3)\n"), std::string::npos) << f.perm;
        EXPECT_NE(s.Linea("listopen").find(std::string("-> Mapeo de f ") + f.modo), std::string::npos);
        EXPECT_EQ(s.Linea("writefile -o copia " + a + " 10")[0], f.lee ? 'e' : 'I') << f.perm;
        EXPECT_EQ(s.Linea("readfile f " + a)[0], f.escribe ? 'l' : 'I') << f.perm;
        EXPECT_EQ(s.Linea("malloc -free 10") + s.Linea("shared -free 3") + s.Linea("mmap -free ./f"), nada);
        EXPECT_EQ(s.Linea(f.escribe ? "free " + a : "mmap -free f"), "");
        EXPECT_EQ(s.Linea("listopen"), antes) << f.perm;
        EXPECT_EQ(Mapa(s).find(dir / "f"), std::string::npos) << f.perm;
    }
    EXPECT_EQ(s.Linea("mmap vacio r"), "Imposible mapear fichero: Invalid argument\n");
    EXPECT_EQ(s.Linea("mmap . r"), "Imposible mapear fichero: No such device\n");
    EXPECT_EQ(s.Linea("mmap cola r"), "Imposible mapear fichero: No such device\n");
    EXPECT_EQ(s.Linea("open f"), "Anadida entrada 3 a la tabla ficheros abiertos\n");
}

TEST(Allocation, TheListIsFullAt4096BlocksAndExitReleasesThemAll) {
    const DirectorioTemporal dir;
    const int clave = ClaveUnica();
    EscribirFichero(dir / "f", "x");
    std::string guion = "mmap f r\nshared -create " + std::to_string(clave) + " 10\n";
    for (int i = 0; i < 4094; i++) guion += "malloc 1\n";
    if (!kSaneado) guion += "malloc 77\n"; // unrecorded, it would be a leak
    guion += "mmap f r\n";                 // unrecorded too, without a word
    const Resultado r = Ejecutar(guion + "malloc\nexit\n", {.directorio = dir.ruta()});
    EXPECT_EQ(r.estado, 0) << r.salida.substr(r.salida.size() - 2000); // the sanitizers tell leaks in it
    const std::string llena = "\nImposible insertar en lista: No space left on device\n";
    EXPECT_EQ(r.salida.find(llena) != std::string::npos, !kSaneado);
    EXPECT_EQ(r.salida.find(llena), r.salida.rfind(llena));
    int filas = 0;
    for (size_t pos = 0; (pos = r.salida.find(" malloc\n", pos)) != std::string::npos; pos++) filas++;
    EXPECT_EQ(filas, 4094);
    EXPECT_EQ(shmctl(shmget(clave, 0, 0), IPC_RMID, nullptr), 0) << "detached, not removed";
}

} // namespace
