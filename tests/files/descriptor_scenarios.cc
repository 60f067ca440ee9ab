// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(OpenFileTable, HoldsWhatTheProcessInheritedAboveTheLimitToo) {
    Sesion s({.antesDeExec = [] {
        const int df = open("/dev/null", O_WRONLY | O_APPEND), lugar = open("/", O_PATH);
        for (int otro : {20, 21, 255, 256}) dup2(df, otro);
        dup2(lugar, 900);
        Limitar<RLIMIT_NOFILE, 100>();
    }});
    const std::string corto = s.Linea("listopen"), todo = s.Linea("listopen 5000");
    EXPECT_EQ(Veces(corto, "\n"), 22) << "0 to 19, and on through 20 and 21";
    EXPECT_EQ(Veces(todo, "\n"), 4096);
    for (const std::string df : {"20", "21", "255", "256"})
        EXPECT_TRUE(Contiene(todo, "descriptor: " + df + ", offset: (0)-> desconocido O_WRONLY O_APPEND \n"));
    EXPECT_TRUE(Contiene(todo, "descriptor: 900, offset: (  )-> desconocido O_RDONLY \n"));
}

TEST(Descriptors, WhatWasPrintedGoesOutBeforeADescriptorIsTouched) {
    const std::string autores = "login del autor1\nlogin del autor2\n";
    for (bool ficheros : {false, true}) {
        DirectorioTemporal tmp;
        EXPECT_EQ(Salida("authors -l\nwritestr 1 directo\nopen f cr wo\nwritestr 2 y\nauthors -l\n"
                         "dup 1\nopen nada\ndup2 3 1\nauthors -l\nstat f\nwritestr 4 fuera\nclose 1\n",
                         {.directorio = tmp.ruta(), .ficheros = ficheros}),
                  "=" + autores + "=directo=Anadida entrada 3 a la tabla ficheros abiertos\n=y=" + autores +
                      "==Imposible abrir fichero: No such file or directory\n=fuera"
                      "Imposible escribir en la salida estandar: Bad file descriptor\n");
        EXPECT_EQ(LeerFichero(tmp / "f"), "=" + autores + "=      36  f\n==");
    }
}

TEST(Descriptors, TheOffsetOfTheInputIsThatOfTheLineAfter) {
    EXPECT_EQ(
        Salida("listopen 1\nreadstr 0 5\nabcd\nlseek 0 0 SEEK_END\nwritestr 1 nunca\n", {.ficheros = true}),
        "=descriptor: 0, offset: (20)-> entrada estandar O_RDWR \n"
        "=Leidos 5 bytes del descriptor 0\nabcd\n\n=Descriptor 0 posicionado en 0\n=");
    EXPECT_TRUE(Salida("dup\n\n", {.ficheros = true}).starts_with("=descriptor: 0, offset: (13)->"));
}

TEST(Descriptors, ThoseThatDoNotBlockAreWaitedFor) {
    Sesion s({.antesDeExec = [] {
        for (int df : {0, 1}) fcntl(df, F_SETFL, fcntl(df, F_GETFL) | O_NONBLOCK);
        EstrecharSalida();
    }});
    s.Linea("sighandler -Frestart USR1");
    s.Enviar("listopen 200\n");
    s.EsperarEscrituraParada(4096);
    kill(s.pid(), SIGUSR1); // a wait that is interrupted is begun again
    EXPECT_EQ(Veces(s.EsperarPrompt(), "\ndescriptor: "), 199);
    EXPECT_EQ(s.Linea("authors -n"), "Nombre del autor1\nNombre del autor2\n");
}

} // namespace
