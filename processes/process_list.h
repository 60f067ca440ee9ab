// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <ctime>

// The background processes that the shell has started. What a record says is what the last poll of it found;
// only the jobs commands poll.

// States, one bit each: a set of states is an or-mask.
constexpr int ACTIVO = 1;
constexpr int PARADO = 2;
constexpr int SENALADO = 4;
constexpr int TERMINADO = 8;
constexpr int kTodosEstados = ACTIVO | PARADO | SENALADO | TERMINADO;

/// One background process.
struct RegistroProceso {
    int32_t pid;
    uint32_t uid; ///< the user as whom it was started
    int32_t estado;
    int32_t valor;      ///< by state: 0, the stopping signal, the ending signal, the exit status
    time_t lanzamiento; ///< when it was recorded
    char *linea;        ///< the command line, a heap string of the record's own; null when there was no room
};

constexpr int kMaxProcesos = 1023;

/// The records in order of insertion. Zero-filled is empty.
struct ListaProcesos {
    RegistroProceso registros[kMaxProcesos + 1];
    int num;
};

extern ListaProcesos LP;

/// Makes the list empty without releasing anything.
void CrearListaProcesos(ListaProcesos *lista);

/// The words joined by single blanks in a new heap string; null when there is no word or no room.
char *crearLineaComando(char *const palabras[]);

/// Appends an ACTIVO record of now. Returns the new count, or -1: ENOSPC (1023 records).
int MeterProceso(ListaProcesos *lista, pid_t pid, uid_t uid, char *const palabras[]);

/// Index of the first record of `pid`, or -1: ESRCH.
int BuscarProcesoPid(const ListaProcesos *lista, pid_t pid);

int estadoProceso(const RegistroProceso *registro);

/// State of the record of `pid`, not polled; -1 when there is none.
int EstadoProcesoPid(const ListaProcesos *lista, pid_t pid);

/// Asks the system for news of the process. A final state, of which there are none to come, is not polled:
/// the pid may by now be another child's.
void actualizarProceso(RegistroProceso *registro);
void ActualizarListaProcesos(ListaProcesos *lista); ///< polls every record

/// Removes the record at `pos`. Returns 0, or -1: EINVAL (no such position).
int borrarProceso(ListaProcesos *lista, int pos);

/// Removes the record of `pid`. Returns 0, or -1: ESRCH.
int BorrarProcesoPid(ListaProcesos *lista, pid_t pid);

/// Removes every record whose state is in `mascara`. Returns 0.
int BorrarProcesosEstado(ListaProcesos *lista, int mascara);
int VaciarListaProcesos(ListaProcesos *lista); ///< removes every record

// Texts; each is valid until the next call of the same function.
const char *nombreEstado(int estado);
const char *valorEstado(int valor);

/// The login in 11 columns, or whole when it is longer, or "uid" and the number. Not to be confused with
/// NombreUsuario (files/owner_names.h), the bare name.
const char *nombreUsuario(uid_t uid);

void imprimirProceso(const RegistroProceso *registro); ///< prints its line, after a LeerZonaHoraria()
void ImprimirListaProcesos(const ListaProcesos *lista, int mascara);

/// Polls the record of `pid` and prints it. Returns 0, or -1: ESRCH.
int MostrarProcesoPid(ListaProcesos *lista, pid_t pid);
