// SPDX-License-Identifier: MIT

#include <signal.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(HeldSignals, ThatOfAHandlerIsHeldWhileItIsThereAndItsDefaultActionIsNotPutOff) {
    SALTAR_SIN_PROC(); // to tell when the program sleeps
    for (const int senal : {SIGHUP, SIGINT}) {
        Sesion s({.antesDeExec = EstrecharSalida});
        s.Linea("sighandler -show -Fresethand -Frestart HUP");
        s.Linea("protectsegv");
        s.Enviar("loop\n");
        s.Esperar("Iniciando bucle infinito...");
        kill(s.pid(), SIGSEGV); // which leaves the handler of the loop's interrupt behind
        s.EsperarPrompt();
        const auto interrumpir = [&s, senal] {
            s.Enviar("listopen 200\n");
            s.EsperarEscrituraParada(4096);
            kill(s.pid(), senal);
        };
        const std::string aviso = senal == SIGHUP ? "Recibida senal HUP 1 veces" : "  Manejando SIGINT";
        interrumpir();
        EXPECT_FALSE(Contiene(s.EsperarPrompt(), aviso));
        s.Esperar(aviso);
        s.Esperar("\n");
        interrumpir();
        std::string resto;
        EXPECT_TRUE(MuertoPor(s.EsperarFin(&resto), senal));
        EXPECT_FALSE(Contiene(resto, "descriptor: 199,"));
    }
}

} // namespace
