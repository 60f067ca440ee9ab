// SPDX-License-Identifier: MIT

// The shell: start-up, the point to which a recovery jumps back, and the loop that reads a line, splits it,
// stores it and runs it.

#include <cerrno>
#include <cstring>

#include "base/held_signals.h"
#include "base/input.h"
#include "base/large_storage.h"
#include "base/output.h"
#include "base/synchronisation.h"
#include "base/words.h"
#include "environment/variables.h"
#include "files/file_details.h"
#include "files/open_file_table.h"
#include "memory/address_space.h"
#include "processes/search_path.h"
#include "shell/commands.h"
#include "shell/dispatch.h"
#include "shell/executable_date.h"
#include "shell/historic.h"
#include "shell/prompt.h"
#include "shell/systemd_warning.h"
#include "signals/recovery.h"

namespace {

// Static: they live across the jump to EstadoGuardado, half a line that a signal has interrupted included.
alignas(kAparte) char *palabras_[kMaxPalabras];
alignas(kAparte) char linea_[kMaxLinea];
int finesSeguidos_;

/// Whether the loop goes on after a read that gave no line.
bool SeguirTrasFallo(Lectura resultado) {
    if (!HaySenales) return false;
    if (resultado == Lectura::Interrumpida) return true;
    // A terminal can give more after its end of input (Ctrl-D), so the loop goes on, though not for ever; a
    // file or a pipe that has ended, or a descriptor that cannot be read, gives nothing more.
    constexpr int kMaxFinesSeguidos = 10;
    return resultado == Lectura::Fin && EntradaEsTerminal() && ++finesSeguidos_ < kMaxFinesSeguidos;
}

bool HayPalabra(const char *linea) { return linea[strspn(linea, " \t\n")] != '\0'; }

/// Returns 0, or the reason why the line is not in the historic.
int GuardarEnHistorico(char *linea) {
    if (char *salto = strchr(linea, '\n')) *salto = '\0';
    return HistoricAdd(linea) == -1 ? errno : 0;
}

void BuclePrincipal() {
    for (;;) {
        loopHistoric = 0;
        PrintPrompt();
        const Lectura resultado = LeerLinea(linea_, sizeof linea_);
        if (resultado != Lectura::Linea) {
            if (SeguirTrasFallo(resultado)) continue;
            // Of the end of the input, or of a signal, the user knows.
            if (resultado == Lectura::Error) InformarError("Imposible leer la entrada");
            return;
        }
        SincronizarTrasDanos();
        finesSeguidos_ = 0;
        if (!HayPalabra(linea_)) continue;
        // Stored before it is cut into words, in place; told of after what the cutting has to say.
        const int motivo = GuardarEnHistorico(linea_);
        TrocearCadena(linea_, palabras_);
        if (motivo != 0) Imprimir("Comando no almacenado: %s\n", strerror(motivo));
        ProcesarEntrada(palabras_);
    }
}

} // namespace

int main(int argc, char *argv[], char *env[]) {
    if (CheckForSystemd()) AvisoPorSystemd();
    main3arg = env;
    addrmain3arg = &env;
    funcionDeLinea = ProcesarEntrada;
    InitOpenFiles();
    const char *programa = argc > 0 ? argv[0] : "";
    FechaEjecutable = FechaFichero(programa);
    EscribirTexto("Iniciando shell..\n");
    if (argc > 1 && strcmp(argv[1], "-p") == 0) {
        PathAddPath();
    } else {
        EscribirTexto("Ejecutar ");
        EscribirTexto(programa); // of any length
        EscribirTexto(" -p para importar el path\n\n");
    }
    char version[] = "version";
    char *orden[] = {version, nullptr};
    Cmd_version(orden + 1);
    if (setjmp(EstadoGuardado) != 0) {
        SoltarRetenidas();
        EscribirTexto("Shell restaurado a su estado al pricipio de main\n");
    }
    BuclePrincipal();
    SincronizarES();
    return 0;
}
