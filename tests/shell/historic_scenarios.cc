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
    const std::string salida = Salida(guion + "historic\n" + larga + "\n");
    EXPECT_TRUE(
        salida.ends_with("\n4094->abbrev on\n=Linea con mas de 2047 palabras: se ignoran las demas\n" +
                         aviso + "Abreviatura de comando no unica: a\n=="));
    EXPECT_TRUE(Contiene(salida, "=" + aviso + "0->abbrev on\n"));
}

TEST(Historic, AnEntryWrittenOverByTheUserDoesNotWriteOverTheShell) {
    SALTAR_SI_SANEADO();
    Sesion s;
    std::string ultima; // behind the free pieces that the start left
    for (int i = 0; i < 200; i++) ultima = s.Dir("malloc 24");
    const unsigned long cont = Valor(s.Dir("malloc 60000")) - Valor(ultima);
    s.Linea("memfill " + ultima + " " + std::to_string(cont + 20000) + " 65");
    EXPECT_TRUE(s.Linea("historic 201").starts_with("Ejecutando hist (201): AAAA"));
    s.Linea("memfill " + ultima + " " + std::to_string(cont + 20000) + " 32");
    EXPECT_TRUE(s.Linea("historic 201").ends_with(" \nNada que ejecutar en el elemento 201 del historico\n"));
}

} // namespace
