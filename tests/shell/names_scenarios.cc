// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

namespace {

using namespace escenario;

std::string Esperado(const std::string &nombre) {
    return LeerFichero(EXPECTED_DIR "/shell/expected/" + nombre);
}

TEST(Names, EveryCommandHasItsHelpTextAndItsAliases) {
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
    EXPECT_EQ(todos, Esperado("help_texts.txt"));
    s.Seguir({{"help", Esperado("help_piped.txt")}, {"help -all", Esperado("help_all_piped.txt")}});
}

TEST(Names, TheHelpFitsTheTerminal) {
    SALTAR_SIN_TERMINALES();
    Terminal t(20);
    for (const int columnas : {20, 40, 80, 200}) {
        t.Redimensionar(columnas);
        t.Enviar("help\n");
        EXPECT_EQ(t.Esperar("listo%>"),
                  "help\n" + Esperado("help_" + std::to_string(columnas) + "_columns.txt") + "listo%>");
    }
}

} // namespace
