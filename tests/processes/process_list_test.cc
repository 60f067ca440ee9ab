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
    EXPECT_STREQ(lista.registros[0].linea, "sleep 100");
    for (int i : {0, 1, 2, 500, kMaxProcesos - 1}) lista.registros[i].estado = TERMINADO;
    lista.registros[3].estado = SENALADO;
    EXPECT_EQ(BorrarProcesosEstado(&lista, TERMINADO), 0);
    EXPECT_EQ(lista.num, kMaxProcesos - 5);
    EXPECT_EQ(EstadoProcesoPid(&lista, 4), SENALADO);
    EXPECT_EQ(EstadoProcesoPid(&lista, 501), -1);
    EXPECT_EQ(BuscarProcesoPid(&lista, 502), 497);
    EXPECT_EQ(borrarProceso(&lista, lista.num), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(VaciarListaProcesos(&lista), 0);
    EXPECT_EQ(lista.num, 0);
}

TEST(ProcessList, FormatsItsColumns) {
    setenv("TZ", "UTC0", 1);
    EXPECT_STREQ(fecha(1709629624), "2024/03/05 09:07:4");
    EXPECT_STREQ(nombreUsuario(static_cast<uid_t>(-1)), "uid -000001");
    EXPECT_STREQ(nombreUsuario(54321), "uid 0054321");
    EXPECT_STREQ(nombreUsuario(0), "       root");
    EXPECT_STREQ(valorEstado(3), "003");
    EXPECT_STREQ(nombreEstado(3), "???????");
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
    EXPECT_EQ(nuevo.estado, TERMINADO);
    EXPECT_EQ(nuevo.valor, 9);
}

int extremos_[2];
volatile sig_atomic_t faltan_;

/// A child that ends with 7 when the write end of a pipe is closed, and alarms that interrupt whatever the
/// parent waits for. The `cuando`-th of them closes that end (0: none does).
pid_t HijoYAlarmas(int cuando) {
    EXPECT_EQ(pipe(extremos_), 0);
    const pid_t hijo = fork();
    if (hijo == 0) {
        close(extremos_[1]);
        char c;
        _exit(read(extremos_[0], &c, 1) == 0 ? 7 : 1);
    }
    faltan_ = cuando;
    struct sigaction accion = {};
    accion.sa_handler = [](int) {
        if (faltan_ == 1) close(extremos_[1]);
        faltan_ = faltan_ - 1;
    };
    sigaction(SIGALRM, &accion, nullptr);
    const struct itimerval cada = {{0, 2000}, {0, 2000}};
    setitimer(ITIMER_REAL, &cada, nullptr);
    return hijo;
}

void PararAlarmas() {
    const struct itimerval nunca = {};
    setitimer(ITIMER_REAL, &nunca, nullptr);
    close(extremos_[0]);
}

TEST(Waiting, ForOneChildGoesOnAfterSignalsAndEndsWithoutAChild) {
    const pid_t hijo = HijoYAlarmas(3);
    int estado = 0;
    EXPECT_EQ(EsperarHijo(hijo, &estado), hijo);
    PararAlarmas();
    EXPECT_EQ(WEXITSTATUS(estado), 7);
    EXPECT_EQ(EsperarHijo(hijo, &estado), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST(Waiting, ForAJobEndsSilentlyAtASignalAndKeepsTheRecord) {
    const pid_t hijo = HijoYAlarmas(0);
    MeterProceso(&LP, hijo, 0, palabras_);
    char fg[] = "-fg";
    std::string pid = std::to_string(hijo);
    char *args[] = {fg, pid.data(), nullptr};
    Cmd_job(args);
    PararAlarmas();
    EXPECT_EQ(EstadoProcesoPid(&LP, hijo), ACTIVO);
    VaciarListaProcesos(&LP);
    close(extremos_[1]);
    EXPECT_EQ(EsperarHijo(hijo, nullptr), hijo);
}

} // namespace
