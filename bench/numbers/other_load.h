// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// How much of the machine others took while the rounds ran.
#pragma once

#include <string>

namespace bench {

class OtherLoad {
  public:
    OtherLoad();

    // What others took since the beginning, in words: of all processors, without this process and
    // what it ran. Bold where it is so much that ratios may suffer.
    [[nodiscard]] std::string Words() const;

  private:
    struct Times {
        double busy_s = 0;    // of all processors
        double stolen_s = 0;  // that the host gave to other machines
        double all_s = 0;     // that passed, of all processors
        double ours_s = 0;
    };
    static Times Now();

    Times start_;
    std::string average_;  // load average at the beginning
};

}  // namespace bench
