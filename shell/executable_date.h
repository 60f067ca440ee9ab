// SPDX-License-Identifier: MIT

#pragma once

#include <ctime>

/// Modification time of the shell's executable, shown by `version`; -1 when unknown.
extern time_t FechaEjecutable;
