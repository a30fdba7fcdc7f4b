// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What a report costs beside the run of MD that it explains, and its pages in a browser.
#include <filesystem>
#include <nlohmann/json.hpp>

#include "bench/numbers/bench.h"

namespace bench {

namespace {

namespace fs = std::filesystem;

constexpr int kTimesLonger = 4;  // the long clip

// A report, by the name of its page.
struct Row {
    std::string name;
    std::string what;
    std::string clip;
    std::string width;  // MD_ScaledW
};

std::string LongClip(const Bench& bench) {
    return bench.made + "/long.mp4";
}

std::vector<Row> Rows(const Bench& bench) {
    const std::string clip = bench.work + "/clip_" + kMiddle.Name() + ".mp4";
    const int32_t frames = kMiddle.frames;
    const auto what = [](int32_t n, const char* width) {
        return std::to_string(n) + " frames, " + width + " wide";
    };
    std::vector<Row> rows = {{"320", what(frames, "320"), clip, "320"}};
    if (bench.quick) return rows;
    rows.push_back({"640", what(frames, "640"), clip, "640"});
    rows.push_back({"long", what(frames * kTimesLonger, "320"), LongClip(bench), "320"});
    return rows;
}

std::string PageOf(const Bench& bench, const Row& row) {
    return bench.made + "/report_" + row.name + ".html";
}

Command OnAllCores(std::vector<std::string> words, const Row& row) {
    for (const std::string& setting : {"InputFilePath=" + row.clip, "MD_ScaledW=" + row.width}) {
        words.emplace_back("-p");
        words.push_back(setting);
    }
    return {words, 0, Cores::kAll};
}

Command Report(const Bench& bench, const Row& row) {
    return OnAllCores({MdlabProgram(), "report", "--quiet", "--out", PageOf(bench, row), "--", "-d",
                       SourcePath("cfg/default.cfg")},
                      row);
}

Command PlainRun(const Row& row, const std::vector<std::string>& settings) {
    std::vector<std::string> words = {MdProgram(), "-d", SourcePath("cfg/default.cfg"), "-p",
                                      "OutputFilePath={new}"};
    for (const std::string& setting : settings) {
        words.emplace_back("-p");
        words.push_back(setting);
    }
    return OnAllCores(words, row);
}

// Of a time in the browser.
std::string Id(const std::string& page, const std::string& time) {
    std::string id = page;
    return id.append(" ").append(time);
}

}  // namespace

Section ReportSection(const Bench& bench) {
    Section section;
    section.most_rounds = 3;
    section.empty_each_round = true;
    section.text =
        R"(`cfg/default.cfg` on the clip of 640x360 as mp4, all processes of the command together, on all
cores. MD's time is that of the same run without a report: with the conversion of the clip, but
without output, or with the three videos, also as mp4, that those settings ask for. Memory is that of
the largest process.)";
    Run({{"ffmpeg", "-y", "-v", "error", "-stream_loop", std::to_string(kTimesLonger - 1), "-i",
          bench.work + "/clip_" + kMiddle.Name() + ".mp4", "-c", "copy", LongClip(bench)}});
    Table table{"clip"};
    for (const Row& row : Rows(bench)) {
        const std::string report = "report " + row.name, md = "md " + row.name,
                          page = PageOf(bench, row);
        section.subjects.push_back({report, Report(bench, row)});
        section.subjects.push_back({md, PlainRun(row, {"MD_DbgEn=0", "EnableBatch=1"})});
        const auto megabytes = [=](const Round&) {
            return static_cast<double>(fs::file_size(page)) / 1e6;
        };
        table.figures.insert(table.figures.end(),
                             {{row.what, "page, MB", megabytes, 2},
                              {row.what, "processor s", CpuSeconds(report), 1},
                              {row.what, "MiB", PeakMib(report), 0},
                              {row.what, "time / MD's time", Ratio(report, md), 1}});
    }
    const Row first = Rows(bench).front();
    section.subjects.push_back({"videos", PlainRun(first, {})});
    table.figures.push_back(
        {first.what, "time / MD's with videos", Ratio("report " + first.name, "videos"), 2});
    section.tables = {table};
    return section;
}

Section BrowserSection(const Bench& bench) {
    constexpr int kMostRounds = 3;
    Section section;
    section.text =
        R"(Chromium, headless, without a graphics card, from disk; milliseconds by the clock. Ready: figures,
timeline and panel are shown. A step ends when its picture with the overlay was handed to the
screen: 60 single steps, then 40 to random frames.)";
    Command command{{"node", SourcePath("tests/lab/page/times.js")},
                    0,
                    Cores::kAll,
                    {"MD_PAGE_TREE=" MD_PAGE_TREE}};
    for (const Row& row : Rows(bench)) command.words.push_back(row.name + "=" + PageOf(bench, row));
    const std::vector<std::pair<std::string, std::string>> columns = {
        {"ready", "ready"},
        {"unpacked", "all unpacked"},
        {"step", "step, median"},
        {"step95", "step, 95 %"},
        {"random", "random step, median"},
        {"random95", "random step, 95 %"}};
    for (int i = 0; i < std::min(bench.rounds, kMostRounds); ++i) {
        const auto pages = nlohmann::json::parse(OutputOf(command));
        Round round;
        for (const auto& [page, times] : pages.items()) {
            for (const auto& [name, time] : times.items()) {
                round.time[Id(page, name)] = time.get<double>();
            }
        }
        if (!round.time.empty()) section.rounds.push_back(round);
    }
    if (section.rounds.empty()) {
        section.text = "Chromium or the page's packages were missing, so nothing was measured.";
        return section;
    }
    Table table{"report"};
    for (const Row& row : Rows(bench)) {
        for (const auto& [name, column] : columns) {
            const std::string id = Id(row.name, name);
            table.figures.push_back(
                {row.what, column, [=](const Round& round) { return round.Time(id); }, 0});
        }
    }
    section.tables = {table};
    return section;
}

}  // namespace bench
