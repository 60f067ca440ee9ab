#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// The rows of a dump of `bytes`, the last one included even when it is empty.
std::string Volcado(const std::string &bytes) {
    std::string texto;
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

std::string Volcando(const std::string &dir, size_t n) {
    return "Volcando " + std::to_string(n) + " bytes desde la direccion " + dir + "\n";
}

TEST(Inspection, ADumpHasRowsOf25BytesAndAlwaysALastRow) {
    const DirectorioTemporal dir;
    static constexpr char texto[] = "Hola\n\0\x7f\xf1~ mundo, y algo mas que llene dos filas enteras";
    const std::string bytes(texto, sizeof texto);
    EscribirFichero(dir / "f", bytes);
    Sesion s;
    const std::string a = Direccion(s.Linea("mmap " + dir / "f" + " r"));
    for (size_t n : {0u, 1u, 24u, 25u, 26u, 50u, 54u})
        EXPECT_EQ(s.Linea("memdump " + a + " " + std::to_string(n)),
                  Volcando(a, n) + Volcado(bytes.substr(0, n)));
    EXPECT_EQ(s.Linea("memdump " + a), Volcando(a, 25) + Volcado(bytes.substr(0, 25)));
}

TEST(Inspection, FillsCopiesAndStringsDoWhatTheySay) {
    Sesion s;
    const std::string a = Direccion(s.Linea("malloc 5000")), b = Direccion(s.Linea("malloc 5000"));
    const auto contiene = [&](const std::string &dir, const std::string &bytes) {
        EXPECT_EQ(s.Linea("memdump " + dir + " " + std::to_string(bytes.size())),
                  Volcando(dir, bytes.size()) + Volcado(bytes));
    };
    const std::string donde = " a partir de la direccion " + a + "\n";
    EXPECT_EQ(s.Linea("memfill " + a), "Llenando 128 bytes de memoria con el byte  A(41)" + donde);
    EXPECT_EQ(s.Linea("memfill " + a + " 10 10 4"),
              "Llenando 10 bytes de memoria con el byte \\n(0a)" + donde);
    for (const char *paso : {"0", "-3", "x"})
        EXPECT_EQ(s.Linea("memfill " + a + " 10 66 " + paso), std::string("Paso no valido: ") + paso + "\n");
    contiene(a, "\nAAA\nAAA\n" + std::string(119, 'A'));
    s.Linea("memfill " + b + " 129 '-'");
    EXPECT_EQ(s.Linea("memcopy " + a + " " + b), "Copiando 128 bytes de " + a + " a " + b + "\n");
    contiene(b, "\nAAA\nAAA\n" + std::string(119, 'A') + "-");
    EXPECT_EQ(s.Linea("stringcopy " + a + " hola   mundo\t!"), "Copiando hola mundo ! en " + a + "\n");
    contiene(a, std::string("hola mundo !\0A", 14));
    const std::string largo(4000, 'x');
    EXPECT_EQ(s.Linea("stringcopy " + a + " " + largo), "Copiando " + largo + " en " + a + "\n");
    for (const char *nada : {"memdump", "memfill", "memcopy 0x10", "stringcopy 0x10", "recurse"})
        EXPECT_EQ(s.Linea(nada), "") << nada;
}

TEST(Inspection, FilesAreReadAndWrittenWholeInPartOrNotAtAll) {
    const DirectorioTemporal dir;
    EscribirFichero(dir / "f", "0123456789");
    Opciones o;
    o.directorio = dir.ruta();
    Sesion s(o);
    const std::string a = Direccion(s.Linea("malloc 100"));
    const struct {
        std::string linea, respuesta;
    } filas[] = {{"readfile f " + a, "leidos 10 bytes de f en " + a + "\n"},
                 {"i-o read f " + a + " 4", "leidos 4 bytes de f en " + a + "\n"},
                 {"readfile f " + a + " -1", "leidos 10 bytes de f en " + a + "\n"},
                 {"readfile f 0", "Imposible leer fichero: Bad address\n"},
                 {"readfile nada " + a, "Imposible leer fichero: No such file or directory\n"},
                 {"readfile f", "faltan parametros\n"},
                 {"i-o write g " + a + " 7", "escritos 7 bytes en g desde " + a + "\n"},
                 {"writefile g " + a + " 3", "Imposible escribir fichero: File exists\n"},
                 {"writefile -o f " + a + " 3", "escritos 3 bytes en f desde " + a + "\n"},
                 {"writefile h 0 3", "Imposible escribir fichero: Bad address\n"},
                 {"writefile -o f " + a, "faltan parametros\n"},
                 {"e/s leer f", "uso: e/s [read|write] ......\n"}};
    for (const auto &f : filas) EXPECT_EQ(s.Linea(f.linea), f.respuesta) << f.linea;
    EXPECT_EQ(LeerFichero(dir / "f") + LeerFichero(dir / "g"), "0120123456");
}

TEST(Inspection, AWildAddressFaultsAfterEverythingBeforeItWasPrinted) {
    SALTAR_SI_SANEADO();
    static constexpr struct {
        const char *linea, *final;
    } filas[] = {{"memdump 0", "Volcando 25 bytes desde la direccion (nil)\n"},
                 {"memfill 0 5", "el byte  A(41) a partir de la direccion (nil)\n"},
                 {"memfill xyz 5 1 2", "el byte   (01) a partir de la direccion (nil)\n"},
                 {"memcopy 0 0 8", "listo>"},
                 {"stringcopy 0x10 hola", "listo>"}};
    for (const auto &f : filas) {
        const Resultado r = Ejecutar(std::string("prompt listo>\n") + f.linea + "\n");
        EXPECT_TRUE(WIFSIGNALED(r.estado) && WTERMSIG(r.estado) == SIGSEGV) << f.linea;
        EXPECT_EQ(r.salida.substr(r.salida.size() - strlen(f.final)), f.final) << f.linea;
    }
}

TEST(Inspection, AFaultInTheMiddleOfADumpLosesNoEarlierRow) {
    SALTAR_SI_SANEADO();
    const DirectorioTemporal dir;
    const auto pagina = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    EscribirFichero(dir / "f", std::string(2 * pagina, 'm'));
    Sesion s;
    const std::string a = Direccion(s.Linea("mmap " + dir / "f" + " r"));
    ASSERT_EQ(truncate((dir / "f").c_str(), static_cast<off_t>(pagina)), 0);
    s.Enviar("memdump " + a + " " + std::to_string(2 * pagina) + "\n");
    std::string resto;
    const int estado = s.EsperarFin(&resto);
    EXPECT_TRUE(WIFSIGNALED(estado) && WTERMSIG(estado) == SIGBUS);
    // Whole rows up to the one that crosses into the missing page; the empty last row is never reached.
    const std::string filas = Volcado(std::string(pagina / 25 * 25, 'm'));
    EXPECT_EQ(resto, Volcando(a, 2 * pagina) + filas.substr(0, filas.size() - 2));
}

TEST(Inspection, RecursionShowsAFrameALineUntilTheStackEnds) {
    Sesion s;
    const std::string texto = s.Linea("recurse 3");
    long anterior = 0;
    for (int i = 0; i < 4; i++) {
        const std::string n = Direccion(texto, 3 * i), array = Direccion(texto, 3 * i + 1);
        EXPECT_NE(texto.find("parametro:  " + std::to_string(3 - i) + "(" + n + ") array " + array +
                             ", arr estatico " + Direccion(texto, 2) + "\n"),
                  std::string::npos)
            << texto;
        const long dir = std::stol(array, nullptr, 16);
        EXPECT_TRUE(i == 0 || kSaneado || anterior - dir >= 4096) << texto;
        anterior = dir;
    }
    EXPECT_EQ(s.Linea("recurse -2").find("parametro: -2("), 0u);
    SALTAR_SI_SANEADO();
    Opciones o;
    o.antesDeExec = [] {
        const struct rlimit pila = {1 << 20, 1 << 20};
        setrlimit(RLIMIT_STACK, &pila);
    };
    const Resultado r = Ejecutar("recurse 100000\n", o);
    EXPECT_TRUE(WIFSIGNALED(r.estado) && WTERMSIG(r.estado) == SIGSEGV);
    // Some 250 frames fit; the last line that was printed is whole.
    const size_t ultima = r.salida.rfind("parametro:");
    EXPECT_LT(std::stol(r.salida.substr(ultima + 10)), 100000 - 200);
    EXPECT_EQ(r.salida.back(), '\n');
}

} // namespace
