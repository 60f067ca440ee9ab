// SPDX-License-Identifier: MIT

#include "processes/execution.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/failure.h"
#include "base/output.h"
#include "environment/credentials.h"
#include "processes/execution_line.h"
#include "processes/process_list.h"
#include "processes/search_path.h"
#include "signals/child.h"

namespace {

/// The identity and the priority that the program is to have. Returns 0 or -1.
int CambiarUsuarioYPrioridad(const char *usuario, const int *prioridad) {
    if (usuario && CambiarCredencial(usuario) == -1) {
        Imprimir("Imposible cambiar credencial: %s\n", strerror(errno));
        return -1;
    }
    if (prioridad && setpriority(PRIO_PROCESS, static_cast<id_t>(getpid()), *prioridad) == -1) {
        Imprimir("Imposible cambiar prioridad: %s\n", strerror(errno));
        return -1;
    }
    return 0;
}

/// The child of Proceso: the program, or the reason why not.
[[noreturn]] void EjecutarHijo(char *linea[], bool segundoPlano, const char *usuario, const int *prioridad) {
    if (segundoPlano && setsid() == -1) InformarError("error al crear una sesion");
    exec(linea, usuario, prioridad);
    InformarError("No ejecutado");
    TerminarHijo();
}

} // namespace

int exec(char *linea[], const char *usuario, const int *prioridad) {
    if (!linea[0]) return Fallo(EFAULT);
    int leida;
    const int posPrioridad = prioridad ? 0 : ComprobarPrioridad(linea, &leida);
    if (CambiarUsuarioYPrioridad(usuario, posPrioridad > 0 ? &leida : prioridad) == -1) return -1;
    const int posRedireccion = ComprobarRedireccionExec(linea);
    if (posPrioridad > 0 && posPrioridad < posRedireccion)
        linea[posPrioridad] = nullptr;
    else if (posRedireccion != kSinRedireccion)
        linea[posRedireccion] = nullptr;
    char *entorno[kMaxEntorno + 1];
    const int n = ComprobarEntorno(linea, entorno);
    if (n == -1) return -1;
    const char *programa = Ejecutable(linea[n]);
    if (!programa) return Fallo(EFAULT);
    VolcarSalida(); // the program knows nothing of what is still to be printed
    return n > 0 ? execve(programa, linea + n, entorno) : execv(programa, linea);
}

int Proceso(char *linea[], int segundoPlano, const char *usuario, const int *prioridad) {
    const bool detras = ComprobarSegundoPlano(linea) || segundoPlano;
    const pid_t pid = Bifurcar();
    if (pid == 0) EjecutarHijo(linea, detras, usuario, prioridad);
    if (pid == -1)
        InformarError("Imposible crear proceso");
    else if (detras)
        MeterProceso(&LP, pid, usuario ? UidUsuario(usuario) : getuid(), linea); // unrecorded when LP is full
    else
        EsperarHijo(pid);
    return pid == -1 ? -1 : 0;
}
