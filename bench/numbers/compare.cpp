// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// `mdlab compare` beside `cmp` and `diff`.
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "bench/numbers/bench.h"

namespace bench {

namespace {

namespace fs = std::filesystem;

constexpr const char* kGolden = "/HOG_feature/hogmd_golden.txt";

// Dumps of one run, whole. Frame files make a folder large, so a long run keeps its running file
// only.
std::string Dumps(const Bench& bench, const std::string& name, int32_t frames,
                  const std::string& bits) {
    std::string folder = bench.made + "/" + name;
    Run(Md(bench, kMiddle, frames, {"MD_DbgEn=" + bits, "OutputFilePath=" + folder}));
    return folder;
}

// Changes one digit of the last vector in the file, so that all before it is equal.
void ChangeLate(const std::string& path) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    constexpr int kTail = 100;  // bytes that hold the last block
    file.seekg(-kTail, std::ios::end);
    std::string tail(kTail, '\0');
    file.read(tail.data(), kTail);
    const size_t at = tail.rfind("MODE2:");
    if (!file || at == std::string::npos) throw std::runtime_error(path + " ends in no vector");
    char& digit = tail[at + 6];
    digit = digit == '0' ? '1' : '0';
    file.seekp(-kTail, std::ios::end);
    file.write(tail.data(), kTail);
    if (!file) throw std::runtime_error("cannot change " + path);
}

Command Cmp(const std::string& a, const std::string& b, int status) {
    return {{"cmp", "-s", a, b}, status};
}

Command Compare(const std::string& a, const std::string& b, int status) {
    return {{MdlabProgram(), "compare", a, b}, status};
}

}  // namespace

Section CompareSection(const Bench& bench) {
    const std::string one = Dumps(bench, "long", bench.quick ? 40 : kMiddle.frames * 2 / 3, "0x20");
    const std::string golden = one + "_golden.txt", copy = one + "_copy.txt",
                      late = one + "_late.txt";
    fs::rename(one + kGolden, golden);
    fs::remove_all(one);
    for (const std::string& path : {copy, late}) fs::copy_file(golden, path);
    ChangeLate(late);
    const int32_t frames = bench.quick ? 20 : 100;
    const std::string runs = Dumps(bench, "run", frames, "0x360");
    const std::string again = bench.made + "/run_again", other = bench.made + "/run_other";
    for (const std::string& path : {again, other}) {
        fs::copy(runs, path, fs::copy_options::recursive);
    }
    ChangeLate(other + kGolden);

    Section section;
    section.text =
        "One `hogmd_golden.txt` of " + std::to_string(fs::file_size(golden) / 1000000) +
        " MB, and a folder with all dumps of " + std::to_string(frames) +
        " frames of 640x360, in\n"
        "the system's cache. In one comparison all is equal, in the other one digit of the\n"
        "last block is not: `cmp -s` and `diff -rq` only say so, `mdlab compare` names the block\n"
        "and what may have gone wrong.";
    section.subjects = {
        {"cmp equal", Cmp(golden, copy, 0)},
        {"compare equal", Compare(golden, copy, 0)},
        {"cmp late", Cmp(golden, late, 1)},
        {"compare late", Compare(golden, late, 1)},
        {"diff", {{"diff", "-rq", runs, again}}},
        {"folders", Compare(runs, again, 0)},
        {"diff other", {{"diff", "-rq", runs, other}, 1}},
        {"folders other", Compare(runs, other, 1)},
    };
    section.tables = {
        {"",
         {{"one file, equal: mdlab compare / cmp", "", Ratio("compare equal", "cmp equal"), 2},
          {"one file, differs late: mdlab compare / cmp", "", Ratio("compare late", "cmp late"), 2},
          {"a folder, equal: mdlab compare / diff -rq", "", Ratio("folders", "diff"), 2},
          {"a folder, one file differs late: mdlab compare / diff -rq", "",
           Ratio("folders other", "diff other"), 2},
          {"one file, differs late: mdlab compare, MiB", "", PeakMib("compare late"), 1},
          {"a folder, one file differs late: mdlab compare, MiB", "", PeakMib("folders other"),
           1}}}};
    return section;
}

}  // namespace bench
