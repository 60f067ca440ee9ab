// SPDX-License-Identifier: MIT

#include "viewer/options.h"

#include <getopt.h>

#include <optional>
#include <string_view>

#include "viewer/proc_text.h"

namespace mirador {

const char kUsage[] =
    "Uso: mirador [opciones] PID\n"
    "Enseña en vivo lo que el núcleo sabe de un shell: descriptores, espacio de direcciones, señales y "
    "procesos.\n"
    "  --una-vez         escribe los paneles como texto una vez y acaba\n"
    "  --json            los escribe como datos (JSON)\n"
    "  --svg FICHERO     los dibuja en FICHERO\n"
    "  --paneles N...    sólo esos: 1 descriptores, 2 memoria, 3 señales, 4 procesos (así: 12)\n"
    "  --ancho N         columnas del texto\n"
    "  --ascii           sin caracteres de fuera de ASCII\n"
    "  --help            esta ayuda\n";

namespace {

std::optional<int> WholeNumber(const char *word, int most) {
    std::string_view text = word;
    const auto number = TakeNumber(&text);
    if (!number || !text.empty() || *number == 0 || *number > static_cast<uint64_t>(most))
        return std::nullopt;
    return static_cast<int>(*number);
}

/// "12" as bits; 0 when it is something else.
unsigned PanelBits(std::string_view word) {
    unsigned bits = 0;
    for (const char c : word) {
        if (c < '1' || c > '4') return 0;
        bits |= 1u << (c - '1');
    }
    return bits;
}

constexpr struct option kOptions[] = {
    {"una-vez", no_argument, nullptr, 't'},
    {"json", no_argument, nullptr, 'j'},
    {"svg", required_argument, nullptr, 's'},
    {"paneles", required_argument, nullptr, 'p'},
    {"ancho", required_argument, nullptr, 'w'},
    {"ascii", no_argument, nullptr, 'a'},
    {"help", no_argument, nullptr, 'h'},
    {"ayuda", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};

} // namespace

int ParseOptions(int argc, char *argv[], Options *options, std::string *fault) {
    constexpr int kMostColumns = 4096;
    constexpr int kMostPid = 1 << 22; // the kernel's own limit
    opterr = 0;
    for (int letter; (letter = getopt_long(argc, argv, "h", kOptions, nullptr)) != -1;) {
        switch (letter) {
        case 't':
            if (options->mode == Mode::kScreen) options->mode = Mode::kText;
            break;
        case 'j': options->mode = Mode::kJson; break;
        case 's':
            options->mode = Mode::kSvg;
            options->file = optarg;
            break;
        case 'p':
            options->panels = PanelBits(optarg);
            if (options->panels == 0) return *fault = "--paneles quiere cifras del 1 al 4", -1;
            break;
        case 'w':
            options->width = WholeNumber(optarg, kMostColumns).value_or(0);
            if (options->width == 0) return *fault = "--ancho quiere un número de columnas", -1;
            break;
        case 'a': options->ascii = true; break;
        case 'h': options->mode = Mode::kHelp; return 0;
        default: return *fault = std::string("opción desconocida o incompleta: ") + argv[optind - 1], -1;
        }
    }
    if (optind + 1 != argc) return *fault = "hace falta el PID de un shell, y sólo uno", -1;
    options->pid = WholeNumber(argv[optind], kMostPid).value_or(0);
    if (options->pid == 0) return *fault = std::string("no es un PID: ") + argv[optind], -1;
    return 0;
}

} // namespace mirador
