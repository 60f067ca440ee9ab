// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

namespace mirador {

/// Takes a character of UTF-8 off the front of a text that is not empty. Returns its code, or -1 with one
/// byte taken when there is none. (The locale's functions know UTF-8 in its locales alone; the program's
/// words always are.)
int TakeCharacter(std::string_view *text);

} // namespace mirador
