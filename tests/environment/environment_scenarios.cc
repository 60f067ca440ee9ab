// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

namespace {

using namespace escenario;

bool Contiene(const std::string &texto, const std::string &parte) {
    return texto.find(parte) != std::string::npos;
}

TEST(Environment, ThreePathsPartWhenTheLibraryMovesItsArray) {
    Opciones o;
    o.entorno = {"QUIETA=a", "DOS=2"};
    Sesion s(o);
    const std::string addr = s.Linea("showenv -addr");
    EXPECT_EQ(Direccion(addr, 0), Direccion(addr, 2));
    EXPECT_NE(Direccion(addr, 1), Direccion(addr, 3));
    static constexpr std::pair<const char *, const char *> filas[] = {
        {"changevar -a QUIETA b", ""},
        {"changevar -p NUEVA 1", ""},
        {"changevar -a NUEVA x", "Imposible cambiar variable: No such file or directory\n"},
        {"showvar NUEV", ""},
        {"subsvar -e DOS TRES 3", ""},
        {"subsvar -e DOS TRES 3", "Imposible sustituir variable DOS por TRES: File exists\n"},
        {"changevarWrong -p -mo DOS 1",
         "DOS MAL cambiada accediendo a traves de putenv, por haber sobreescrito variable original\n"
         "Imposible cambiar variable: Invalid argument\n"},
    };
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
    std::string var = s.Linea("showvar QUIETA");
    EXPECT_TRUE(var.starts_with("Con arg3 main QUIETA=b(0x") && Contiene(var, "   Con getenv b(0x")) << var;
    var = s.Linea("showvar NUEVA");
    EXPECT_TRUE(var.starts_with("  Con environ NUEVA=1(0x") && Contiene(var, "   Con getenv 1(0x")) << var;
    EXPECT_FALSE(Contiene(s.Linea("showenv"), " NUEVA=1\n"));
    EXPECT_TRUE(Contiene(s.Linea("showenv -environ"), " NUEVA=1\n"));
}

TEST(Environment, StaticBufferShowsTheLastChangeWhateverTheOrder) {
    for (const std::string caso : {"-eAB", "-eBA", "-pAB", "-pBA"}) {
        Opciones o;
        o.entorno = {"A=x", "B=y"};
        Sesion s(o);
        for (int i = 0; i < 2; i++)
            s.Linea("changevarWrong " + caso.substr(0, 2) + " -ms " + caso[2 + i] + " " + std::to_string(i));
        const std::string todo = s.Linea("showenv"), ultima = std::string(") ") + caso[3] + "=1\n";
        EXPECT_NE(todo.find(ultima), todo.rfind(ultima)) << todo; // by both names
        // The name that no entry shows any more finds its place all the same.
        EXPECT_FALSE(
            Contiene(s.Linea("changevarWrong " + caso.substr(0, 2) + " -ms " + caso[2] + " 2"), "Imposible"));
    }
}

TEST(Environment, AutomaticBufferLeavesAnAddressOfTheStack) {
    SALTAR_SI_SANEADO();
    Opciones o;
    o.entorno = {"MARCADA=x"};
    Sesion s(o);
    const std::string ranura = Direccion(s.Linea("showvar MARCADA"), 1);
    s.Linea("changevarWrong -e -ma MARCADA y");
    const std::string todo = s.Linea("showenv");
    const size_t pos = todo.find(ranura + "->main arg3[");
    ASSERT_NE(pos, std::string::npos) << todo;
    const auto en = std::stoull(ranura, nullptr, 16);
    const auto texto = std::stoull(Direccion(todo.substr(pos), 1), nullptr, 16);
    EXPECT_TRUE(texto < en && en - texto < 1 << 20) << todo.substr(pos, 100);
}

TEST(Environment, NamesAndTextsStayWithinTheirRoom) {
    const std::string n510(510, 'n'), n511(511, 'm'), v509(509, 'v'), larga(20000, 'z');
    const std::string demasiado = "Imposible cambiar variable: File name too long\n";
    Opciones o;
    o.entorno = {n510 + "=1", n511 + "=1", "T=1", "LARGA=" + larga, "SITIO=0123456789"};
    Sesion s(o);
    EXPECT_EQ(s.Linea("changevar -e " + n510 + " 2"), "");
    EXPECT_EQ(s.Linea("changevar -e " + n511 + " 2"), demasiado);
    EXPECT_EQ(s.Linea("changevar -p " + n511 + " 2"), demasiado);
    EXPECT_FALSE(Contiene(s.Linea("changevarWrong -e -ms T " + v509), "Imposible")); // 511 characters
    EXPECT_TRUE(Contiene(s.Linea("changevarWrong -e -ms T " + v509 + "v"), demasiado));
    EXPECT_TRUE(Contiene(s.Linea("changevarWrong -e -mo LARGA " + v509), demasiado)); // with its name, 515
    EXPECT_TRUE(Contiene(s.Linea("changevarWrong -e -mo SITIO 01234567890"), "No space left on device"));
    EXPECT_FALSE(Contiene(s.Linea("changevarWrong -a -mo SITIO abcdefghij"), "Imposible"));
    const std::string todo = s.Linea("showenv");
    for (const std::string &entrada : {"LARGA=" + larga, "T=" + v509, std::string("SITIO=abcdefghij")})
        EXPECT_TRUE(Contiene(todo, ") " + entrada + "\n")) << entrada;
    std::string cambios; // more than exit will release
    for (int i = 0; i <= 4096; i++) cambios += "changevar -p CUENTA " + std::to_string(i) + "\n";
    const std::string salida = Ejecutar(cambios + "showvar CUENTA\n").salida;
    EXPECT_TRUE(Contiene(salida, "CUENTA=4096(") && !Contiene(salida, "Imposible"));
}

} // namespace
