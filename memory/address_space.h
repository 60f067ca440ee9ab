// SPDX-License-Identifier: MIT

#pragma once

/// The function of the command loop that runs a line: its address is one of those that `mem` shows. It
/// belongs to a folder that stands on this one, so main tells it before the loop.
extern void (*funcionDeLinea)(char *palabras[]);
