// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

#include <csignal>

namespace {

using namespace escenario;

const std::string kNoCambia = "Imposible cambiar variable: ";

TEST(Environment, StaticBufferShowsTheLastChangeWhateverTheOrder) {
    for (const std::string caso : {"-eAB", "-eBA", "-pAB", "-pBA"}) {
        Sesion s({.entorno = {"A=x", "B=y"}});
        for (int i = 0; i < 2; i++)
            s.Linea("changevarWrong " + caso.substr(0, 2) + " -ms " + caso[2 + i] + " " + std::to_string(i));
        EXPECT_EQ(Veces(s.Linea("showenv"), std::string(") ") + caso[3] + "=1\n"), 2); // by both names
        s.Linea("changevar -p NUEVA 1");
        EXPECT_EQ(Veces(s.Linea("showenv"), " NUEVA=1\n") +
                      2 * Veces(s.Linea("showenv -environ"), " NUEVA=1\n"),
                  2);
        // The name that no entry shows any more finds its place all the same.
        EXPECT_EQ(
            Veces(s.Linea("changevarWrong " + caso.substr(0, 2) + " -ms " + caso[2] + " 2"), "Imposible"), 0);
    }
}

TEST(Environment, TheFirstEntriesAreEntriesToo) {
    Sesion s;
    const std::string todo = s.Linea("showenv");
    for (const char *cual : {"[0]=(", "[1]=("}) {
        const std::string entrada = todo.substr(todo.find(") ", todo.find(cual)) + 2),
                          nombre = entrada.substr(0, entrada.find('='));
        s.Seguir({{"changevarWrong -e -ms " + nombre + " 1", "~* estatica\n"},
                  {"changevar -e " + nombre + " 1", ""},
                  {"changevarWrong -a -mo " + nombre + " 2", "~* original\n"},
                  {"subsvar -a " + nombre + " N" + cual[1] + " 1", ""}});
    }
}

TEST(Environment, AutomaticBufferLeavesAnAddressOfTheStack) {
    SALTAR_SI_SANEADO();
    for (const char *via : {"-e", "-p"}) {
        Sesion s({.entorno = {"MARCADA=x"}});
        const std::string ranura = Direccion(s.Linea("showvar MARCADA"), 1);
        s.Linea(std::string("changevarWrong ") + via + " -ma MARCADA y");
        const std::string todo = s.Linea("showenv");
        const size_t pos = todo.find(ranura + "->main arg3[");
        ASSERT_NE(pos, std::string::npos) << todo;
        const unsigned long texto = Valor(Direccion(todo.substr(pos), 1));
        EXPECT_TRUE(texto < Valor(ranura) && Valor(ranura) - texto < 1 << 20) << todo.substr(pos, 100);
    }
}

TEST(Environment, ADamagedEntryEndsTheShellWithAllThatWasPrinted) {
    SALTAR_SI_SANEADO();
    Sesion s({.entorno = {"TZ=UTC"}});
    s.Linea("memfill " + Direccion(s.Linea("showvar TZ"), 1) + " 8 65");
    s.Enviar("version\n");
    std::string resto;
    EXPECT_TRUE(MuertoPor(s.EsperarFin(&resto), SIGSEGV));
    EXPECT_EQ(resto, "version del shell 4.L.12 ");
}

TEST(Environment, NamesAndTextsStayWithinTheirRoom) {
    const std::string n510(510, 'n'), n511(511, 'm'), v509(509, 'v'), larga(20000, 'z'),
        demasiado = kNoCambia + "File name too long\n";
    Sesion s({.entorno = {n510 + "=1", n511 + "=1", "T=1", "LARGA=" + larga, "SITIO=0123456789"}});
    s.Seguir({{"changevar -e " + n510 + " 2", ""},
              {"changevar -e " + n511 + " 2", demasiado},
              {"changevar -p " + n511 + " 2", demasiado},
              {"changevarWrong -e -ms T " + v509, "~T MAL * estatica\n"},            // 511 characters
              {"changevarWrong -e -mo LARGA " + v509.substr(3), "~*\n" + demasiado}, // with its name, 512
              {"changevarWrong -e -mo SITIO 01234567890", "~*\n" + kNoCambia + "No space left on device\n"},
              {"changevarWrong -a -mo SITIO abcdefghij", "~SITIO MAL * original\n"}});
    const std::string todo = s.Linea("showenv");
    for (const std::string &entrada : {"LARGA=" + larga, "T=" + v509, std::string("SITIO=abcdefghij")})
        EXPECT_TRUE(Contiene(todo, ") " + entrada + "\n")) << entrada;
    std::string cambios; // more than exit will release
    for (int i = 0; i <= 4096; i++) cambios += "changevar -p CUENTA " + std::to_string(i) + "\n";
    const std::string salida = Ejecutar(cambios + "showvar CUENTA\n").salida;
    EXPECT_TRUE(Contiene(salida, "CUENTA=4096(") && !Contiene(salida, "Imposible"));
}

} // namespace
