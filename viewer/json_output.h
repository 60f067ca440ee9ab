// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

#include "viewer/changes.h"

namespace mirador {

/// The snapshot as one JSON object, in the form that docs/mirador.md fixes. panels: as for the text.
std::string JsonOutput(const View &view, unsigned panels);

/// A JSON string in ASCII. Bytes that are no UTF-8 become \udc80 to \udcff, as Python has them in names of
/// files.
std::string JsonString(std::string_view text);

} // namespace mirador
