// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>

#include "shell/command_table.h"

// A byte for each alias, formed by the compiler: for each line that is typed memchr finds at once the one
// alias or two, of 149, that its first word is to be compared with.

/// One byte that stands for a word.
constexpr unsigned char Huella(const char *palabra) {
    unsigned huella = 0;
    for (; *palabra; palabra++) huella = huella * 31 + static_cast<unsigned char>(*palabra);
    return static_cast<unsigned char>(huella ^ huella >> 8);
}

/// Those of the aliases, in the order of the table.
constexpr auto FormarHuellas(const std::array<AliasEntry, kNumAliases + 1> &tabla) {
    std::array<unsigned char, kNumAliases> huellas = {};
    for (size_t i = 0; i < huellas.size(); i++) huellas[i] = Huella(tabla[i].alias);
    return huellas;
}

extern const std::array<unsigned char, kNumAliases> kHuellasAliases;
