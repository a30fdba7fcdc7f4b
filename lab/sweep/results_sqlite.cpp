// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>

#include "lab/sweep/results.h"
#include "lab/tool/error.h"
#include "lab/tool/remove_on_signal.h"

namespace lab {

namespace {

// A database that is written in one go under a passing name.
class Database {
  public:
    explicit Database(const std::string& path)
        : path_(path), part_(path + ".part" + std::to_string(getpid())), on_signal_(part_) {
        std::remove(part_.c_str());
        Check(sqlite3_open(part_.c_str(), &base_));
        // The file is renamed once it is whole: no journal is needed to undo a half-written one.
        Run("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; BEGIN");
    }
    ~Database() {
        sqlite3_finalize(statement_);
        sqlite3_close(base_);
        std::remove(part_.c_str());
    }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void Run(const std::string& sql) {
        Check(sqlite3_exec(base_, sql.c_str(), nullptr, nullptr, nullptr));
    }

    // Makes a table and begins to fill it. Columns are given with their types.
    void Table(const std::string& name, const std::vector<std::string>& columns) {
        std::string list;
        std::string places;
        for (const std::string& column : columns) {
            list += (list.empty() ? "" : ", ") + column;
            places += places.empty() ? "?" : ", ?";
        }
        Run("CREATE TABLE " + name + " (" + list + ")");
        sqlite3_finalize(statement_);
        statement_ = nullptr;
        const std::string insert = "INSERT INTO " + name + " VALUES (" + places + ")";
        Check(sqlite3_prepare_v2(base_, insert.c_str(), -1, &statement_, nullptr));
    }

    // A row of the table; an empty text is NULL. The column's type makes numbers of texts.
    void Row(const std::vector<std::string>& cells) {
        for (size_t i = 0; i < cells.size(); ++i) {
            const int place = static_cast<int>(i) + 1;
            Check(cells[i].empty()
                      ? sqlite3_bind_null(statement_, place)
                      : sqlite3_bind_text(statement_, place, cells[i].c_str(), -1, SQLITE_STATIC));
        }
        if (sqlite3_step(statement_) != SQLITE_DONE) Refuse();
        Check(sqlite3_reset(statement_));
    }

    void Commit() {
        sqlite3_finalize(statement_);
        statement_ = nullptr;
        Run("COMMIT");
        const int fault = sqlite3_close(base_);
        base_ = nullptr;
        if (fault != SQLITE_OK) throw Error(path_ + ": cannot be written");
        std::filesystem::rename(part_, path_);
    }

  private:
    [[noreturn]] void Refuse() {
        throw Error(path_ + ": cannot be written: " + sqlite3_errmsg(base_));
    }
    void Check(int fault) {
        if (fault != SQLITE_OK) Refuse();
    }

    std::string path_, part_;
    RemoveOnSignal on_signal_;
    sqlite3* base_ = nullptr;
    sqlite3_stmt* statement_ = nullptr;
};

std::string Quoted(const std::string& name) {
    return "\"" + name + "\"";
}

void WriteSweep(const SweepResults& sweep, Database* base) {
    base->Table("sweep", {"name TEXT PRIMARY KEY", "value TEXT"});
    base->Row({"plan", sweep.plan.path});
    base->Row({"settings", sweep.plan.settings_path});
    base->Row({"md", sweep.md_digest});
    base->Row({"product", std::to_string(sweep.points.product)});
    base->Row({"chosen", std::to_string(sweep.points.chosen)});
    base->Row({"points", std::to_string(sweep.points.points.size())});
    base->Table("clip", {"clip TEXT PRIMARY KEY", "file TEXT", "labels TEXT", "width INTEGER",
                         "height INTEGER"});
    for (size_t c = 0; c < sweep.plan.clips.size(); ++c) {
        const PlanClip& clip = sweep.plan.clips[c];
        const FrameSize& size = sweep.clip_sizes[c];
        base->Row({clip.name, clip.file, clip.label_file,
                   size.width > 0 ? std::to_string(size.width) : "",
                   size.height > 0 ? std::to_string(size.height) : ""});
    }
}

void WritePoints(const SweepResults& sweep, Database* base) {
    std::vector<std::string> columns = {"point TEXT PRIMARY KEY", "status TEXT", "options TEXT",
                                        "on_front INTEGER", "missed INTEGER"};
    for (const ScoreRow& row : ScoreTable()) columns.push_back(Quoted(row.name) + " NUMERIC");
    base->Table("point", columns);
    for (size_t p = 0; p < sweep.results.size(); ++p) {
        const PointResult& result = sweep.results[p];
        const Point& point = sweep.points.points[p];
        std::vector<std::string> row = {PointId(point), StatusName(result.status),
                                        OptionLine(sweep.plan, point), result.on_front ? "1" : "0",
                                        std::to_string(result.missed.size())};
        for (const ScoreRow& score : ScoreTable())
            row.push_back(ScoreText(score.value(result.total)));
        base->Row(row);
    }
}

void WriteRuns(const SweepResults& sweep, Database* base) {
    const ResultTable table = TableOf(sweep);
    std::vector<std::string> columns;
    for (size_t i = 0; i < table.columns.size(); ++i) {
        columns.push_back(Quoted(table.columns[i]) + (table.numeric[i] ? " NUMERIC" : " TEXT"));
    }
    columns.emplace_back("strip TEXT");
    columns.emplace_back("PRIMARY KEY (point, clip)");
    base->Table("result", {columns.begin(), columns.end() - 1});
    size_t at = 0;
    for (const PointResult& point : sweep.results) {
        for (const RunResult& run : point.runs) {
            std::vector<std::string> row = table.rows[at++];
            row.push_back(PackStrip(run.judgement.strip));
            base->Row(row);
        }
    }
    base->Run("CREATE UNIQUE INDEX result_of ON result (point, clip)");
}

}  // namespace

void WriteSqlite(const SweepResults& sweep, const std::string& path) {
    Database base(path);
    WriteSweep(sweep, &base);
    WritePoints(sweep, &base);
    WriteRuns(sweep, &base);
    base.Commit();
}

}  // namespace lab
