// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Runs of the program as a user types them, with all that they print: tests/sessions/*.txt. A line
// "# ..." says what holds and is a test of its own, in a new folder; "## ..." explains it. "$ ..."
// is a shell line, and what follows is its standard output, its standard error after "! " and its
// exit status, where it is not 0. With MD_REFRESH in the environment the files are written anew
// instead of compared.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <sstream>

#include "md/cfg_top/cfg_text.h"
#include "tests/support/program.h"
#include "tools/squares.h"

namespace {

// One typed line and what it prints.
struct Line {
    std::string sCommand, sPrinted;
};

struct Block {
    fs::path tFile;
    std::string sHead;  // the lines "# ..." and "## ...", as they are
    std::vector<Line> aLines;

    std::string Text() const {
        std::string s = sHead;
        for (const Line& t : aLines) s += "$ " + t.sCommand + "\n" + t.sPrinted;
        return s;
    }
    // The file's name and the first line's words.
    std::string Name() const {
        std::string s = tFile.stem().string();
        for (const char c : sHead.substr(0, sHead.find('\n'))) {
            const bool bWord = std::isalnum(static_cast<unsigned char>(c)) != 0;
            if (bWord || s.back() != '_') s += bWord ? c : '_';
        }
        return s;
    }
};

void PrintTo(const Block& t, std::ostream* pOut) {
    *pOut << t.Name();
}

std::vector<Block> BlocksOf(const fs::path& tFile) {
    std::vector<Block> a;
    std::string sLine;
    for (std::istringstream t(ReadAll(tFile)); std::getline(t, sLine);) {
        if (sLine.starts_with("# ")) a.push_back({tFile, "", {}});
        if (sLine.starts_with("# ") || sLine.starts_with("## ")) {
            a.back().sHead += sLine + "\n";
        } else if (sLine.starts_with("$ ")) {
            a.back().aLines.push_back({sLine.substr(2), ""});
        } else {
            a.back().aLines.back().sPrinted += sLine + "\n";
        }
    }
    return a;
}

std::vector<Block> AllBlocks() {
    std::vector<fs::path> aFiles;
    for (const auto& t : fs::directory_iterator(MD_SOURCE_DIR "/tests/sessions")) {
        aFiles.push_back(t.path());
    }
    std::ranges::sort(aFiles);
    std::vector<Block> a;
    for (const fs::path& tFile : aFiles) {
        for (const Block& t : BlocksOf(tFile)) a.push_back(t);
    }
    return a;
}

// A copy of the program, a clip "in.yuv" of 32x32 and the settings "a.cfg" for it. The real tools
// are in "tools", the tree of sources is "source".
void Fill(const TempFolder& tFolder) {
    CopyMd(tFolder.Path());
    const SquaresClip tClip = {.nFrames = 2, .nSpeed = 7, .nTail = 100};
    WriteAll(tFolder / "in.yuv", SquaresBytes(tClip, 32, 32));
    WriteAll(tFolder / "a.cfg", BaseConfig(32, 32));
    fs::create_directory_symlink(cfgDirName(MD_PROGRAM), tFolder / "tools");
    fs::create_directory_symlink(MD_SOURCE_DIR, tFolder / "source");
}

// A byte that comes more than 40 times in a row is shown once, with how often: "0{512}".
std::string Shown(const std::string& sLine) {
    std::string s;
    for (size_t i = 0, nEnd; i < sLine.size(); i = nEnd) {
        nEnd = std::min(sLine.find_first_not_of(sLine[i], i), sLine.size());
        const size_t nRun = nEnd - i;
        s.append(sLine, i, nRun > 40 ? 1 : nRun);
        if (nRun > 40) s.append("{").append(std::to_string(nRun)).append("}");
    }
    return s;
}

void Add(std::ostream& tOut, const std::string& sText, const char* szMark) {
    std::string sLine;
    for (std::istringstream t(sText); std::getline(t, sLine);) {
        tOut << szMark << Shown(sLine) << "\n";
    }
    if (!sText.empty() && !sText.ends_with('\n')) tOut << szMark << "(no end of line)\n";
}

// What a line prints. What runs with "a.cfg" print up to the empty line after their settings is
// left out.
std::string Printed(const fs::path& tFolder, const std::string& sCommand) {
    Outcome t = RunProgram(tFolder, {"env", "LC_ALL=C", "sh", "-c", sCommand});
    const std::string sStart = "Setting Default Parameters...\nParsing Configfile...... a.cfg\n";
    const size_t nAfterDots = t.sOut.find_first_not_of('.', sStart.size());
    const size_t nEnd = t.sOut.find("\n\n");
    const bool bParsed = t.sOut.starts_with(sStart) && nEnd != std::string::npos;
    if (bParsed && t.sOut[nAfterDots] == '\n') t.sOut.erase(0, nEnd + 2);
    std::ostringstream tText;
    Add(tText, t.sOut, "");
    Add(tText, t.sErr, "! ");
    if (t.nExit != 0) tText << "[" << t.nExit << "]\n";
    return tText.str();
}

// Puts a block in the place of the one with its name.
void Rewrite(const Block& tNew) {
    std::string s;
    for (const Block& t : BlocksOf(tNew.tFile)) s += (t.Name() == tNew.Name() ? tNew : t).Text();
    WriteAll(tNew.tFile, s);
}

class Session : public testing::TestWithParam<Block> {};

}  // namespace

TEST_P(Session, Prints) {
    Block tGot = GetParam();
    const TempFolder tFolder;
    Fill(tFolder);
    for (Line& t : tGot.aLines) t.sPrinted = Printed(tFolder.Path(), t.sCommand);
    if (std::getenv("MD_REFRESH") != nullptr) return Rewrite(tGot);
    ASSERT_FALSE(tGot.aLines.empty());
    for (size_t i = 0; i < tGot.aLines.size(); ++i) {
        const Line& tWant = GetParam().aLines[i];
        ASSERT_EQ(tWant.sPrinted, tGot.aLines[i].sPrinted) << "$ " << tWant.sCommand;
    }
}

INSTANTIATE_TEST_SUITE_P(Typed, Session, testing::ValuesIn(AllBlocks()),
                         [](const auto& tInfo) { return tInfo.param.Name(); });
