// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

namespace {

using namespace escenario;

TEST(Input, APipeAFileAndATerminalGiveTheSameBytes) {
    const std::string guion =
        "prompt listo%%>\nauthors -l\n\n historic\npid -help\nauthors"; // no newline at the end
    Opciones o;
    const std::string tuberia = Ejecutar(guion, o).salida;
    o.entradaFichero = o.salidaFichero = true;
    EXPECT_EQ(Ejecutar(guion, o).salida, tuberia);
    EXPECT_TRUE(tuberia.ends_with("login del autor1\nNombre del autor2: login del autor2\nlisto%>"))
        << tuberia;
    SALTAR_SIN_TERMINALES();
    Terminal t;
    t.Enviar("prompt listo%%>\n"); // the echo of the line does not hold the prompt itself
    t.Esperar("listo%>");
    t.Enviar("authors -l\n");
    EXPECT_EQ(t.Esperar("listo%>"), "authors -l\nlogin del autor1\nlogin del autor2\nlisto%>");
    t.Enviar("\x04");
    EXPECT_EQ(t.EsperarFin(), 0);
}

TEST(Input, LongLinesArriveInPartsAndOddBytesDoNoHarm) {
    const std::string orden = "authors -l ", logins = "login del autor1\nlogin del autor2\n";
    const std::string entera = orden + std::string(4095 - orden.size(), 'x');
    std::string palabras = "a";
    for (int i = 0; i < 2047; i++) palabras += " a";
    const std::pair<std::string, std::string> filas[] = {
        // 4095 characters and the newline: the newline alone is the second part, an empty line.
        {entera, logins + "=="},
        // Two parts of 4095 characters and a rest, each run by itself.
        {std::string(4095, ' ') + entera + orden, "=" + logins + "=" + logins + "="},
        {palabras.substr(2), "No ejecutado: No such file or directory\n="}, // 2047 words
        {palabras, "Linea con mas de 2047 palabras: se ignoran las demas\n"
                   "No ejecutado: No such file or directory\n=="},
        {std::string("authors -l\0 z", 13), logins + "="},
        {"ayuda \xc3\xb1\xff", "\xc3\xb1\xff no encontrado\n="},
    };
    for (const bool fichero : {false, true}) {
        Opciones o;
        o.entradaFichero = fichero;
        for (const auto &[linea, esperada] : filas) {
            const std::string salida = Ejecutar("prompt =\n" + linea + "\n", o).salida;
            EXPECT_EQ(salida.substr(salida.find('=')), "=" + esperada) << linea;
        }
    }
}

TEST(Input, AClosedOutputOrInputEndsNothingBadly) {
    Opciones o;
    o.antesDeExec = [] { close(1); };
    o.erroresAparte = true;
    Resultado r = Ejecutar("pid\npid\npid\n", o);
    EXPECT_EQ(r.estado, 0);
    EXPECT_EQ(std::count(r.errores.begin(), r.errores.end(), '\n'), 1) << r.errores;
    o.antesDeExec = [] { dup2(open("/", O_RDONLY), 0); };
    r = Ejecutar("", o);
    EXPECT_EQ(r.estado, 0);
    EXPECT_EQ(r.errores, "Imposible leer la entrada: Is a directory\n");
    EXPECT_EQ(Ejecutar("close f.txt\n", o).estado, 0); // 0 is what f.txt reads as
    o.antesDeExec = [] { close(0); };
    r = Ejecutar("", o);
    EXPECT_EQ(r.estado, 0);
    EXPECT_TRUE(r.salida.ends_with("%) ")) << r.salida;
}

TEST(Input, FromTheFileThatIsAlsoTheOutputBothMoveTheOneOffset) {
    DirectorioTemporal d;
    EscribirFichero(d / "f", "dup2 3 1\n#authors -l\n" + std::string(60, ' ') + "\n");
    Ejecutar("prompt =\nopen f rw\ndup2 3 0\n", {.directorio = d.ruta(), .entradaFichero = true});
    const std::string escrito = "dup2 3 1\n=authors -l\nlogin del autor1\nlogin del autor2\n=  ";
    EXPECT_EQ(LeerFichero(d / "f").substr(0, escrito.size()), escrito);
}

} // namespace
