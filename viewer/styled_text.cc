// SPDX-License-Identifier: MIT

#include "viewer/styled_text.h"

#include <wchar.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "viewer/utf8.h"

namespace mirador {

const Glyphs kUnicodeGlyphs = {true, "┐", "┤", "┘", "│", "─", "┼", "█", "░", "├─", "└─", "│ ", "…", "●", "─"};
const Glyphs kAsciiGlyphs = {false, "\\", "+", "/", "|", "-", "+", "#", ".", "|-", "`-", "| ", "~", "*", "-"};

namespace {

/// Columns of a character; in a locale that does not know it, one.
int Columns(int code) {
    if (code < 0x80) return 1;
    const int columns = wcwidth(static_cast<wchar_t>(code));
    return columns < 0 ? 1 : columns;
}

/// The front of `text` that takes at most `width` columns.
std::string_view Front(std::string_view text, int width) {
    std::string_view rest = text;
    for (int used = 0; !rest.empty();) {
        std::string_view after = rest;
        used += Columns(TakeCharacter(&after));
        if (used > width) break;
        rest = after;
    }
    return text.substr(0, text.size() - rest.size());
}

} // namespace

int Width(std::string_view text) {
    int columns = 0;
    while (!text.empty()) columns += Columns(TakeCharacter(&text));
    return columns;
}

std::string Printable(std::string_view name, bool unicode) {
    std::string shown;
    const auto escape = [&shown](std::string_view bytes) {
        for (const char c : bytes) {
            char octal[8];
            snprintf(octal, sizeof octal, "\\%03o", static_cast<unsigned char>(c));
            shown += octal;
        }
    };
    while (!name.empty()) {
        std::string_view rest = name;
        const int code = TakeCharacter(&rest);
        const std::string_view bytes = name.substr(0, name.size() - rest.size());
        name = rest;
        const bool printable =
            code >= 0xA0 ? unicode && wcwidth(static_cast<wchar_t>(code)) > 0 : code >= ' ' && code < 0x7F;
        if (code == '\n')
            shown += "\\n";
        else if (code == '\t')
            shown += "\\t";
        else if (printable)
            shown += bytes;
        else
            escape(bytes);
    }
    return shown;
}

std::string WithoutAccents(std::string_view text) {
    constexpr struct {
        int code;
        char letter;
    } kLetters[] = {{0xE1, 'a'}, {0xE9, 'e'}, {0xED, 'i'},   {0xF3, 'o'},  {0xFA, 'u'}, {0xFC, 'u'},
                    {0xF1, 'n'}, {0xC1, 'A'}, {0xC9, 'E'},   {0xCD, 'I'},  {0xD3, 'O'}, {0xDA, 'U'},
                    {0xD1, 'N'}, {0xB7, '-'}, {0x2192, '>'}, {0x2026, '~'}};
    std::string plain;
    while (!text.empty()) {
        const int code = TakeCharacter(&text);
        char letter = code >= 0 && code < 0x80 ? static_cast<char>(code) : '?';
        if (code == 0xBF) continue; // an opening question mark
        for (const auto &row : kLetters)
            if (row.code == code) letter = row.letter;
        plain += letter;
    }
    return plain;
}

std::string Fit(std::string_view text, int width, const Glyphs &glyphs, bool cut_front) {
    const int columns = Width(text);
    if (width <= 0) return "";
    if (columns <= width) return std::string(text) + std::string(static_cast<size_t>(width - columns), ' ');
    if (!cut_front) {
        std::string cut = std::string(Front(text, width - 1)) + glyphs.ellipsis;
        return cut + std::string(static_cast<size_t>(width - Width(cut)), ' ');
    }
    const std::string_view lost = Front(text, columns - width + 1);
    std::string cut = glyphs.ellipsis + std::string(text.substr(lost.size()));
    while (Width(cut) > width) cut.pop_back(); // a wide character at the cut
    return cut + std::string(static_cast<size_t>(width - Width(cut)), ' ');
}

std::string FitRight(std::string_view text, int width, const Glyphs &glyphs) {
    const int columns = Width(text);
    if (columns >= width) return Fit(text, width, glyphs);
    return std::string(static_cast<size_t>(width - columns), ' ') + std::string(text);
}

Line Finish(const Line &line, const Layout &layout) {
    Line finished;
    int left = layout.width;
    for (const Span &span : line) {
        if (left <= 0) break;
        Span cut = {layout.glyphs->unicode ? span.text : WithoutAccents(span.text), span.style};
        const int columns = Width(cut.text);
        if (columns > left) cut.text = Fit(cut.text, left, *layout.glyphs);
        left -= columns;
        finished.push_back(std::move(cut));
    }
    return finished;
}

std::string PlainText(const Line &line) {
    std::string text;
    for (const Span &span : line) text += span.text;
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

char MarkSign(Mark mark) {
    constexpr char kSigns[] = {' ', '+', '-', '*'};
    return kSigns[static_cast<int>(mark)];
}

Style MarkStyle(Mark mark) {
    constexpr Style kStyles[] = {Style::kPlain, Style::kNew, Style::kGone, Style::kChanged};
    return kStyles[static_cast<int>(mark)];
}

std::vector<std::string> Fold(std::string_view text, int width) {
    std::vector<std::string> lines = {""};
    while (!text.empty()) {
        // A word with the blanks in front of it.
        const size_t word = std::min(text.find_first_not_of(' '), text.size());
        const std::string_view piece = text.substr(0, std::min(text.find(' ', word), text.size()));
        text.remove_prefix(piece.size());
        if (!lines.back().empty() && Width(lines.back()) + Width(piece) > width)
            lines.push_back(" " + std::string(piece.substr(word - 1)));
        else
            lines.back() += piece;
    }
    return lines;
}

std::string ShortSize(uint64_t bytes) {
    constexpr char kUnits[] = {'B', 'K', 'M', 'G', 'T', 'P'};
    double size = static_cast<double>(bytes);
    size_t unit = 0;
    for (; size >= 999.5 && unit + 1 < sizeof kUnits; unit++) size /= 1024;
    char text[32];
    const bool whole = size >= 99.5 || size == static_cast<double>(static_cast<int>(size));
    snprintf(text, sizeof text, whole ? "%.0f%c" : "%.1f%c", size, kUnits[unit]);
    if (char *point = strchr(text, '.')) *point = ',';
    return text;
}

} // namespace mirador
