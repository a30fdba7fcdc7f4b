// Runs of the program as a user types them, with all that they print: tests/sessions/*.txt. A line
// "# ..." names a fault to find and starts in a new folder, "$ ..." is a shell line, and what
// follows is its standard output, its standard error behind "! " and its exit status, where it is
// not 0. With MD_REFRESH in the environment the files are written anew instead of compared.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <sstream>

#include "md/cfg_top/cfg_text.h"
#include "tests/support/program.h"
#include "tools/squares.h"

namespace {

// A folder with a copy of the program, a clip "in.yuv" of 32x32 and the settings "a.cfg" for it.
// The real tools are in "tools", the tree of sources is "source".
std::unique_ptr<TempFolder> NewFolder() {
    auto p = std::make_unique<TempFolder>();
    CopyMd(p->Path());
    WriteAll(*p / "in.yuv", SquaresBytes({.nFrames = 2, .nSpeed = 7, .nTail = 100}, 32, 32));
    WriteAll(*p / "a.cfg", BaseConfig(32, 32));
    fs::create_directory_symlink(cfgDirName(MD_PROGRAM), *p / "tools");
    fs::create_directory_symlink(MD_SOURCE_DIR, *p / "source");
    return p;
}

void Add(std::ostream& tOut, const std::string& sText, const char* szMark) {
    std::string sLine;
    for (std::istringstream t(sText); std::getline(t, sLine);) tOut << szMark << sLine << "\n";
    if (!sText.empty() && !sText.ends_with('\n')) tOut << szMark << "(no end of line)\n";
}

// The transcript of one line. What runs with "a.cfg" print up to the empty line behind their
// settings is left out.
std::string Typed(const fs::path& tFolder, const std::string& sCommand) {
    Outcome t = RunProgram(tFolder, {"env", "LC_ALL=C", "sh", "-c", sCommand});
    const std::string sStart = "Setting Default Parameters...\nParsing Configfile...... a.cfg\n" +
                               std::string(14, '.') + "\n";
    const size_t nEnd = t.sOut.find("\n\n");
    if (t.sOut.starts_with(sStart) && nEnd != std::string::npos) t.sOut.erase(0, nEnd + 2);
    std::ostringstream tText;
    Add(tText, t.sOut, "");
    Add(tText, t.sErr, "! ");
    if (t.nExit != 0) tText << "[" << t.nExit << "]\n";
    return tText.str();
}

class Session : public testing::TestWithParam<const char*> {};

TEST_P(Session, PrintsSomethingElse) {
    const std::string sPath = std::string(MD_SOURCE_DIR "/tests/sessions/") + GetParam() + ".txt";
    const std::string sWant = ReadAll(sPath);
    std::string sGot, sLine;
    std::unique_ptr<TempFolder> pFolder;
    for (std::istringstream t(sWant); std::getline(t, sLine);) {
        if (sLine.starts_with("# ")) pFolder = NewFolder();
        if (sLine.starts_with("# ") || sLine.starts_with("$ ")) sGot += sLine + "\n";
        if (sLine.starts_with("$ ")) sGot += Typed(pFolder->Path(), sLine.substr(2));
    }
    if (std::getenv("MD_REFRESH") != nullptr) WriteAll(sPath, sGot);
    const std::string sFile = ReadAll(sPath);
    const auto nSame = static_cast<size_t>(std::ranges::mismatch(sGot, sFile).in1 - sGot.begin());
    const size_t nLine = nSame == 0 ? 0 : sGot.rfind('\n', nSame - 1) + 1;  // 0 behind npos
    EXPECT_TRUE(sGot == sFile) << sPath << " has\n"
                               << sFile.substr(nLine, 400) << "\nthe program printed\n"
                               << sGot.substr(nLine, 400);
}

INSTANTIATE_TEST_SUITE_P(Typed, Session,
                         testing::Values("configuration", "command_line", "default_cfg", "refused",
                                         "input", "outputs", "streams", "tools"),
                         [](const auto& tInfo) { return std::string(tInfo.param); });

}  // namespace
