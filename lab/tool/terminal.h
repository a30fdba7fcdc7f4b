// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What the user sees on a terminal: colour on standard output and a progress line on standard
// error. Neither appears when the stream is not a terminal, so that files and pipes hold plain
// results.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace lab {

// True when standard output is a terminal and the environment does not set NO_COLOR to a text.
bool ColourWanted();

// True when the environment's COLORTERM names 24-bit colour.
bool TrueColour();

// Columns of the terminal on standard output; 80 where there is none.
int TerminalWidth();

// Lines of the terminal on standard output; 24 where there is none.
int TerminalHeight();

// One line on standard error that is redrawn at most ten times a second: done of all, rate, time
// left. Shows nothing when `quiet` is set or standard error is not a terminal.
class Progress {
  public:
    // `what` names the units in the plural, "frames". `total` may be 0 for not known.
    Progress(std::string what, int64_t total, bool quiet);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(int64_t done);

  private:
    std::string what_;
    int64_t total_;
    bool visible_;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point start_, last_;
};

}  // namespace lab
