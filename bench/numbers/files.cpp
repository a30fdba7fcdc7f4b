// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What writing dumps and videos costs, beside `fprintf` and a copy of the files.
#include "bench/numbers/bench.h"

namespace bench {

Section FilesSection(const Bench& bench) {
    const int32_t frames = bench.quick ? 20 : 100;
    const std::vector<std::string> dumps = {"MD_DbgEn=0x360"}, videos = {"MD_DbgEn=0x1a"};
    Command plain = Md(bench, kMiddle, frames, dumps);
    plain.environment = {"MD_TEXT=plain"};
    Section section;
    section.text =
        R"(MD at 640x360 with all dumps (`MD_DbgEn=0x360`) or the three raw videos (`0x1a`), a whole
run over 100 frames. `MD_TEXT=plain` prints each number by an `fprintf` of its own. `cp -r` copies what MD left.)";
    section.subjects = {
        {"dumps", Md(bench, kMiddle, frames, dumps)},
        {"fprintf", plain},
        {"cp dumps", {{"cp", "-rT", "{of dumps}", "{new}"}}},
        {"videos", Md(bench, kMiddle, frames, videos)},
        {"cp videos", {{"cp", "-rT", "{of videos}", "{new}"}}},
    };
    section.tables = {
        {"",
         {{"all dumps: fprintf a number at a time / MD", "", Ratio("fprintf", "dumps"), 1,
           AtLeast(8)},
          {"all dumps: MD / cp of its files", "", Ratio("dumps", "cp dumps"), 2, AtMost(4)},
          {"three videos: MD / cp of its files", "", Ratio("videos", "cp videos"), 2, AtMost(2)}}}};
    return section;
}

}  // namespace bench
