// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

namespace mirador {

/// What a panel would like.
struct PanelNeed {
    int panel = 0;
    int lines = 0;
    bool attention = false; ///< served first
};

/// Where it stands: rows count its title; 0 rows: there is no room.
struct PanelPlace {
    int panel = 0, column = 0, first_row = 0, rows = 0;
};

/// Shares `rows` out among the panels, in one column or two (the odd ones on the right).
std::vector<PanelPlace> PlacePanels(const std::vector<PanelNeed> &needs, int rows, bool two_columns);

/// The first of `count` lines to draw in `rows`: what the user asked for (-1: nothing), else around the
/// change.
int FirstLine(int asked, int changed, int count, int rows);

} // namespace mirador
