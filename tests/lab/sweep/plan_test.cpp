// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "lab/sweep/plan.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>

#include "lab/sweep/md_process.h"
#include "lab/sweep/points.h"
#include "lab/tool/error.h"
#include "lab/tool/temp_folder.h"

namespace lab {
namespace {

// A folder with a clip, labels and settings that plans may name.
class PlanFile : public testing::Test {
  protected:
    PlanFile() {
        WritePlain(Path("a.yuv"), "clip");
        WritePlain(Path("a.csv"), "0,1,,,,,motion\n");
        WritePlain(Path("base.cfg"), "MD_HogMethod = 1 MD_MetricMode = 2 # chip\nx_ds_avg = 1\n");
    }
    std::string Path(const std::string& name) { return folder_.Path() + "/" + name; }
    Plan Read(const std::string& text) {
        WritePlain(Path("plan.yaml"), text);
        return ReadPlan(Path("plan.yaml"));
    }
    std::string Refusal(const std::string& text) {
        try {
            Read(text);
        } catch (const Error& error) {
            return error.what();
        }
        return "accepted";
    }
    TempFolder folder_;
};

const std::string kHead = "settings: base.cfg\nclips: [a.yuv]\n";

TEST_F(PlanFile, EveryWordOfAPlanIsRead) {
    const Plan plan = Read(
        "settings: base.cfg\n"
        "clips:\n"
        "  - a.yuv\n"
        "  - {file: a.yuv, labels: a.csv, name: b, type: 0, width: 64, height: 0x30}\n"
        "keys:\n"
        "  MD_HogDist_Th: [0x10, 20..24 step 2]\n"
        "  MD_PP_Area_Converge_Thresh: 1.1..1.3 step 0.1\n"
        "  MD_HogGradX: [\"-1, 0, 1\", \"-1,-2,0,2,1\"]\n"
        "  MD_PostProcMethod: 2\n"
        "take: 5\n"
        "seed: 7\n"
        "expect:\n"
        "  recall: at least 0.9\n"
        "  clips: {b: {false_per_1000: at most 20}}\n");
    ASSERT_EQ(plan.clips.size(), 2U);
    EXPECT_EQ(plan.clips[0].name, "a");
    EXPECT_FALSE(plan.clips[0].labels.has_value());
    EXPECT_EQ(plan.clips[1].height, "48");
    EXPECT_EQ(plan.clips[1].labels->size(), 1U);
    ASSERT_EQ(plan.keys.size(), 4U);
    EXPECT_EQ(plan.keys[0].values, (std::vector<std::string>{"16", "20", "22", "24"}));
    EXPECT_EQ(plan.keys[1].values, (std::vector<std::string>{"1.1", "1.2", "1.3"}));
    EXPECT_EQ(plan.keys[2].values, (std::vector<std::string>{"-1,0,1", "-1,-2,0,2,1"}));
    EXPECT_EQ(plan.settings[static_cast<size_t>(RowOf("x_ds_avg"))], "1");
    ASSERT_EQ(plan.limits.size(), 2U);
    EXPECT_EQ(LimitText(plan.limits[0]), "recall at least 0.9");
    EXPECT_EQ(plan.limits[1].clip, 1);
    EXPECT_EQ(plan.take, 5U);
}

TEST_F(PlanFile, FaultsNameFileLineAndColumn) {
    const struct {
        std::string text, message;
    } rows[] = {
        {"clips: [a.yuv]\n", "plan.yaml:1:1: settings is missing"},
        {kHead + "keys: {MD_HogDist_Thh: 1}\n",
         "plan.yaml:3:8: MD_HogDist_Thh is no key of MD; did you mean MD_HogDist_Th?"},
        {kHead + "keys:\n  MD_HogDist_Th: [1, 256]\n",
         "plan.yaml:4:22: MD_HogDist_Th = 256: out of range, 0 to 255"},
        {kHead + "keys:\n  MD_HogDist_Th: 250..260\n", "plan.yaml:4:18: MD_HogDist_Th = 256: out"},
        {kHead + "keys:\n  MD_HogDist_Th: 9..1\n", "4:18: 9..1: a range counts upwards"},
        {kHead + "keys:\n  MD_HogDist_Th: 1..2 step 0.5\n", "takes whole numbers"},
        {kHead + "keys:\n  MD_HogDist_Th: ten\n", "4:18: MD_HogDist_Th = ten: not a number"},
        {kHead + "keys:\n  MD_HogDist_Th: [8, 0x8]\n", "4:22: 8 is among the values already"},
        {kHead + "keys:\n  MD_HogDist_Th: 1\n  MD_HogDist_Th: 2\n", "5:3: MD_HogDist_Th is here"},
        {kHead + "keys:\n  MD_DbgEn: 1\n", "4:3: MD_DbgEn is set by the sweep itself"},
        {kHead + "keys:\n  MD_HogGradX: \"1,,2\"\n", "an empty place in the list of taps"},
        {kHead + "kyes: {}\n", "plan.yaml:3:1: kyes is not known here"},
        {kHead + "take: 0\n", "plan.yaml:3:7: 0 is not a whole number from 1 to"},
        {kHead + "expect: {recal: at least 1}\n", "3:10: recal is no score"},
        {kHead + "expect: {recall: at least nan}\n", "3:18: nan is not a number"},
        {"", "plan.yaml:1:1: a plan is"},
        {kHead + "expect: {recall: 1}\n", "3:18: 1: a limit is written as at least 0.9"},
        {kHead + "expect: {clips: {b: {}}}\n", "3:18: b is no clip of the plan"},
        {"settings: base.cfg\nclips: [a.yuv, b.yuv]\n", "plan.yaml:2:16: "},
        {"settings: base.cfg\nclips: [a.yuv, a.yuv]\n", "2:16: a second clip a"},
        {"settings: base.cfg\nclips: [{labels: a.csv}]\n", "2:9: a clip needs file"},
        {"settings: [\n", "plan.yaml:2:1: "},
    };
    for (const auto& row : rows) {
        EXPECT_NE(Refusal(row.text).find(row.message), std::string::npos)
            << row.text << "gave " << Refusal(row.text);
    }
}

TEST_F(PlanFile, FaultsInSettingsNameTheirLine) {
    const struct {
        const char *text, *message;
    } rows[] = {
        {"MD_HogMethod = 1\nMD_HogMetod = 1\n", "base.cfg:2: MD_HogMetod is no key of MD; did you"},
        {"\n\nMD_HogDist_Th = 300", "base.cfg:3: MD_HogDist_Th = 300: out of range, 0 to 255"},
        {"MD_HogDist_Th 300", "base.cfg:1: MD_HogDist_Th needs '=' and a value"},
        {"MD_HogDist_Th = ", "base.cfg:1: MD_HogDist_Th needs '=' and a value"},
    };
    for (const auto& row : rows) {
        WritePlain(Path("base.cfg"), row.text);
        EXPECT_NE(Refusal(kHead).find(row.message), std::string::npos) << Refusal(kHead);
    }
    // One token more than MD has room for would end the process there.
    std::string many;
    for (int i = 0; i < 601; ++i) many += "\"\" ";
    WritePlain(Path("base.cfg"), many);
    EXPECT_NE(Refusal(kHead).find("at most 600 words"), std::string::npos);
}

TEST_F(PlanFile, PointsThatDifferInWhatTheyDoNotReadAreOne) {
    const Points points = PointsOf(Read(kHead + "keys:\n"
                                                "  MD_PostProcMethod: [0, 1]\n"
                                                "  MD_BlkCnt_Th: [4, 8, 12]\n"
                                                "  Cls_CarTh: [0.1, 0.2]\n"));
    EXPECT_EQ(points.product, 12U);
    ASSERT_EQ(points.points.size(), 4U);
    EXPECT_EQ(points.points[1].values, (std::vector<std::string>{"0", "8", ""}));
    EXPECT_EQ(points.points[3].values, (std::vector<std::string>{"1", "", ""}));
    ASSERT_EQ(points.idle.size(), 1U);
    EXPECT_EQ(points.idle[0].substr(0, 9), "Cls_CarTh");
}

TEST_F(PlanFile, MoreThanAMillionPointsMustBeDrawn) {
    std::string keys = "keys:\n";
    for (const char* key :
         {"MD_HogDist_Th", "MD_HogDist_Scale2", "MD_HogDist_AvgYDiffThre_Scale"}) {
        keys += std::string("  ").append(key).append(": 0..255\n");
    }
    EXPECT_THROW(PointsOf(Read(kHead + keys)), Error);
    EXPECT_EQ(PointsOf(Read(kHead + keys + "take: 50\n")).points.size(), 50U);
}

TEST(Draw, IsASampleWithoutRepeatsThatGrows) {
    const auto few = Draw(1000, 100, 3);
    const auto more = Draw(1000, 1000, 3);
    EXPECT_TRUE(std::equal(few.begin(), few.end(), more.begin()));
    EXPECT_EQ(std::set<uint64_t>(more.begin(), more.end()).size(), 1000U);
    EXPECT_EQ(*std::max_element(more.begin(), more.end()), 999U);
    EXPECT_NE(few, Draw(1000, 100, 4));
    // The same on every machine.
    EXPECT_EQ(Draw(UINT64_MAX, 1, 1).front(), 2469588189546311528U);
}

}  // namespace
}  // namespace lab
