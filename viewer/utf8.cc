// SPDX-License-Identifier: MIT

#include "viewer/utf8.h"

#include <array>

namespace mirador {

int TakeCharacter(std::string_view *text) {
    const auto byte = [text](size_t i) { return static_cast<unsigned char>((*text)[i]); };
    const unsigned first = byte(0);
    size_t size = 1;
    unsigned code = first;
    if (first >= 0xC2 && first < 0xF5) {
        size = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
        code = first & (0x7Fu >> size);
    } else if (first >= 0x80) {
        size = 0;
    }
    if (size > text->size()) size = 0;
    for (size_t i = 1; i < size && size != 0; i++) {
        if ((byte(i) & 0xC0) != 0x80)
            size = 0;
        else
            code = code << 6 | (byte(i) & 0x3F);
    }
    constexpr std::array<unsigned, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};
    if (size == 0 || code < kLeast[size] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) {
        text->remove_prefix(1);
        return -1;
    }
    text->remove_prefix(size);
    return static_cast<int>(code);
}

} // namespace mirador
