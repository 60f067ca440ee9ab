// SPDX-License-Identifier: MIT

#include <signal.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(HeldSignals, ThatOfAHandlerIsHeldWhileItIsThereAndItsDefaultActionIsNotPutOff) {
    SALTAR_SIN_PROC(); // to tell when the program sleeps
    Sesion s({.antesDeExec = EstrecharSalida});
    s.Linea("sighandler -show -Fresethand -Frestart HUP");
    const auto interrumpir = [&s] {
        s.Enviar("listopen 200\n");
        s.EsperarEscrituraParada(4096);
        kill(s.pid(), SIGHUP);
    };
    interrumpir();
    EXPECT_FALSE(Contiene(s.EsperarPrompt(), "Recibida"));
    s.Esperar("Recibida senal HUP 1 veces");
    s.Esperar("\n");
    interrumpir();
    std::string resto;
    EXPECT_TRUE(MuertoPor(s.EsperarFin(&resto), SIGHUP));
    EXPECT_FALSE(Contiene(resto, "descriptor: 199,"));
}

} // namespace
