#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

size_t Lineas(const std::string &texto) {
    return static_cast<size_t>(std::count(texto.begin(), texto.end(), '\n'));
}

/// The line of a descriptor in a listing, without its end.
std::string LineaDe(int df, const std::string &listado) {
    const size_t pos = listado.find("descriptor: " + std::to_string(df) + ",");
    return pos == std::string::npos ? "" : listado.substr(pos, listado.find('\n', pos) - pos);
}

TEST(OpenFileTable, HoldsWhatTheProcessInheritedAboveTheLimitToo) {
    static rlim_t limite;
    for (rlim_t l : {1024, 300, 100}) {
        limite = l;
        Opciones o;
        o.antesDeExec = [] {
            const int df = open("/dev/null", O_WRONLY | O_APPEND);
            for (int otro : {20, 21, 255, 256, 900}) dup2(df, otro);
            close(df);
            const struct rlimit limites = {limite, limite};
            setrlimit(RLIMIT_NOFILE, &limites);
        };
        Sesion s(o);
        const std::string corto = s.Linea("listopen"), todo = s.Linea("listopen 5000");
        EXPECT_EQ(LineaDe(0, corto), "descriptor: 0, offset: (  )-> entrada estandar O_RDONLY ");
        EXPECT_EQ(LineaDe(2, corto), "descriptor: 2, offset: (  )-> error estandar O_WRONLY ");
        EXPECT_EQ(LineaDe(3, corto), "descriptor: 3, offset: (  )-> no usado  ");
        EXPECT_EQ(Lineas(corto), 22u) << "0 to 19, and on through 20 and 21";
        EXPECT_EQ(Lineas(todo), 4096u);
        for (int df : {20, 21, 255, 256, 900})
            EXPECT_EQ(LineaDe(df, todo),
                      "descriptor: " + std::to_string(df) + ", offset: (0)-> desconocido O_WRONLY O_APPEND ")
                << "limit " << limite;
        EXPECT_EQ(s.Linea("listopen 0") + s.Linea("listopen -2"), "");
    }
}

TEST(Descriptors, CommandsAndTheTableAgree) {
    DirectorioTemporal tmp;
    Opciones o;
    o.directorio = tmp.ruta();
    Sesion s(o);
    const struct {
        const char *linea, *salida;
    } filas[] = {
        {"open f cr ex wo tr ap zz rw", "Anadida entrada 3 a la tabla ficheros abiertos\n"},
        {"writestr 3   hola \t  mundo", ""},
        {"open f", "Anadida entrada 4 a la tabla ficheros abiertos\n"},
        {"open f cr ex", "Imposible abrir fichero: File exists\n"},
        {"open nada", "Imposible abrir fichero: No such file or directory\n"},
        {"readstr 4 4", "Leidos 4 bytes del descriptor 4\nhola\n"},
        {"dup 4", ""},
        {"dup2 5 9", ""},
        {"dup2 5 5", ""},
        {"lseek 9 -3 SEEK_END", "Descriptor 9 posicionado en -3\n"},
        {"lseek 9 1 SEEK_CUR", "Descriptor 9 posicionado en 1\n"},
        {"readstr 4 100", "Leidos 2 bytes del descriptor 4\ndo\n"},
        {"lseek 4 1 otro", "Descriptor 4 posicionado en 1\n"},
        {"lseek 4 -1", "Error al intentar posicionar el descriptor 4 en el offset  -1: Invalid argument\n"},
        {"readstr 4 0", "Leidos 0 bytes del descriptor 4\n\n"},
        {"readstr 3 1", "Error al intentar leer del descriptor 3: Bad file descriptor\n"},
        {"writestr 4 a b", "Error intentar escribir 3 bytes en el descriptor 4: Bad file descriptor\n"},
        {"read 4 0 5", "Error al leer del descriptor 4 a la direccion (nil): Bad address\n"},
        {"write 3 10 5", "Error al escribir en el descriptor 3 desde la direccion 0x10: Bad address\n"},
        {"read 4 0x10 0", "Leidos 0 bytes del descriptor 4 en la direccion 0x10\n"},
        {"read 4 0", "Parametros incorrectos\n"},
        {"writestr 4", "Parametros incorrectos\n"},
        {"dup 77", "Inposible duplicar descriptor: Bad file descriptor\n"},
        {"dup 5000", "Inposible duplicar descriptor: Bad file descriptor\n"},
        {"close 5000", "Inposible cerrar descriptor: Bad file descriptor\n"},
    };
    for (const auto &fila : filas) EXPECT_EQ(s.Linea(fila.linea), fila.salida) << fila.linea;
    if (!kSaneado) { // the sanitizer would add a line of its own
        EXPECT_EQ(s.Linea("readstr 4 -1"), "Imposible asignar memoria para la lectura\n");
    }
    const std::string listado = s.Linea("close -1");
    EXPECT_EQ(LineaDe(3, listado),
              "descriptor: 3, offset: (10)-> f O_CREAT O_EXCL O_WRONLY O_APPEND O_TRUNC ");
    EXPECT_EQ(LineaDe(4, listado), "descriptor: 4, offset: (1)-> f O_RDONLY ");
    for (const std::string df : {"5", "9"})
        EXPECT_EQ(LineaDe(std::stoi(df), listado),
                  "descriptor: " + df + ", offset: (1)-> dupplicado de 5 (dupplicado de 4 (f)) O_RDONLY ");
    for (const char *linea : {"open", "dup", "dup -1", "dup2 4", "dup2 4 -1"})
        EXPECT_EQ(s.Linea(linea), listado) << linea;
    EXPECT_EQ(s.Linea("close 9"), "");
    EXPECT_EQ(LineaDe(9, s.Linea("listopen")), "descriptor: 9, offset: (  )-> no usado  ");

    const std::string largo(4000, 'x');
    EXPECT_EQ(s.Linea("writestr 3 " + largo), "");
    EXPECT_EQ(LeerFichero(tmp / "f"), "hola mundo" + largo);
}

TEST(Descriptors, WhatWasPrintedGoesOutBeforeADescriptorIsTouched) {
    for (bool fichero : {false, true}) {
        DirectorioTemporal tmp;
        Opciones o;
        o.directorio = tmp.ruta();
        o.entradaFichero = o.salidaFichero = fichero;
        const Resultado r =
            Ejecutar("prompt >\nauthors -l\nwritestr 1 directo\nopen f cr wo\nwritestr 2 y\nauthors -l\n"
                     "dup 1\nopen nada\ndup2 3 1\nauthors -l\nwritestr 4 fuera\nclose 1\n",
                     o);
        const std::string autores = "login del autor1\nlogin del autor2\n";
        EXPECT_EQ(r.salida.substr(r.salida.find(">")),
                  ">" + autores + ">directo>Anadida entrada 3 a la tabla ficheros abiertos\n>y>" + autores +
                      ">>Imposible abrir fichero: No such file or directory\n>fuera"
                      "Imposible escribir en la salida estandar: Bad file descriptor\n");
        EXPECT_EQ(LeerFichero(tmp / "f"), ">" + autores + ">>");
    }
}

TEST(Descriptors, TheOffsetOfTheInputIsThatOfTheLineAfter) {
    Opciones o;
    o.entradaFichero = true;
    const std::string guion = "listopen 1\nreadstr 0 5\nabcd\npid -p\nlseek 0 0 SEEK_END\npid\n";
    const std::string salida = Ejecutar(guion, o).salida;
    EXPECT_NE(salida.find("descriptor: 0, offset: (11)-> entrada estandar"), std::string::npos) << salida;
    EXPECT_NE(salida.find("Leidos 5 bytes del descriptor 0\nabcd\n\n"), std::string::npos) << salida;
    EXPECT_NE(salida.find("Pid del padre"), std::string::npos) << salida;
    EXPECT_EQ(salida.find("Pid de shell"), std::string::npos) << "a line after the new offset was run";
}

} // namespace
