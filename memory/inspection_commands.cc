// SPDX-License-Identifier: MIT

// memdump, memfill, readfile, writefile, memcopy and the like: memory shown and written at typed addresses.

#include <cstdlib>
#include <cstring>

#include "base/address.h"
#include "base/large_storage.h"
#include "base/output.h"
#include "base/synchronisation.h"
#include "base/words.h"
#include "memory/commands.h"
#include "memory/dump.h"
#include "memory/file_transfer.h"
#include "memory/fill.h"

// No address is checked: the commands touch exactly what the user says. A fault may end the shell, so each
// has its output written out before it touches anything; after a write to who knows where, the next
// allocation may. Those that say what they do afterwards say it only of what was done.

namespace {

/// To be called before a command writes where the user says.
void PrepararEscritura() {
    SincronizarES();
    SincronizarCadaLinea();
}

/// memcpy in pieces so large that its speed is the same: with a count that goes round the end of memory, one
/// call would work out an end below the beginning, and copy there.
void CopiarMemoria(char *destino, const char *origen, size_t cont) {
    constexpr size_t kTamPieza = size_t{1} << 30;
    while (cont > 0) {
        const size_t n = cont < kTamPieza ? cont : kTamPieza;
        memcpy(Opaca(destino), Opaca(origen), n);
        destino += n;
        origen += n;
        cont -= n;
    }
}

} // namespace

void Cmd_memdump(char *args[]) {
    if (!args[0]) return;
    const void *dir = cadtop(args[0]);
    const size_t cont = args[1] ? strtoull(args[1], nullptr, 10) : kBytesFila;
    Imprimir("Volcando %zu bytes desde la direccion %p\n", cont, dir);
    SincronizarES();
    MostrarMemoria(dir, cont);
}

void Cmd_memfill(char *args[]) {
    if (!args[0]) return;
    void *dir = cadtop(args[0]);
    size_t cont = 128;
    unsigned char byte = 'A';
    int paso = 1;
    if (args[1]) {
        cont = strtoull(args[1], nullptr, 10);
        if (args[2]) {
            byte = ConvertirByte(args[2]);
            if (args[3]) paso = atoi(args[3]);
        }
    }
    if (paso <= 0) { // it would never reach the end
        Imprimir("Paso no valido: %s\n", args[3]);
        return;
    }
    Imprimir("Llenando %zu bytes de memoria con el byte%s(%02x) a partir de la direccion %p\n", cont,
             CadBon(static_cast<signed char>(byte)), byte, dir);
    PrepararEscritura();
    LlenarMemoria(dir, cont, byte, paso);
}

void Cmd_memcopy(char *args[]) {
    if (!args[0] || !args[1]) return;
    const void *origen = cadtop(args[0]);
    void *destino = cadtop(args[1]);
    const size_t cont = args[2] ? strtoull(args[2], nullptr, 10) : 128;
    PrepararEscritura();
    CopiarMemoria(static_cast<char *>(destino), static_cast<const char *>(origen), cont);
    Imprimir("Copiando %zu bytes de %p a %p\n", cont, origen, destino);
}

void Cmd_stringcopy(char *args[]) {
    if (!args[0] || !args[1]) return;
    alignas(kAparte) static char cadena[kMaxLinea]; // whatever fits in a line fits here
    void *destino = cadtop(args[0]);
    const size_t largo = UnirPalabras(cadena, sizeof cadena, args + 1);
    PrepararEscritura();
    memcpy(Opaca(destino), cadena, largo + 1);
    Imprimir("Copiando %s en %p\n", cadena, destino);
}

void Cmd_readfile(char *args[]) {
    if (!args[0] || !args[1]) {
        EscribirTexto("faltan parametros\n");
        return;
    }
    void *dir = cadtop(args[1]);
    const size_t cont = args[2] ? static_cast<size_t>(atoll(args[2])) : kTodoElFichero;
    PrepararEscritura();
    const ssize_t leidos = LeerFichero(args[0], dir, cont);
    if (leidos == -1)
        InformarError("Imposible leer fichero");
    else
        Imprimir("leidos %zd bytes de %s en %p\n", leidos, args[0], dir);
}

void Cmd_writefile(char *args[]) {
    const int sobreescribir = args[0] && strcmp(args[0], "-o") == 0;
    if (sobreescribir) args++;
    if (!args[0] || !args[1] || !args[2]) {
        EscribirTexto("faltan parametros\n");
        return;
    }
    const void *dir = cadtop(args[1]);
    SincronizarES();
    const ssize_t escritos =
        EscribirFichero(args[0], dir, static_cast<size_t>(atoll(args[2])), sobreescribir);
    if (escritos == -1)
        InformarError("Imposible escribir fichero");
    else
        Imprimir("escritos %zd bytes en %s desde %p\n", escritos, args[0], dir);
}

void Cmd_i_o(char *args[]) {
    if (args[0] && strcmp(args[0], "read") == 0)
        Cmd_readfile(args + 1);
    else if (args[0] && strcmp(args[0], "write") == 0)
        Cmd_writefile(args + 1);
    else
        Imprimir("uso: %s [read|write] ......\n", args[-1]);
}
