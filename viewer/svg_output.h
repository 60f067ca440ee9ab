// SPDX-License-Identifier: MIT

#pragma once

#include <string>

#include "viewer/changes.h"

namespace mirador {

/// The snapshot as a picture (SVG): descriptors, open files and files with arrows, the address space as a
/// column with the memory file systems in it, signals, processes. panels: as for the text.
std::string SvgOutput(const View &view, unsigned panels);

} // namespace mirador
