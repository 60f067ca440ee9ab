#include "tests/driver/session.h"

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
    const std::string orden = "authors -l ";
    // 4095 characters and the newline: the newline alone is the second part, an empty line.
    const std::string larga = "prompt =\n" + orden + std::string(4095 - orden.size(), 'x') + "\n";
    // 10,000 characters: two parts of 4095 and a rest, each run by itself.
    const std::string partida =
        "prompt =\n" + std::string(4095, ' ') + orden + std::string(4095 - orden.size(), 'x') + orden + "\n";
    for (const bool fichero : {false, true}) {
        Opciones o;
        o.entradaFichero = fichero;
        EXPECT_TRUE(Ejecutar(larga, o).salida.ends_with("=login del autor1\nlogin del autor2\n=="));
        EXPECT_TRUE(Ejecutar(partida, o)
                        .salida.ends_with(
                            "==login del autor1\nlogin del autor2\n=login del autor1\nlogin del autor2\n="));
    }
    EXPECT_TRUE(Ejecutar(std::string("prompt =\nauthors -l\0 z\nayuda \xc3\xb1\xff\n", 32))
                    .salida.ends_with("=login del autor1\nlogin del autor2\n=\xc3\xb1\xff no encontrado\n="));
}

TEST(Input, TheWordsBeyondTheLastSlotAreLeftOutWithANotice) {
    std::string linea;
    for (int i = 0; i < 2048; i++) linea += i ? " a" : "a";
    const Resultado r = Ejecutar(linea + "\n");
    EXPECT_NE(r.salida.find("Linea con mas de 2047 palabras: se ignoran las demas\n"), std::string::npos);
    EXPECT_EQ(r.estado, 0);
}

TEST(Input, AClosedOutputOrInputEndsNothingBadly) {
    Opciones o;
    o.antesDeExec = [] { close(1); };
    o.erroresAparte = true;
    Resultado r = Ejecutar("pid\npid\npid\n", o);
    EXPECT_EQ(r.estado, 0);
    EXPECT_EQ(std::count(r.errores.begin(), r.errores.end(), '\n'), 1) << r.errores;
    o.antesDeExec = [] { close(0); };
    r = Ejecutar("", o);
    EXPECT_EQ(r.estado, 0);
    EXPECT_TRUE(r.salida.ends_with("%) ")) << r.salida;
}

} // namespace
