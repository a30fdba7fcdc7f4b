// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// bench_numbers WORK MD_BUILT_O2 ROUNDS CLIP COMMAND PAGE [quick]: measures everything that
// docs/numbers.md shows and writes that page. scripts/bench.sh makes what it needs: WORK with the
// clips (bench.h), and the programs. CLIP and COMMAND are words for the head of the page.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "bench/numbers/bench.h"
#include "bench/numbers/other_load.h"
#include "bench/numbers/page.h"
#include "md/decision/row_kernels.h"

namespace bench {

namespace {

namespace fs = std::filesystem;

// In the order of the page.
struct Row {
    const char* title;
    Section (*make)(const Bench& bench);
};
constexpr Row kSections[] = {
    {"Speed of MD", SpeedSection},        {"Growth and memory", GrowthSection},
    {"Dumps and videos", FilesSection},   {"mdlab compare", CompareSection},
    {"mdlab report", ReportSection},      {"The report page in a browser", BrowserSection},
    {"mdlab sweep", SweepSection},        {"Kernels", KernelsSection},
    {"Readers of dumps", ReadersSection},
};

std::string Today() {
    const std::time_t now = std::time(nullptr);
    std::array<char, 16> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d", std::gmtime(&now));
    return text.data();
}

std::string Processor() {
    std::string cores = std::to_string(std::thread::hardware_concurrency()) + " cores";
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);) {
        if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2) + ", " + cores;
    }
    return cores;
}

std::string Kernels() {
    std::string names;
    for (const RowKernels& kernels : OfferedKernels()) {
        names += (names.empty() ? "" : ", ") + std::string(kernels.szName);
    }
    return names;
}

// A word of what a command prints, counted from 0.
std::string WordOf(const std::vector<std::string>& words, int which) {
    std::istringstream text(OutputOf({words}));
    std::string word;
    for (int i = 0; i <= which; ++i) text >> word;
    return word;
}

void WriteWhole(const std::string& path, const std::string& text) {
    const std::string part = path + ".part";
    std::ofstream file(part, std::ios::binary);
    file << text;
    file.close();
    if (!file) throw std::runtime_error("cannot write " + part);
    fs::rename(part, path);
}

// Measured, or with the words of what went wrong, which must not cost the other sections.
Section Measured(const Bench& bench, const Row& row, bool* whole) {
    try {
        Section section = row.make(bench);
        section.title = row.title;
        if (!section.subjects.empty()) Measure(bench.rounds, bench.work + "/out", &section);
        for (const Table& table : section.tables) {
            for (const Figure& figure : table.figures) {
                for (const Round& round : section.rounds) figure.value(round);  // throws if missing
            }
        }
        return section;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_numbers: %s: %s\n", row.title, error.what());
        *whole = false;
        return {row.title, "Not measured, as a command failed."};
    }
}

// Gives whether all was measured.
bool Write(Bench bench, const std::string& clip, const std::string& command,
           const std::string& page) {
    bench.made = bench.work + "/made";
    fs::remove_all(bench.made);
    fs::create_directories(bench.made);
    const OtherLoad load;
    bool whole = true;
    std::vector<Section> sections;
    for (const Row& row : kSections) sections.push_back(Measured(bench, row, &whole));
    Facts facts = {{"date", Today()},
                   {"command", "`" + command + "`, " + std::to_string(bench.rounds) +
                                   (bench.rounds == 1 ? " round" : " rounds")},
                   {"clip", clip},
                   {"processor", Processor()},
                   {"kernels it offers", Kernels()},
                   {"other work meanwhile", load.Words()},
                   {"compiler", MD_COMPILER},
                   {"ffmpeg", WordOf({"ffmpeg", "-version"}, 2)}};
    if (!std::string(OPENCV_PEERS_PROGRAM).empty()) {
        facts.emplace_back("OpenCV", WordOf({OPENCV_PEERS_PROGRAM, "version"}, 0));
    }
    WriteWhole(page, Page(facts, sections));
    fs::remove_all(bench.made);
    return whole;
}

}  // namespace

}  // namespace bench

int main(int argc, char** argv) {
    if (argc != 7 && argc != 8) {
        std::fprintf(stderr, "usage: %s WORK MD_BUILT_O2 ROUNDS CLIP COMMAND PAGE [quick]\n",
                     argv[0]);
        return 2;
    }
    try {
        bench::Bench bench;
        bench.work = std::filesystem::absolute(argv[1]).string();
        bench.md_o2 = std::filesystem::absolute(argv[2]).string();
        bench.rounds = std::max(1, std::atoi(argv[3]));
        bench.quick = argc == 8;
        return bench::Write(bench, argv[4], argv[5], argv[6]) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_numbers: %s\n", error.what());
        return 1;
    }
}
