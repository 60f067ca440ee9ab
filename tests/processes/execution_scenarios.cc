// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(Execution, EveryByteComesOnceAndInOrderWhateverTheInputAndTheOutput) {
    const Paso filas[] = {{"authors -l", "login del autor1\nlogin del autor2\n"},
                          {"fg /bin/nonexistent", "No ejecutado: No such file or directory\n"},
                          {"fork", "ejecutando proceso [0-9]*\n"},
                          {"/bin/echo hijo", "hijo\n"},
                          {"pipe /bin/echo dos % /bin/cat", "dos\n"},
                          {"exit", ""},
                          {"/bin/echo padre", "padre\n"},
                          {"execute /bin/nonexistent", "Imposible ejecutar: No such file or directory\n"},
                          {"fork", "ejecutando proceso [0-9]*\n"},
                          {"execute /bin/echo otro &", "otro &\n"},
                          {"fg", "No ejecutado: Bad address\n"},
                          {"pipe /bin/echo % /bin/nonexistent", ""}};
    std::string guion, esperado, resto = "pid no es ya una linea del shell\nni esta";
    for (const auto &[linea, salida] : filas) {
        guion += linea + "\n";
        esperado += "=" + salida;
    }
    for (const bool ficheros : {false, true}) {
        const Opciones o{.ficheros = ficheros};
        std::string salida = Salida(guion + "/bin/cat\n" + resto, o);
        EXPECT_TRUE(Casa(salida, esperado + "=" + resto + "=")) << salida; // the shell is still there
        salida = Salida(guion + "execute /bin/cat\n" + resto, o);
        EXPECT_TRUE(Casa(salida, esperado + "=" + resto)) << salida;
    }
}

TEST(Execution, OnATerminalForkAndAForegroundProgramShareTheKeyboard) {
    SALTAR_SIN_TERMINALES();
    Terminal t;
    // What is sent, and what shows that the program is ready for the next.
    const Paso pasos[] = {{"fork\n", "ejecutando proceso"}, {"", "listo%>"},     {"/bin/cat\n", "/bin/cat\n"},
                          {"hola\n", "hola\nhola\n"},       {"\x04", "listo%>"}, {"exit\n", "exit\nlisto%>"}};
    for (const auto &[teclas, respuesta] : pasos) {
        t.Enviar(teclas);
        t.Esperar(respuesta);
    }
}

TEST(Execution, TakesAsManyVariablesAndAsLongAPathAsItHasRoomFor) {
    std::string justas, todas, justa = "/";
    for (int i = 0; i < 127; i++) {
        justas += "V" + std::to_string(i) + "=x ";
        todas += "V" + std::to_string(i) + "=x\n";
    }
    while (justa.size() < 1017) justa += "./";
    justa += "bin"; // with "/sh" 1023 characters, the most that is tried
    const std::string path = "/nohay:" + std::string(3000, 'd');
    Sesion s({.argumentos = {"-p"}, .entorno = {"PATH=" + path}});
    s.Seguir({{"fg " + justas + "/usr/bin/env", todas},
              {"fg X=1 " + justas + "/usr/bin/env", "No ejecutado: Argument list too long\n"},
              {"execute X=1 " + justas + "/usr/bin/env", "Imposible ejecutar: Argument list too long\n"},
              {"search", "/nohay\n" + std::string(2047 - strlen("/nohay:"), 'd') + "\n"},
              {"search -clear", ""},
              {"search +/" + justa, ""},
              {"where sh", "sh\n"},
              {"search +" + justa, ""},
              {"search +/bin", ""},
              {"where sh", justa + "/sh\n"}});
}

} // namespace
