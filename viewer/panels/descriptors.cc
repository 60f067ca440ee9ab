// SPDX-License-Identifier: MIT

#include <algorithm>
#include <map>

#include "viewer/panels/panels.h"
#include "viewer/panels/rows.h"

namespace mirador {

namespace {

constexpr int kNarrow = 60; ///< below, the flags lose their prefixes
constexpr int kWide = 110;  ///< from here on, there is room for size and i-node

std::string FlagText(const OpenDescriptor &d, bool narrow) {
    std::string words = FlagWords(d.info.flags);
    if (!narrow) return words;
    for (size_t at = 0; (at = words.find("O_", at)) != std::string::npos;) words.erase(at, 2);
    std::replace(words.begin(), words.end(), ' ', '|');
    return words;
}

/// The rows of each open file that more than one descriptor leads to.
std::vector<std::vector<size_t>> SharingRows(const std::vector<Row<OpenDescriptor>> &rows) {
    std::map<int, std::vector<size_t>> files;
    for (size_t i = 0; i < rows.size(); i++)
        if (rows[i].mark != Mark::kGone && rows[i].now.file != -1) files[rows[i].now.file].push_back(i);
    std::vector<std::vector<size_t>> groups;
    for (const auto &[file, members] : files)
        if (members.size() > 1) groups.push_back(members);
    return groups;
}

struct Columns {
    int offset = 8, flags = 5, target = 0, size = 0, inode = 0;
};

Columns Measure(const View &view, const Layout &layout, int brackets) {
    Columns columns;
    const bool narrow = layout.width < kNarrow;
    for (const Row<OpenDescriptor> &row : view.descriptors) {
        columns.offset = std::max(columns.offset, Width(OffsetText(row.now)));
        columns.flags = std::max(columns.flags, Width(FlagText(row.now, narrow)));
    }
    if (narrow) columns.offset = std::min(columns.offset, 8);
    columns.flags = std::min(columns.flags, layout.width * 2 / 5);
    if (layout.width >= kWide) {
        columns.size = 9;
        columns.inode = 11;
    }
    columns.target = layout.width - (1 + 4 + brackets + 1) - (1 + columns.offset) - columns.size -
                     columns.inode - (2 + columns.flags);
    columns.target = std::max(columns.target, 4);
    return columns;
}

Line RowLine(const Row<OpenDescriptor> &row, const std::string &bracket, const std::string &equal,
             const Columns &columns, const Layout &layout) {
    const OpenDescriptor &d = row.now;
    const Glyphs &glyphs = *layout.glyphs;
    Line line = {MarkSpan(row)};
    line.push_back({FitRight(std::to_string(d.number), 4, glyphs), PartStyle(row, 0, Style::kStrong)});
    line.push_back({bracket + " ", PartStyle(row, kFile, Style::kStrong)});
    const std::string target = TargetText(d, glyphs.unicode) + equal;
    line.push_back({Fit(target, columns.target, glyphs, true), PartStyle(row, kTarget)});
    line.push_back({" " + FitRight(OffsetText(d), columns.offset, glyphs), PartStyle(row, kOffset)});
    if (columns.size) {
        const std::string size = d.kind == FileKind::kRegular ? std::to_string(d.size) : "";
        line.push_back({FitRight(size, columns.size, glyphs), PartStyle(row, 0, Style::kDim)});
        const std::string inode = d.kind == FileKind::kUnknown ? "" : std::to_string(d.inode);
        line.push_back({FitRight(inode, columns.inode, glyphs), PartStyle(row, 0, Style::kDim)});
    }
    line.push_back({"  " + FlagText(d, layout.width < kNarrow), PartStyle(row, kFlags)});
    return line;
}

} // namespace

std::string OffsetText(const OpenDescriptor &descriptor) {
    return descriptor.seekable() ? std::to_string(descriptor.info.offset) : "";
}

std::string TargetText(const OpenDescriptor &descriptor, bool unicode) {
    return descriptor.target.empty() ? "¿?" : Printable(descriptor.target, unicode);
}

PanelText DescriptorsPanel(const View &view, const Layout &layout) {
    PanelText panel;
    panel.title = "Descriptores";
    const auto groups = SharingRows(view.descriptors);
    const Brackets brackets =
        DrawBrackets(view.descriptors.size(), groups, std::max(2, layout.width / 10), *layout.glyphs);
    const Columns columns = Measure(view, layout, brackets.width);
    const std::string gap(static_cast<size_t>(brackets.width), ' ');
    std::string header = "  núm" + gap + " " + Fit("lleva a", columns.target, *layout.glyphs) + " " +
                         FitRight("desplaz.", columns.offset, *layout.glyphs);
    if (columns.size)
        header += FitRight("tamaño", columns.size, *layout.glyphs) +
                  FitRight("inodo", columns.inode, *layout.glyphs);
    panel.header = {{header + "  modo", Style::kDim}};
    std::vector<std::string> equals(view.descriptors.size()); // said where no bracket fits
    for (size_t g = 0; g < groups.size(); g++) {
        for (const size_t row : groups[g])
            if (!brackets.drawn[g])
                equals[row] = " (el mismo que " + std::to_string(view.descriptors[row].now.file) + ")";
    }
    for (size_t i = 0; i < view.descriptors.size(); i++) {
        const Row<OpenDescriptor> &row = view.descriptors[i];
        NoteChange(row.shown(), &panel);
        panel.lines.push_back(RowLine(row, brackets.rows[i], equals[i], columns, layout));
    }
    const Snapshot &now = view.now;
    if (!now.descriptors_refused.empty())
        panel.lines.push_back(Refusal("El núcleo no deja ver los descriptores", now.descriptors_refused));
    if (!now.sharing_refused.empty())
        panel.lines.push_back(Refusal("No se sabe cuáles comparten fichero abierto", now.sharing_refused));
    return panel;
}

} // namespace mirador
