#include "signals/dispositions.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "signals/handler_settings.h"

namespace {

TEST(Dispositions, DescribeACaughtSignalWithSettingsFlagsAndMask) {
    sigset_t mascara;
    sigemptyset(&mascara);
    sigaddset(&mascara, SIGINT);
    sigaddset(&mascara, SIGIOT);
    const auto manejador = [](int) {};
    ASSERT_EQ(InstalarManejadorSenal(SIGUSR1, manejador, SA_RESTART | SA_NODEFER, &mascara), 0);
    v[SIGUSR1] = 1;
    delay[SIGUSR1] = 7;
    char esperado[256];
    snprintf(esperado, sizeof esperado,
             "     USR1: No Enmascarada %p -show  -sleep:7 RESTART NODEFER \n\tmascara asociada INT ABRT ",
             reinterpret_cast<void *>(+manejador));
    EXPECT_STREQ(InfoSenal(SIGUSR1), esperado);
    EXPECT_EQ(InstalarManejadorSenal(SIGKILL, SIG_IGN, 0, nullptr), -1);
    InstalarManejadorSenal(SIGUSR1, SIG_DFL, 0, nullptr);
}

} // namespace
