// SPDX-License-Identifier: MIT

#include "viewer/terminal.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace mirador {

namespace {

struct Colour {
    Style style;
    short colour;
    attr_t attributes; ///< so that a change shows without colours too
};
constexpr Colour kColours[] = {
    {Style::kNew, COLOR_GREEN, A_BOLD},
    {Style::kGone, COLOR_RED, A_NORMAL},
    {Style::kChanged, COLOR_YELLOW, A_BOLD | A_REVERSE},
    {Style::kCode, COLOR_RED, A_NORMAL},
    {Style::kData, COLOR_YELLOW, A_NORMAL},
    {Style::kHeap, COLOR_GREEN, A_NORMAL},
    {Style::kStack, COLOR_CYAN, A_NORMAL},
    {Style::kFile, COLOR_BLUE, A_NORMAL},
    {Style::kSegment, COLOR_MAGENTA, A_NORMAL},
    {Style::kOther, COLOR_WHITE, A_DIM},
};

bool ColoursWanted() {
    const char *plain = getenv("NO_COLOR"); // a convention of many programs
    return has_colors() && !(plain && *plain);
}

} // namespace

Terminal::Terminal() : screen_(newterm(nullptr, stdout, stdin)) {
    if (!screen_) return;
    cbreak();
    noecho();
    keypad(stdscr, TRUE);
    nodelay(stdscr, TRUE);
    set_escdelay(25);
    curs_set(0);
    if (!ColoursWanted()) return;
    start_color();
    use_default_colors();
    colours_ = true;
    for (size_t i = 0; i < std::size(kColours); i++)
        init_pair(static_cast<short>(i + 1), kColours[i].colour, -1);
}

Terminal::~Terminal() {
    if (!screen_) return;
    endwin();
    delscreen(screen_);
}

attr_t Terminal::Attributes(Style style) const {
    switch (style) {
    case Style::kPlain: return A_NORMAL;
    case Style::kDim: return A_DIM;
    case Style::kStrong:
    case Style::kTitle: return A_BOLD;
    case Style::kAttention: return A_BOLD | A_REVERSE;
    default: break;
    }
    for (size_t i = 0; i < std::size(kColours); i++)
        if (kColours[i].style == style)
            return kColours[i].attributes | (colours_ ? COLOR_PAIR(static_cast<int>(i) + 1) : 0);
    return A_NORMAL;
}

void Terminal::Put(int row, int column, const Line &line, int width, const Glyphs &glyphs) const {
    move(row, column);
    for (const Span &span : Finish(line, {width, &glyphs})) {
        attrset(Attributes(span.style));
        addstr(span.text.c_str());
    }
    attrset(A_NORMAL);
}

} // namespace mirador
