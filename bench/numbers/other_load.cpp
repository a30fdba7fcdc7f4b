// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "bench/numbers/other_load.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>

namespace bench {

namespace {

constexpr double kBusy = 5;  // percent of all processors, from which the page warns

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

double OwnSeconds(int who) {
    rusage used{};
    getrusage(who, &used);
    return Seconds(used.ru_utime) + Seconds(used.ru_stime);
}

}  // namespace

OtherLoad::OtherLoad() : start_(Now()) {
    std::ifstream("/proc/loadavg") >> average_;
}

OtherLoad::Times OtherLoad::Now() {
    std::ifstream file("/proc/stat");
    std::string name;
    double user = 0, nice = 0, system = 0, idle = 0, io = 0, irq = 0, soft = 0, stolen = 0;
    file >> name >> user >> nice >> system >> idle >> io >> irq >> soft >> stolen;
    const double tick = 1.0 / static_cast<double>(sysconf(_SC_CLK_TCK));
    const double busy = user + nice + system + irq + soft;
    return {busy * tick, stolen * tick, (busy + idle + io + stolen) * tick,
            OwnSeconds(RUSAGE_SELF) + OwnSeconds(RUSAGE_CHILDREN)};
}

std::string OtherLoad::Words() const {
    const Times now = Now();
    const double all = std::max(now.all_s - start_.all_s, 0.01);
    const double others = (now.busy_s - start_.busy_s) - (now.ours_s - start_.ours_s);
    const double share = std::max(0.0, 100 * others / all);
    const double stolen = 100 * (now.stolen_s - start_.stolen_s) / all;
    std::array<char, 200> text{};
    std::snprintf(
        text.data(), text.size(),
        "%.1f %% of all processors' time, and %.1f %% by other machines on the host; load "
        "average %s at the start",
        share, stolen, average_.c_str());
    if (share + stolen < kBusy) return text.data();
    return std::string("**busy machine**: ") + text.data();
}

}  // namespace bench
