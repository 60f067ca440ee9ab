// SPDX-License-Identifier: MIT

#include "viewer/screen_layout.h"

#include <algorithm>

namespace mirador {

namespace {

constexpr int kLeast = 3; ///< rows: title and two lines

/// One column. Every panel gets the least, then the one to look at all that it needs, then the others by
/// turns.
void PlaceColumn(const std::vector<PanelNeed> &needs, int rows, int column, std::vector<PanelPlace> *places) {
    std::vector<int> wanted, given;
    int left = rows;
    const int least = std::min(kLeast, needs.empty() ? 0 : rows / static_cast<int>(needs.size()));
    for (const PanelNeed &need : needs) {
        wanted.push_back(need.lines + 2); // title and names of the columns
        given.push_back(std::min(least, wanted.back()));
        left -= given.back();
    }
    for (size_t i = 0; i < needs.size(); i++) {
        if (!needs[i].attention) continue;
        const int more = std::min(left, wanted[i] - given[i]);
        given[i] += more;
        left -= more;
    }
    for (bool some = true; some && left > 0;) {
        some = false;
        for (size_t i = 0; i < needs.size() && left > 0; i++) {
            if (given[i] >= wanted[i]) continue;
            given[i]++;
            left--;
            some = true;
        }
    }
    int row = 0;
    for (size_t i = 0; i < needs.size(); i++) {
        places->push_back({needs[i].panel, column, row, given[i]});
        row += given[i];
    }
}

} // namespace

std::vector<PanelPlace> PlacePanels(const std::vector<PanelNeed> &needs, int rows, bool two_columns) {
    std::vector<PanelPlace> places;
    std::vector<PanelNeed> columns[2];
    for (const PanelNeed &need : needs) columns[two_columns ? need.panel % 2 : 0].push_back(need);
    for (int column = 0; column < 2; column++) PlaceColumn(columns[column], rows, column, &places);
    return places;
}

int FirstLine(int asked, int changed, int count, int rows) {
    const int last = std::max(0, count - rows);
    if (asked >= 0) return std::min(asked, last);
    if (changed == -1) return 0;
    return std::clamp(changed - rows / 3, 0, last);
}

} // namespace mirador
