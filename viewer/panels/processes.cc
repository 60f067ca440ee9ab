// SPDX-License-Identifier: MIT

#include <algorithm>
#include <map>

#include "viewer/panels/panels.h"
#include "viewer/panels/rows.h"

namespace mirador {

namespace {

constexpr int kWithGroups = 66; ///< columns from which on nice value, group and session have room

/// The strokes of a tree in front of each row: whether a process is the last child decides its own, and what
/// passes in front of its children's.
std::vector<std::string> TreeStrokes(const std::vector<Row<Process>> &rows, const Glyphs &glyphs) {
    std::vector<std::string> strokes(rows.size());
    std::vector<bool> open; // per depth, from below: whether a brother follows further down
    for (size_t i = rows.size(); i-- > 0;) {
        const auto depth = static_cast<size_t>(rows[i].now.depth);
        open.resize(depth + 1); // what is deeper further down belongs to others
        for (size_t d = 1; d < depth; d++) strokes[i] += open[d] ? glyphs.trunk : "  ";
        if (depth > 0) strokes[i] += open[depth] ? glyphs.branch : glyphs.last;
        open[depth] = true;
    }
    return strokes;
}

std::string PipeText(const Process &process, const std::vector<PipeThread> &threads) {
    std::string text;
    for (const PipeEnd &end : process.pipes) {
        const auto same = [&end](const PipeThread &thread) { return thread.inode == end.inode; };
        if (std::none_of(threads.begin(), threads.end(), same)) continue;
        text += "  (" + std::to_string(end.descriptor) + (end.writes ? " escribe [" : " lee [") +
                std::to_string(end.inode) + "])";
    }
    return text;
}

} // namespace

std::vector<PipeThread> JoiningPipes(const std::vector<Row<Process>> &processes) {
    struct Ends {
        std::vector<size_t> writers, readers;
    };
    std::map<uint64_t, Ends> pipes;
    for (size_t i = 0; i < processes.size(); i++) {
        if (processes[i].mark == Mark::kGone || processes[i].now.depth == 0) continue;
        for (const PipeEnd &end : processes[i].now.pipes) {
            std::vector<size_t> &side = end.writes ? pipes[end.inode].writers : pipes[end.inode].readers;
            if (side.empty() || side.back() != i) side.push_back(i);
        }
    }
    std::vector<PipeThread> threads;
    for (const auto &[inode, ends] : pipes) {
        PipeThread thread = {inode, ends.writers};
        thread.rows.insert(thread.rows.end(), ends.readers.begin(), ends.readers.end());
        std::sort(thread.rows.begin(), thread.rows.end());
        thread.rows.erase(std::unique(thread.rows.begin(), thread.rows.end()), thread.rows.end());
        if (!ends.writers.empty() && !ends.readers.empty() && thread.rows.size() > 1)
            threads.push_back(std::move(thread));
    }
    return threads;
}

std::string CommandText(const Process &process, bool unicode) { return Printable(process.line, unicode); }

PanelText ProcessesPanel(const View &view, const Layout &layout) {
    PanelText panel;
    panel.title = "Procesos";
    const Glyphs &glyphs = *layout.glyphs;
    const bool groups = layout.width >= kWithGroups;
    const std::vector<PipeThread> threads = JoiningPipes(view.processes);
    std::vector<std::vector<size_t>> joined;
    joined.reserve(threads.size());
    for (const PipeThread &thread : threads) joined.push_back(thread.rows);
    const Brackets brackets =
        DrawBrackets(view.processes.size(), joined, std::max(2, layout.width / 10), glyphs);
    const std::vector<std::string> strokes = TreeStrokes(view.processes, glyphs);
    std::vector<std::string> trees;
    int tree = 5;
    for (size_t i = 0; i < view.processes.size(); i++) {
        trees.push_back(strokes[i] + std::to_string(view.processes[i].now.stat.pid));
        tree = std::max(tree, Width(trees.back()));
    }
    tree = std::min(tree, layout.width / 3);
    std::string header = " " + Fit("pid", tree + brackets.width, glyphs) + " estado   ";
    if (groups) header += " nice  grupo sesión";
    panel.header = {{header + "  orden", Style::kDim}};
    for (size_t i = 0; i < view.processes.size(); i++) {
        const Row<Process> &row = view.processes[i];
        const Stat &stat = row.now.stat;
        NoteChange(row.shown(), &panel);
        const bool watched = stat.pid == view.now.pid;
        Line line = {MarkSpan(row)};
        line.push_back(
            {Fit(trees[i], tree, glyphs), PartStyle(row, 0, watched ? Style::kStrong : Style::kPlain)});
        line.push_back({brackets.rows[i], PartStyle(row, kPipes, Style::kStrong)});
        line.push_back({" " + Fit(StateName(stat.state), 9, glyphs), PartStyle(row, kState)});
        if (groups) {
            line.push_back({FitRight(std::to_string(stat.nice), 5, glyphs), PartStyle(row, kNice)});
            line.push_back({FitRight(std::to_string(stat.group), 7, glyphs) +
                                FitRight(std::to_string(stat.session), 7, glyphs),
                            PartStyle(row, kGroups)});
        }
        line.push_back({"  " + CommandText(row.now, glyphs.unicode), PartStyle(row, kLine)});
        line.push_back({PipeText(row.now, threads), PartStyle(row, kPipes, Style::kDim)});
        panel.lines.push_back(std::move(line));
    }
    if (view.now.more_processes) panel.lines.push_back({{" Hay más, que no se enseñan", Style::kDim}});
    if (view.processes.empty()) panel.lines.push_back({{" Ninguno", Style::kDim}});
    return panel;
}

} // namespace mirador
