// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "viewer/changes.h"

// Lines as they are drawn on a screen, printed or tested: texts with a style each, and the strokes that the
// locale allows.

namespace mirador {

enum class Style : unsigned char {
    kPlain,
    kDim,
    kStrong,
    kTitle,
    kAttention,
    kNew,
    kGone,
    kChanged,
    // The bars, by what lives there.
    kCode,
    kData,
    kHeap,
    kStack,
    kFile,
    kSegment,
    kOther,
};

struct Span {
    std::string text;
    Style style = Style::kPlain;
};

using Line = std::vector<Span>;

/// The strokes, in one of two tables.
struct Glyphs {
    bool unicode;
    const char *top, *middle, *bottom, *pass, *across, *cross; ///< a bracket, open to the left
    const char *full, *light;                                  ///< a bar: in memory, not in memory
    const char *branch, *last, *trunk;                         ///< a tree
    const char *ellipsis, *dot, *horizontal;
};
extern const Glyphs kUnicodeGlyphs, kAsciiGlyphs;

/// How panels are drawn.
struct Layout {
    int width = 80; ///< columns
    const Glyphs *glyphs = &kAsciiGlyphs;
    bool whole = false; ///< every zone its own row, and whatever else is left out where room is scarce
};

/// What a panel shows.
struct PanelText {
    std::string title;
    Line header; ///< names of the columns
    std::vector<Line> lines;
    int first_changed = -1; ///< line at which to look
};

/// Columns that a text takes.
int Width(std::string_view text);

/// A name made safe to show: control characters, bytes that are no text (without `unicode` all beyond ASCII)
/// as \ooo.
std::string Printable(std::string_view name, bool unicode);

/// The program's own words without their accents, for terminals that know ASCII alone.
std::string WithoutAccents(std::string_view text);

/// Cut or filled with blanks to `width` columns. A text cut at its front keeps its end (the file of a path).
std::string Fit(std::string_view text, int width, const Glyphs &glyphs, bool cut_front = false);
std::string FitRight(std::string_view text, int width, const Glyphs &glyphs);

/// Cuts a line to `width` columns and, without Unicode, takes the accents away.
Line Finish(const Line &line, const Layout &layout);

/// Its text alone, without blanks at the end.
std::string PlainText(const Line &line);

/// ' ', '+', '-', '*'; and how a row or a value with it is drawn.
char MarkSign(Mark mark);
Style MarkStyle(Mark mark);

/// Lines of at most `width` columns, as far as words allow; all but the first begin with two blanks.
std::vector<std::string> Fold(std::string_view text, int width);

/// "132K", "1,4M": at most five columns.
std::string ShortSize(uint64_t bytes);

} // namespace mirador
