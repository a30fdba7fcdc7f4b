// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The one exception of mdlab. It carries a message for the user and the exit status of the program;
// main prints the message on standard error. Everything below main can so be tested in process.
#pragma once

#include <stdexcept>
#include <string>

namespace lab {

// What a parent process sees. `cmp` and `diff` use the same three numbers.
enum ExitStatus : int {
    kSame = 0,     // done; nothing differs, every limit is met
    kDiffer = 1,   // done; something differs or a limit is missed
    kTrouble = 2,  // not done: unusable arguments, an unreadable file, a full disk
};

class Error : public std::runtime_error {
  public:
    explicit Error(const std::string& message, int status = kTrouble)
        : std::runtime_error(message), status_(status) {}
    [[nodiscard]] int Status() const { return status_; }

  private:
    int status_;
};

}  // namespace lab
