// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <string>

namespace mirador {

enum class Mode : unsigned char { kScreen, kText, kJson, kSvg, kHelp };

struct Options {
    Mode mode = Mode::kScreen;
    pid_t pid = 0;
    unsigned panels = 0xF; ///< a bit for each
    int width = 0;         ///< columns of the text; 0: the terminal's, or 80
    bool ascii = false;
    std::string file; ///< for kSvg
};

/// Reads the command line. Returns 0, or -1 with a Spanish sentence in `fault`.
int ParseOptions(int argc, char *argv[], Options *options, std::string *fault);

extern const char kUsage[];

} // namespace mirador
