// SPDX-License-Identifier: MIT

#include <signal.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

TEST(HeldSignals, ThatOfAHandlerIsHeldWhileItIsThereAndItsDefaultActionIsNotPutOff) {
    SALTAR_SIN_PROC(); // to tell when the program sleeps
    Sesion s({.antesDeExec = EstrecharSalida});
    s.Linea("sighandler -show -Fresethand -Frestart USR1");
    const auto interrumpir = [&s] {
        s.Enviar("listopen 200\n");
        s.EsperarEscrituraParada(4096);
        kill(s.pid(), SIGUSR1);
    };
    interrumpir();
    EXPECT_FALSE(Contiene(s.EsperarPrompt(), "Recibida"));
    s.Esperar("Recibida senal USR1 1 veces");
    s.Esperar("\n");
    interrumpir();
    std::string resto;
    EXPECT_TRUE(MuertoPor(s.EsperarFin(&resto), SIGUSR1));
    EXPECT_FALSE(Contiene(resto, "descriptor: 199,"));
}

} // namespace
