// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(Historic, FullItKeepsItsEntriesAndLinesStillRun) {
    std::string guion = "historic -c\n";
    for (int i = 0; i < 4095; i++) guion += "abbrev on\n";
    const std::string aviso = "=Comando no almacenado: No space left on device\n";
    EXPECT_TRUE(
        Salida(guion + "historic -1\nauthors -l\n")
            .ends_with(aviso + "4094->abbrev on\n" + aviso + "login del autor1\nlogin del autor2\n="));
}

} // namespace
