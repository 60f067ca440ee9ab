// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

#include "viewer/changes.h"
#include "viewer/styled_text.h"

// What the rows of all panels have in common.

namespace mirador {

/// How a part of a row is drawn: like its row when that is new or gone, highlighted when the part has
/// changed.
template<class Record>
Style PartStyle(const Row<Record> &row, unsigned fields, Style otherwise = Style::kPlain) {
    if (row.mark == Mark::kChanged) return row.fields & fields ? Style::kChanged : otherwise;
    return row.mark == Mark::kNone ? otherwise : MarkStyle(row.mark);
}

/// The column in front of every row.
template<class Record> Span MarkSpan(const Row<Record> &row) {
    return {std::string(1, MarkSign(row.shown())), MarkStyle(row.shown())};
}

/// Notes the next line as the first changed one, when it is.
inline void NoteChange(Mark mark, PanelText *panel) {
    if (mark != Mark::kNone && panel->first_changed == -1)
        panel->first_changed = static_cast<int>(panel->lines.size());
}

/// A line for what cannot be shown, and why.
inline Line Refusal(const std::string &what, const std::string &reason) {
    return {{" " + what + ": " + reason, Style::kDim}};
}

/// Brackets that join rows, drawn in columns one beside the other.
struct Brackets {
    std::vector<std::string> rows; ///< all of one width; that width is 0 when there is nothing to join
    std::vector<bool> drawn;       ///< per group: whether there was a column left for it
    int width = 0;
};

/// groups: the rows of each, in order. At most `most` columns are used.
inline Brackets DrawBrackets(size_t rows, const std::vector<std::vector<size_t>> &groups, int most,
                             const Glyphs &glyphs) {
    Brackets brackets;
    std::vector<size_t> busy; // per column: the row up to which it is taken
    std::vector<size_t> column_of;
    for (const std::vector<size_t> &group : groups) {
        size_t column = 0;
        while (column < busy.size() && busy[column] >= group.front()) column++;
        const bool fits = column < static_cast<size_t>(most);
        if (fits && column == busy.size()) busy.push_back(0);
        if (fits) busy[column] = group.back();
        brackets.drawn.push_back(fits);
        column_of.push_back(column);
    }
    if (busy.empty()) return brackets.rows.resize(rows), brackets;
    brackets.width = static_cast<int>(busy.size()) + 1;
    std::vector<std::vector<const char *>> cells(rows, std::vector<const char *>(busy.size() + 1, " "));
    for (size_t g = 0; g < groups.size(); g++) {
        if (!brackets.drawn[g]) continue;
        const size_t column = column_of[g] + 1;
        for (size_t row = groups[g].front() + 1; row < groups[g].back(); row++)
            cells[row][column] = glyphs.pass;
        for (const size_t row : groups[g]) {
            cells[row][column] = row == groups[g].front()  ? glyphs.top
                                 : row == groups[g].back() ? glyphs.bottom
                                                           : glyphs.middle;
        }
    }
    for (size_t g = 0; g < groups.size(); g++) { // the strokes from the row to its bracket, over what passes
        for (const size_t row : groups[g]) {
            for (size_t column = 0; brackets.drawn[g] && column < column_of[g] + 1; column++)
                cells[row][column] = *cells[row][column] == ' ' ? glyphs.across : glyphs.cross;
        }
    }
    for (const std::vector<const char *> &row : cells) {
        brackets.rows.emplace_back();
        for (const char *cell : row) brackets.rows.back() += cell;
    }
    return brackets;
}

} // namespace mirador
