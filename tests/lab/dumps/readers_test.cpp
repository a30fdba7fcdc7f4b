// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// What MD writes, what simulators make of it, and what must be refused at its place.
#include "lab/dumps/readers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <functional>

#include "tests/lab/support/dump_writer.h"
#include "tests/support/program.h"
#include "tools/hash.h"
#include "tools/squares.h"

namespace {

using lab::FileKind;
using lab::Frame;

constexpr FileKind kFrameKinds[] = {lab::kGoldenFile,      lab::kDistFile,        lab::kHogCurFile,
                                    lab::kHogRefFile,      lab::kFullJsonFile,    lab::kFullCsvFile,
                                    lab::kHogDistTextFile, lab::kHogDistJsonFile, lab::kObjectFile};

// The last frame of the file.
Frame Read(FileKind kind, const fs::path& path, bool plain = false) {
    Frame frame;
    if (!IsRunning(kind)) {
        ReadFrameFile(kind, path, &frame);
        return frame;
    }
    lab::RunningFile file(path, kind);
    if (plain) file.UsePlainReader();
    while (file.Next(&frame)) {
    }
    return frame;
}

// What is read must be what was written, field by field.
void ExpectSame(const Frame& read, const Frame& written, FileKind kind) {
    bool any = read.report.has_value();
    for (int field = 0; field < lab::kFieldCount; ++field) {
        const auto f = static_cast<lab::Field>(field);
        if (!read.Has(f)) continue;
        any = true;
        EXPECT_EQ(read.values[f], written.values[f]) << KindName(kind) << " field " << field;
    }
    EXPECT_TRUE(any) << KindName(kind);
    if (read.report) {
        EXPECT_EQ(*read.report, *written.report);
    } else {
        EXPECT_EQ(read.columns, written.columns);
        EXPECT_EQ(read.rows, written.rows);
    }
}

std::string Message(const std::function<void()>& act) {
    try {
        act();
    } catch (const lab::Error& error) {
        return error.what();
    }
    return "no error";
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

// Hexadecimal in upper case: digits after a mark and those of a vector.
std::string Upper(std::string text) {
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (std::isxdigit(text[i]) == 0 || std::string(":= ").find(text[i - 1]) > 2) continue;
        for (; std::isxdigit(text[i]) != 0; ++i) {
            text[i] = static_cast<char>(std::toupper(text[i]));
        }
    }
    return text;
}

TEST(Readers, GiveBackWhatMdWrites) {
    const TempFolder folder;
    SquaresClip clip;
    clip.nFrames = 6;
    clip.nSpeed = 4;
    WriteAll(folder / "in.yuv", SquaresBytes(clip, 288, 80));
    WriteAll(folder / "a.cfg", BaseConfig(288, 80));
    const Outcome outcome = RunMd(folder.Path(), {"-d", "a.cfg", "-p", "MD_DbgEn=0x362", "-p",
                                                  "MD_BlkCnt_Th=1", "-p", "StartFrameIdx=2"});
    ASSERT_EQ(outcome.nExit, 0) << outcome;
    const lab::Run run = lab::OpenRun((folder / "out").string());
    EXPECT_EQ(lab::FramesOf(run)->first, 2);
    EXPECT_EQ(lab::FramesOf(run)->last, 5);
    EXPECT_EQ(run.videos, std::vector<std::string>{"comp_864x80_P420.yuv"});
    EXPECT_EQ(lab::StrideOf(*lab::WorkingSize(run), 35, 9), 8);
    std::string golden, dist;
    int boxes = 0;
    for (int64_t index = 2; index <= 5; ++index) {
        const auto frame = lab::LoadFrame(run, index);
        ASSERT_TRUE(frame.has_value());
        EXPECT_EQ(frame->columns, 35);  // more than 16: hexadecimal matters
        for (const FileKind kind : kFrameKinds) {
            if (IsRunning(kind)) continue;
            EXPECT_TRUE(ReadAll(run.PathOf(kind, index)) == DumpText(*frame, kind))
                << run.PathOf(kind, index);
        }
        golden += DumpText(*frame, lab::kGoldenFile);
        dist += DumpText(*frame, lab::kDistFile);
        boxes += frame->report->count;
    }
    EXPECT_TRUE(ReadAll(run.PathOf(lab::kGoldenFile)) == golden);
    EXPECT_TRUE(ReadAll(run.PathOf(lab::kDistFile)) == dist);
    EXPECT_GT(boxes, 0);
    const lab::CountLog log = lab::ReadCountLog(run.PathOf(lab::kCountFile));
    EXPECT_TRUE(log.input.ends_with("in.yuv")) << log.input;
    EXPECT_GT(log.threshold, 0);
}

TEST(Readers, TakeWhatSimulatorsMakeOfTheText) {
    const Frame frame = SomeFrame(0, 18, 3, 1);
    const TempFolder folder;
    const fs::path path = folder / "file";
    for (const FileKind kind : kFrameKinds) {
        const std::string text = DumpText(frame, kind);
        const std::string lf = Replaced(text, "\r\n", "\n");
        const std::vector<std::string> forms = {
            text,
            IsRunning(kind) ? Upper(text) : text,
            Replaced(lf, "\n", "\r\n"),
            lf.substr(0, lf.size() - 1),
            Replaced(lf, " \n", "\n"),
            Replaced(lf, "\n", "  \n"),
        };
        for (const std::string& form : forms) {
            WriteAll(path, form);
            SCOPED_TRACE(form.substr(0, 120));
            ExpectSame(Read(kind, path), frame, kind);
        }
    }
    // A value that MD cannot give is read as it is.
    WriteAll(path, Replaced(DumpText(frame, lab::kDistFile), "hogDis:00", "hogDis:01"));
    EXPECT_GE(Read(lab::kDistFile, path).At(lab::kDistance, 17, 2), 256);
}

TEST(Readers, TakeBlocksInAnyOrder) {
    const Frame frame = SomeFrame(3, 5, 4, 2);
    const TempFolder folder;
    std::string text;
    const std::string whole = DumpText(frame, lab::kDistFile);
    const std::size_t head = whole.find("x:");
    // Column by column, as a scan in the other direction leaves them.
    for (std::size_t x = 0; x < 5; ++x) {
        for (std::size_t y = 0; y < 4; ++y) text += whole.substr(head + (y * 5 + x) * 42, 42);
    }
    WriteAll(folder / "file", whole.substr(0, head) + text);
    ExpectSame(Read(lab::kDistFile, folder / "file"), frame, lab::kDistFile);
}

// The fast path against its plain definition, with every byte changed and every byte left out.
TEST(Readers, FastPathReadsAsThePlainOne) {
    const TempFolder folder;
    const fs::path path = folder / "file";
    for (const FileKind kind : {lab::kGoldenFile, lab::kDistFile}) {
        const std::string text = DumpText(SomeFrame(7, 2, 2, 3), kind);
        for (std::size_t i = 0; i < 3 * text.size(); ++i) {
            std::string changed = text;
            const std::size_t at = i % text.size();
            if (i < text.size()) {
                changed[at] = static_cast<char>(Hash(1, 2, static_cast<uint32_t>(i)) % 94 + 33);
            } else if (i < 2 * text.size()) {
                changed[at] = "0123456789abcdefABCDEFg\r"[i % 24];
            } else {
                changed.erase(at, 1);
            }
            WriteAll(path, changed);
            Frame fast, plain;
            const std::string fast_error = Message([&] { fast = Read(kind, path); });
            const std::string plain_error = Message([&] { plain = Read(kind, path, true); });
            EXPECT_EQ(fast_error, plain_error);
            EXPECT_EQ(fast.values, plain.values) << changed;
        }
    }
}

TEST(Readers, VectorMayBeSwitchedOff) {
    const TempFolder folder;
    WriteAll(folder / "hogmd_golden.txt",
             "****************\nFrame_idx=000\n****************\nx:000,y:000\nx:001,y:000\n");
    WriteAll(folder / "0001_Full.csv",
             "Block Y ID\tBlock X ID\tBlock avgY\tBlock histNorm\tDist\tAvailMask\r\n"
             "0\t0\t17\t1\t0\t0\r\n0\t1\t18\t1\t5\t1\r\n");
    const auto frame = lab::LoadFrame(lab::OpenRun(folder.Path().string()), 0);
    EXPECT_EQ(frame->columns, 2);
    EXPECT_FALSE(frame->Has(lab::kVector));
    EXPECT_EQ(frame->At(lab::kLuma, 1, 0), 18);
    EXPECT_EQ(frame->At(lab::kDistance, 1, 0), 5);
}

struct Refusal {
    FileKind kind;
    const char* from;  // of the text of a 3 x 2 frame of ones: this ...
    const char* to;    // ... becomes that
    const char* message;
};

constexpr Refusal kRefusals[] = {
    {lab::kGoldenFile, "nAvgY=01", "nAvgY=zz", ":5:7: found 'zz', expected a hexadecimal number"},
    {lab::kGoldenFile, "histNorm2=01", "histNorm4=01",
     ":7:1: found 'histNorm4=01', expected 'histNorm2='"},
    {lab::kGoldenFile, "01 01 \n", "01 01 01 \n",
     ":6:44: found '01 ', expected the end of the line"},
    {lab::kGoldenFile, "nAvgY=01", "nAvgY=10000",
     ":5:7: found '10000', expected a number up to ffff"},
    {lab::kGoldenFile, "x:002,y:001\n", "x:001,y:001\n",
     ":28:1: frame 4 ends with block x 1, y 1 in it twice"},
    {lab::kGoldenFile, "x:001,y:001\n", "x:011,y:001\n",
     ":28:1: frame 4 ends without block x 3, y 0, but has 18 x 2 blocks by its largest x and y"},
    {lab::kDistFile, "hogDis:0001", "hogDis:00g1",
     ":5:28: found 'g1', expected the end of the line"},
    {lab::kDistFile, "Frame_idx=004",
     "Frame_idx=", ":2:11: found the end of the line, expected a number"},
    {lab::kDistFile, "****************\nFrame", "***\nFrame",
     ":1:1: found '***', expected '****************'"},
    {lab::kDistFile, "hogDistAvail:0001", "nAvgY=01",
     ":5:1: found 'nAvgY=01,hogDis:0001', expected 'hogDistAvail:'"},
    {lab::kHogCurFile, "AvgY:1\nblk[1, 1]", "AvgY:-1\nblk[1, 1]",
     ":14:6: found '-1', expected a number"},
    {lab::kHogRefFile, "MOG,", "HOG,", ":2:1: found 'Enabled: HOG,', expected 'Enabled: MOG,'"},
    {lab::kFullJsonFile, "\"BlkH\": 2,", "\"BlkH\": 1,", ":17:9: found ',', expected ']'"},
    {lab::kFullJsonFile, "\"Ref\"", "\"Cur\"", ":51:1: found '\"Cur\" : {', expected '\"Ref\"'"},
    {lab::kFullCsvFile, "\t1\t1\r\n1\t0", "\t1\r\n1\t0", ":4:30: found '\\r', expected a tab"},
    {lab::kHogDistTextFile, "[002, 001]: 001", "[002, 001] 001",
     ":3:42: found '] 001 ', expected ']:'"},
    {lab::kHogDistJsonFile, "]\n}", "]\n}\n}", ":9:1: found '}', expected the end of the file"},
    {lab::kObjectFile, "\"top\"", "\"topp\"", ":7:7: found '\"topp\": 1,', expected '\"top\"'"},
};

TEST(Readers, NameThePlaceAndWhatIsDueThere) {
    Frame frame = SomeFrame(4, 3, 2, 5);
    for (auto& values : frame.values) std::fill(values.begin(), values.end(), 1);
    frame.report = {1, 1, {{1, 1, 1, 1}}};
    const TempFolder folder;
    const std::string path = folder / "file";
    for (const Refusal& row : kRefusals) {
        std::string text = DumpText(frame, row.kind);
        const std::size_t at = text.find(row.from);
        ASSERT_NE(at, std::string::npos) << row.from;
        WriteAll(path, text.replace(at, std::string(row.from).size(), row.to));
        EXPECT_EQ(Message([&] { Read(row.kind, path); }), path + row.message);
    }
    // Columns numbered in decimal: 10 is read as 16.
    const Frame wide = SomeFrame(0, 12, 1, 5);
    WriteAll(path, Replaced(Replaced(DumpText(wide, lab::kDistFile), "x:00a", "x:010"), "x:00b",
                            "x:011"));
    EXPECT_EQ(Message([&] { Read(lab::kDistFile, path); }),
              path +
                  ":28:1: frame 0 ends without block x 10, y 0, but has 18 x 1 blocks by its "
                  "largest x and y; x and y look decimal, hexadecimal is due");
    // Running files go forward.
    WriteAll(path, DumpText(frame, lab::kDistFile) + DumpText(frame, lab::kDistFile));
    EXPECT_EQ(Message([&] { Read(lab::kDistFile, path); }),
              path + ":17:11: found frame 4 after frame 4, expected a later one");
}

// Whatever is cut off, it is an error at the end. Only a file of one frame without a grid in it can
// end after whole blocks and look sound; its grid is then smaller.
TEST(Readers, RefuseAFileThatEndsEarly) {
    const TempFolder folder;
    const fs::path path = folder / "file";
    for (const FileKind kind : kFrameKinds) {
        const std::string first = DumpText(SomeFrame(0, 2, 2, 8), kind);
        const std::string text =
            IsRunning(kind) ? first + DumpText(SomeFrame(1, 2, 2, 8), kind) : first;
        // From within the second frame on, and not within the last number.
        const std::size_t from = IsRunning(kind) ? first.size() + 1 : 0;
        const std::size_t to = text.find_last_not_of("0123456789abcdef\r\n ") + 1;
        for (std::size_t length = from; length < to; ++length) {
            WriteAll(path, text.substr(0, length));
            bool found = false;
            try {
                const Frame frame = Read(kind, path);
                found = !IsRunning(kind) && frame.Blocks() < 4;
            } catch (const lab::TextError& error) {
                found = error.AtEnd();
            }
            EXPECT_TRUE(found) << KindName(kind) << " cut at " << length << " of " << text.size();
        }
    }
}

TEST(Readers, FindFramesInRunningFiles) {
    const TempFolder folder;
    const std::string path = folder / "hogmd_dist.txt";
    // Longer than the pieces in which the file is searched.
    std::string text;
    std::vector<int64_t> offsets;
    constexpr int64_t kFrames = 1200;
    for (int i = 0; i < kFrames; ++i) {
        offsets.push_back(static_cast<int64_t>(text.size()));
        text += DumpText(SomeFrame(10 + i, 5, 3, 9), lab::kDistFile);
    }
    WriteAll(path, text);
    EXPECT_EQ(lab::RunningRange(path)->first, 10);
    EXPECT_EQ(lab::RunningRange(path)->last, 9 + kFrames);
    const lab::RawFile bytes(path);
    for (int64_t i = 0; i < kFrames; i += 7) {
        const int64_t offset = offsets[static_cast<std::size_t>(i)];
        ASSERT_EQ(lab::FindFrame(path, 10 + i), offset);
        ASSERT_EQ(lab::HeadingBefore(bytes, offset, 0), offset);
        ASSERT_EQ(lab::HeadingBefore(bytes, offset + 300, 0), offset);
        ASSERT_EQ(lab::HeadingBefore(bytes, offset + 300, offset), offset);
    }
    EXPECT_EQ(lab::FindFrame(path, 9), -1);
    EXPECT_EQ(lab::FindFrame(path, 10 + kFrames), -1);
    lab::RunningFile file(path, lab::kDistFile, offsets[700]);
    Frame frame;
    ASSERT_TRUE(file.Next(&frame));
    EXPECT_EQ(frame.index, 710);
}

TEST(Runs, KnowFilesByNameAndByText) {
    const TempFolder folder;
    const Frame frame = SomeFrame(0, 4, 4, 1);
    for (const FileKind kind : kFrameKinds) {
        // Only by the name do the reference and the frame differ.
        const std::string path = folder / (kind == lab::kHogRefFile ? "my_HOGRef.txt" : "renamed");
        WriteAll(path, DumpText(frame, kind));
        const lab::Run run = lab::OpenRun(path);
        EXPECT_EQ(run.single_kind, kind) << KindName(kind);
        EXPECT_TRUE(lab::LoadFrame(run, 0).has_value()) << KindName(kind);
    }
    WriteAll(folder / "other", std::string("\0\1\2", 3));
    EXPECT_EQ(Message([&] { lab::OpenRun(folder / "other"); }),
              (folder / "other").string() + ": is none of the files that MD leaves in HOG_feature");
    fs::create_directory(folder / "empty");
    EXPECT_EQ(Message([&] { lab::OpenRun(folder / "empty"); }),
              (folder / "empty").string() + ": holds none of the files that MD leaves");
    EXPECT_EQ(Message([&] { lab::OpenRun(folder / "none"); }),
              (folder / "none").string() + ": cannot be read: No such file or directory");
    // Names that no run gives are not taken for frames.
    for (const char* name : {"001_HOGCur.txt", "0000_HOGCur.txt", "00012_HOGCur.txt"}) {
        WriteAll(folder / "empty" / name, "x");
    }
    WriteAll(folder / "empty" / "12345_ObjOut.txt", "x");
    const lab::Run run = lab::OpenRun(folder / "empty");
    EXPECT_TRUE(run.frames[lab::kHogCurFile].empty());
    EXPECT_EQ(run.frames[lab::kObjectFile], std::set<int64_t>{12344});
}

}  // namespace
