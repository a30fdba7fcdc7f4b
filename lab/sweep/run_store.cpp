// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/run_store.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>

#include "lab/tool/digest.h"
#include "lab/tool/error.h"
#include "lab/tool/result_file.h"
#include "lab/tool/text_file.h"

namespace fs = std::filesystem;

namespace lab {

namespace {

constexpr std::string_view kHead = "mdlab runs 1\n";
constexpr const char* kEnding = ".runs";

std::string_view NextLine(std::string_view* text) {
    const size_t end = std::min(text->find('\n'), text->size());
    const std::string_view line = text->substr(0, end);
    text->remove_prefix(std::min(end + 1, text->size()));
    return line;
}

std::string_view NextWord(std::string_view* line) {
    const size_t end = std::min(line->find(' '), line->size());
    const std::string_view word = line->substr(0, end);
    line->remove_prefix(std::min(end + 1, line->size()));
    return word;
}

int32_t TakeNumber(std::string_view* text) {
    int32_t value = 0;
    const auto [end, fault] = std::from_chars(text->data(), text->data() + text->size(), value);
    if (fault != std::errc{}) throw Error("a store of runs holds no number where one belongs");
    text->remove_prefix(static_cast<size_t>(end - text->data()));
    return value;
}

char TakeByte(std::string_view* text) {
    if (text->empty()) throw Error("a store of runs ends within a frame");
    const char c = text->front();
    text->remove_prefix(1);
    return c;
}

std::string RunText(const StoredRun& run) {
    std::string text = "run " + run.id;
    char numbers[96];
    if (run.refused) {
        std::snprintf(numbers, sizeof numbers, " refused %d ", run.status);
        std::string message = run.message;
        std::replace(message.begin(), message.end(), '\n', ' ');
        return text + numbers + message + "\n";
    }
    std::snprintf(numbers, sizeof numbers, " done %d %d %.3f\n", run.first, run.count, run.seconds);
    return text.append(numbers).append(run.frames).append("\n");
}

// The part before the last line if that line vouches for it; empty if not.
std::string_view WholeText(std::string_view text) {
    if (text.empty() || text.back() != '\n') return {};
    const size_t last = text.rfind('\n', text.size() - 2);
    if (last == std::string_view::npos || !text.starts_with(kHead)) return {};
    const std::string_view body = text.substr(0, last + 1);
    std::string_view line = text.substr(last + 1);
    line.remove_suffix(1);
    if (NextWord(&line) != "end") return {};
    NextWord(&line);
    return line == DigestOf(body) ? body : std::string_view{};
}

}  // namespace

std::string FramesText(const std::vector<FrameReport>& frames) {
    std::string text;
    int quiet = 0;
    const auto flush = [&] {
        if (quiet > 0) text.append(std::to_string(quiet)).append(".");
        quiet = 0;
    };
    for (const FrameReport& report : frames) {
        if (!report.box) {
            ++quiet;
            continue;
        }
        flush();
        char box[64];
        std::snprintf(box, sizeof box, "%d,%d,%d,%d;", report.box->left, report.box->top,
                      report.box->right, report.box->bottom);
        text += box;
    }
    flush();
    return text;
}

std::vector<FrameReport> FramesOf(const StoredRun& run) {
    std::vector<FrameReport> frames;
    frames.reserve(static_cast<size_t>(run.count));
    std::string_view text = run.frames;
    int32_t frame = run.first;
    while (!text.empty()) {
        const int32_t number = TakeNumber(&text);
        if (TakeByte(&text) == '.') {
            for (int32_t i = 0; i < number; ++i) frames.push_back({frame++, std::nullopt});
            continue;
        }
        Box box{number, 0, 0, 0};
        for (int32_t* edge : {&box.top, &box.right, &box.bottom}) {
            *edge = TakeNumber(&text);
            TakeByte(&text);
        }
        frames.push_back({frame++, box});
    }
    if (frames.size() != static_cast<size_t>(run.count)) {
        throw Error("run " + run.id + ": the store holds another number of frames than it says");
    }
    return frames;
}

void StoreRuns(const std::string& folder, const std::vector<StoredRun>& runs) {
    fs::create_directories(folder);
    std::string ids;
    std::string text(kHead);
    for (const StoredRun& run : runs) {
        ids += run.id;
        text += RunText(run);
    }
    ResultFile file(folder + "/" + DigestOf(ids) + kEnding);
    file.Write(text);
    file.Write("end " + std::to_string(runs.size()) + " " + DigestOf(text) + "\n");
    file.Commit();
}

void RunIndex::AddFolder(const std::string& folder) {
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(folder, none)) {
        if (entry.path().extension() == kEnding) AddFile(entry.path().string());
    }
}

void RunIndex::AddFile(const std::string& path) {
    texts_.push_back(ReadTextFile(path));
    std::string_view text = WholeText(texts_.back());
    if (text.empty()) {
        texts_.pop_back();
        return;
    }
    NextLine(&text);
    while (!text.empty()) {
        std::string_view line = NextLine(&text);
        NextWord(&line);
        StoredRun run;
        run.id = NextWord(&line);
        run.refused = NextWord(&line) == "refused";
        if (run.refused) {
            run.status = TakeNumber(&line);
            run.message = line.substr(std::min<size_t>(1, line.size()));
        } else {
            run.first = TakeNumber(&line);
            NextWord(&line);
            run.count = TakeNumber(&line);
            NextWord(&line);
            run.seconds = std::strtod(line.data(), nullptr);
            run.frames = NextLine(&text);
        }
        runs_.insert_or_assign(run.id, run);
    }
}

const StoredRun* RunIndex::Find(const std::string& id) const {
    const auto found = runs_.find(id);
    return found == runs_.end() ? nullptr : &found->second;
}

}  // namespace lab
