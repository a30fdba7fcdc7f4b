// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The frozen vectors: whole runs of which every output file is known by its SHA-256. A file of
// tests/vectors is a settings file; its comments name the clip that goes in and the sums of what
// comes out. With MD_REFRESH in the environment the sums are written anew from the plain path.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>

#include "tests/support/program.h"
#include "tools/squares.h"

namespace {

const std::string sFolder = MD_SOURCE_DIR "/tests/vectors";
const std::string sClipMark = "#> make_clip ";
const std::string sSumMark = "#= ";

std::vector<std::string> LinesOf(const std::string& sText, const std::string& sStart) {
    std::vector<std::string> a;
    std::string sLine;
    for (std::istringstream t(sText); std::getline(t, sLine);) {
        if (sLine.starts_with(sStart)) a.push_back(sLine.substr(sStart.size()));
    }
    return a;
}

std::vector<std::string> CaseNames() {
    std::vector<std::string> a;
    for (const auto& t : fs::directory_iterator(sFolder)) {
        if (t.path().extension() == ".cfg") a.push_back(t.path().stem().string());
    }
    std::ranges::sort(a);
    return a;
}

// The bytes that "make_clip WIDTH HEIGHT FRAMES in.yuv NAME=NUMBER..." writes.
std::string ClipOf(const std::string& sCase) {
    const std::vector<std::string> aCommands = LinesOf(sCase, sClipMark);
    if (aCommands.size() != 1) return "";
    SquaresClip tClip;
    int nWidth = 0, nHeight = 0;
    std::string sWord;
    std::istringstream t(aCommands[0]);
    t >> nWidth >> nHeight >> tClip.nFrames >> sWord;
    while (t >> sWord) EXPECT_TRUE(SquaresSet(&tClip, sWord)) << sWord;
    return SquaresBytes(tClip, nWidth, nHeight);
}

// The sums of a run and its input as sha256sum prints them: the tool is on every system that can
// run the tests, also beside an emulator, and whoever gets the vectors checks them with it.
std::vector<std::string> SumsOf(const fs::path& tFolder, const std::string& sKernels) {
    const Files aFiles = WholeRun(tFolder, sKernels);
    WriteAll(tFolder / "stdout", aFiles.at("stdout"));
    const Outcome t = RunProgram(
        tFolder, {"sh", "-c", "sha256sum in.yuv stdout $(find out -type f | LC_ALL=C sort)"});
    return LinesOf(t.sOut, "");
}

// `sCase` with those sums in place of its own.
std::string WithSums(const std::string& sCase, const std::vector<std::string>& aSums) {
    std::string s;
    for (const std::string& sLine : LinesOf(sCase, "")) {
        if (!sLine.starts_with(sSumMark)) s += sLine + "\n";
    }
    for (const std::string& sSum : aSums) s += sSumMark + sSum + "\n";
    return s;
}

// Names of the files whose line is on one side only.
std::string Differing(std::vector<std::string> aWant, std::vector<std::string> aGot) {
    std::ranges::sort(aWant);
    std::ranges::sort(aGot);
    std::vector<std::string> aLines, aNames;
    std::ranges::set_symmetric_difference(aWant, aGot, std::back_inserter(aLines));
    for (const std::string& s : aLines) aNames.push_back(s.substr(s.find("  ") + 2));
    std::ranges::sort(aNames);
    aNames.erase(std::unique(aNames.begin(), aNames.end()), aNames.end());
    std::string sText;
    for (const std::string& s : aNames) sText += s + "\n";
    return sText;
}

class FrozenVector : public testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(FrozenVector, HoldsOnEveryPath) {
    const std::string sFile = sFolder + "/" + GetParam() + ".cfg";
    std::string sCase = ReadAll(sFile);
    const TempFolder tFolder;
    WriteAll(tFolder / "in.yuv", ClipOf(sCase));
    WriteAll(tFolder / "a.cfg", sCase);
    if (std::getenv("MD_REFRESH") != nullptr) {
        sCase = WithSums(sCase, SumsOf(tFolder.Path(), "plain"));
        WriteAll(sFile, sCase);
    }
    std::map<std::string, std::string> aPaths;  // by the files that differ on them
    for (const std::string& sKernels : KernelNames()) {
        const std::vector<std::string> aSums = SumsOf(tFolder.Path(), sKernels);
        aPaths[Differing(LinesOf(sCase, sSumMark), aSums)] += " " + sKernels;
    }
    for (const auto& [sNames, sPaths] : aPaths) {
        EXPECT_EQ(sNames, "") << "files that are not those frozen in " << sFile
                              << ", on paths:" << sPaths
                              << "\nIf users are to get other bytes, scripts/vectors.sh "
                              << "--refresh freezes them.";
    }
}

INSTANTIATE_TEST_SUITE_P(Vectors, FrozenVector, testing::ValuesIn(CaseNames()),
                         [](const auto& tInfo) { return tInfo.param; });

TEST(FrozenVectorComparison, NamesEachFileThatDiffers) {
    EXPECT_EQ(Differing({"1  a", "2  b"}, {"1  a", "2  b"}), "");
    EXPECT_EQ(Differing({"1  a", "2  b", "3  c"}, {"1  a", "4  b", "5  d"}), "b\nc\nd\n");
}
