// SPDX-License-Identifier: MIT

#pragma once

#include <vterm.h>

#include <string>
#include <vector>

#include "tests/driver/session.h"

/// The viewer on a pseudo-terminal, and what a terminal shows of what it writes. It is left with q.
class Screen : public escenario::Programa {
  public:
    explicit Screen(pid_t watched, const std::vector<std::string> &environment = {}, int columns = 80);
    ~Screen();

    /// Reads until a line of the screen matches the regular expression; returns the line. The test fails when
    /// none does within escenario::kPlazo seconds.
    std::string Await(const std::string &expression);

    void Resize(int columns, int rows);

    /// The lines that are shown, without the blanks at their ends.
    std::vector<std::string> Lines() const;

    /// Whether the first letter of a text on the screen is drawn in reverse.
    bool Reversed(const std::string &text) const;

  private:
    void NewTerminal(int rows, int columns);
    VTerm *terminal_;
    VTermScreen *screen_;
};
