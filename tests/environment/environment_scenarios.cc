#include <sys/wait.h>

#include <cstdlib>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

bool Contiene(const std::string &texto, const std::string &parte) {
    return texto.find(parte) != std::string::npos;
}

TEST(Environment, ThreePathsPartWhenTheLibraryMovesItsArray) {
    Opciones o;
    o.entorno = {"QUIETA=a"};
    Sesion s(o);
    const std::string addr = s.Linea("showenv -addr");
    EXPECT_EQ(Direccion(addr, 0), Direccion(addr, 2));
    EXPECT_NE(Direccion(addr, 1), Direccion(addr, 3));
    EXPECT_EQ(s.Linea("changevar -a QUIETA b"), "");
    std::string var = s.Linea("showvar QUIETA");
    EXPECT_TRUE(Contiene(var, "Con arg3 main QUIETA=b(0x") && Contiene(var, "  Con environ QUIETA=b(0x") &&
                Contiene(var, "   Con getenv b(0x"))
        << var;
    EXPECT_EQ(s.Linea("changevar -p NUEVA 1"), "");
    var = s.Linea("showvar NUEVA");
    EXPECT_TRUE(var.find("  Con environ NUEVA=1(0x") == 0 && Contiene(var, "   Con getenv 1(0x")) << var;
    EXPECT_EQ(s.Linea("showvar NUEV"), "");
    EXPECT_FALSE(Contiene(s.Linea("showenv"), " NUEVA=1\n"));
    EXPECT_TRUE(Contiene(s.Linea("showenv -environ"), " NUEVA=1\n"));
    EXPECT_TRUE(Contiene(s.Linea("changevarWrong -a -ms QUIETA c"), "a traves de tercer argumento de main,"));
    EXPECT_EQ(WEXITSTATUS(s.Terminar()), 0);
}

TEST(Environment, RefusalsAndUsage) {
    Opciones o;
    o.entorno = {"UNO=1", "DOS=2"};
    const std::pair<const char *, const char *> filas[] = {
        {"changevar -a NOHAY x", "Imposible cambiar variable: No such file or directory\n"},
        {"subsvar -e UNO TRES 3", ""},
        {"subsvar -e UNO TRES 3", "Imposible sustituir variable UNO por TRES: File exists\n"},
        {"subsvar -a UNO OTRA 3", "Imposible sustituir variable UNO por OTRA: No such file or directory\n"},
        {"changevarWrong -p -mo DOS 1",
         "DOS MAL cambiada accediendo a traves de putenv, por haber sobreescrito variable original\n"
         "Imposible cambiar variable: Invalid argument\n"},
    };
    Sesion s(o);
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
}

TEST(Environment, StaticBufferShowsTheLastChangeWhateverTheOrder) {
    for (const std::string caso : {"-eAB", "-eBA", "-pAB", "-pBA"}) {
        const std::string via = caso.substr(0, 2), orden = caso.substr(2);
        Opciones o;
        o.entorno = {"A=x", "B=y"};
        Sesion s(o);
        for (int i = 0; i < 2; i++)
            s.Linea("changevarWrong " + via + " -ms " + orden[i] + " " + std::to_string(i));
        const std::string todo = s.Linea("showenv");
        const std::string ultima = std::string(") ") + orden[1] + "=1\n";
        const size_t primera = todo.find(ultima);
        ASSERT_NE(primera, std::string::npos) << todo;
        EXPECT_NE(todo.find(ultima, primera + 1), std::string::npos) << todo;
    }
}

TEST(Environment, OverwritingStaysWithinTheEntry) {
    Opciones o;
    o.entorno = {"SITIO=0123456789"};
    Sesion s(o);
    const std::string antes = Direccion(s.Linea("showvar SITIO"));
    EXPECT_TRUE(Contiene(s.Linea("changevarWrong -e -mo SITIO 01234567890"), "No space left on device"));
    EXPECT_FALSE(Contiene(s.Linea("changevarWrong -a -mo SITIO abcdefghij"), "Imposible"));
    const std::string despues = s.Linea("showvar SITIO");
    EXPECT_TRUE(Contiene(despues, "SITIO=abcdefghij(")) << despues;
    EXPECT_EQ(Direccion(despues), antes);
}

TEST(Environment, AutomaticBufferLeavesAnAddressOfTheStack) {
    SALTAR_SI_SANEADO();
    Opciones o;
    o.entorno = {"MARCADA=x"};
    Sesion s(o);
    const std::string ranura = Direccion(s.Linea("showvar MARCADA"), 1);
    EXPECT_TRUE(Contiene(s.Linea("changevarWrong -e -ma MARCADA y"), "por haber usado una variable local"));
    const std::string todo = s.Linea("showenv");
    const size_t pos = todo.find(ranura + "->main arg3[");
    ASSERT_NE(pos, std::string::npos) << todo;
    const unsigned long long en = strtoull(ranura.c_str(), nullptr, 16);
    const unsigned long long texto = strtoull(Direccion(todo.substr(pos), 1).c_str(), nullptr, 16);
    EXPECT_TRUE(texto < en && en - texto < 1 << 20) << todo.substr(pos, 100);
    EXPECT_EQ(s.Terminar(), 0);
}

TEST(Environment, LimitsOfNamesAndTextsAndAnEntryLongerThanTheOutputRoom) {
    const std::string n510(510, 'n'), n511(511, 'm'), v509(509, 'v'), larga(20000, 'z');
    const std::string demasiado = "Imposible cambiar variable: File name too long\n";
    Opciones o;
    o.entorno = {n510 + "=1", n511 + "=1", "T=1", "LARGA=" + larga};
    Sesion s(o);
    EXPECT_EQ(s.Linea("changevar -e " + n510 + " 2"), "");
    EXPECT_EQ(s.Linea("changevar -e " + n511 + " 2"), demasiado);
    EXPECT_FALSE(Contiene(s.Linea("changevarWrong -e -ms T " + v509), "Imposible")); // 511 characters
    EXPECT_TRUE(Contiene(s.Linea("changevarWrong -e -ms T " + v509 + "v"), demasiado));
    const std::string todo = s.Linea("showenv");
    EXPECT_TRUE(Contiene(todo, ") LARGA=" + larga + "\n"));
    EXPECT_TRUE(Contiene(todo, ") T=" + v509 + "\n"));
    EXPECT_TRUE(Contiene(s.Linea("showvar LARGA"), "   Con getenv " + larga + "(0x"));
    EXPECT_EQ(s.Linea("changevar -p " + n511 + " 2"), demasiado);
    EXPECT_TRUE(Contiene(s.Linea("changevarWrong -e -mo LARGA " + v509), demasiado)); // with its name, 515
}

} // namespace
