// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tools/fault_worker.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr char kCpuLimit[] = "60";    // seconds of each process: ends a fault that makes a loop
constexpr char kWaitLimit[] = "900";  // seconds of a group of tests: ends one that makes a wait

struct TestGroup {
    const char* szFilter;
    bool bInMemory;  // its tests write many small files, in memory where there is a place for that
};

// In the order of what they notice in a second: the first failure ends the tests of a fault.
// Sessions show what a file system says of a folder, and stay on the usual one.
constexpr TestGroup aGroups[] = {
    {"*-Vectors/*:Table/*:Golden*:Kernel*:*Row*:Fault*:TextOut*:YuvDraw*:*Session*:Sessions/*",
     true},
    {"Vectors/*", true},
    {"Golden*:Kernel*:*Row*:Fault*:TextOut*:YuvDraw*-Vectors/*:Table/*", true},
    {"Table/*", true},
    {"*Session*:Sessions/*", false},
};

std::string Quoted(const std::string& sWord) {
    std::string s = "'";
    for (const char c : sWord) s += c == '\'' ? "'\\''" : std::string(1, c);
    return s + "'";
}

// The status of a line of the shell. Unlike std::system it leaves Ctrl-C to end this program too.
int Run(const std::string& sLine) {
    std::string aWords[] = {"sh", "-c", sLine};
    char* apArguments[] = {aWords[0].data(), aWords[1].data(), aWords[2].data(), nullptr};
    pid_t nChild = 0;
    int nStatus = 0;
    if (posix_spawn(&nChild, "/bin/sh", nullptr, nullptr, apArguments, environ) != 0 ||
        waitpid(nChild, &nStatus, 0) != nChild) {
        throw std::runtime_error("no shell to run " + sLine);
    }
    return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : 128 + WTERMSIG(nStatus);
}

void WriteWhole(const fs::path& tPath, const std::string& sContents) {
    std::ofstream tFile(tPath, std::ios::binary);
    if (!tFile.write(sContents.data(), static_cast<std::streamsize>(sContents.size())).flush()) {
        throw std::runtime_error(tPath.string() + ": cannot be written");
    }
}

bool Builds(const FaultWorker& t) {
    return Run("cmake --build " + Quoted(t.tBuild) +
               " --target MD md_tests -j 2 >/dev/null 2>&1") == 0;
}

// What a failing run of tests is named by: its first failed test, or else its status.
std::string FailureIn(const std::string& sOutput, int nStatus) {
    std::smatch tFound;
    if (std::regex_search(sOutput, tFound, std::regex(R"(\[  FAILED  \] ([\w./]+))"))) {
        return tFound[1];
    }
    return "status " + std::to_string(nStatus);
}

// What notices the fault; empty if nothing does.
std::string NoticedBy(const FaultWorker& t) {
    const fs::path tOutput = t.tBuild / "tests.txt";
    for (const TestGroup& tGroup : aGroups) {
        const bool bInMemory = tGroup.bInMemory && fs::is_directory("/dev/shm");
        const int nStatus = Run(
            "cd " + Quoted(t.tBuild) + " && " + (bInMemory ? "TMPDIR=/dev/shm " : "") +
            "timeout -k 5 " + kWaitLimit + " sh -c 'ulimit -t " + kCpuLimit +
            "; exec \"$@\"' sh tests/md_tests --gtest_fail_fast --gtest_brief=1 --gtest_filter=" +
            Quoted(tGroup.szFilter) + " >" + Quoted(tOutput) + " 2>/dev/null");
        if (nStatus != 0) return FailureIn(ReadWhole(tOutput), nStatus);
    }
    return "";
}

}  // namespace

std::string ReadWhole(const fs::path& tPath) {
    std::ifstream tFile(tPath, std::ios::binary);
    std::ostringstream tContents;
    tContents << tFile.rdbuf();
    if (!tFile) throw std::runtime_error(tPath.string() + ": cannot be read");
    return tContents.str();
}

std::vector<std::string> TreeFiles(const fs::path& tScratch) {
    const fs::path tList = tScratch / "files";
    if (Run("git ls-files -z >" + Quoted(tList)) != 0) throw std::runtime_error("git cannot list");
    std::istringstream tNames(ReadWhole(tList));
    std::vector<std::string> aFiles;
    for (std::string s; std::getline(tNames, s, '\0');) {
        if (fs::exists(s)) aFiles.push_back(s);
    }
    return aFiles;
}

void CopyTree(const FaultWorker& tWorker, const std::vector<std::string>& aFiles) {
    fs::create_directories(tWorker.tTree);
    const std::set<fs::path> aKept(aFiles.begin(), aFiles.end());
    std::vector<fs::path> aGone;
    for (const auto& t : fs::recursive_directory_iterator(tWorker.tTree)) {
        const fs::path tPath = t.path().lexically_relative(tWorker.tTree);
        if (!t.is_directory() && !aKept.contains(tPath)) aGone.push_back(t.path());
    }
    for (const fs::path& t : aGone) fs::remove(t);
    for (const fs::path& t : aKept) {
        const fs::path tCopy = tWorker.tTree / t;
        if (fs::exists(tCopy) && ReadWhole(tCopy) == ReadWhole(t)) continue;
        fs::create_directories(tCopy.parent_path());
        fs::copy_file(t, tCopy, fs::copy_options::overwrite_existing);
    }
}

void Prepare(const FaultWorker& tWorker) {
    // A shared library, so that a fault links one file anew and neither program.
    const std::string sStatic = "add_library(md_sim STATIC";
    std::string sLists = ReadWhole(tWorker.tTree / "CMakeLists.txt");
    const size_t n = sLists.find(sStatic);
    if (n == std::string::npos) throw std::runtime_error("CMakeLists.txt has no " + sStatic);
    WriteWhole(tWorker.tTree / "CMakeLists.txt",
               sLists.replace(n, sStatic.size(), "add_library(md_sim SHARED"));
    // A build type of no name adds no flags: no debug information.
    const int nStatus = Run("cmake -S " + Quoted(tWorker.tTree) + " -B " + Quoted(tWorker.tBuild) +
                            " -G Ninja -DMD_LAB=OFF -DCMAKE_LINK_DEPENDS_NO_SHARED=ON"
                            " -DCMAKE_POSITION_INDEPENDENT_CODE=ON -DCMAKE_BUILD_TYPE=Quick"
                            " -DCMAKE_CXX_FLAGS=-O1 >/dev/null 2>&1");
    if (nStatus != 0 || !Builds(tWorker)) throw std::runtime_error("the tree does not build");
    const std::string sTest = NoticedBy(tWorker);
    if (!sTest.empty()) throw std::runtime_error(sTest + " fails without a planted fault");
}

std::string TryContents(const FaultWorker& tWorker, const std::string& sPath,
                        const std::string& sContents) {
    const fs::path tFile = tWorker.tTree / sPath;
    const std::string sOwn = ReadWhole(tFile);
    WriteWhole(tFile, sContents);
    std::string sOutcome = kNoBuild;
    if (Builds(tWorker)) {
        const std::string sTest = NoticedBy(tWorker);
        sOutcome = sTest.empty() ? kSurvived : kCaught + sTest;
    }
    WriteWhole(tFile, sOwn);
    return sOutcome;
}
