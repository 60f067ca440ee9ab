// SPDX-License-Identifier: MIT

#include "viewer/screen.h"

#include <curses.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>

#include "viewer/follow.h"
#include "viewer/panels/panels.h"
#include "viewer/screen_layout.h"
#include "viewer/terminal.h"
#include "viewer/text_output.h"

namespace mirador {

namespace {

constexpr double kShortest = 0.1;         // seconds between two looks, and between two refreshes
constexpr double kLongest = 2;            // whatever nobody noticed is seen after this time
constexpr double kShareOfIdle = 0.002;    // of one processor, for looking whether something happened
constexpr double kShareOfBusy = 0.02;     // of one processor, for reading everything
constexpr double kCostlyMeasure = 0.0015; // seconds of processor: above, smaps is not read every time

double Seconds(clockid_t clock) {
    struct timespec t;
    clock_gettime(clock, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}
double Now() { return Seconds(CLOCK_MONOTONIC); }
double Processor() { return Seconds(CLOCK_PROCESS_CPUTIME_ID); }

/// The screen from the first drawing to the last.
class Window {
  public:
    Window(const Options &options, const Glyphs &glyphs, const Terminal &terminal)
        : options_(options), glyphs_(glyphs), terminal_(terminal), follower_(options.pid) {}

    void Begin() {
        base_ = follower_.Next(true);
        shown_ = base_;
        view_ = Compare(base_, shown_);
        detector_.SomethingHappened(follower_.request(), shown_.processes);
        last_refresh_ = Now();
    }

    void Run() {
        while (!leave_) {
            if (redraw_) Draw();
            Wait();
            for (int key; (key = getch()) != ERR;) Key(key);
            if (!frozen_) Look();
        }
    }

  private:
    void Wait() const {
        struct pollfd input = {STDIN_FILENO, POLLIN, 0};
        const double pause = frozen_ ? kLongest : next_look_ - Now();
        poll(&input, 1, std::max(0, static_cast<int>(pause * 1000) + 1)); // a change of size ends it too
        if (input.revents & (POLLHUP | POLLERR)) leave_ = true;           // the terminal has gone
    }

    /// Looks whether something happened, and reads everything when it did. What each costs decides how soon
    /// again.
    void Look() {
        const double now = Now();
        if (now < next_look_) return;
        const double before = Processor();
        pending_ = detector_.SomethingHappened(follower_.request(), shown_.processes) || pending_;
        next_look_ = now + std::max(kShortest, (Processor() - before) / kShareOfIdle);
        if (!pending_ && now - last_refresh_ < kLongest) return;
        if (now < next_refresh_) return;
        pending_ = false;
        Refresh(now);
    }

    void Refresh(double now) {
        const bool measure = now >= next_measure_;
        const double before = Processor();
        const Snapshot next = follower_.Next(measure);
        const double cost = Processor() - before;
        if (measure && cost > kCostlyMeasure) next_measure_ = now + cost / kShareOfBusy;
        next_refresh_ = now + std::max(kShortest, cost / kShareOfBusy);
        last_refresh_ = now;
        Accept(next);
    }

    void Accept(const Snapshot &next) {
        const std::string message = follower_.TakeMessage();
        if (!message.empty()) {
            message_ = message;
            redraw_ = true;
        }
        if (next.pid != shown_.pid) { // another shell: nothing to compare with
            base_ = shown_ = next;
            view_ = Compare(next, next);
            redraw_ = true;
            return;
        }
        const View step = Compare(shown_, next);
        if (!step.changed && next.alive == shown_.alive && next.program == shown_.program) return;
        redraw_ = true;
        if (std::any_of(std::begin(step.major), std::end(step.major), [](bool major) { return major; })) {
            base_ = shown_;
            message_ = message;
            for (ScrollState &scroll : scrolls_) scroll = {};
        }
        shown_ = next;
        const Panel attention = view_.attention;
        view_ = Compare(base_, shown_);
        if (std::none_of(std::begin(view_.major), std::end(view_.major), [](bool major) { return major; }))
            view_.attention = attention;
    }

    void Key(int key) {
        redraw_ = true;
        switch (key) {
        case 'q':
        case 'Q': leave_ = true; break;
        case '1':
        case '2':
        case '3':
        case '4':
            whole_ = whole_ == key - '1' ? -1 : key - '1';
            help_ = false;
            break;
        case '0':
        case 27:
            whole_ = -1;
            help_ = false;
            break;
        case '?': help_ = !help_; break;
        case ' ':
            frozen_ = !frozen_;
            pending_ = true;
            break;
        case 'd': WriteState(); break;
        case '\t':
            follower_.Switch();
            Refresh(Now());
            break;
        case KEY_UP: Scroll(-1); break;
        case KEY_DOWN: Scroll(1); break;
        case KEY_PPAGE: Scroll(-LINES / 2); break;
        case KEY_NPAGE: Scroll(LINES / 2); break;
        case KEY_RESIZE: // terminals have ideas of their own of what is still shown
        case 12:         // Ctrl-L
            clearok(curscr, TRUE);
            break;
        default: break;
        }
    }

    /// Moves the panel that is whole, or else the one to look at.
    void Scroll(int lines) {
        ScrollState &scroll = scrolls_[whole_ == -1 ? static_cast<int>(view_.attention) : whole_];
        scroll.first = std::max(0, scroll.drawn + lines);
    }

    /// Writes the state to the first file mirador-PID-N.txt that does not exist.
    void WriteState() {
        Layout layout = {120, &glyphs_, true};
        const std::string text = TextOutput(view_, options_.panels, layout);
        int fd = -1;
        std::string name;
        for (int i = 1; fd == -1 && i < 1000; i++) {
            name = "mirador-" + std::to_string(view_.now.pid) + "-" + std::to_string(i) + ".txt";
            fd = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (fd == -1 && errno != EEXIST) break;
        }
        const bool written =
            fd != -1 && write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
        const int reason = errno;
        if (fd != -1) close(fd);
        message_ = written ? "Estado escrito en " + name : name + ": " + strerror(reason);
    }

    // Drawing.

    void Put(int y, int x, const Line &line, int width) const { terminal_.Put(y, x, line, width, glyphs_); }

    void Draw() {
        redraw_ = false;
        erase();
        const bool alive = view_.now.alive;
        std::string heading = HeadingText(view_.now, glyphs_.unicode);
        if (frozen_) heading = " CONGELADO (espacio sigue)" + heading;
        if (!alive) heading = " TERMINADO" + heading;
        Put(0, 0, {{Fit(heading, COLS, glyphs_), Style::kAttention}}, COLS);
        if (help_)
            DrawHelp();
        else
            DrawPanels();
        const std::string keys = " q sale  ? ayuda  1-4 panel  " +
                                 std::string(glyphs_.unicode ? "↑↓" : "flechas") +
                                 " mueve  espacio congela  Tab otro shell  d a fichero";
        const Line bottom = {message_.empty() ? Span{keys, Style::kDim}
                                              : Span{" " + message_, Style::kTitle}};
        if (LINES > 1) Put(LINES - 1, 0, bottom, COLS - 1); // the last cell would scroll some terminals
        refresh();
    }

    void DrawHelp() const {
        int y = 2;
        for (const char *text : kHelp)
            for (const std::string &line : Fold(text, COLS - 2)) {
                if (y >= LINES - 1) return;
                Put(y++, 1, {{line}}, COLS - 2);
            }
    }

    void DrawPanels() {
        const int rows = LINES - 2;
        if (rows < 1 || COLS < 2) return;
        PanelText panels[kPanels];
        std::vector<PanelNeed> needs;
        const bool two = whole_ == -1 && COLS >= kTwoColumns;
        const int width = two ? (COLS - 1) / 2 : COLS;
        for (int i = 0; i < kPanels; i++) {
            if (whole_ != -1 && whole_ != i) continue;
            panels[i] = DrawPanel(static_cast<Panel>(i), view_, {width, &glyphs_, whole_ == i});
            needs.push_back(
                {i, static_cast<int>(panels[i].lines.size()), i == static_cast<int>(view_.attention)});
        }
        for (const PanelPlace &place : PlacePanels(needs, rows, two))
            DrawOne(panels[place.panel], place, place.column * (width + 1), width);
    }

    void DrawOne(const PanelText &panel, const PanelPlace &place, int x, int width) {
        if (place.rows < 1) return;
        const int count = static_cast<int>(panel.lines.size());
        int y = 1 + place.first_row;
        const bool header = place.rows >= std::min(kRowsForHeader, count + 2);
        const int rows = place.rows - 1 - (header ? 1 : 0);
        ScrollState &scroll = scrolls_[place.panel];
        scroll.drawn = FirstLine(scroll.first, panel.first_changed, count, rows);
        const bool attention = view_.major[place.panel] && place.panel == static_cast<int>(view_.attention);
        std::string title =
            std::string(glyphs_.horizontal) + " " + std::to_string(place.panel + 1) + " " + panel.title + " ";
        if (attention) title += std::string(glyphs_.dot) + " ";
        std::string range;
        if (count > rows && rows > 0)
            range = " " + std::to_string(scroll.drawn + 1) + "-" + std::to_string(scroll.drawn + rows) +
                    " de " + std::to_string(count) + " ";
        for (int i = Width(title) + Width(range); i < width; i++) title += glyphs_.horizontal;
        Put(y++, x, {{title + range, attention ? Style::kAttention : Style::kTitle}}, width);
        if (header) Put(y++, x, panel.header, width);
        for (int i = 0; i < rows && scroll.drawn + i < count; i++)
            Put(y++, x, panel.lines[static_cast<size_t>(scroll.drawn) + static_cast<size_t>(i)], width);
    }

    static constexpr int kTwoColumns = 150;  ///< columns from which on the panels stand two by two
    static constexpr int kRowsForHeader = 6; ///< of a panel: below, the names of its columns are left out
    static constexpr const char *kHelp[] = {
        "mirador: lo que el núcleo sabe del shell, según cambia",
        "",
        "q        sale",
        "1 2 3 4  un panel entero (otra vez, 0 o Esc: los cuatro)",
        "flechas  mueven el panel entero, o el que cambió el último; Re Pág y Av Pág, media pantalla",
        "espacio  congela y descongela",
        "Tab      otro shell del árbol (los de fork)",
        "d        escribe el estado en un fichero mirador-PID-N.txt",
        "Ctrl-L   vuelve a dibujarlo todo",
        "?        esta ayuda",
        "",
        "+ nuevo   - desapareció   * cambió: hasta el cambio siguiente",
        "Un corchete une los descriptores de un mismo fichero abierto, o los extremos de una tubería.",
        "Las barras son logarítmicas: lo lleno está en memoria, lo claro todavía no.",
    };

    struct ScrollState {
        int first = -1; ///< line asked for by the user; -1: none
        int drawn = 0;  ///< first line drawn
    };

    const Options &options_;
    const Glyphs &glyphs_;
    const Terminal &terminal_;
    Follower follower_;
    ChangeDetector detector_;
    Snapshot base_, shown_; ///< before the last change; now
    View view_;
    std::string message_;
    ScrollState scrolls_[kPanels];
    int whole_ = -1;
    bool help_ = false, frozen_ = false, redraw_ = true, pending_ = false;
    mutable bool leave_ = false;
    double next_look_ = 0, next_refresh_ = 0, next_measure_ = 0, last_refresh_ = 0;
};

} // namespace

int RunScreen(const Options &options, const Glyphs &glyphs, std::string *fault) {
    if (!isatty(STDIN_FILENO) || !isatty(STDOUT_FILENO))
        return *fault = "la pantalla necesita un terminal; sin él, --una-vez, --json o --svg", -1;
    Request request;
    request.root = request.pid = options.pid;
    if (!TakeSnapshot(request).alive)
        return *fault = "no hay ningún proceso vivo " + std::to_string(options.pid), -1;
    const Terminal terminal;
    if (!terminal.open()) return *fault = "no se conoce este terminal (variable TERM)", -1;
    Window window(options, glyphs, terminal);
    window.Begin();
    window.Run();
    return 0;
}

} // namespace mirador
