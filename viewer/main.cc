// SPDX-License-Identifier: MIT

// A window on what the kernel knows of a running shell. Reads /proc, asks kcmp; traces nothing, changes
// nothing.

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>

#include "viewer/changes.h"
#include "viewer/json_output.h"
#include "viewer/options.h"
#include "viewer/screen.h"
#include "viewer/snapshot.h"
#include "viewer/svg_output.h"
#include "viewer/text_output.h"

namespace mirador {
namespace {

int Fail(const Glyphs &glyphs, const std::string &sentence) {
    fprintf(stderr, "mirador: %s\n", (glyphs.unicode ? sentence : WithoutAccents(sentence)).c_str());
    return 1;
}

int OutputWidth() {
    struct winsize window;
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == -1 || window.ws_col == 0) return 80;
    return window.ws_col;
}

/// Returns 0, or -1 with errno.
int WriteFile(FILE *file, const std::string &text) {
    if (!file) return -1;
    const bool written = fwrite(text.data(), 1, text.size(), file) == text.size();
    const bool closed = fclose(file) == 0;
    return written && closed ? 0 : -1;
}

int Once(const Options &options, const Layout &layout) {
    Request request;
    request.root = request.pid = options.pid;
    request.search = true;
    const Snapshot now = TakeSnapshot(request);
    if (!now.alive) return Fail(*layout.glyphs, "no hay ningún proceso vivo " + std::to_string(options.pid));
    const View view = Compare(now, now);
    if (options.mode == Mode::kSvg) {
        if (WriteFile(fopen(options.file.c_str(), "w"), SvgOutput(view, options.panels)) == 0) return 0;
        return Fail(*layout.glyphs, options.file + ": " + strerror(errno));
    }
    const std::string text = options.mode == Mode::kJson ? JsonOutput(view, options.panels)
                                                         : TextOutput(view, options.panels, layout);
    return WriteFile(stdout, text) == 0 ? 0 : Fail(*layout.glyphs, std::string("salida: ") + strerror(errno));
}

int Main(int argc, char *argv[]) {
    setlocale(LC_ALL, "");
    Options options;
    std::string fault;
    const int parsed = ParseOptions(argc, argv, &options, &fault);
    Layout layout;
    const bool unicode = strcmp(nl_langinfo(CODESET), "UTF-8") == 0 && !options.ascii;
    layout.glyphs = unicode ? &kUnicodeGlyphs : &kAsciiGlyphs;
    layout.width = options.width ? options.width : OutputWidth();
    layout.whole = true;
    if (parsed == -1) return Fail(*layout.glyphs, fault + " (mirador --help)") + 1;
    if (options.mode == Mode::kHelp) {
        fputs((unicode ? std::string(kUsage) : WithoutAccents(kUsage)).c_str(), stdout);
        return 0;
    }
    if (options.mode != Mode::kScreen) return Once(options, layout);
    if (RunScreen(options, *layout.glyphs, &fault) == -1) return Fail(*layout.glyphs, fault);
    return 0;
}

} // namespace
} // namespace mirador

int main(int argc, char *argv[]) { return mirador::Main(argc, argv); }
