#include "processes/process_list.h"

#include <gtest/gtest.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>

#include "processes/child.h"
#include "processes/commands.h"

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
    setenv("TZ", "UTC0", 1);
    EXPECT_STREQ(fecha(1709629624), "2024/03/05 09:07:4");
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

volatile sig_atomic_t alarmas_;
pid_t hijo_;

TEST(Waiting, ForAJobEndsAtASignalAndForAChildGoesOn) {
    hijo_ = fork();
    if (hijo_ == 0) _exit(pause());
    alarmas_ = 1000; // the last of them ends the child, and with it a wait that should have ended before
    struct sigaction accion = {};
    accion.sa_handler = [](int) {
        alarmas_ = alarmas_ - 1;
        if (alarmas_ == 0) kill(hijo_, SIGTERM);
    };
    sigaction(SIGALRM, &accion, nullptr);
    const struct itimerval cada = {{0, 2000}, {0, 2000}}, nunca = {};
    setitimer(ITIMER_REAL, &cada, nullptr);
    MeterProceso(&LP, hijo_, 0, palabras_);
    std::string pid = std::to_string(hijo_);
    char fg[] = "-fg", *args[] = {fg, pid.data(), nullptr};
    Cmd_job(args);
    EXPECT_EQ(EstadoProcesoPid(&LP, hijo_), ACTIVO);
    alarmas_ = 3;
    int estado = 0;
    EXPECT_EQ(EsperarHijo(hijo_, &estado), hijo_);
    EXPECT_TRUE(WIFSIGNALED(estado) && WTERMSIG(estado) == SIGTERM);
    EXPECT_EQ(EsperarHijo(hijo_, &estado), -1);
    EXPECT_EQ(errno, ECHILD);
    setitimer(ITIMER_REAL, &nunca, nullptr);
    VaciarListaProcesos(&LP);
}

} // namespace
