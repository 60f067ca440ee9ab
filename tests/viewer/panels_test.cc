// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cstring>

#include "memfs/layout.h"
#include "viewer/changes.h"
#include "viewer/file_system_search.h"
#include "viewer/json_output.h"
#include "viewer/options.h"
#include "viewer/panels/panels.h"
#include "viewer/screen_layout.h"
#include "viewer/text_output.h"

// From records to lines: what is joined, marked, cut and escaped.

using namespace mirador;

namespace {

OpenDescriptor File(int number, const char *target, int64_t offset, int file) {
    OpenDescriptor d;
    d.number = number;
    d.target = target;
    d.kind = FileKind::kRegular;
    d.info.offset = offset;
    d.info.flags = O_RDWR | O_APPEND;
    d.file = file;
    return d;
}

Zone Bytes(uint64_t start, uint64_t end, ZoneKind kind) {
    Zone zone;
    zone.start = start;
    zone.end = end;
    zone.read = zone.write = true;
    zone.kind = kind;
    return zone;
}

Process Child(pid_t pid, int depth, char state, std::vector<PipeEnd> pipes = {}) {
    Process process;
    process.stat.pid = pid;
    process.stat.state = state;
    process.depth = depth;
    process.line = "orden " + std::to_string(pid);
    process.pipes = std::move(pipes);
    return process;
}

/// The lines of a panel, as text.
std::vector<std::string> Lines(const PanelText &panel, const Layout &layout) {
    std::vector<std::string> lines;
    for (const Line &line : panel.lines) {
        lines.push_back(PlainText(Finish(line, layout)));
        EXPECT_LE(Width(lines.back()), layout.width) << lines.back();
    }
    return lines;
}

} // namespace

TEST(DescriptorsPanel, BracketsJoinWhatIsShared) {
    Snapshot now;
    now.descriptors = {File(0, "a", 1, 0), File(1, "b", 2, 1), File(2, "a", 1, 0), File(3, "b", 2, 1),
                       File(4, "/un/sitio/que es muy largo de decir/c\n", 30, 4)};
    now.sharing_refused = "no";
    const Layout wide = {60, &kUnicodeGlyphs};
    EXPECT_EQ(Lines(DescriptorsPanel(Compare(now, now), wide), wide),
              (std::vector<std::string>{"    0─┐  a                                1  O_RDWR O_APPEND",
                                        "    1─┼┐ b                                2  O_RDWR O_APPEND",
                                        "    2─┘│ a                                1  O_RDWR O_APPEND",
                                        "    3──┘ b                                2  O_RDWR O_APPEND",
                                        "    4    …s muy largo de decir/c\\n       30  O_RDWR O_APPEND",
                                        " No se sabe cuáles comparten fichero abierto: no"}));
    const Layout narrow = {40, &kAsciiGlyphs};
    EXPECT_EQ(Lines(DescriptorsPanel(Compare(now, now), narrow), narrow)[1],
              "    1-+\\ b                2  RDWR|APPEND");
}

TEST(DescriptorsPanel, SaysWhatItHasNoRoomToJoin) {
    Snapshot now;
    for (int i = 0; i < 12; i++)
        now.descriptors.push_back(File(i, "f", 0, i % 6)); // six brackets, each over the others
    const Layout layout = {40, &kAsciiGlyphs};
    const auto lines = Lines(DescriptorsPanel(Compare(now, now), layout), layout);
    EXPECT_EQ(lines[6].substr(0, 8), "    6-/|");
    EXPECT_NE(lines[11].find("que 5)"), std::string::npos) << lines[11];
}

TEST(Changes, RowsSayWhatHappenedToThem) {
    Snapshot before, now;
    before.descriptors = {File(0, "a", 1, 0), File(1, "b", 2, 1), File(2, "c", 3, 2)};
    now.descriptors = {File(0, "a", 9, 0), File(2, "c", 3, 2), File(7, "d", 0, 7)};
    now.zones =
        before.zones = {Bytes(0x1000, 0x3000, ZoneKind::kHeap), Bytes(0x8000, 0xA000, ZoneKind::kStack)};
    now.zones[0].end = 0x4000;
    now.zones[1].start = 0x7000;
    before.signals.blocked = 1 << 9;
    now.signals.pending_process = now.signals.blocked = 1 << 9;
    const Layout layout = {60, &kAsciiGlyphs};
    const View view = Compare(before, now);
    const auto signs = [&](const PanelText &panel) {
        std::string text;
        for (const std::string &line : Lines(panel, layout)) text += line[0];
        return text;
    };
    EXPECT_EQ(signs(DescriptorsPanel(view, layout)), "*- +");
    EXPECT_EQ(signs(MemoryPanel(view, layout)), "**"); // the stack has grown downwards
    EXPECT_EQ(signs(SignalsPanel(view, layout)).substr(0, 2), "* ");
    EXPECT_EQ(DescriptorsPanel(view, layout).first_changed, 0);
    EXPECT_TRUE(view.changed);
    EXPECT_EQ(view.attention, Panel::kSignals);
    EXPECT_FALSE(Compare(now, now).changed);
}

TEST(Changes, WhatComesAndGoesByItselfDrawsNoAttention) {
    Snapshot before, now;
    before.processes = {Child(1, 0, 'S'), Child(2, 1, 'S')};
    now.processes = {Child(1, 0, 'R'), Child(2, 1, 'S')};
    now.zones = before.zones = {Bytes(0x1000, 0x3000, ZoneKind::kHeap)};
    before.zones[0].measured = now.zones[0].measured = true;
    now.zones[0].dirty = 4096;
    View view = Compare(before, now);
    EXPECT_TRUE(view.changed);
    for (const bool major : view.major) EXPECT_FALSE(major);
    now.processes[1].stat.state = 'Z';
    EXPECT_TRUE(Compare(before, now).major[static_cast<int>(Panel::kProcesses)]);
    now.processes[1] = before.processes[1];
    now.processes[1].stat.start = 5; // its number was given away again
    view = Compare(before, now);
    EXPECT_EQ(view.processes.size(), 3u);
}

TEST(ProcessesPanel, DrawsTreeAndPipes) {
    Snapshot now;
    now.pid = 10;
    now.processes = {Child(10, 0, 'S', {{5, 1, true}}),
                     Child(11, 1, 'S', {{5, 1, true}, {7, 1, true}}),
                     Child(12, 2, 'T'),
                     Child(13, 3, 'Z'),
                     Child(14, 1, 'R', {{7, 0, false}}),
                     Child(15, 2, 'S', {{5, 1, true}})};
    const Layout layout = {60, &kUnicodeGlyphs};
    EXPECT_EQ(Lines(ProcessesPanel(Compare(now, now), layout), layout),
              (std::vector<std::string>{
                  " 10         dormido    orden 10", " ├─11    ─┐ dormido    orden 11  (1 escribe [7])",
                  " │ └─12   │ parado     orden 12", " │   └─13 │ zombi      orden 13",
                  " └─14    ─┘ ejecución  orden 14  (0 lee [7])", "   └─15     dormido    orden 15"}));
}

TEST(MemoryPanel, FoldsLibrariesUnlessTheyChange) {
    Snapshot before;
    for (uint64_t i = 1; i < 4; i++)
        before.zones.push_back(Bytes(i << 16, (i + 1) << 16, ZoneKind::kLibrary));
    for (Zone &zone : before.zones) zone.owner = zone.path = "/lib/libx.so";
    Snapshot now = before;
    now.zones.pop_back();
    now.file_systems = {{0x10040, 6, 1, 20000, 18000, true, {{"a\xff.txt", 36, 0}}}};
    Layout layout = {60, &kAsciiGlyphs};
    EXPECT_EQ(Lines(MemoryPanel(Compare(before, before), layout), layout),
              (std::vector<std::string>{"        0x10000 ###      192K      libx.so (3 zonas)"}));
    const auto changed = Lines(MemoryPanel(Compare(before, now), layout), layout);
    ASSERT_EQ(changed.size(), 4u);
    EXPECT_EQ(changed[1].substr(0, 44), "    SF encontrado por su marca en 0x10040: 2");
    EXPECT_EQ(changed[2], "      36 bytes desde 0: a\\377.txt");
    EXPECT_EQ(changed[3], "-       0x30000 ##        64K rw-p libx.so");
    layout.whole = true;
    EXPECT_EQ(MemoryPanel(Compare(before, before), layout).lines.size(), 3u);
}

TEST(ScreenLayout, GivesRoomFirstToThePanelToLookAt) {
    const std::vector<PanelNeed> needs = {{0, 5, false}, {1, 40, false}, {2, 10, true}, {3, 1, false}};
    const auto rows = [&](int height, bool two_columns) {
        std::vector<int> given(4);
        int sum = 0;
        for (const PanelPlace &place : PlacePanels(needs, height, two_columns)) {
            given[static_cast<size_t>(place.panel)] = place.rows;
            sum += place.rows;
            EXPECT_LE(place.first_row + place.rows, height);
        }
        EXPECT_LE(sum, two_columns ? 2 * height : height);
        return given;
    };
    EXPECT_EQ(rows(22, false), (std::vector<int>{4, 3, 12, 3}));
    EXPECT_EQ(rows(30, false), (std::vector<int>{7, 8, 12, 3}));
    EXPECT_EQ(rows(2, false), (std::vector<int>{0, 0, 2, 0}));
    EXPECT_EQ(rows(40, true), (std::vector<int>{7, 37, 12, 3}));
    EXPECT_EQ(FirstLine(-1, -1, 40, 10), 0);
    EXPECT_EQ(FirstLine(-1, 39, 40, 10), 30);
    EXPECT_EQ(FirstLine(-1, 20, 40, 10), 17);
    EXPECT_EQ(FirstLine(99, 0, 40, 10), 30);
    EXPECT_EQ(FirstLine(5, 2, 3, 10), 0);
}

TEST(StyledText, NamesAreSafeAndFit) {
    setlocale(LC_CTYPE, "C.UTF-8");
    EXPECT_EQ(Printable("ñ\033[2J\n\t\xff\xc3", true), "ñ\\033[2J\\n\\t\\377\\303");
    EXPECT_EQ(Printable("ñ", false), "\\303\\261");
    EXPECT_EQ(Printable("\xed\xa0\x80\xc0\x80", true), "\\355\\240\\200\\300\\200"); // neither is UTF-8
    EXPECT_EQ(Fit("añoranza", 4, kUnicodeGlyphs), "año…");
    EXPECT_EQ(Fit("añoranza", 4, kUnicodeGlyphs, true), "…nza");
    EXPECT_EQ(Fit("日本", 4, kUnicodeGlyphs), "日本");
    EXPECT_EQ(Fit("日本語", 4, kUnicodeGlyphs), "日… ");
    EXPECT_EQ(WithoutAccents("señal ¿?"), "senal ?");
    EXPECT_EQ(Fold("q   año nuevo, vida", 9), (std::vector<std::string>{"q   año", "  nuevo,", "  vida"}));
    EXPECT_EQ(Fold("", 9).size(), 1u);
    setlocale(LC_CTYPE, "C");
    static constexpr struct {
        uint64_t bytes;
        const char *text;
    } rows[] = {{0, "0B"},    {999, "999B"},       {1000, "1,0K"},
                {4096, "4K"}, {132 << 10, "132K"}, {1023 << 10, "1,0M"}};
    for (const auto &row : rows) EXPECT_EQ(ShortSize(row.bytes), row.text);
}

TEST(JsonOutput, KeepsEveryByteOfAName) {
    EXPECT_EQ(JsonString("a\"\\\n\x01\xff\xc3\xb1\xf0\x9f\x98\x80"),
              "\"a\\\"\\\\\\u000a\\u0001\\udcff\\u00f1\\ud83d\\ude00\"");
    Snapshot now;
    now.pid = 7;
    now.alive = true;
    now.processes = {Child(7, 0, 'R', {{5, 1, true}})};
    EXPECT_EQ(
        JsonOutput(Compare(now, now), 1u << 3),
        "{\"version\": 1, \"pid\": 7, \"programa\": \"\", \"uid\": 0,\n  \"procesos\": [\n  {\"pid\": 7, "
        "\"padre\": 0, \"nivel\": 0, \"estado\": \"ejecucion\", \"nice\": 0, \"grupo\": 0, \"sesion\": 0, "
        "\"orden\": \"orden 7\", \"tuberias\": [{\"inodo\": 5, \"descriptor\": 1, \"extremo\": "
        "\"escritura\"}]}]}\n");
}

TEST(FileSystemSearch, LooksAtEverySixteenBytes) {
    SF header = {};
    header.magico = kMagicoSF;
    header.capacidad = 2;
    header.tamTotal = 20000;
    header.libres = 20000 - static_cast<uint32_t>(TamanoSF(2));
    unsigned char bytes[256] = {};
    memcpy(bytes + 48, &header, sizeof header);
    memcpy(bytes + 104, &header, sizeof header); // not where a block can start
    header.libres++;
    memcpy(bytes + 144, &header, sizeof header); // more is free than there is
    header.libres--;
    memcpy(bytes + 224, &header, sizeof header);
    EXPECT_EQ(HeadersIn(bytes, sizeof bytes), (std::vector<size_t>{48, 224}));
    EXPECT_EQ(HeadersIn(bytes, sizeof bytes - 1), (std::vector<size_t>{48}));
}

TEST(Options, RefusesWhatItDoesNotKnow) {
    static constexpr struct {
        const char *words[4];
        bool accepted;
    } rows[] = {{{"--una-vez", "12"}, true},
                {{"12"}, true},
                {{"--svg", "f.svg", "12"}, true},
                {{"--json", "--una-vez", "12"}, true},
                {{"--help"}, true},
                {{}, false},
                {{"1", "2"}, false},
                {{"-3"}, false},
                {{"12x"}, false},
                {{"--paneles", "15", "12"}, false},
                {{"--ancho", "0", "12"}, false},
                {{"--svg"}, false},
                {{"99999999999999999999"}, false}};
    for (const auto &row : rows) {
        std::vector<char *> argv = {const_cast<char *>("mirador")};
        for (const char *word : row.words)
            if (word) argv.push_back(const_cast<char *>(word));
        argv.push_back(nullptr);
        Options options;
        std::string fault;
        optind = 1;
        EXPECT_EQ(ParseOptions(static_cast<int>(argv.size()) - 1, argv.data(), &options, &fault) == 0,
                  row.accepted)
            << (row.words[0] ? row.words[0] : "");
        EXPECT_EQ(fault.empty(), row.accepted);
    }
}
