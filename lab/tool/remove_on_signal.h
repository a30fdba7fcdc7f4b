// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// A temporary file that goes with the process: while this lives, SIGINT, SIGTERM and SIGHUP remove
// it before they end the process as they would have. Signals that are ignored or have a handler
// stay as they are. Past a few at once, or a very long path, it does nothing.
#pragma once

#include <string>

namespace lab {

class RemoveOnSignal {
  public:
    explicit RemoveOnSignal(const std::string& path);
    ~RemoveOnSignal();
    RemoveOnSignal(const RemoveOnSignal&) = delete;
    RemoveOnSignal& operator=(const RemoveOnSignal&) = delete;

  private:
    int slot_ = -1;
};

}  // namespace lab
