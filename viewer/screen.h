// SPDX-License-Identifier: MIT

#pragma once

#include <string>

#include "viewer/options.h"
#include "viewer/styled_text.h"

namespace mirador {

/// Draws on the terminal until the user leaves. Returns 0, or -1 with a Spanish sentence in `fault`: nothing
/// could be drawn.
int RunScreen(const Options &options, const Glyphs &glyphs, std::string *fault);

} // namespace mirador
