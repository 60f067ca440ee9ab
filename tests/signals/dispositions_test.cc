#include "signals/dispositions.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "signals/handler_settings.h"
#include "signals/signal_names.h"

namespace {

TEST(SignalNames, AreReadExactlyAndShownByTheFirstRow) {
    static constexpr struct {
        const char *nombre;
        int senal;
    } filas[] = {{"HUP", SIGHUP}, {"KILL", SIGKILL}, {"SYS", SIGSYS}, {"IOT", SIGABRT},
                 {"int", -1},     {"SIGINT", -1},    {"", -1}};
    for (const auto &fila : filas) EXPECT_EQ(ValorSenal(fila.nombre), fila.senal) << fila.nombre;
    EXPECT_STREQ(NombreSenal(SIGIOT), "ABRT");
    EXPECT_STREQ(NombreSenal(0), "SIGUNKNOWN");
}

TEST(Dispositions, DescribeACaughtSignalWithSettingsFlagsAndMask) {
    sigset_t mascara;
    sigemptyset(&mascara);
    sigaddset(&mascara, SIGINT);
    sigaddset(&mascara, SIGQUIT);
    const auto manejador = [](int) {};
    ASSERT_EQ(InstalarManejadorSenal(SIGUSR1, manejador, SA_RESTART | SA_NODEFER, &mascara), 0);
    v[SIGUSR1] = 1;
    delay[SIGUSR1] = 7;
    char esperado[256];
    snprintf(esperado, sizeof esperado,
             "     USR1: No Enmascarada %p -show  -sleep:7 RESTART NODEFER \n\tmascara asociada INT QUIT ",
             reinterpret_cast<void *>(+manejador));
    EXPECT_STREQ(InfoSenal(SIGUSR1), esperado);
    EXPECT_EQ(InstalarManejadorSenal(SIGKILL, SIG_IGN, 0, nullptr), -1);
    InstalarManejadorSenal(SIGUSR1, SIG_DFL, 0, nullptr);
}

} // namespace
