// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <unistd.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

const std::string kAutores = "login del autor1\nlogin del autor2\n";
const std::string kNoAbre = "Imposible abrir fichero: No such file or directory\n";
const std::string kNoEscribe = "Imposible escribir en la salida estandar: Bad file descriptor\n";

struct Redireccion : testing::Test {
    DirectorioTemporal tmp;
    Opciones o{.directorio = tmp.ruta()};

    /// What a script prints from its first prompt, '>', on.
    std::string Salida(const std::string &guion) {
        const std::string salida = Ejecutar("prompt >\n" + guion, o).salida;
        return salida.substr(salida.find('>'));
    }
    std::string Leer(const std::string &nombre) { return LeerFichero(tmp / nombre); }
};

TEST_F(Redireccion, MarksRefuseToBeClosedUntilTheyAreCleared) {
    Sesion s;
    const std::string original = " estandar en fichero configuracion original (-1) \n";
    const std::string estado = "entrada" + original + "salida" + original;
    const std::pair<const char *, std::string> filas[] = {
        {"redout f", "Hay que inicializar redireccion\n"},
        {"initredir", ""},
        {"initredir", "redireccion ya inicializada\n"},
        {"redin", estado + "error" + original},
        {"redin /nada", "Imposible hacer redireccion No such file or directory\n"},
        {"close 4", "No se hace: descriptor involucrado en redireccion.\n"},
        {"dup2 4 2", ""}, // takes the mark away
        {"redout", estado},
        {"clearredir", ""},
        {"close 4", ""},
    };
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
}

TEST_F(Redireccion, OutputGoesToTheFileAndBackInOrder) {
    EscribirFichero(tmp / "a", "antes\n");
    const std::string salida =
        Salida("initredir\nauthors -l\nredout a\nauthors -l\nredout b\nclose 6\nwritestr 1 x\n"
               "redout -reset\nlistopen 8\nrederr e\nopen nada\nauthors -l\n");
    EXPECT_EQ(Leer("a"), "antes\n>" + kAutores + ">");
    EXPECT_EQ(Leer("b"), ">>x>");
    EXPECT_EQ(Leer("e"), kNoAbre);
    EXPECT_EQ(salida.find(">>" + kAutores + ">>descriptor: 0"), 0u) << salida;
    const std::string final = "descriptor: 5, offset: (  )-> copia descriptor 2 O_WRONLY (redir)\n"
                              "descriptor: 6, offset: (  )-> no usado  \n"
                              "descriptor: 7, offset: (  )-> no usado  (redir)\n>>>" +
                              kAutores + ">";
    EXPECT_NE(salida.find(final), std::string::npos) << salida;
}

TEST_F(Redireccion, InputComesFromTheFileFromTheNextLineOn) {
    EscribirFichero(tmp / "ordenes", "writestr 1 dentro\nredin -reset\nwritestr 1 nunca\n");
    EscribirFichero(tmp / "corto", "writestr 1 fin");
    for (bool fichero : {false, true}) {
        o.entradaFichero = fichero;
        EXPECT_EQ(Salida("initredir\nredin ordenes\nwritestr 1 fuera\nredin corto\nwritestr 1 nunca\n"),
                  ">>>dentro>>fuera>>fin>");
    }
}

TEST_F(Redireccion, AClosedStreamIsNeitherRedirectedNorTakenByAnotherOne) {
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

TEST_F(Redireccion, AStreamClosedLaterTakesNoPlaceOfItsNeighbours) {
    // dup2 takes the mark of 1 away, so that it can be closed; 2 must still become the file, and come back.
    EXPECT_EQ(Salida("initredir\ndup2 4 1\nclose 1\nrederr e\nopen nada\nrederr -reset\nopen nada\n"
                     "redout s\nauthors -l\nredout -reset\nauthors -l\n"),
              ">>>" + kNoEscribe + kNoAbre + ">" + kAutores + ">");
    EXPECT_EQ(Leer("e"), kNoAbre);
    EXPECT_EQ(Leer("s"), ">" + kAutores + ">");
}

TEST_F(Redireccion, TheStreamStaysWhereItIsWhenItsCopyIsGone) {
    EXPECT_EQ(Salida("initredir\nredout f\ndup2 1 4\nclose 4\nredout -reset\nauthors -l\n"), ">>");
    EXPECT_EQ(Leer("f"), ">>>>" + kAutores + ">");
}

} // namespace
