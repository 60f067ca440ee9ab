// SPDX-License-Identifier: MIT

#include "processes/process_list.h"

#include <pwd.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/dates.h"
#include "base/failure.h"
#include "base/large_storage.h"
#include "base/output.h"
#include "base/words.h"
#include "signals/signal_names.h"

alignas(kAparte) ListaProcesos LP;

namespace {

void ImprimirLinea(const RegistroProceso *registro, const char *usuario) {
    const int prioridad = getpriority(PRIO_PROCESS, static_cast<id_t>(registro->pid));
    Imprimir("%6d %s p=%d %s %s (%s) %s\n", registro->pid, usuario, prioridad, fecha(registro->lanzamiento),
             nombreEstado(registro->estado),
             registro->estado == SENALADO ? NombreSenal(registro->valor) : valorEstado(registro->valor),
             registro->linea ? registro->linea : "NULL");
}

/// Whether the system has news of some child; they stay there for waitpid.
bool HayNoticias() {
    siginfo_t info; // of none, its pid is 0
    return waitid(P_ALL, 0, &info, WEXITED | WSTOPPED | WCONTINUED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid != 0;
}

} // namespace

void CrearListaProcesos(ListaProcesos *lista) { lista->num = 0; }

char *crearLineaComando(char *const palabras[]) {
    if (!palabras[0]) return nullptr;
    const size_t tam = UnirPalabras(nullptr, 0, palabras) + 1;
    char *linea = static_cast<char *>(malloc(tam));
    if (linea) UnirPalabras(linea, tam, palabras);
    return linea;
}

int MeterProceso(ListaProcesos *lista, pid_t pid, uid_t uid, char *const palabras[]) {
    if (lista->num == kMaxProcesos) return Fallo(ENOSPC);
    lista->registros[lista->num] = {pid, uid, ACTIVO, 0, time(nullptr), crearLineaComando(palabras)};
    return ++lista->num;
}

int BuscarProcesoPid(const ListaProcesos *lista, pid_t pid) {
    for (int i = 0; i < lista->num; i++)
        if (lista->registros[i].pid == pid) return i;
    return Fallo(ESRCH);
}

int estadoProceso(const RegistroProceso *registro) { return registro->estado; }

int EstadoProcesoPid(const ListaProcesos *lista, pid_t pid) {
    const int pos = BuscarProcesoPid(lista, pid);
    return pos == -1 ? -1 : estadoProceso(&lista->registros[pos]);
}

void actualizarProceso(RegistroProceso *registro) {
    if (registro->estado & (TERMINADO | SENALADO)) return;
    int estado;
    if (waitpid(registro->pid, &estado, WNOHANG | WUNTRACED | WCONTINUED) != registro->pid) return;
    if (WIFEXITED(estado)) {
        registro->estado = TERMINADO;
        registro->valor = WEXITSTATUS(estado);
    } else if (WIFSIGNALED(estado)) {
        registro->estado = SENALADO;
        registro->valor = WTERMSIG(estado);
    } else if (WIFSTOPPED(estado) && WSTOPSIG(estado) != SIGCONT) {
        registro->estado = PARADO;
        registro->valor = WSTOPSIG(estado);
    } else if (WIFCONTINUED(estado)) {
        registro->estado = ACTIVO;
        registro->valor = 0;
    }
}

void ActualizarListaProcesos(ListaProcesos *lista) {
    if (!HayNoticias()) return; // mostly: one question in place of one for each record
    for (int i = 0; i < lista->num; i++) actualizarProceso(&lista->registros[i]);
}

int borrarProceso(ListaProcesos *lista, int pos) {
    if (pos < 0 || pos >= lista->num) return Fallo(EINVAL);
    free(lista->registros[pos].linea);
    const auto detras = static_cast<size_t>(lista->num - pos - 1);
    memmove(&lista->registros[pos], &lista->registros[pos + 1], detras * sizeof lista->registros[0]);
    --lista->num;
    return 0;
}

int BorrarProcesoPid(ListaProcesos *lista, pid_t pid) {
    const int pos = BuscarProcesoPid(lista, pid);
    return pos == -1 ? -1 : borrarProceso(lista, pos);
}

int BorrarProcesosEstado(ListaProcesos *lista, int mascara) {
    int quedan = 0;
    for (int i = 0; i < lista->num; i++) {
        if (estadoProceso(&lista->registros[i]) & mascara)
            free(lista->registros[i].linea);
        else
            lista->registros[quedan++] = lista->registros[i];
    }
    lista->num = quedan;
    return 0;
}

int VaciarListaProcesos(ListaProcesos *lista) { return BorrarProcesosEstado(lista, kTodosEstados); }

const char *nombreEstado(int estado) {
    switch (estado) {
    case ACTIVO: return "ACTIVO";
    case PARADO: return "PARADO";
    case SENALADO: return "SENALADO";
    case TERMINADO: return "TERMINADO";
    default: return "???????";
    }
}

const char *valorEstado(int valor) {
    static char texto[16];
    snprintf(texto, sizeof texto, "%03d", valor);
    return texto;
}

const char *nombreUsuario(uid_t uid) {
    static char nombre[256]; // logins may be longer than the column; they are shown whole
    if (const struct passwd *usuario = getpwuid(uid))
        snprintf(nombre, sizeof nombre, "%11s", usuario->pw_name);
    else
        snprintf(nombre, sizeof nombre, "uid %07d", static_cast<int>(uid));
    return nombre;
}

void imprimirProceso(const RegistroProceso *registro) {
    ImprimirLinea(registro, nombreUsuario(registro->uid));
}

void ImprimirListaProcesos(const ListaProcesos *lista, int mascara) {
    const RegistroProceso *anterior = nullptr;
    const char *usuario = nullptr;
    LeerZonaHoraria();
    for (int i = 0; i < lista->num; i++) {
        const RegistroProceso *registro = &lista->registros[i];
        if (!(estadoProceso(registro) & mascara)) continue;
        // Neighbours mostly share theirs: the user database is not read for each line.
        if (!anterior || registro->uid != anterior->uid) usuario = nombreUsuario(registro->uid);
        ImprimirLinea(registro, usuario);
        anterior = registro;
    }
}

int MostrarProcesoPid(ListaProcesos *lista, pid_t pid) {
    const int pos = BuscarProcesoPid(lista, pid);
    if (pos == -1) return -1;
    actualizarProceso(&lista->registros[pos]);
    LeerZonaHoraria();
    imprimirProceso(&lista->registros[pos]);
    return 0;
}
