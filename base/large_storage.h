// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

/// Alignment of the large arrays: `alignas(kAparte)`. The linker sorts by alignment (CMakeLists.txt), so they
/// lie apart and what is small lies together: the variables that every line touches share a few pages, and
/// those are what an idle shell costs and what a fork has to copy.
constexpr std::size_t kAparte = 64;
