// SPDX-License-Identifier: MIT

#include <fcntl.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

const std::string kLogins = "login del autor1\nlogin del autor2\n";

TEST(Input, APipeAFileAndATerminalGiveTheSameBytes) {
    const std::string guion = "authors -l\n\n historic\npid -help\nauthors"; // no newline at the end
    const std::string tuberia = Salida(guion);
    EXPECT_EQ(Salida(guion, {.ficheros = true}), tuberia);
    EXPECT_TRUE(tuberia.ends_with("login del autor1\nNombre del autor2: login del autor2\n=")) << tuberia;
    const std::string sinFin = "=No ejecutado: No such file or directory\n"; // of a block of one byte
    EXPECT_EQ(Salida("x\nx", {.ficheros = true}), sinFin + sinFin + "=");
    SALTAR_SIN_TERMINALES();
    Terminal t;
    t.Enviar("authors -l\n");
    EXPECT_EQ(t.Esperar("listo%>"), "authors -l\n" + kLogins + "listo%>");
}

TEST(Input, OfAFileIsReadAtTheShellsOwnPlaceWhateverTheBackgroundReads) {
    const DirectorioTemporal d;
    EscribirFichero(d / "lee", "until [ -e ya ]; do :; done; exec cat\n");
    const std::string vacias(100'000, '\n'),
        salida = Salida("back /bin/sh lee\nmakefile ya\n" + vacias + "authors -l\n",
                        {.directorio = d.ruta(), .ficheros = true});
    EXPECT_TRUE(Contiene(salida, kLogins));
}

TEST(Input, LongLinesArriveInPartsAndOddBytesDoNoHarm) {
    const std::string orden = "authors -l ", entera = orden + std::string(4095 - orden.size(), 'x');
    std::string palabras = "a";
    for (int i = 0; i < 2047; i++) palabras += " a";
    const Paso filas[] = {
        // 4095 characters and the newline: the newline alone is the second part, an empty line.
        {entera, kLogins + "=="},
        // Two parts of 4095 characters and a rest, each run by itself.
        {std::string(4095, ' ') + entera + orden, "=" + kLogins + "=" + kLogins + "="},
        {palabras.substr(2), "No ejecutado: No such file or directory\n="}, // 2047 words
        {palabras,
         "Linea con mas de 2047 palabras: se ignoran las demas\nNo ejecutado: No such file or directory\n=="},
        {std::string("authors -l\0 z", 13), kLogins + "="},
        {"ayuda \xc3\xb1\xff", "\xc3\xb1\xff no encontrado\n="},
    };
    for (const bool ficheros : {false, true})
        for (const auto &[linea, esperada] : filas)
            EXPECT_EQ(Salida(linea + "\n", {.ficheros = ficheros}), "=" + esperada) << linea;
}

TEST(Input, AClosedOutputOrInputEndsNothingBadly) {
    DirectorioTemporal d;
    Resultado r = Ejecutar("pid\npid\npid\n", {.antesDeExec = [] { close(1); }});
    EXPECT_EQ(r.estado, 0);
    EXPECT_EQ(Veces(r.salida, "\n"), 1) << r.salida;
    r = Ejecutar("", {.antesDeExec = [] { dup2(open("/", O_RDONLY), 0); }});
    EXPECT_EQ(r.estado, 0);
    EXPECT_TRUE(r.salida.ends_with("%) Imposible leer la entrada: Is a directory\n")) << r.salida;
    EXPECT_EQ(Ejecutar("close f.txt\n").estado, 0); // 0 is what f.txt reads as
    r = Ejecutar("", {.antesDeExec = [] { close(0); }});
    EXPECT_EQ(r.estado, 0);
    EXPECT_TRUE(Contiene(r.salida, "%) ")) << r.salida;
}

TEST(Input, FromTheFileThatIsAlsoTheOutputBothMoveTheOneOffset) {
    DirectorioTemporal d;
    EscribirFichero(d / "f", "dup2 3 1\n#authors -l\n" + std::string(60, ' ') + "\n");
    Ejecutar("prompt =\nopen f rw\ndup2 3 0\n", {.directorio = d.ruta(), .ficheros = true});
    EXPECT_TRUE(LeerFichero(d / "f").starts_with("dup2 3 1\n=authors -l\n" + kLogins + "=  "));
}

} // namespace
