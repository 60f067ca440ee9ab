// SPDX-License-Identifier: MIT

#include "base/output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "base/write_all.h"
#include "tests/driver/session.h"

namespace {

using std::string;

/// Descriptor 1 leads to a file while this lives.
struct SalidaAFichero {
    escenario::DirectorioTemporal dir;
    const int previa = dup(1);
    SalidaAFichero() {
        VolcarSalida(); // what another test has left
        const int df = open((dir / "salida").c_str(), O_CREAT | O_WRONLY, 0600);
        dup2(df, 1);
        close(df);
    }
    ~SalidaAFichero() {
        dup2(previa, 1);
        close(previa);
    }
    string Escrito() const { return escenario::LeerFichero(dir / "salida"); }
};

TEST(Output, AFullBufferGoesOutUpToTheLineThatIsBeingFormed) {
    for (const size_t resto : {0, 1, 32'768, 33'000}) {
        const SalidaAFichero salida;
        // No room for what Imprimir may need; as much as there is behind it comes all the same.
        const string lineas = string(65'535 - resto, 'a') + "\n", linea(resto, 'b'); // 64 KiB
        const char *principio = ReservarSalida(0);
        EscribirTexto((lineas + linea).c_str());
        EXPECT_EQ(salida.Escrito(), "") << resto;
        errno = E2BIG;
        EXPECT_LE(ReservarSalida(kMaxReserva) + kMaxReserva, principio + 65'536);
        Imprimir("%s\n", string(kMaxReserva - 1, 'c').c_str()); // there is no room for the newline
        EXPECT_EQ(errno, E2BIG);
        EXPECT_EQ(salida.Escrito(), resto > 32'768 ? lineas + linea : lineas) << resto;
        VolcarSalida();
        EXPECT_EQ(salida.Escrito(), lineas + linea + string(kMaxReserva - 1, 'c')) << resto;
        EXPECT_EQ(errno, E2BIG);
    }
}

TEST(Output, ARefusalIsToldOfAndLeavesTheReasonThatTheCallerHas) {
    int intactos = 0;
    string aviso;
    {
        const SalidaAFichero salida;
        const int previa = dup(2);
        dup2(1, 2);
        close(1);
        const auto contar = [&intactos] { intactos += errno == E2BIG; };
        errno = E2BIG;
        EscribirTexto(string(70'000, 'x').c_str());
        contar();
        aviso = salida.Escrito();
        errno = E2BIG;
        VolcarSalida();
        contar();
        close(2);
        InformarError("x");
        contar();
        dup2(previa, 2);
        close(previa);
    }
    EXPECT_EQ(intactos, 3);
    EXPECT_EQ(aviso, "Imposible escribir en la salida estandar: Bad file descriptor\n");
}

TEST(Output, EverythingIsWrittenWhereAPartAtATimeFindsRoom) {
    int tubo[2];
    ASSERT_EQ(pipe2(tubo, O_NONBLOCK), 0);
    string texto;
    while (texto.size() < 300'000) texto += std::to_string(texto.size());
    const pid_t pid = fork();
    if (pid == 0) _exit(EscribirTodo(tubo[1], texto.data(), texto.size()) == 0 ? 0 : 1);
    close(tubo[1]);
    fcntl(tubo[0], F_SETFL, 0);
    string leido;
    char trozo[10'000];
    for (ssize_t n; (n = read(tubo[0], trozo, sizeof trozo)) > 0;)
        leido.append(trozo, static_cast<size_t>(n));
    close(tubo[0]);
    EXPECT_TRUE(leido == texto) << leido.size();
    int estado;
    EXPECT_TRUE(waitpid(pid, &estado, 0) == pid && estado == 0);
    EXPECT_EQ(EscribirTodo(-1, "x", 1) == -1 ? errno : 0, EBADF);
    EXPECT_EQ(EscribirAlgo(1, "", 0), 0);
}

} // namespace
