// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

#include <utility>

namespace {

using namespace escenario;

TEST(Historic, StoresEveryLineAsTypedBeforeItRuns) {
    Sesion s;
    const std::pair<const char *, const char *> filas[] = {
        {"historic -c", ""},
        {"   authors -l", "login del autor1\nlogin del autor2\n"},
        {"\t ", ""},
        {"nosuch-command-here  x", "No ejecutado: No such file or directory\n"},
        {"historic", "0->   authors -l\n1->nosuch-command-here  x\n2->historic\n"},
        {"historic -2", "2->historic\n3->historic -2\n"},
        {"previous -x", ""},
        {"historic 2x", ""},
        {"historic -c", ""},
        {"command", "0->command\n"},
        {"historic -10", "0->command\n1->historic -10\n"},
    };
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
}

TEST(Historic, RepeatsEntriesWithoutStoringThemAgain) {
    Sesion s;
    s.Linea("historic -c");
    const std::string repetida = "Ejecutando hist (0):   pid\n" + s.Linea("  pid");
    std::string anidada;
    for (int i = 0; i < 11; i++) anidada += "Ejecutando hist (6): historic 6\n";
    const std::pair<const char *, std::string> filas[] = {
        {"historic 0", repetida},
        {"command abc", repetida},
        {"historic 99", "No hay elemento 99 en el historico\n"},
        {"command -1", "No hay elemento -1 en el historico\n"},
        {"historic 5000", "No hay elemento 5000 en el historico\n"},
        {"historic 6", anidada + "Demasiada recursion en hist\n"},
        {"command 0", repetida}, // the nesting starts anew
    };
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
}

TEST(Historic, FullItKeepsItsEntriesAndLinesStillRun) {
    std::string guion;
    for (int i = 0; i < 4095; i++) guion += "abbrev on\n";
    const Resultado r = Ejecutar("prompt =\nhistoric -c\n" + guion + "historic -1\nauthors -l\n");
    const std::string aviso = "=Comando no almacenado: No space left on device\n";
    EXPECT_TRUE(
        r.salida.ends_with(aviso + "4094->abbrev on\n" + aviso + "login del autor1\nlogin del autor2\n="));
}

} // namespace
