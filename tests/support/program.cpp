// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "tests/support/program.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "md/decision/row_kernels.h"

Outcome RunProgram(const fs::path& tFolder, const std::vector<std::string>& aArguments) {
    const TempFolder tCapture;
    const std::string sOut = tCapture / "out";
    const std::string sErr = tCapture / "err";
    std::vector<char*> argv;
    for (const std::string& s : aArguments) argv.push_back(const_cast<char*>(s.c_str()));
    argv.push_back(nullptr);
    std::fflush(nullptr);  // or the child prints what we have buffered
    const pid_t nChild = fork();
    if (nChild == 0) {
        if (chdir(tFolder.c_str()) != 0 || freopen(sOut.c_str(), "wb", stdout) == nullptr ||
            freopen(sErr.c_str(), "wb", stderr) == nullptr) {
            _exit(127);
        }
        execvp(argv[0], argv.data());
        _exit(127);
    }
    int nStatus = 0;
    waitpid(nChild, &nStatus, 0);
    const int nExit = WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : 128 + WTERMSIG(nStatus);
    return {nExit, ReadAll(sOut), ReadAll(sErr)};
}

Outcome RunMd(const fs::path& tFolder, const std::vector<std::string>& aOptions) {
    std::vector<std::string> aArguments = {MD_PROGRAM};
    aArguments.insert(aArguments.end(), aOptions.begin(), aOptions.end());
    return RunProgram(tFolder, aArguments);
}

std::vector<std::string> KernelNames() {
    std::vector<std::string> a;
    for (const RowKernels& t : OfferedKernels()) a.emplace_back(t.szName);
    a.emplace_back("plain");
    return a;
}

Files WholeRun(const fs::path& tFolder, const std::string& sKernels) {
    fs::remove_all(tFolder / "out");
    const Outcome t =
        RunProgram(tFolder, {"env", "MD_KERNELS=" + sKernels, MD_PROGRAM, "-d", "a.cfg"});
    std::ostringstream tText;
    if (t.nExit != 0) throw std::runtime_error((tText << t, tText.str()));
    Files a = ReadFolder(tFolder / "out");
    a["stdout"] = t.sOut;
    return a;
}

void CopyMd(const fs::path& tFolder) {
    fs::copy_file(MD_PROGRAM, tFolder / "MD");
}

std::ostream& operator<<(std::ostream& tOut, const Outcome& t) {
    return tOut << "exit " << t.nExit << "\nstdout:\n" << t.sOut << "\nstderr:\n" << t.sErr << "\n";
}

std::string BaseConfig(int nWidth, int nHeight) {
    std::ostringstream t;
    t << "InputFilePath = in.yuv\nOutputFilePath = out\n"
      << "InputWidth = " << nWidth << "\nInputHeight = " << nHeight << "\n"
      << "MD_ScaledW = " << nWidth << "\nMD_ScaledH = " << nHeight << "\n"
      << "MD_Scale_KeepAspectRatio = 0\nFramesToBeProcessed = -1\n"
      << "MD_HogMethod = 1\nMD_MetricMode = 2\nMD_HogNormalizeMode = 1\n"
      << "MD_HogGradX = -1,-2,0,2,1\nMD_HogGradY = -1,-2,0,2,1\nEnableBatch = 1\n";
    return t.str();
}
