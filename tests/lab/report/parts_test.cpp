// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The parts of the writer, each at its bounds.
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "lab/embedded.h"
#include "lab/page/pack.h"
#include "lab/probe/clip_probe.h"
#include "lab/report/header.h"
#include "lab/report/page_file.h"
#include "lab/report/recorded_run.h"
#include "lab/report/recorder.h"
#include "lab/report/report.h"
#include "lab/report/run_facts.h"
#include "lab/report/shape.h"
#include "lab/settings/key_sources.h"
#include "lab/settings/key_use.h"
#include "lab/tool/error.h"
#include "tests/lab/report/page_reader.h"
#include "tests/support/files.h"

namespace lab {
namespace {

TEST(Pack, TextsAreThoseOfTheStandards) {
    EXPECT_EQ(Base64(""), "");
    EXPECT_EQ(Base64("f"), "Zg==");
    EXPECT_EQ(Base64("fo"), "Zm8=");
    EXPECT_EQ(Base64("foo"), "Zm9v");
    EXPECT_EQ(Base64("\xFF\xFE\xFD\xFC"), "//79/A==");
    for (size_t n = 0; n < 8; ++n) {
        EXPECT_EQ(static_cast<int64_t>(Base64(std::string(n, 'x')).size()),
                  Base64Size(static_cast<int64_t>(n)));
    }
    std::string out;
    PutVarint(0, &out);
    PutVarint(127, &out);
    PutVarint(300, &out);
    PutVarint(UINT32_MAX, &out);
    PutZigzag(-1, &out);
    PutZigzag(1, &out);
    EXPECT_EQ(out, std::string("\0\x7F\xAC\x02\xFF\xFF\xFF\xFF\x0F\x01\x02", 11));
    EXPECT_EQ(EscapeHtml("<a href=\"'&\">\xFF"),
              "&lt;a href=&quot;&#39;&amp;&quot;&gt;\xEF\xBF\xBD");
}

// All kinds of rows of blocks: none ordinary, all ordinary, runs at both ends.
TEST(EncodeBlocks, IsReadBackWhateverTheBlocksAre) {
    std::mt19937 random(5);
    for (int round = 0; round < 200; ++round) {
        ReplayedFrame frame;
        const unsigned quiet = random() % 4;
        const size_t blocks = 1 + random() % 300;
        for (size_t i = 0; i < blocks; ++i) {
            const bool live = random() % 4 >= quiet;
            frame.distance.push_back(live ? static_cast<uint8_t>(random()) : 0);
            frame.state.push_back(live ? static_cast<uint8_t>(random() % 64) : 0);
            frame.outcome.push_back(live ? static_cast<uint8_t>(random() % kOutcomeCount) : 3);
        }
        for (int i = 0; i < 5; ++i) frame.thresholds.push_back(static_cast<int>(random() % 9000));
        const ReplayedFrame back = DecodeBlocks(EncodeBlocks(frame), static_cast<int>(blocks), 5);
        ASSERT_EQ(back.distance, frame.distance);
        ASSERT_EQ(back.state, frame.state);
        ASSERT_EQ(back.outcome, frame.outcome);
        ASSERT_EQ(back.thresholds, frame.thresholds);
        EXPECT_THROW(DecodeBlocks(EncodeBlocks(frame).substr(1, 3), 1000, 5), Error);
    }
}

TEST(DistanceClass, HasTheEdgesOfTheFormat) {
    const int edges[] = {0, 1, 2, 3, 4, 6, 8, 12, 16, 24, 32, 48, 64, 96, 128, 192, 255};
    for (int k = 0; k < 17; ++k) {
        EXPECT_EQ(DistanceClass(edges[k]), k);
        if (k > 0) {
            EXPECT_EQ(DistanceClass(edges[k] - 1), k - 1);
        }
    }
}

FrameRow Row(bool motion, bool box, int active) {
    FrameRow row{};
    row.motion = motion ? 1 : 0;
    row.active = active;
    row.after[0] = box ? 4 : -1;
    return row;
}

TEST(Summary, CountsEventsAndGapsAtBothEnds) {
    const Summary sum =
        Summarise({Row(false, false, 0), Row(true, false, 9), Row(true, true, 3),
                   Row(true, true, 7), Row(true, true, 7), Row(false, false, 1), Row(true, true, 2),
                   Row(false, false, 0), Row(true, false, 4), Row(false, false, 0)});
    EXPECT_EQ(sum.motion, 6);
    EXPECT_EQ(sum.reported, 4);
    EXPECT_EQ(sum.held, 2);
    ASSERT_EQ(sum.events.size(), 2U);
    EXPECT_EQ(sum.events[0].range.first, 2);
    EXPECT_EQ(sum.events[0].range.last, 4);
    EXPECT_EQ(sum.events[0].peak, 3);
    EXPECT_EQ(sum.LongestEvent(), 3);
    ASSERT_TRUE(sum.longest_gap);
    EXPECT_EQ(sum.longest_gap->first, 7);
    EXPECT_EQ(sum.longest_gap->last, 9);
    EXPECT_EQ(sum.most_active_frame, 1);
    EXPECT_EQ(sum.Opening(), 3);
    EXPECT_FALSE(Summarise({Row(true, true, 1)}).longest_gap);
    EXPECT_EQ(Summarise({Row(false, false, 0), Row(true, false, 5)}).Opening(), 1);
}

TEST(Header, NumbersRoundButNeverToNoneOrAll) {
    EXPECT_EQ(Share(676, 795), "85 %");
    EXPECT_EQ(Share(792, 795), "99.6 %");
    EXPECT_EQ(Share(0, 9), "0 %");
    EXPECT_EQ(Share(9, 9), "100 %");
    EXPECT_EQ(Share(1, 100000), "0.1 %");
    EXPECT_EQ(Share(99999, 100000), "99.9 %");
    EXPECT_EQ(TimeText(1.6), "0:01.6");
    EXPECT_EQ(TimeText(59.97), "0:59.9");
    EXPECT_EQ(TimeText(60), "1:00.0");
    EXPECT_EQ(TimeText(3725.25), "1:02:05.2");
}

TEST(Shapes, LeaveOutOneThingMoreEachAndSaySo) {
    const auto shapes = Shapes();
    EXPECT_TRUE(LeftOutOf(shapes.front()).empty());
    std::set<std::string> told;
    for (const Shape& shape : shapes) {
        std::string all;
        for (const LeftOut& part : LeftOutOf(shape)) all += part.part + part.effect;
        EXPECT_TRUE(told.insert(all).second) << all;
    }
    std::vector<FrameRow> rows(30, Row(false, false, 0));
    rows[12].motion = 1;
    const auto kept = KeptFrames(BlockValues::kMotion, rows, IndexRange{25, 26});
    for (int i = 0; i < 30; ++i) {
        EXPECT_EQ(bool{kept[static_cast<size_t>(i)]}, (i >= 7 && i <= 17) || i == 25 || i == 26)
            << i;
    }
    const auto none = KeptFrames(BlockValues::kNone, rows, std::nullopt);
    EXPECT_EQ(std::count(none.begin(), none.end(), true), 0);
}

TEST(Template, IsCutAtItsMarksOrRefused) {
    EXPECT_EQ(CutTemplate(kStubPage).after_data, "<p>end</p>");
    const std::string mark = "<!--md:header-->";
    std::string page = kStubPage;
    page.erase(page.find(mark), mark.size());
    EXPECT_THROW(CutTemplate(page), Error);
    EXPECT_THROW(CutTemplate(kStubPage + mark), Error);
    EXPECT_EQ(JsonForPage({{"a", "</script>"}}), "{\"a\":\"\\u003c/script>\"}");
}

TEST(SecondArguments, FilesComeBeforeTheLineValuesAfterIt) {
    const std::vector<std::string> first = {"-d", "a.cfg", "-f", "b.cfg", "-p", "K=1"};
    EXPECT_EQ(SecondArguments(first, {"c.cfg", "T=2"}),
              (std::vector<std::string>{"-d", "a.cfg", "-f", "b.cfg", "-f", "c.cfg", "-p", "K=1",
                                        "-p", "T=2"}));
    EXPECT_EQ(SecondArguments({"-d", "a.cfg"}, {"c.cfg"}),
              (std::vector<std::string>{"-d", "a.cfg", "-f", "c.cfg"}));
}

TEST(Probe, ReadsRotationAndRates) {
    const auto Parse = [](const std::string& members) {
        return ParseProbe(R"({"streams":[{"width":640,"height":360,)" + members + "}]}");
    };
    const ClipFacts plain = Parse(R"("r_frame_rate":"30000/1001","avg_frame_rate":"30000/1001")");
    EXPECT_NEAR(plain.fps, 29.97, 0.001);
    EXPECT_FALSE(plain.variable_rate);
    EXPECT_EQ(plain.rotation, 0);
    EXPECT_TRUE(Parse(R"("r_frame_rate":"30/1","avg_frame_rate":"24/1")").variable_rate);
    const ClipFacts fields = Parse(R"("r_frame_rate":"50/1","avg_frame_rate":"25/1")");
    EXPECT_FALSE(fields.variable_rate);
    EXPECT_EQ(fields.fps, 25);
    const ClipFacts phone = Parse(
        R"("r_frame_rate":"30/1","avg_frame_rate":"30/1","side_data_list":[{"rotation":-90}])");
    EXPECT_EQ(phone.rotation, 270);
    const ClipFacts upside_down = Parse(R"("tags":{"rotate":"180"})");
    EXPECT_EQ(upside_down.rotation, 180);
    EXPECT_NO_THROW(RefuseRotated("a.mp4", upside_down));
    EXPECT_EQ(ParseProbe("no json").fps, 0);
    EXPECT_EQ(ParseProbe(R"({"streams":[]})").width, 0);
    EXPECT_NO_THROW(RefuseRotated("a.mp4", plain));
    EXPECT_THROW(RefuseRotated("a.mp4", phone), Error);
}

TEST(KeySources, TheLastSourceCounts) {
    const TempFolder folder;
    WriteAll(folder / "a.cfg",
             "MD_BlkCnt_Th = 3 # MD_RefFrmIdx = 2\nMD_LowDelayEn=1\nx_ds_pos = 1\n");
    WriteAll(folder / "b.cfg", "MD_HogDist_Th = 3\n");
    const auto sources = KeySources({"-d", folder / "a.cfg", "-p", "MD_HogDist_Th=4", "-f",
                                     folder / "b.cfg", "-p", "x_ds_pos", "=", "2"});
    EXPECT_EQ(sources.at("MD_BlkCnt_Th"), kFromFile);
    EXPECT_EQ(sources.at("MD_HogDist_Th"), kFromFile);
    EXPECT_EQ(sources.at("x_ds_pos"), kFromLine);
    EXPECT_FALSE(sources.contains("MD_RefFrmIdx"));
}

// The shipped file says in its own words which keys are read by nothing.
TEST(KeyUse, AgreesWithTheShippedFile) {
    int nothing = 0;
    for (const auto& key : KeyTexts()) {
        const bool unread = key["group"] == "Read by nothing";
        nothing += unread ? 1 : 0;
        EXPECT_EQ(WhyIdle(key["key"], SimParams{}) == "it changes nothing", unread) << key["key"];
        EXPECT_FALSE(key["range"].get<std::string>().empty()) << key["key"];
    }
    EXPECT_EQ(nothing, 25);
    SimParams settings{};
    settings.tMd.nMD_Bbox_PP_Enable = 0;
    EXPECT_EQ(WhyIdle("MD_Bbox_PP_Window", settings), "the gate is off");
    settings.tMd.nMD_Bbox_PP_Enable = 1;
    EXPECT_EQ(WhyIdle("MD_Bbox_PP_Window", settings), "");
}

}  // namespace
}  // namespace lab
