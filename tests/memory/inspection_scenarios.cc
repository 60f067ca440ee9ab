// SPDX-License-Identifier: MIT

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// The dump of `bytes` at `dir`, the last row included even when it is empty.
std::string Volcado(const std::string &dir, const std::string &bytes) {
    std::string texto =
        "Volcando " + std::to_string(bytes.size()) + " bytes desde la direccion " + dir + "\n";
    for (size_t i = 0; i <= bytes.size(); i += 25) {
        std::string caracteres, valores;
        for (char c : bytes.substr(i, 25)) {
            char valor[8];
            snprintf(valor, sizeof valor, " %02x", static_cast<unsigned char>(c));
            valores += valor;
            caracteres += c == '\n' ? " \\n" : c >= 32 && c <= 126 ? std::string("  ") + c : "   ";
        }
        texto += caracteres + "\n" + valores + "\n";
    }
    return texto;
}

bool Muerto(int estado, int senal) { return WIFSIGNALED(estado) && WTERMSIG(estado) == senal; }

TEST(Inspection, ADumpHasRowsOf25BytesAndAlwaysALastRow) {
    const DirectorioTemporal dir;
    static constexpr char texto[] = "Hola\n\0\x7f\xf1~ mundo, y algo mas que llene dos filas enteras";
    const std::string bytes(texto, sizeof texto);
    EscribirFichero(dir / "f", bytes);
    Sesion s;
    const std::string a = Direccion(s.Linea("mmap " + dir / "f" + " r"));
    for (size_t n : {0u, 1u, 25u, 26u, 50u, 54u})
        EXPECT_EQ(s.Linea("memdump " + a + " " + std::to_string(n)), Volcado(a, bytes.substr(0, n)));
    EXPECT_EQ(s.Linea("memdump " + a), Volcado(a, bytes.substr(0, 25)));
}

TEST(Inspection, MemoryAndFilesGetWhatTheCommandsSayOrNothing) {
    const DirectorioTemporal dir;
    EscribirFichero(dir / "f", "0123456789");
    Sesion s({.directorio = dir.ruta()});
    const std::string a = Direccion(s.Linea("malloc 5000")), b = Direccion(s.Linea("malloc 5000"));
    const std::string donde = " a partir de la direccion " + a + "\n", largo(4000, 'x');
    const std::pair<std::string, std::string> filas[] = {
        {"memfill " + b + " 129 '-'",
         "Llenando 129 bytes de memoria con el byte  -(2d) a partir de la direccion " + b + "\n"},
        {"memfill " + a, "Llenando 128 bytes de memoria con el byte  A(41)" + donde},
        {"memfill " + a + " 10 10 4", "Llenando 10 bytes de memoria con el byte \\n(0a)" + donde},
        {"memfill " + a + " 10 66 0", "Paso no valido: 0\n"},
        {"memcopy " + a + " " + b, "Copiando 128 bytes de " + a + " a " + b + "\n"},
        {"memdump " + b + " 129", Volcado(b, "\nAAA\nAAA\n" + std::string(119, 'A') + "-")},
        {"stringcopy " + a + " hola   mundo\t!", "Copiando hola mundo ! en " + a + "\n"},
        {"memdump " + a + " 14", Volcado(a, std::string("hola mundo !\0A", 14))},
        {"stringcopy " + a + " " + largo, "Copiando " + largo + " en " + a + "\n"},
        {"readfile f " + a + " -1", "leidos 10 bytes de f en " + a + "\n"},
        {"i-o read f " + a + " 4", "leidos 4 bytes de f en " + a + "\n"},
        {"readfile f 0", "Imposible leer fichero: Bad address\n"},
        {"i-o write g " + a + " 11", "escritos 11 bytes en g desde " + a + "\n"},
        {"writefile g " + a + " 3", "Imposible escribir fichero: File exists\n"},
        {"writefile -o f " + a + " 3", "escritos 3 bytes en f desde " + a + "\n"},
        {"writefile h 0 3", "Imposible escribir fichero: Bad address\n"},
        {"writefile -o f " + a, "faltan parametros\n"},
    };
    for (const auto &[linea, respuesta] : filas) EXPECT_EQ(s.Linea(linea), respuesta) << linea;
    EXPECT_EQ(LeerFichero(dir / "f") + LeerFichero(dir / "g"), "0120123456789x");
}

TEST(Inspection, AWildAddressFaultsAfterEverythingBeforeItWasPrinted) {
    SALTAR_SI_SANEADO();
    static constexpr std::pair<const char *, const char *> filas[] = {
        {"memdump 0", "Volcando 25 bytes desde la direccion (nil)\n"},
        {"memfill xyz 5 1 2", "el byte   (01) a partir de la direccion (nil)\n"},
        {"memcopy 0 0 8", "listo>"},
        {"stringcopy 0x10 hola", "listo>"}};
    for (const auto &[linea, final] : filas) {
        const Resultado r = Ejecutar(std::string("prompt listo>\n") + linea + "\n");
        EXPECT_TRUE(Muerto(r.estado, SIGSEGV)) << linea;
        EXPECT_EQ(r.salida.substr(r.salida.size() - strlen(final)), final) << linea;
    }
}

TEST(Inspection, AFaultInTheMiddleOfADumpLosesNoEarlierRow) {
    SALTAR_SI_SANEADO();
    const DirectorioTemporal dir;
    const auto pagina = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    // The row that crosses into the missing page is a whole one, or the rest.
    for (size_t n : {2 * pagina, pagina / 25 * 25 + 24}) {
        EscribirFichero(dir / "f", std::string(2 * pagina, 'm'));
        Sesion s;
        const std::string a = Direccion(s.Linea("mmap " + dir / "f" + " r"));
        ASSERT_EQ(truncate((dir / "f").c_str(), static_cast<off_t>(pagina)), 0);
        s.Enviar("memdump " + a + " " + std::to_string(n) + "\n");
        std::string resto;
        EXPECT_TRUE(Muerto(s.EsperarFin(&resto), SIGBUS));
        // The heading, and the rows of 152 characters before that one.
        const std::string todo = Volcado(a, std::string(n, 'm'));
        EXPECT_EQ(resto, todo.substr(0, todo.find('\n') + 1 + pagina / 25 * 152));
    }
}

TEST(Inspection, RecursionShowsAFrameALineUntilTheStackEnds) {
    Sesion s;
    const std::string texto = s.Linea("recurse 1"), estatico = ", arr estatico " + Direccion(texto, 2) + "\n";
    EXPECT_EQ(texto, "parametro:  1(" + Direccion(texto, 0) + ") array " + Direccion(texto, 1) + estatico +
                         "parametro:  0(" + Direccion(texto, 3) + ") array " + Direccion(texto, 4) +
                         estatico);
    SALTAR_SI_SANEADO();
    const Resultado r = Ejecutar("recurse 100000\n", {.antesDeExec = [] {
                                     const struct rlimit pila = {1 << 20, 1 << 20};
                                     setrlimit(RLIMIT_STACK, &pila);
                                 }});
    EXPECT_TRUE(Muerto(r.estado, SIGSEGV));
    // Some 250 frames fit, each with its array; the last line that was printed is whole.
    const long quedaban = std::stol(r.salida.substr(r.salida.rfind("parametro:") + 10));
    EXPECT_TRUE(quedaban < 100000 - 200 && quedaban > 100000 - 512) << quedaban;
    EXPECT_EQ(r.salida.back(), '\n');
}

} // namespace
