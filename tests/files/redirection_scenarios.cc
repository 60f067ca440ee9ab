// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <unistd.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

const std::string kAutores = "login del autor1\nlogin del autor2\n";
const std::string kNoAbre = "Imposible abrir fichero: No such file or directory\n";
const std::string kNoEscribe = "Imposible escribir en la salida estandar: Bad file descriptor\n";

struct Redirection : testing::Test {
    DirectorioTemporal tmp;
    Opciones o{.directorio = tmp.ruta()};
    std::string Leer(const std::string &nombre) { return LeerFichero(tmp / nombre); }
};

TEST_F(Redirection, OutputGoesToTheFileAndBackInOrder) {
    EscribirFichero(tmp / "a", "antes\n");
    const std::string salida =
        Salida("initredir\nauthors -l\nredout a\nauthors -l\nredout b\nclose 6\nwritestr 1 x\n"
               "redout -reset\nlistopen 8\nrederr e\nopen nada\nauthors -l\n",
               o);
    EXPECT_EQ(Leer("a"), "antes\n=" + kAutores + "=");
    EXPECT_EQ(Leer("b"), "==x=");
    EXPECT_EQ(Leer("e"), kNoAbre);
    EXPECT_TRUE(Casa(salida, "==" + kAutores +
                                 "==descriptor: 0,*descriptor: 5, offset: (  )-> copia descriptor 2 "
                                 "O_WRONLY (redir)\ndescriptor: 6, offset: (  )-> no usado  \n"
                                 "descriptor: 7, offset: (  )-> no usado  (redir)\n===" +
                                 kAutores + "="))
        << salida;
}

TEST_F(Redirection, InputComesFromTheFileFromTheNextLineOn) {
    EscribirFichero(tmp / "ordenes", "writestr 1 dentro\nredin -reset\nwritestr 1 nunca\n");
    EscribirFichero(tmp / "corto", "writestr 1 fin");
    for (bool ficheros : {false, true}) {
        o.ficheros = ficheros;
        EXPECT_EQ(Salida("initredir\nredin ordenes\nwritestr 1 fuera\nredin corto\nwritestr 1 nunca\n", o),
                  "===dentro==fuera==fin=");
    }
}

TEST_F(Redirection, AClosedStreamIsNeitherRedirectedNorTakenByAnotherOne) {
    o.antesDeExec = [] { // only the standard error is left to print on
        fcntl(1, F_DUPFD, 10);
        close(1);
    };
    const std::string ordenes = "writestr 10 uno\nredout\nopen nada\n";
    EscribirFichero(tmp / "ordenes", ordenes);
    EXPECT_EQ(Ejecutar("initredir\nlistopen\nredout f\nredin ordenes\n", o).salida,
              kNoEscribe + "uno" + kNoAbre);
    EXPECT_NE(access((tmp / "f").c_str(), F_OK), 0);
    EXPECT_EQ(Leer("ordenes"), ordenes) << "the prompt was written there";
}

TEST_F(Redirection, AStreamClosedLaterTakesNoPlaceOfItsNeighbours) {
    // dup2 takes the mark of 1 away, so that it can be closed; 2 must still become the file, and come back.
    EXPECT_EQ(Salida("initredir\ndup2 4 1\nclose 1\nrederr e\nopen nada\nrederr -reset\nopen nada\n"
                     "redout s\nauthors -l\nredout -reset\nauthors -l\n",
                     o),
              "===" + kNoEscribe + kNoAbre + "=" + kAutores + "=");
    EXPECT_EQ(Leer("e"), kNoAbre);
    EXPECT_EQ(Leer("s"), "=" + kAutores + "=");
}

TEST_F(Redirection, TheStreamStaysWhereItIsWhenItsCopyIsGone) {
    EXPECT_EQ(Salida("initredir\nredout f\ndup2 1 4\nclose 4\nredout -reset\nauthors -l\n", o), "==");
    EXPECT_EQ(Leer("f"), "====" + kAutores + "=");
}

} // namespace
