// SPDX-License-Identifier: MIT

#include "processes/process_list.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>

#include "base/output.h"
#include "tests/driver/session.h"

namespace {

char sleep_[] = "sleep", cien_[] = "100";
char *const palabras_[] = {sleep_, cien_, nullptr};

TEST(ProcessList, Holds1023RecordsAndRemovesThemByStateOrOneByOne) {
    static ListaProcesos lista;
    for (int i = 1; i <= kMaxProcesos; i++) ASSERT_EQ(MeterProceso(&lista, i, 0, palabras_), i);
    EXPECT_EQ(MeterProceso(&lista, 5000, 0, palabras_) == -1 ? errno : 0, ENOSPC);
    for (int i : {0, 1, 2, 500, kMaxProcesos - 1}) lista.registros[i].estado = TERMINADO;
    EXPECT_TRUE(EstadoProcesoPid(&lista, 2) == TERMINADO && EstadoProcesoPid(&lista, 5000) == -1);
    EXPECT_EQ(BorrarProcesosEstado(&lista, TERMINADO), 0);
    for (int pid : {4, 700, 1022}) EXPECT_EQ(BorrarProcesoPid(&lista, pid), 0);
    EXPECT_EQ(BorrarProcesoPid(&lista, 700) == -1 ? errno : 0, ESRCH);
    for (int pos : {-1, lista.num}) EXPECT_EQ(borrarProceso(&lista, pos) == -1 ? errno : 0, EINVAL);
    for (int pos : {0, 496, 694, lista.num - 1}) // 4, 501, 700 and those before 4 are gone
        EXPECT_EQ(lista.registros[pos].pid, pos + 5 + (pos >= 496) + (pos >= 694));
    EXPECT_EQ(VaciarListaProcesos(&lista), 0);
    EXPECT_EQ(lista.num, 0);
    CrearListaProcesos(&lista);
    EXPECT_EQ(lista.num, 0);
}

TEST(ProcessList, FormatsItsColumns) {
    EXPECT_STREQ(nombreUsuario(static_cast<uid_t>(-1)), "uid -000001");
    EXPECT_STREQ(nombreEstado(16), "???????");
}

TEST(ProcessList, ShowsTheRecordsInTheStatesAskedForEachWithItsUser) {
    static ListaProcesos lista = {{{INT_MAX, 0, ACTIVO, 0, 0, nullptr},
                                   {INT_MAX - 1, 0, PARADO, SIGSTOP, 0, nullptr},
                                   {INT_MAX, 54321, TERMINADO, 3, 0, nullptr},
                                   {INT_MAX, 0, ACTIVO, 0, 0, nullptr}},
                                  4};
    testing::internal::CaptureStdout();
    ImprimirListaProcesos(&lista, ACTIVO | TERMINADO);
    EXPECT_EQ(MostrarProcesoPid(&lista, INT_MAX - 1), 0);
    EXPECT_EQ(MostrarProcesoPid(&lista, 1), -1);
    VolcarSalida();
    const std::string root = "        root p=-1 * ", activo = "2147483647" + root + "ACTIVO (000) NULL\n";
    EXPECT_TRUE(escenario::Casa(testing::internal::GetCapturedStdout(),
                                activo + "2147483647 uid 0054321 p=-1 * TERMINADO (003) NULL\n" + activo +
                                    "2147483646" + root + "PARADO (019) NULL\n"));
}

TEST(ProcessList, AFinalRecordTakesNothingFromAnotherChildOfTheSamePid) {
    const pid_t hijo = fork();
    if (hijo == 0) _exit(9);
    RegistroProceso viejo = {hijo, 0, TERMINADO, 3, 0, nullptr};
    static ListaProcesos nueva = {{{hijo, 0, ACTIVO, 0, 0, nullptr}}, 1};
    siginfo_t info;
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(hijo), &info, WEXITED | WNOWAIT), 0);
    actualizarProceso(&viejo);
    EXPECT_EQ(viejo.valor, 3);
    EXPECT_EQ(MostrarProcesoPid(&nueva, hijo), 0);
    EXPECT_EQ(nueva.registros[0].valor, 9);
}

} // namespace
