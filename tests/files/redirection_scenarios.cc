// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(Redirection, OutputGoesToTheFileAndBackInOrder) {
    const std::string autores = "login del autor1\nlogin del autor2\n";
    DirectorioTemporal tmp;
    EscribirFichero(tmp / "a", "antes\n");
    EXPECT_EQ(Salida("initredir\nauthors -l\nredout a\nauthors -l\nredout b\nclose 6\nwritestr 1 x\n"
                     "redout -reset\nrederr e\nopen nada\nauthors -l\n",
                     {.directorio = tmp.ruta()}),
              "==" + autores + "====" + autores + "=");
    EXPECT_EQ(LeerFichero(tmp / "a"), "antes\n=" + autores + "=");
    EXPECT_EQ(LeerFichero(tmp / "b"), "==x=");
    EXPECT_EQ(LeerFichero(tmp / "e"), "Imposible abrir fichero: No such file or directory\n");
}

TEST(Redirection, InputComesFromTheFileFromTheNextLineOn) {
    DirectorioTemporal tmp;
    EscribirFichero(tmp / "ordenes", "writestr 1 dentro\nredin -reset\nwritestr 1 nunca\n");
    EscribirFichero(tmp / "corto", "writestr 1 fin");
    for (bool ficheros : {false, true})
        EXPECT_EQ(Salida("initredir\nredin ordenes\nwritestr 1 fuera\nredin corto\nwritestr 1 nunca\n",
                         {.directorio = tmp.ruta(), .ficheros = ficheros}),
                  "===dentro==fuera==fin=");
}

} // namespace
