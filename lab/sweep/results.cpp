// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/results.h"

#include "lab/embedded.h"
#include "lab/tool/result_file.h"

namespace lab {

namespace {

std::string CsvCell(const std::string& text) {
    if (text.find_first_of(",\"\n\r") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + "\"";
}

std::string CsvRow(const std::vector<std::string>& cells) {
    std::string row;
    for (size_t i = 0; i < cells.size(); ++i) {
        if (i > 0) row += ',';
        row += CsvCell(cells[i]);
    }
    return row + "\n";
}

}  // namespace

std::string PackStrip(const std::string& strip) {
    std::string packed;
    for (size_t i = 0; i < strip.size();) {
        const size_t next = std::min(strip.find_first_not_of(strip[i], i), strip.size());
        packed.append(std::to_string(next - i)).append(1, strip[i]);
        i = next;
    }
    return packed;
}

ResultTable TableOf(const SweepResults& sweep) {
    ResultTable table;
    const auto add = [&](const std::string& name, bool numeric) {
        table.columns.push_back(name);
        table.numeric.push_back(numeric);
    };
    for (const char* name : {"point", "clip", "status", "message"}) add(name, false);
    for (const PlanKey& key : sweep.plan.keys) {
        const InputMapEntry& row = aInputKeys[static_cast<size_t>(key.row)];
        add(row.TokenName, row.Type != kTypeString);
    }
    for (const ScoreRow& row : ScoreTable()) add(row.name, true);
    for (size_t p = 0; p < sweep.results.size(); ++p) {
        const Point& point = sweep.points.points[p];
        for (size_t c = 0; c < sweep.plan.clips.size(); ++c) {
            const RunResult& run = sweep.results[p].runs[c];
            std::vector<std::string> row = {PointId(point), sweep.plan.clips[c].name,
                                            StatusName(run.status), run.message};
            row.insert(row.end(), point.values.begin(), point.values.end());
            for (const ScoreRow& score : ScoreTable()) {
                const bool done = run.status == RunStatus::kDone;
                row.push_back(done ? ScoreText(score.value(run.judgement.counts)) : "");
            }
            table.rows.push_back(std::move(row));
        }
    }
    return table;
}

void WriteCsv(const SweepResults& sweep, const std::string& path) {
    const ResultTable table = TableOf(sweep);
    ResultFile file(path);
    file.Write(CsvRow(table.columns));
    for (const auto& row : table.rows) file.Write(CsvRow(row));
    file.Commit();
}

void WriteResults(const SweepResults& sweep, const std::string& folder) {
    WriteCsv(sweep, folder + "/results.csv");
    WriteSqlite(sweep, folder + "/results.sqlite");
    const std::string json = folder + "/results.json";
    WriteJson(sweep, json);
    if (!SweepPage().empty()) WriteSweepPage(sweep, SweepPage(), json, folder + "/sweep.html");
}

}  // namespace lab
