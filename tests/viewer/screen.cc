// SPDX-License-Identifier: MIT

#include "tests/viewer/screen.h"

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <regex>

using namespace escenario;

namespace {

std::string Utf8(uint32_t code) {
    if (code < 0x80) return {static_cast<char>(code)};
    if (code < 0x800) return {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))};
    return {static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 0x3F)),
            static_cast<char>(0x80 | (code & 0x3F))};
}

} // namespace

Screen::Screen(pid_t watched, const std::vector<std::string> &environment, int columns) {
    NewTerminal(24, columns);
    const struct winsize size = {24, static_cast<unsigned short>(columns), 0, 0};
    const std::string pid = std::to_string(watched);
    pid_ = forkpty(&salida_, nullptr, nullptr, &size);
    if (pid_ == 0) {
        setenv("TERM", "xterm-256color", 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        for (const std::string &variable : environment) putenv(const_cast<char *>(variable.c_str()));
        execl(VIEWER_PROGRAM, VIEWER_PROGRAM, pid.c_str(), nullptr);
        _exit(127);
    }
    entrada_ = dup(salida_);
}

Screen::~Screen() {
    Enviar("q");
    EXPECT_EQ(EsperarFin(), 0);
    vterm_free(terminal_);
}

std::string Screen::Await(const std::string &expression) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(kPlazo);
    const std::regex regex(expression);
    while (std::chrono::steady_clock::now() < end) {
        const std::vector<std::string> lines = Lines();
        const auto line = std::find_if(lines.begin(), lines.end(),
                                       [&](const std::string &l) { return std::regex_search(l, regex); });
        if (line != lines.end()) return *line;
        struct pollfd input = {salida_, POLLIN, 0};
        if (poll(&input, 1, 100) == 0) continue;
        char bytes[4096];
        const ssize_t n = read(salida_, bytes, sizeof bytes);
        if (n <= 0) break;
        vterm_input_write(terminal_, bytes, static_cast<size_t>(n));
    }
    std::string shown;
    for (const std::string &line : Lines()) shown += line + "\n";
    ADD_FAILURE() << "no line matches " << expression << " in\n" << shown;
    return "";
}

void Screen::NewTerminal(int rows, int columns) {
    terminal_ = vterm_new(rows, columns);
    screen_ = vterm_obtain_screen(terminal_);
    vterm_set_utf8(terminal_, 1);
    vterm_screen_reset(screen_, 1);
}

void Screen::Resize(int columns, int rows) {
    vterm_free(terminal_);
    NewTerminal(
        rows, columns); // the viewer draws everything anew; this library's own resizing is not to be trusted
    const struct winsize size = {static_cast<unsigned short>(rows), static_cast<unsigned short>(columns), 0,
                                 0};
    ioctl(entrada_, TIOCSWINSZ, &size);
}

std::vector<std::string> Screen::Lines() const {
    std::vector<std::string> lines;
    int rows, columns;
    vterm_get_size(terminal_, &rows, &columns);
    for (int row = 0; row < rows; row++) {
        std::string line;
        VTermScreenCell cell;
        for (int column = 0; column < columns; column += std::max<int>(1, cell.width)) {
            vterm_screen_get_cell(screen_, {row, column}, &cell);
            line += cell.chars[0] ? Utf8(cell.chars[0]) : " ";
        }
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(line);
    }
    return lines;
}

bool Screen::Reversed(const std::string &text) const {
    const std::vector<std::string> lines = Lines();
    for (size_t row = 0; row < lines.size(); row++) {
        const size_t place = lines[row].find(text);
        if (place == std::string::npos) continue;
        int column = 0; // letters, not bytes
        for (size_t i = 0; i < place; i++) column += (lines[row][i] & 0xC0) != 0x80;
        VTermScreenCell cell;
        vterm_screen_get_cell(screen_, {static_cast<int>(row), column}, &cell);
        return cell.attrs.reverse;
    }
    ADD_FAILURE() << text << " is not on the screen";
    return false;
}
