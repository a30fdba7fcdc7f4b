// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The program as a user runs it: what it prints and how it ends.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "lab/compare/report.h"
#include "lab/settings/key_use.h"
#include "tests/lab/support/dump_writer.h"
#include "tests/support/program.h"

namespace {

using lab::Frame;
using Frames = std::vector<Frame>;

class CompareProgram : public testing::Test {
  protected:
    void SetUp() override {
        WriteRun(folder_ / "golden", frames_);
        WriteRun(folder_ / "rtl", frames_);
    }

    Outcome Compare(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {MDLAB_PROGRAM, "compare"});
        return RunProgram(folder_.Path(), arguments);
    }

    static void ExpectLine(const Outcome& outcome, const std::string& line) {
        std::istringstream lines(outcome.sOut);
        bool found = false;
        for (std::string text; std::getline(lines, text);) found = found || text == line;
        EXPECT_TRUE(found) << line << "\nis not in\n" << outcome;
    }

    static void ExpectText(const Outcome& outcome, const std::string& text) {
        EXPECT_TRUE(outcome.sOut.find(text) != std::string::npos) << text << "\nis not in\n"
                                                                  << outcome;
    }

    const TempFolder folder_;
    const Frames frames_ = SomeRun(20, 16, 9, 11);
};

TEST_F(CompareProgram, SaysTheSame) {
    const Outcome outcome = Compare({"golden", "rtl"});
    EXPECT_EQ(outcome.nExit, 0) << outcome;
    EXPECT_EQ(outcome.sOut, "SAME     rtl against golden: 20 frames, 144 blocks\n");
    EXPECT_EQ(outcome.sErr, "");
    // Equal values in other clothes are the same, and said.
    std::string text = ReadAll(folder_ / "rtl/hogmd_dist.txt");
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
        text.insert(at, 1, '\r');
    }
    WriteAll(folder_ / "rtl/hogmd_dist.txt", text);
    EXPECT_EQ(Compare({"golden", "rtl"}).sOut,
              "SAME     rtl against golden: 20 frames, 144 blocks\n"
              "text     20 frames in another writing (line ends, blanks, digits); the values are "
              "equal\n");
}

TEST_F(CompareProgram, ReportsTheFirstDifferenceAndCountsTheRest) {
    Frames rtl = frames_;
    for (const std::size_t f : {15, 17, 18}) {
        for (std::size_t y = 0; y < f - 12; ++y) {
            auto& value = rtl[f].values[lab::kVector][10 * (16 * y + 12) + 6];
            value = static_cast<uint16_t>(value + 1);
            rtl[f].values[lab::kCellData][8 * (16 * y + 12) + 6] = value;
        }
    }
    rtl[17].values[lab::kDistance][5] = rtl[17].values[lab::kDistanceRepeat][5] = 300;
    rtl[18].report->boxes.front().left += 2;
    WriteRun(folder_ / "rtl", rtl);
    fs::remove(folder_ / "rtl/0003_HOGCur.txt");
    const int v = frames_[15].values[lab::kVector][10 * 12 + 6];
    char values[100];
    std::snprintf(values, sizeof values, "golden %02x (%d)   other %02x (%d)   +1, bits %02x", v, v,
                  v + 1, v + 1, v ^ (v + 1));
    const Outcome outcome = Compare({"golden", "rtl", "--limit", "0"});
    EXPECT_EQ(outcome.nExit, 1);
    EXPECT_EQ(
        outcome.sOut,
        "DIFFER   rtl against golden: 20 frames, 144 blocks\n"
        "first    frame 15 (files 0016_*)   block x 12, y 0   pixels 96..111, 0..15 at "
        "stride 8\n"
        "stage    vector: y moment of cell 2   " +
            std::string(values) +
            "\n"
            "         same there: luma, 9 of 10 vector elements, length class, reference, "
            "distance, active\n"
            "         shown by hogmd_golden.txt, 0016_HOGCur.txt, 0016_Full.json, "
            "0016_Full.csv\n"
            "suspect  gradients, the border of a block, or moments: the mean luma is the same\n"
            "         settings: MD_Padding_Method, MD_HogGradX, MD_HogGradY, "
            "MD_HogMagnitudeWeightEn, MD_ShiftMetric2_Th, MD_HogNormalizeMode\n"
            "stages   luma 0   vector 14   length 0   reference 0   distance 1   active 0   "
            "box 1   blocks that differ\n"
            "frames   15: 3   17: 6   18: 6   later ones may follow from frame 15\n"
            "looks like: always +1, always the y moment of cell 2, always block column 12\n"
            "missing  frame 2 in rtl: NNNN_HOGCur.txt\n");
    // More in full, in order.
    const Outcome more = Compare({"golden", "rtl", "--limit", "9"});
    ExpectText(more, "more     frame 17   block x 5, y 0   distance: distance");
    EXPECT_EQ(Compare({"golden", "rtl", "--frames", "3:14"}).nExit, 0);
    EXPECT_EQ(Compare({"golden", "rtl", "--stages", "active"}).nExit, 0);
}

TEST_F(CompareProgram, NamesFramesThatAreNotInBoth) {
    // The simulation ended early and lost a frame on its way.
    fs::remove_all(folder_ / "rtl");
    Frames rtl(frames_.begin(), frames_.begin() + 15);
    rtl.erase(rtl.begin() + 7);
    WriteRun(folder_ / "rtl", rtl);
    Outcome outcome = Compare({"golden", "rtl"});
    EXPECT_EQ(outcome.nExit, 1);
    EXPECT_EQ(outcome.sOut,
              "DIFFER   rtl against golden: 20 frames, 144 blocks\n"
              "missing  frame 7 in rtl\n"
              "missing  frames 15..19 in rtl\n");
    outcome = Compare({"rtl", "golden"});
    EXPECT_EQ(outcome.nExit, 1);
    ExpectLine(outcome, "extra    frame 7 in golden");
    ExpectLine(outcome, "extra    frames 15..19 in golden");
    // With only one kind of file.
    WriteRun(folder_ / "rtl", frames_);
    std::string text;
    for (std::size_t f = 0; f < 15; ++f) text += DumpText(frames_[f], lab::kGoldenFile);
    WriteAll(folder_ / "rtl/hogmd_golden.txt", text);
    ExpectLine(Compare({"golden", "rtl"}), "missing  frames 15..19 in rtl: hogmd_golden.txt");
}

TEST_F(CompareProgram, PassesOverFilesOfALongerRun) {
    // A short run over a long one's folder, on both sides.
    for (const char* name : {"golden", "rtl"}) {
        WriteRun(folder_ / name, SomeRun(20, 16, 9, name[0] == 'g' ? 1 : 2));
        WriteRun(folder_ / name, SomeRun(12, 16, 9, 3));
    }
    const Outcome outcome = Compare({"golden", "rtl"});
    EXPECT_EQ(outcome.nExit, 0);
    EXPECT_EQ(outcome.sOut,
              "SAME     rtl against golden: 12 frames, 144 blocks\n"
              "left over frames 12..19 in golden: hogmd_golden.txt ends at frame 11, so an "
              "earlier, longer run left them\n"
              "left over frames 12..19 in rtl: hogmd_golden.txt ends at frame 11, so an earlier, "
              "longer run left them\n");
}

TEST_F(CompareProgram, NamesUnlikeGridsAndSettings) {
    fs::remove_all(folder_ / "rtl");
    WriteRun(folder_ / "rtl", SomeRun(20, 9, 16, 11));
    WriteAll(folder_ / "rtl/HOGCount.txt", "\n\n/clips/in.yuv_HOG,th:10\n\n\n/b.yuv_HOG,th:12\n");
    const Outcome outcome = Compare({"golden", "rtl", "--stages", "vector,distance"});
    EXPECT_EQ(outcome.nExit, 1);
    ExpectLine(outcome,
               "grids    frame 0: golden 16 x 9 blocks, other 9 x 16   in hogmd_golden.txt and 139 "
               "more");
    ExpectLine(outcome, "looks like: x and y of the blocks swapped");
    const Outcome all = Compare({"golden", "rtl"});
    ExpectLine(all, "settings MD_HogDist_Th: golden 10   other 12   in HOGCount.txt");
    ExpectLine(all, "input    golden /clips/in.yuv   other /b.yuv   in HOGCount.txt");
}

// Whatever is wrong with a file, the line names it and the rest is compared.
TEST_F(CompareProgram, EndsWithTroubleOverBrokenFiles) {
    const std::string golden = ReadAll(folder_ / "rtl/hogmd_golden.txt");
    const std::string csv = ReadAll(folder_ / "rtl/0005_Full.csv");
    struct Row {
        const char* name;
        std::string bytes;
        const char* line;
    };
    const Row rows[] = {
        {"hogmd_golden.txt", golden.substr(0, golden.size() - 500),
         "cut off  rtl/hogmd_golden.txt:11555:26: found the end of the file, expected a "
         "hexadecimal "
         "number"},
        {"hogmd_golden.txt", "",
         "cut off  rtl/hogmd_golden.txt:1:1: found the end of the file, expected "
         "'****************'"},
        {"hogmd_golden.txt", ReadAll(folder_ / "rtl/hogmd_dist.txt"),
         "unreadable rtl/hogmd_golden.txt:5:1: found 'hogDistAvail:0000,hogDis...', expected "
         "'MATRIX_MODE2:', 'nAvgY=', 'x:' or '****'"},
        {"hogmd_golden.txt", std::string("\0\1\xff\n****", 8),
         "unreadable rtl/hogmd_golden.txt:1:1: found '\\x00\\x01\\xff', expected "
         "'****************'"},
        {"0005_Full.csv", csv.substr(0, 400),
         "cut off  rtl/0005_Full.csv:6:17: found the end of the file, expected a tab"},
        {"0005_Full.csv", "",
         "cut off  rtl/0005_Full.csv:1:1: found the end of the file, expected 'Block Y ID\tBlock X "
         "ID\tBlock avgY\tBlock histNorm\t'"},
        {"0005_ObjOut.txt", "{ \"bMotionDetected\": 2147483648,",
         "unreadable rtl/0005_ObjOut.txt:1:22: found '2147483648,', expected a number up to 65535"},
        {"HOGCount.txt", "\n\nx",
         "cut off  rtl/HOGCount.txt:3:2: found the end of the file, expected '_HOG,th:' before the "
         "end of the line"},
    };
    for (const Row& row : rows) {
        WriteRun(folder_ / "rtl", frames_);
        WriteAll(folder_ / "rtl" / row.name, row.bytes);
        const Outcome outcome = Compare({"golden", "rtl"});
        EXPECT_EQ(outcome.nExit, 2) << row.name;
        EXPECT_TRUE(outcome.sOut.starts_with("TROUBLE  ")) << outcome;
        ExpectText(outcome, row.line);
        // A difference in another file is found all the same.
        Frames rtl = frames_;
        rtl[9].values[lab::kDistance][0] ^= 1;
        WriteAll(folder_ / "rtl/0010_HOGDist.txt", DumpText(rtl[9], lab::kHogDistTextFile));
        const Outcome both = Compare({"golden", "rtl"});
        EXPECT_EQ(both.nExit, 2);
        EXPECT_TRUE(both.sOut.starts_with("DIFFER   ")) << both;
        ExpectText(both, "first    frame 9 (files 0010_*)   block x 0, y 0");
    }
}

TEST_F(CompareProgram, RefusesWhatCannotBeCompared) {
    fs::create_directory(folder_ / "empty");
    fs::create_directory(folder_ / "boxes");
    WriteAll(folder_ / "boxes/0001_ObjOut.txt", DumpText(frames_[0], lab::kObjectFile));
    fs::create_directory(folder_ / "dist");
    WriteAll(folder_ / "dist/hogmd_dist.txt", DumpText(frames_[0], lab::kDistFile));
    mkfifo((folder_ / "hogmd_dist.txt").c_str(), 0600);
    const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
        {{"golden", "none"}, "none: cannot be read: No such file or directory"},
        {{"golden", "empty"}, "empty: holds none of the files that MD leaves"},
        {{"boxes", "dist"},
         "boxes and dist have no kind of file in common: the first has NNNN_ObjOut.txt, the second "
         "hogmd_dist.txt"},
        {{"golden/hogmd_dist.txt", "golden/hogmd_golden.txt"},
         "golden/hogmd_dist.txt and golden/hogmd_golden.txt are not of one kind: the first is a "
         "hogmd_dist.txt, the second a hogmd_golden.txt"},
        {{"golden", "rtl", "--stages", "luma,colour"},
         "'colour' is none of the stages luma, vector, length, reference, distance, active, box"},
        {{"golden", "rtl", "--frames", "3-5"},
         "'3-5' is not of the form --frames A:B, with frames counted from 0"},
        {{"golden", "rtl", "--frames", "5:3"}, "--frames 5:3 ends before it begins"},
        {{"golden", "rtl", "--json", "none/x.json"},
         "none/x.json: cannot be written: No such file or directory"},
    };
    for (const auto& [arguments, message] : rows) {
        const Outcome outcome = Compare(arguments);
        EXPECT_EQ(outcome.nExit, 2);
        EXPECT_EQ(outcome.sErr, "mdlab: " + message + "\n");
    }
    // A pipe does not make it wait, whether its name shows the kind or not.
    fs::rename(folder_ / "hogmd_dist.txt", folder_ / "pipe");
    fs::create_symlink("pipe", folder_ / "hogmd_dist.txt");
    for (const std::string pipe : {"hogmd_dist.txt", "pipe"}) {
        const Outcome outcome = Compare({"golden/hogmd_dist.txt", pipe});
        EXPECT_EQ(outcome.nExit, 2);
        EXPECT_EQ(outcome.sErr, "mdlab: " + pipe + ": is no regular file\n");
    }
    if (geteuid() != 0) {
        fs::permissions(folder_ / "rtl/hogmd_dist.txt", fs::perms::none);
        const Outcome outcome = Compare({"golden", "rtl"});
        EXPECT_EQ(outcome.nExit, 2);
        EXPECT_EQ(outcome.sErr, "mdlab: rtl/hogmd_dist.txt: cannot be read: Permission denied\n");
    }
    // A stage asked for by name must be shown.
    const Outcome stage = Compare({"boxes", "golden", "--stages", "box,luma"});
    EXPECT_EQ(stage.nExit, 2);
    ExpectLine(stage, "not shown stage luma: no file of both runs shows it");
}

TEST_F(CompareProgram, TakesNothingForTheSameThatItDidNotCompare) {
    const Outcome frames = Compare({"golden", "rtl", "--frames", "20:30"});
    EXPECT_EQ(frames.nExit, 2);
    ExpectLine(frames, "not shown no frame of --frames: there are 0 to 19");
    for (const char* run : {"golden/hogmd_golden.txt", "rtl/hogmd_golden.txt"}) {
        WriteAll(folder_ / run, "");
    }
    const Outcome empty = Compare({"golden", "rtl"});
    EXPECT_EQ(empty.nExit, 2);
    ExpectText(empty, "cut off  golden/hogmd_golden.txt:1:1: found the end of the file");
    EXPECT_EQ(Compare({"golden", "rtl", "--stages", "distance"}).nExit, 0);
}

TEST_F(CompareProgram, ComparesOneFileOfAKind) {
    Frames rtl = frames_;
    rtl[4].values[lab::kVector][7] ^= 2;
    WriteAll(folder_ / "mine.txt", DumpText(rtl[4], lab::kHogCurFile));
    const Outcome one = Compare({"golden/0005_HOGCur.txt", "mine.txt"});
    EXPECT_EQ(one.nExit, 1);
    ExpectText(one, "first    frame 4 (files 0005_*)   block x 0, y 0");
    ExpectText(one, "vector: y moment of cell 3");
    // A file against a folder that has one of its kind.
    WriteAll(folder_ / "sim.txt", ReadAll(folder_ / "golden/hogmd_dist.txt"));
    EXPECT_EQ(Compare({"golden", "sim.txt"}).nExit, 0);
    // One frame of a kind: the others are not missing.
    WriteAll(folder_ / "0005_HOGCur.txt", DumpText(rtl[4], lab::kHogCurFile));
    const Outcome frame = Compare({"golden", "0005_HOGCur.txt", "--limit", "0"});
    EXPECT_EQ(frame.nExit, 1);
    ExpectText(frame, "first    frame 4 (files 0005_*)   block x 0, y 0");
    EXPECT_EQ(frame.sOut.find("missing"), std::string::npos) << frame;
}

TEST_F(CompareProgram, FindsThePixelOfAVideo) {
    const std::string frame = std::string(8 * 6, 'y') + std::string(12, 'u') + std::string(12, 'v');
    struct Row {
        std::size_t at;
        const char* place;
    };
    const Row rows[] = {{72 * 3 + 8 * 5 + 7, "frame 3 of the file, plane Y, pixel 7, 5"},
                        {72 * 1 + 48, "frame 1 of the file, plane U, pixel 0, 0"},
                        {72 * 4 + 48 + 12 + 11, "frame 4 of the file, plane V, pixel 3, 2"}};
    std::string golden;
    for (int i = 0; i < 6; ++i) golden += frame;
    for (const Row& row : rows) {
        std::string rtl = golden;
        rtl[row.at] = '!';
        rtl[72 * 5 + 20] = '?';
        for (const char* name : {"hogDist_8x6_P420.yuv", "golden/ScaledInput_8x6_P420.yuv"}) {
            WriteAll(folder_ / name, golden);
        }
        WriteAll(folder_ / "other.yuv", rtl);
        WriteAll(folder_ / "rtl/ScaledInput_8x6_P420.yuv", rtl);
        const Outcome outcome = Compare({"hogDist_8x6_P420.yuv", "other.yuv"});
        EXPECT_EQ(outcome.nExit, 1);
        ExpectText(outcome, "video    hogDist_8x6_P420.yuv: " + std::string(row.place));
        ExpectText(outcome, "2 frames differ");
        const Outcome folders = Compare({"golden", "rtl"});
        EXPECT_EQ(folders.nExit, 1);
        ExpectText(folders, "input    ScaledInput_8x6_P420.yuv: " + std::string(row.place));
    }
    WriteAll(folder_ / "short.yuv", golden.substr(0, 72 * 4));
    ExpectLine(Compare({"hogDist_8x6_P420.yuv", "short.yuv"}),
               "video    hogDist_8x6_P420.yuv: golden has 6 frames, other 4");
    WriteAll(folder_ / "cut.yuv", golden.substr(0, 72 * 4 + 10));
    const Outcome cut = Compare({"hogDist_8x6_P420.yuv", "cut.yuv"});
    EXPECT_EQ(cut.nExit, 2);
    ExpectLine(cut, "cut off  cut.yuv: ends within frame 4 of the file");
    WriteAll(folder_ / "wide_12x4_P420.yuv", golden.substr(1));
    ExpectLine(Compare({"hogDist_8x6_P420.yuv", "wide_12x4_P420.yuv"}),
               "unreadable wide_12x4_P420.yuv: is of another size than hogDist_8x6_P420.yuv by its "
               "name");
    WriteAll(folder_ / "plain.yuv", golden);
    EXPECT_EQ(Compare({"plain.yuv", "hogDist_8x6_P420.yuv"}).nExit, 0);
    const Outcome unknown = Compare({"plain.yuv", "short.yuv"});
    EXPECT_EQ(unknown.nExit, 2);
    EXPECT_EQ(Compare({"plain.yuv", "short.yuv", "--size", "8x6"}).nExit, 1);
}

TEST_F(CompareProgram, NamesSettingsThatExist) {
    const std::string known = ReadAll(fs::path(MD_SOURCE_DIR) / "cfg/default.cfg");
    for (int s = 0; s < lab::kStageCount; ++s) {
        std::istringstream words(lab::SettingsOf(static_cast<lab::Stage>(s)));
        for (std::string word; words >> word;) {
            if (word.ends_with(',')) word.pop_back();
            const bool key = word.starts_with("MD_") || word.ends_with("Path");
            EXPECT_TRUE(!key || known.find("\n" + word + " =") != std::string::npos) << word;
            EXPECT_NE(lab::WhyIdle(word, {}), "it changes nothing") << word;
        }
    }
}

TEST_F(CompareProgram, LeavesFilesForPrograms) {
    Frames rtl = frames_;
    rtl[2].values[lab::kDistance][16 * 3 + 4] ^= 8;
    rtl[2].values[lab::kLuma][16 * 3 + 4] ^= 8;
    rtl[6].values[lab::kActive][5] ^= 1;
    WriteRun(folder_ / "rtl", rtl);
    const Outcome outcome =
        Compare({"golden", "rtl", "--json", "a.json", "--junit", "a.xml", "--map", "a.csv"});
    EXPECT_EQ(outcome.nExit, 1);
    EXPECT_EQ(ReadAll(folder_ / "a.csv"), "frame,column,row,stage\n2,4,3,luma\n6,5,0,active\n");
    const auto json = nlohmann::json::parse(ReadAll(folder_ / "a.json"));
    EXPECT_EQ(json["format"], 1);
    EXPECT_EQ(json["status"], 1);
    EXPECT_EQ(json["first"]["frame"], 2);
    EXPECT_EQ(json["first"]["stage"], "luma");
    EXPECT_EQ(json["first"]["block"]["x"], 4);
    EXPECT_EQ(json["stages"]["active"], 1);
    EXPECT_EQ(json["frames_that_differ"].size(), 2U);
    const std::string xml = ReadAll(folder_ / "a.xml");
    EXPECT_NE(xml.find("tests=\"9\" failures=\"3\" errors=\"0\" skipped=\"0\""), std::string::npos)
        << xml;
    EXPECT_NE(xml.find("name=\"active\"><failure message=\"1 block wrong, first in frame 6, block "
                       "x 5, y 0: active flag"),
              std::string::npos)
        << xml;
}

// A path may hold any byte but 0, and XML may not.
TEST(JunitReport, IsXmlWhateverAPathHolds) {
    lab::Comparison comparison;
    comparison.golden = "\xc3\xa9";
    comparison.other = "a\xff<\xef\xbf\xbf\x01z";
    const std::string xml = lab::JunitReport(comparison);
    EXPECT_NE(xml.find("name=\"mdlab compare \xc3\xa9 a\xEF\xBF\xBD&lt;\xEF\xBF\xBD z\""),
              std::string::npos)
        << xml;
}

}  // namespace
