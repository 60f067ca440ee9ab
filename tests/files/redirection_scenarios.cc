#include <fcntl.h>
#include <unistd.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

const std::string kAutores = "login del autor1\nlogin del autor2\n";
const std::string kNoAbre = "Imposible abrir fichero: No such file or directory\n";
const std::string kNoEscribe = "Imposible escribir en la salida estandar: Bad file descriptor\n";

struct Redirigida {
    DirectorioTemporal tmp;
    Opciones o;
    Redirigida() { o.directorio = tmp.ruta(); }
    Resultado Ejecutar(const std::string &guion) { return escenario::Ejecutar("prompt >\n" + guion, o); }
};

/// What comes after the first prompt of Redirigida.
std::string Cuerpo(const Resultado &r) { return r.salida.substr(r.salida.find('>')); }

TEST(Redirection, MarksRefuseToBeClosedUntilTheyAreCleared) {
    Sesion s;
    const std::string original = " estandar en fichero configuracion original (-1) \n";
    const std::string estado = "entrada" + original + "salida" + original;
    const std::string rehusa = "No se hace: descriptor involucrado en redireccion.\n";
    const struct {
        const char *linea;
        std::string salida;
    } filas[] = {
        {"redout f", "Hay que inicializar redireccion\n"},
        {"clearredir", "redireccion no inicializada\n"},
        {"initredir", ""},
        {"initredir", "redireccion ya inicializada\n"},
        {"redin", estado + "error" + original},
        {"redout -reset", ""},
        {"redin /nada", "Imposible hacer redireccion No such file or directory\n"},
        {"close 1", rehusa},
        {"close 4", rehusa},
        {"listopen 5", "descriptor: 0, offset: (  )-> entrada estandar O_RDONLY (redir)\n"
                       "descriptor: 1, offset: (  )-> salida estandar O_WRONLY (redir)\n"
                       "descriptor: 2, offset: (  )-> error estandar O_WRONLY (redir)\n"
                       "descriptor: 3, offset: (  )-> copia descriptor 0 O_RDONLY (redir)\n"
                       "descriptor: 4, offset: (  )-> copia descriptor 1 O_WRONLY (redir)\n"},
        {"dup2 4 2", ""}, // takes the mark away
        {"redout", estado},
        {"clearredir", ""},
        {"close 4", ""},
    };
    for (const auto &fila : filas) EXPECT_EQ(s.Linea(fila.linea), fila.salida) << fila.linea;
}

TEST(Redirection, OutputGoesToTheFileAndBackInOrder) {
    Redirigida r;
    EscribirFichero(r.tmp / "a", "antes\n");
    const Resultado fin =
        r.Ejecutar("initredir\nauthors -l\nredout a\nauthors -l\nredout b\nclose 6\nwritestr 1 x\n"
                   "redout -reset\nlistopen 8\nrederr e\nopen nada\nauthors -l\n");
    EXPECT_EQ(LeerFichero(r.tmp / "a"), "antes\n>" + kAutores + ">");
    EXPECT_EQ(LeerFichero(r.tmp / "b"), ">>x>");
    EXPECT_EQ(LeerFichero(r.tmp / "e"), kNoAbre);
    const std::string cuerpo = Cuerpo(fin);
    EXPECT_EQ(cuerpo.find(">>" + kAutores + ">>descriptor: 0"), 0u) << cuerpo;
    EXPECT_NE(cuerpo.find("descriptor: 6, offset: (  )-> no usado  \n"
                          "descriptor: 7, offset: (  )-> no usado  (redir)\n>>>" +
                          kAutores + ">"),
              std::string::npos)
        << cuerpo;
}

TEST(Redirection, InputComesFromTheFileFromTheNextLineOn) {
    for (bool fichero : {false, true}) {
        Redirigida r;
        r.o.entradaFichero = fichero;
        EscribirFichero(r.tmp / "ordenes", "writestr 1 dentro\nredin -reset\nwritestr 1 nunca\n");
        EscribirFichero(r.tmp / "corto", "writestr 1 fin");
        EXPECT_EQ(
            Cuerpo(r.Ejecutar("initredir\nredin ordenes\nwritestr 1 fuera\nredin corto\nwritestr 1 nunca\n")),
            ">>>dentro>>fuera>>fin>");
    }
}

TEST(Redirection, AClosedStreamIsNeitherRedirectedNorTakenByAnotherOne) {
    Redirigida r;
    r.o.antesDeExec = [] { // only the standard error is left to print on
        fcntl(1, F_DUPFD, 10);
        close(1);
    };
    const std::string ordenes = "writestr 10 uno\nredout\nopen nada\n";
    EscribirFichero(r.tmp / "ordenes", ordenes);
    const Resultado fin = r.Ejecutar("initredir\nlistopen\nredout f\nredin ordenes\n");
    EXPECT_EQ(fin.salida, kNoEscribe + "uno" + kNoAbre);
    EXPECT_NE(access((r.tmp / "f").c_str(), F_OK), 0);
    EXPECT_EQ(LeerFichero(r.tmp / "ordenes"), ordenes) << "the prompt was written there";
}

TEST(Redirection, AStreamClosedLaterTakesNoPlaceOfItsNeighbours) {
    Redirigida r;
    // dup2 takes the mark of 1 away, so that it can be closed; 2 must still become the file, and come back.
    const Resultado fin =
        r.Ejecutar("initredir\ndup2 4 1\nclose 1\nrederr e\nopen nada\nrederr -reset\nopen nada\n"
                   "redout s\nauthors -l\nredout -reset\nauthors -l\n");
    EXPECT_EQ(LeerFichero(r.tmp / "e"), kNoAbre);
    EXPECT_EQ(LeerFichero(r.tmp / "s"), ">" + kAutores + ">");
    EXPECT_EQ(Cuerpo(fin), ">>>" + kNoEscribe + kNoAbre + ">" + kAutores + ">");
}

TEST(Redirection, TheStreamStaysWhereItIsWhenItsCopyIsGone) {
    Redirigida r;
    const Resultado fin = r.Ejecutar("initredir\nredout f\ndup2 1 4\nclose 4\nredout -reset\nauthors -l\n");
    EXPECT_EQ(Cuerpo(fin), ">>");
    EXPECT_EQ(LeerFichero(r.tmp / "f"), ">>>>" + kAutores + ">");
}

} // namespace
