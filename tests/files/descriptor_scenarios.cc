// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// Whether a listing has this line, its "descriptor: " left out.
bool Lista(const std::string &listado, const std::string &linea) {
    return listado.find("descriptor: " + linea + "\n") != std::string::npos;
}

TEST(OpenFileTable, HoldsWhatTheProcessInheritedAboveTheLimitToo) {
    Sesion s({.antesDeExec = [] {
        const int df = open("/dev/null", O_WRONLY | O_APPEND);
        for (int otro : {20, 21, 255, 256, 900}) dup2(df, otro);
        close(df);
        dup2(open("/", O_PATH), 300); // which poll does not see
        const struct rlimit limites = {100, 100};
        setrlimit(RLIMIT_NOFILE, &limites);
    }});
    const std::string corto = s.Linea("listopen"), todo = s.Linea("listopen 5000");
    EXPECT_EQ(std::count(corto.begin(), corto.end(), '\n'), 22) << "0 to 19, and on through 20 and 21";
    EXPECT_EQ(std::count(todo.begin(), todo.end(), '\n'), 4096);
    EXPECT_TRUE(Lista(todo, "300, offset: (  )-> desconocido O_RDONLY ")) << todo;
    EXPECT_TRUE(Lista(corto, "0, offset: (  )-> entrada estandar O_RDONLY ")) << corto;
    for (const char *df : {"20", "21", "255", "256", "900"})
        EXPECT_TRUE(Lista(todo, df + std::string(", offset: (0)-> desconocido O_WRONLY O_APPEND "))) << df;
}

TEST(Descriptors, CommandsAndTheTableAgree) {
    DirectorioTemporal tmp;
    Sesion s({.directorio = tmp.ruta()});
    static constexpr std::pair<const char *, const char *> filas[] = {
        {"open f cr ex wo tr ap zz rw", "Anadida entrada 3 a la tabla ficheros abiertos\n"},
        {"writestr 3   hola \t  mundo", ""},
        {"open f", "Anadida entrada 4 a la tabla ficheros abiertos\n"},
        {"open f cr ex", "Imposible abrir fichero: File exists\n"},
        {"readstr 4 4", "Leidos 4 bytes del descriptor 4\nhola\n"},
        {"dup 4", ""},
        {"dup2 5 9", ""},
        {"lseek 9 -3 SEEK_END", "Descriptor 9 posicionado en -3\n"},
        {"lseek 9 1 SEEK_CUR", "Descriptor 9 posicionado en 1\n"},
        {"readstr 4 100", "Leidos 2 bytes del descriptor 4\ndo\n"},
        {"lseek 4 -1", "Error al intentar posicionar el descriptor 4 en el offset  -1: Invalid argument\n"},
        {"readstr 3 1", "Error al intentar leer del descriptor 3: Bad file descriptor\n"},
        {"writestr 4 a b", "Error intentar escribir 3 bytes en el descriptor 4: Bad file descriptor\n"},
        {"lseek 4 1 otro", "Descriptor 4 posicionado en 1\n"},
        {"read 4 0 5", "Error al leer del descriptor 4 a la direccion (nil): Bad address\n"},
        {"write 3 10 5", "Error al escribir en el descriptor 3 desde la direccion 0x10: Bad address\n"},
        {"read 4 0", "Parametros incorrectos\n"},
        {"lseek 4 1099511627776", "Descriptor 4 posicionado en 1099511627776\n"},
        {"close 4096", "Inposible cerrar descriptor: Bad file descriptor\n"},
    };
    for (const auto &[linea, salida] : filas) EXPECT_EQ(s.Linea(linea), salida) << linea;
    const std::string listado = s.Linea("close -1");
    for (const char *linea : {"3, offset: (10)-> f O_CREAT O_EXCL O_WRONLY O_APPEND O_TRUNC ",
                              "4, offset: (1099511627776)-> f O_RDONLY ",
                              "9, offset: (1099511627776)-> dupplicado de 5 (dupplicado de 4 (f)) O_RDONLY "})
        EXPECT_TRUE(Lista(listado, linea)) << linea << listado;
    for (const char *linea : {"open", "dup -1", "dup2 4 -1"}) EXPECT_EQ(s.Linea(linea), listado) << linea;
    EXPECT_EQ(s.Linea("close 9"), "");
    EXPECT_TRUE(Lista(s.Linea("open"), "9, offset: (  )-> no usado  "));
    const std::string largo(4000, 'x');
    EXPECT_EQ(s.Linea("writestr 3 " + largo), "");
    EXPECT_EQ(LeerFichero(tmp / "f"), "hola mundo" + largo);
}

TEST(Descriptors, WhatWasPrintedGoesOutBeforeADescriptorIsTouched) {
    const std::string autores = "login del autor1\nlogin del autor2\n";
    for (bool fichero : {false, true}) {
        DirectorioTemporal tmp;
        const Resultado r =
            Ejecutar("prompt >\nauthors -l\nwritestr 1 directo\nopen f cr wo\nwritestr 2 y\nauthors -l\n"
                     "dup 1\nopen nada\ndup2 3 1\nauthors -l\nwritestr 4 fuera\nclose 1\n",
                     {.directorio = tmp.ruta(), .entradaFichero = fichero, .salidaFichero = fichero});
        EXPECT_EQ(r.salida.substr(r.salida.find(">")),
                  ">" + autores + ">directo>Anadida entrada 3 a la tabla ficheros abiertos\n>y>" + autores +
                      ">>Imposible abrir fichero: No such file or directory\n>fuera"
                      "Imposible escribir en la salida estandar: Bad file descriptor\n");
        EXPECT_EQ(LeerFichero(tmp / "f"), ">" + autores + ">>");
    }
}

TEST(Descriptors, TheOffsetOfTheInputIsThatOfTheLineAfter) {
    const std::string guion =
        "prompt >\nlistopen 1\nreadstr 0 5\nabcd\nlseek 0 0 SEEK_END\nwritestr 1 nunca\n";
    const std::string salida = Ejecutar(guion, {.entradaFichero = true}).salida;
    EXPECT_EQ(salida.substr(salida.find('>')),
              ">descriptor: 0, offset: (20)-> entrada estandar O_RDWR \n"
              ">Leidos 5 bytes del descriptor 0\nabcd\n\n>Descriptor 0 posicionado en 0\n>");
}

} // namespace
