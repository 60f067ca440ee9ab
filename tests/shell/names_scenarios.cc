// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

#include <cstring>

namespace {

using namespace escenario;

std::string Esperado(const std::string &nombre) {
    return LeerFichero(std::string(EXPECTED_DIR) + "/shell/expected/" + nombre);
}

TEST(Names, EveryCommandHasItsHelpTextAndItsAliases) {
    const std::string textos = Esperado("help_texts.txt");
    Sesion s;
    const std::string alias = s.Linea("checkalias");
    EXPECT_EQ(alias, Esperado("checkalias.txt"));
    std::string todos;
    int comandos = 0;
    for (size_t pos = 0; (pos = alias.find("\n***", pos)) != std::string::npos; comandos++) {
        pos += 4;
        todos += s.Linea("help " + alias.substr(pos, alias.find(':', pos) - pos));
    }
    EXPECT_EQ(comandos, 122);
    EXPECT_EQ(todos, textos);
    EXPECT_EQ(s.Linea("checkalias -q"), "checkalias \n");
    EXPECT_EQ(s.Linea("checkalias -x"), "\n");
}

TEST(Names, HelpIsReachedByNameAliasAndOption) {
    Sesion s;
    const std::string cd = "cd [dir]\tCambia (o muestra) el directorio actual del shell\n";
    const std::string temas =
        "information ficheros entorno memoria listamemoria procesos senales SFmemoria otros \n";
    const std::pair<const char *, std::string> filas[] = {
        {"ayuda cd", cd},
        {"cd -?", cd},
        {"exit -help", "exit \tTermina la ejecucion del shell\n"},
        {"ls -?", "ls no encontrado\n"},
        {"help -lt", "info files environ memory memlist processes signals memoryFS others \n"},
        {"ayuda -lt", temas},
        {"help -debug", "checkalias \n"},
        {"help -T nada", "\n"},
        {"help -T otros nada others", s.Linea("help -T otros")},
        {"-T -help files", "\n"}, // the help asked of "-T": nothing after it counts
        {"help", Esperado("help_piped.txt")},
        {"help -all", Esperado("help_all_piped.txt")},
    };
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
}

TEST(Names, TheHelpFitsTheTerminal) {
    SALTAR_SIN_TERMINALES();
    Terminal t(20);
    t.Enviar("prompt listo%%>\n");
    t.Esperar("listo%>");
    for (const int columnas : {20, 40, 80, 200}) {
        t.Redimensionar(columnas);
        t.Enviar("help\n");
        EXPECT_EQ(t.Esperar("listo%>"),
                  "help\n" + Esperado("help_" + std::to_string(columnas) + "_columns.txt") + "listo%>");
    }
}

TEST(Names, AbbreviationsWorkOnlyWhenEnabledAndUnique) {
    Sesion s;
    EXPECT_EQ(s.Linea("abbrev"), "Uso de abreviaturas de comandos esta deshabilitado\n");
    EXPECT_EQ(s.Linea("help hist"), "hist no encontrado\n");
    EXPECT_EQ(s.Linea("abreviaturas on"), "");
    EXPECT_EQ(s.Linea("abbrev x"), "Uso de abreviaturas de comandos esta habilitado\n");
    for (const std::string ambigua : {"exi", "sal", "lis", "limi", "memfs-l"}) {
        EXPECT_EQ(s.Linea(ambigua), "Abreviatura de comando no unica: " + ambigua + "\n");
        EXPECT_EQ(s.Linea("help " + ambigua), "abreviatura no unica: " + ambigua + "\n");
    }
    static constexpr std::pair<const char *, const char *> filas[] = {
        {"hist", "historic"}, {"ver", "version"}, {"pw", "pwd"},         {"listo", "listopen"},
        {"fe", "date"},       {"ls", "lseek"},    {"man", "sighandler"}, {"q", "exit"},
        {"era", "delete"},    {"cd", "chdir"},    {"quit", "exit"}};
    for (const auto &[corta, comando] : filas) {
        const std::string ayuda = s.Linea(std::string("help ") + comando);
        EXPECT_EQ(s.Linea(std::string("help ") + corta), corta + ayuda.substr(strlen(comando))) << corta;
    }
    EXPECT_EQ(s.Linea("help checkal"), "checkal no encontrado\n");
    EXPECT_EQ(s.Linea("abbrev off"), "");
    EXPECT_EQ(s.Linea("help ver"), "ver no encontrado\n");
}

} // namespace
