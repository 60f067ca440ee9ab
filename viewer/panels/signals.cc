// SPDX-License-Identifier: MIT

#include <cstdio>

#include "viewer/panels/panels.h"
#include "viewer/panels/rows.h"

namespace mirador {

namespace {

constexpr int kNarrow = 67; ///< below, the columns have a letter each

struct Column {
    const char *name;
    bool SignalRow::*value;
    unsigned field;
    char letter; ///< in a narrow panel
};
constexpr Column kColumns[] = {{"bloqueada", &SignalRow::blocked, kBlocked, 'B'},
                               {"ignorada", &SignalRow::ignored, kIgnored, 'I'},
                               {"capturada", &SignalRow::caught, kCaught, 'C'},
                               {"pend. hilo", &SignalRow::thread, kThread, 'H'},
                               {"pend. proceso", &SignalRow::process, kProcess, 'P'}};

/// Width of a column, the blanks in front included.
int ColumnWidth(const Column &column, const Layout &layout) {
    return layout.width < kNarrow ? 2 : 1 + Width(column.name);
}

void AddMask(const char *name, uint64_t mask, PanelText *panel) {
    char text[64];
    snprintf(text, sizeof text, " %s %016llx ", name, static_cast<unsigned long long>(mask));
    panel->lines.push_back({{text + MaskNames(mask), Style::kDim}});
}

} // namespace

PanelText SignalsPanel(const View &view, const Layout &layout) {
    PanelText panel;
    panel.title = "Señales";
    const Glyphs &glyphs = *layout.glyphs;
    const bool narrow = layout.width < kNarrow;
    std::string header = " núm nombre  ";
    for (const Column &column : kColumns)
        header += FitRight(narrow ? std::string(1, column.letter) : column.name, ColumnWidth(column, layout),
                           glyphs);
    if (narrow) header += "  (Pend.: Hilo, Proceso)";
    panel.header = {{header, Style::kDim}};
    for (const Row<SignalRow> &row : view.signals) {
        NoteChange(row.shown(), &panel);
        Line line = {MarkSpan(row)};
        line.push_back({FitRight(std::to_string(row.now.number), 3, glyphs) + " ", PartStyle(row, 0)});
        line.push_back({Fit(SignalName(row.now.number), 8, glyphs), PartStyle(row, 0, Style::kStrong)});
        for (const Column &column : kColumns) {
            const bool set = row.now.*column.value;
            line.push_back({FitRight(set ? glyphs.dot : "-", ColumnWidth(column, layout), glyphs),
                            PartStyle(row, column.field, set ? Style::kStrong : Style::kDim)});
        }
        panel.lines.push_back(std::move(line));
    }
    if (view.signals.empty())
        panel.lines.push_back({{" Ninguna bloqueada, ignorada, capturada ni pendiente", Style::kDim}});
    const SignalMasks &masks = view.now.signals;
    AddMask("SigBlk", masks.blocked, &panel);
    AddMask("SigIgn", masks.ignored, &panel);
    AddMask("SigCgt", masks.caught, &panel);
    AddMask("SigPnd", masks.pending_thread, &panel);
    AddMask("ShdPnd", masks.pending_process, &panel);
    return panel;
}

PanelText DrawPanel(Panel panel, const View &view, const Layout &layout) {
    switch (panel) {
    case Panel::kDescriptors: return DescriptorsPanel(view, layout);
    case Panel::kMemory: return MemoryPanel(view, layout);
    case Panel::kSignals: return SignalsPanel(view, layout);
    case Panel::kProcesses: break;
    }
    return ProcessesPanel(view, layout);
}

} // namespace mirador
