// SPDX-License-Identifier: MIT

#include "processes/process_list.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace {

char sleep_[] = "sleep", cien_[] = "100";
char *const palabras_[] = {sleep_, cien_, nullptr};

TEST(ProcessList, Holds1023RecordsAndRemovesThemByState) {
    static ListaProcesos lista;
    for (int i = 1; i <= kMaxProcesos; i++) ASSERT_EQ(MeterProceso(&lista, i, 0, palabras_), i);
    EXPECT_EQ(MeterProceso(&lista, 5000, 0, palabras_), -1);
    EXPECT_EQ(errno, ENOSPC);
    for (int i : {0, 1, 2, 500, kMaxProcesos - 1}) lista.registros[i].estado = TERMINADO;
    EXPECT_EQ(BorrarProcesosEstado(&lista, TERMINADO), 0);
    EXPECT_EQ(lista.num, kMaxProcesos - 5);
    EXPECT_EQ(BuscarProcesoPid(&lista, 502), 497);
    EXPECT_EQ(VaciarListaProcesos(&lista), 0);
    EXPECT_EQ(lista.num, 0);
}

TEST(ProcessList, FormatsItsColumns) {
    EXPECT_STREQ(nombreUsuario(static_cast<uid_t>(-1)), "uid -000001");
    EXPECT_STREQ(nombreUsuario(54321), "uid 0054321");
    EXPECT_STREQ(nombreUsuario(0), "       root");
}

TEST(ProcessList, AFinalRecordTakesNothingFromAnotherChildOfTheSamePid) {
    const pid_t hijo = fork();
    if (hijo == 0) _exit(9);
    RegistroProceso viejo = {hijo, 0, TERMINADO, 3, 0, nullptr};
    RegistroProceso nuevo = {hijo, 0, ACTIVO, 0, 0, nullptr};
    siginfo_t info;
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(hijo), &info, WEXITED | WNOWAIT), 0);
    actualizarProceso(&viejo);
    EXPECT_EQ(viejo.valor, 3);
    actualizarProceso(&nuevo);
    EXPECT_EQ(nuevo.valor, 9);
}

} // namespace
