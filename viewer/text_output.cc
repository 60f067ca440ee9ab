// SPDX-License-Identifier: MIT

#include "viewer/text_output.h"

#include <pwd.h>

#include "viewer/panels/panels.h"
#include "viewer/proc_text.h"

namespace mirador {

namespace {

std::string UserName(unsigned uid) {
    const struct passwd *user = getpwuid(uid);
    return user ? user->pw_name : "uid " + std::to_string(uid);
}

void AddLine(const Line &line, const Layout &layout, std::string *text) {
    text->append(PlainText(Finish(line, layout))).append("\n");
}

} // namespace

std::string HeadingText(const Snapshot &snapshot, bool unicode) {
    const std::string program =
        snapshot.program.empty() ? "programa que no se puede ver" : Printable(snapshot.program, unicode);
    return " Proceso " + std::to_string(snapshot.pid) + " de " + UserName(snapshot.uid) + ": " + program;
}

std::string TextOutput(const View &view, unsigned panels, const Layout &layout) {
    std::string text;
    AddLine({{HeadingText(view.now, layout.glyphs->unicode)}}, layout, &text);
    for (int i = 0; i < kPanels; i++) {
        if (!(panels & 1u << i)) continue;
        const PanelText panel = DrawPanel(static_cast<Panel>(i), view, layout);
        text += "\n";
        AddLine({{panel.title}}, layout, &text);
        AddLine(panel.header, layout, &text);
        for (const Line &line : panel.lines) AddLine(line, layout, &text);
    }
    return text;
}

} // namespace mirador
