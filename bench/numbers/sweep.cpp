// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// `mdlab sweep` beside the loop that one would write in a shell.
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "bench/numbers/bench.h"

namespace bench {

namespace {

namespace fs = std::filesystem;

constexpr int32_t kFrames = 800;
constexpr int kFirst = 6, kValues = 25;  // of MD_HogDist_Th

void Write(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
}

std::string BaseSettings(const Bench& bench, int32_t frames) {
    std::ifstream raw(SourcePath("cfg/raw.cfg"));
    std::ostringstream text;
    text << raw.rdbuf() << "InputFilePath = " << bench.work << "/" << kSmall.Raw()
         << "\nFramesToBeProcessed = " << frames << "\n";
    return text.str();
}

// The plan, and a settings file for each of its points. Gives how many there are.
int WritePoints(const Bench& bench, const std::string& base, int others) {
    std::ostringstream plan;
    plan << "settings: base.cfg\nclips:\n  - {file: " << fs::absolute(bench.work).string() << "/"
         << kSmall.Raw() << ", width: " << kSmall.width << ", height: " << kSmall.height
         << "}\nkeys:\n  MD_HogDist_Th: " << kFirst << ".." << kFirst + kValues - 1
         << "\n  MD_HogDist_Th_nnAdj_Scale: 0.." << others - 1 << "\n";
    Write(bench.made + "/plan.yaml", plan.str());
    Write(bench.made + "/base.cfg", base);
    fs::create_directories(bench.made + "/points");
    int n = 0;
    for (int i = 0; i < kValues; ++i) {
        for (int k = 0; k < others; ++k) {
            Write(bench.made + "/points/" + std::to_string(++n) + ".cfg",
                  base + "MD_HogDist_Th = " + std::to_string(kFirst + i) +
                      "\nMD_HogDist_Th_nnAdj_Scale = " + std::to_string(k) + "\n");
        }
    }
    return n;
}

}  // namespace

Section SweepSection(const Bench& bench) {
    const int32_t frames = bench.quick ? 100 : kFrames;
    const int n = WritePoints(bench, BaseSettings(bench, frames), bench.quick ? 2 : 20);
    const std::string points = std::to_string(n);
    const std::string cores = std::to_string(std::max(1U, std::thread::hardware_concurrency()));
    const std::string plan = bench.made + "/plan.yaml";
    Section section;
    section.most_rounds = 3;
    const std::string loop = "seq " + points + " | xargs -P " + cores + " -I@ sh -c ";
    section.text =
        points + " points on the raw clip of 320x180, its first " + std::to_string(frames) +
        " frames, on all cores, beside a\n"
        "loop over the same settings: `" +
        loop +
        "'MD -d @.cfg >@.log'`.\n"
        "The sweep also scores, keeps and shows its runs; its time includes Snakemake. All\n"
        "processes together.";
    section.subjects = {
        {"sweep", {{MdlabProgram(), "sweep", plan, "--into", "{new}"}, 0, Cores::kAll}},
        {"again", {{MdlabProgram(), "sweep", plan, "--into", "{of sweep}"}, 0, Cores::kAll}},
        {"loop",
         {{"sh", "-c",
           "mkdir '{new}' && " + loop + "'\"" + MdProgram() + "\" -d \"" + bench.made +
               "/points/@.cfg\" -p \"OutputFilePath={new}/@\" >\"{new}/@.log\"'"},
          0,
          Cores::kAll}},
    };
    section.tables = {
        {"",
         {{"processor time: sweep / loop", "", Ratio("sweep", "loop"), 2},
          {"sweep, processor s", "", CpuSeconds("sweep"), 1},
          {"loop, processor s", "", CpuSeconds("loop"), 1},
          {"sweep, elapsed s", "", ElapsedSeconds("sweep"), 1},
          {"loop, elapsed s", "", ElapsedSeconds("loop"), 1},
          {"the sweep again, nothing to do: processor s", "", CpuSeconds("again"), 2},
          {"the sweep again, nothing to do: elapsed s", "", ElapsedSeconds("again"), 2}}}};
    return section;
}

}  // namespace bench
