// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(MemFSCommands, ShowWhenAnSFWasFormattedAndAFilePutIntoIt) {
    Sesion s;
    EscribirFichero(s / "f", "contenido");
    const time_t antes = time(nullptr);
    const std::string dir = s.Dir("memmalloc 16384");
    s.Linea("memfs-format " + dir);
    s.Linea("memfs-cp f " + dir + ":f");
    const std::string lista = s.Linea("memfs-list " + dir);
    EXPECT_TRUE(DeAhora(lista, antes, " 6 ficheros %a %b %e %T %Y\n")) << lista;
    EXPECT_TRUE(DeAhora(lista, antes, " 9 bytes  %a %b %e %T %Y f\n")) << lista;
}

TEST(MemFSCommands, CopyAllThatWasPrintedToAFileBefore) {
    const DirectorioTemporal dir; // and so do others that look into it, or empty it
    EXPECT_EQ(Salida("initredir\nredout s\nauthors -l\nreadfile s 0\nauthors -l\nmemfs-cp s c\nauthors "
                     "-l\nopen s wo tr\n"
                     "redout -reset\n/bin/grep -c autor c s\n",
                     {.directorio = dir.ruta(), .ficheros = true}),
              "==Imposible leer fichero: Bad address\n=c:4\ns:0\n=");
}

TEST(Labels, AreAtMost2047) {
    Sesion s;
    for (int i = 0; i < 2047; i++)
        EXPECT_EQ(s.Linea("assign " + std::to_string(i) + " " + Mas("0x1000", i)), "");
    s.Seguir({{"assign otro 9", "Imposible aniadir assign: No space left on device\n"},
              {"assign 2046 abc", ""}, // in place of its address
              {"assign -del 0", ""},
              {"assign -del 2044", ""},
              {"assign", "~LABEL:        1, ADDR: 0x1001 \nLABEL:        2, ADDR: 0x1002 \n*\n"
                         "LABEL:     2043, ADDR: 0x17fb \nLABEL:     2045, ADDR: 0x17fd \nLABEL:     2046, "
                         "ADDR: 0xabc \n"}});
}

} // namespace
