// SPDX-License-Identifier: MIT

#pragma once

#include <curses.h>

#include "viewer/styled_text.h"

namespace mirador {

/// Owns the terminal while the viewer draws on it.
class Terminal {
  public:
    Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;
    ~Terminal();

    /// Whether it can be drawn on: TERM is known.
    bool open() const { return screen_ != nullptr; }

    /// Draws a line at the row and column, cut to `width` columns.
    void Put(int row, int column, const Line &line, int width, const Glyphs &glyphs) const;

  private:
    attr_t Attributes(Style style) const;
    SCREEN *screen_;
    bool colours_ = false;
};

} // namespace mirador
