// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(Historic, FullItKeepsItsEntriesAndLinesStillRun) {
    std::string guion = "historic -c\n";
    for (int i = 0; i < 4095; i++) guion += "abbrev on\n";
    std::string larga = "a";
    for (int i = 0; i < 2047; i++) larga += " a";
    const std::string aviso = "Comando no almacenado: No space left on device\n";
    EXPECT_TRUE(Salida(guion + "historic -1\n" + larga + "\n")
                    .ends_with("=" + aviso + "4094->abbrev on\n=" +
                               "Linea con mas de 2047 palabras: se ignoran las demas\n" + aviso +
                               "Abreviatura de comando no unica: a\n=="));
}

TEST(Historic, AnEntryWrittenOverByTheUserDoesNotWriteOverTheShell) {
    SALTAR_SI_SANEADO();
    Sesion s;
    std::string ultima; // behind the free pieces that the start left
    for (int i = 0; i < 200; i++) ultima = s.Dir("malloc 24");
    const auto cont = std::stoull(s.Dir("malloc 60000"), nullptr, 16) - std::stoull(ultima, nullptr, 16);
    s.Linea("memfill " + ultima + " " + std::to_string(cont + 20000) + " 65");
    EXPECT_TRUE(s.Linea("historic 201").starts_with("Ejecutando hist (201): AAAA"));
}

} // namespace
