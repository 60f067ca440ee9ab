// SPDX-License-Identifier: MIT

#pragma once

#include <string>

#include "viewer/changes.h"
#include "viewer/styled_text.h"

namespace mirador {

/// "shell 1234 (usuario): /path/of/the/program", with a blank at its front.
std::string HeadingText(const Snapshot &snapshot, bool unicode);

/// The panels whose bit (1 << Panel) is in `panels`, one below the other, every row.
std::string TextOutput(const View &view, unsigned panels, const Layout &layout);

} // namespace mirador
