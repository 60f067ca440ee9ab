// SPDX-License-Identifier: MIT

#include "memory/address_space.h"

#include <sys/types.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/output.h"
#include "base/words.h"
#include "memory/block_list.h"
#include "memory/commands.h"
#include "signals/child.h"

// mem: where the regions of the process lie, by the addresses of variables, functions and blocks in them, and
// by the system's own map.

void (*funcionDeLinea)(char *palabras[]);

/// The entry point, which the language does not let a program name.
extern "C" int Principal() __asm__("main");

/// Three variables that lie next to each other in this order, whatever the compiler does with single ones.
template<class T> struct Terna { T v1, v2, v3; };

// The variables exist to be shown: their addresses tell the regions of the process apart.
static_assert(sizeof(int) == 4 && sizeof(float) == 4 && sizeof(long long) == 8);
Terna<float> globales = {3.14f, 2.71f, 6.23f};
float &pi = globales.v1;
float &e = globales.v2;
float &h = globales.v3;
Terna<long long> globalesNulas;
long long &V1 = globalesNulas.v1;
long long &V2 = globalesNulas.v2;
long long &V3 = globalesNulas.v3;

namespace {

/// Called, never merged into its caller: the locals lie in its own frame.
[[gnu::noinline]] void Do_showvars() {
    Terna<int> locales;
    static Terna<float> estaticas = {1.0f, 1.0f, 1.0f};
    static Terna<long long> estaticasNulas;
    Imprimir("Variables locales   %18p,%18p,%18p\n", &locales.v3, &locales.v2, &locales.v1);
    Imprimir("Variables globales  %18p,%18p,%18p\n", &h, &pi, &e);
    Imprimir("Var (N.I.)globales  %18p,%18p,%18p\n", &V1, &V2, &V3);
    Imprimir("Variables staticas  %18p,%18p,%18p\n", &estaticas.v1, &estaticas.v2, &estaticas.v3);
    Imprimir("Var (N.I.)staticas  %18p,%18p,%18p\n", &estaticasNulas.v1, &estaticasNulas.v2,
             &estaticasNulas.v3);
}

template<class F> void *Direccion(F *funcion) { return reinterpret_cast<void *>(funcion); }

void Do_showfuncs() {
    Imprimir("Funciones programa  %18p,%18p,%18p\n", Direccion(Principal), Direccion(TrocearCadena),
             Direccion(funcionDeLinea));
    Imprimir("Funciones libreria  %18p,%18p,%18p\n", Direccion(printf), Direccion(fgets), Direccion(malloc));
}

/// A program that shows the map of a process, and what is said when there is none of that name.
struct HerramientaMapa {
    const char *programa;
    const char *opcion; ///< before the process id; null: none
    const char *error;
};

constexpr HerramientaMapa kHerramientas[] = {
    {"pmap", nullptr, "cannot execute pmap (linux, solaris)"},
    {"procstat", "vm", "cannot execute procstat (FreeBSD)"},
    {"procmap", nullptr, "cannot execute procmap (OpenBSD)"},
    {"vmmap", "-interleave", "cannot execute vmmap (Mac-OS)"},
};

/// Turns this process into the first of the tools that can be started.
[[noreturn]] void EjecutarHerramienta(const char *pid) {
    for (const HerramientaMapa &una : kHerramientas) {
        const char *args[] = {una.programa, una.opcion ? una.opcion : pid, una.opcion ? pid : nullptr,
                              nullptr};
        execvp(una.programa, const_cast<char **>(args));
        InformarError(una.error);
    }
    _exit(1); // exit() would run what the shell has registered for its own end
}

void Do_pmap() {
    char pid[32];
    snprintf(pid, sizeof pid, "%d", static_cast<int>(getpid()));
    const pid_t hijo = Bifurcar();
    if (hijo == -1)
        InformarError("Imposible crear proceso");
    else if (hijo == 0)
        EjecutarHerramienta(pid);
    else
        EsperarHijo(hijo);
}

} // namespace

void Cmd_memory(char *args[]) {
    if (!args[0] || strcmp(args[0], "-all") == 0) {
        Do_showvars();
        Do_showfuncs();
        ImprimirListaMemCompleta(&L);
    } else if (strcmp(args[0], "-blocks") == 0) {
        ImprimirListaMemCompleta(&L);
    } else if (strcmp(args[0], "-funcs") == 0) {
        Do_showfuncs();
    } else if (strcmp(args[0], "-vars") == 0) {
        Do_showvars();
    } else if (strcmp(args[0], "-pmap") == 0) {
        Do_pmap();
    } else {
        Imprimir("Opcion %s no contemplada\n", args[0]);
    }
}
