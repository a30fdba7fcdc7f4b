// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/tool/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace lab {

bool ColourWanted() {
    const char* no_color = std::getenv("NO_COLOR");
    return isatty(STDOUT_FILENO) == 1 && (no_color == nullptr || *no_color == '\0');
}

bool TrueColour() {
    const char* term = std::getenv("COLORTERM");
    return term != nullptr &&
           (std::strcmp(term, "truecolor") == 0 || std::strcmp(term, "24bit") == 0);
}

int TerminalWidth() {
    winsize size{};
    const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

int TerminalHeight() {
    winsize size{};
    const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 0;
    return known ? size.ws_row : 24;
}

Progress::Progress(std::string what, int64_t total, bool quiet)
    : what_(std::move(what)),
      total_(total),
      visible_(!quiet && isatty(STDERR_FILENO) == 1),
      start_(std::chrono::steady_clock::now()),
      last_(start_) {}

Progress::~Progress() {
    if (drawn_) std::fputs("\r\033[K", stderr);
}

void Progress::Show(int64_t done) {
    if (!visible_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ < std::chrono::milliseconds(100)) return;
    last_ = now;
    drawn_ = true;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const double rate = static_cast<double>(done) / seconds;
    if (total_ > 0 && rate > 0) {
        const double left = static_cast<double>(total_ - done) / rate;
        std::fprintf(stderr, "\r\033[K%lld of %lld %s, %.0f a second, %.0f s left",
                     static_cast<long long>(done), static_cast<long long>(total_), what_.c_str(),
                     rate, left);
    } else {
        std::fprintf(stderr, "\r\033[K%lld %s, %.0f a second", static_cast<long long>(done),
                     what_.c_str(), rate);
    }
}

}  // namespace lab
