// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Whole runs in this process: tiny frames, settings within their ranges, any bytes as video, any
// answer of the outside tools, which are never run, and any allocation that fails.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "app/md_sim_run.h"
#include "md/cfg_top/input_map.h"
#include "md/run_state.h"
#include "tests/fuzz/exit_trap.h"
#include "tests/support/program.h"

namespace {

FuzzedDataProvider* pAnswers;  // what the tools say and write
std::string sVideo;            // the bytes of any video, over and over

int32_t Pick(FuzzedDataProvider& t, int32_t nLow, int32_t nHigh) {
    return t.ConsumeIntegralInRange(nLow, nHigh);
}

std::string VideoBytes(size_t nBytes) {
    std::string s;
    while (s.size() < nBytes) s.append(sVideo, 0, nBytes - s.size());
    return s;
}

// Sizes that matter, else anything in the row's range, at most what keeps frames tiny.
std::string PickValue(FuzzedDataProvider& t, const InputMapEntry& tRow) {
    const std::string sKey = tRow.TokenName;
    if (sKey.starts_with("MD_HogGrad")) return t.PickValueInArray({"1,-2,0,2,-1", "8,-8", "0,0,8"});
    if (tRow.Type == kTypeDouble) return t.PickValueInArray({"0", "0.5", "1", "255", "1e-9"});
    const bool bSize =
        sKey.starts_with("InputW") || sKey.starts_with("InputH") || sKey.starts_with("MD_Scaled");
    const auto nMin = static_cast<int32_t>(tRow.MinLimit);
    const auto nMax = tRow.LimitKind == kLimitLower ? 1000 : static_cast<int32_t>(tRow.MaxLimit);
    if (bSize) return std::to_string(Pick(t, nMin, 72));
    const int32_t nStep = sKey == "MD_HogCellSize" || sKey == "MD_HogBlockStride" ? 8 : 1;
    return std::to_string(Pick(t, nMin / nStep, nMax / nStep) * nStep);
}

std::string PickConfig(FuzzedDataProvider& t, const std::string& sFolder) {
    const char* const szName = t.PickValueInArray(
        {"in.yuv", "in_P420.yuv", "in_40x32_P400.yuv", "in_P422.yuv", "in.any", "a_24x24_b.any"});
    std::ofstream(sFolder + szName, std::ios::binary)
        << VideoBytes(static_cast<size_t>(Pick(t, 0, 9000)));
    std::string s = BaseConfig(Pick(t, 16, 56), Pick(t, 16, 56)) + "InputFilePath = " + szName +
                    "\nMD_DbgEn = " + std::to_string(Pick(t, 0, 0x3FFF)) + "\nEnableBatch = 0\n";
    for (int32_t n = Pick(t, 0, 24); n > 0; --n) {
        const InputMapEntry& tRow =
            aInputKeys[t.ConsumeIntegralInRange<size_t>(0, aInputKeys.size() - 1)];
        if (std::strstr(tRow.TokenName, "FilePath") != nullptr) continue;
        s += std::string(tRow.TokenName) + " = " + PickValue(t, tRow) + "\n";
    }
    return s;
}

// Every video that is on holds the same number of whole frames.
void RequireEvenVideos(const std::string& sFolder) {
    const uintmax_t nFrame = static_cast<uintmax_t>(nMdWidth) * static_cast<uintmax_t>(nMdHeight);
    const int32_t nBits = tSimParams.tMd.nDbgEn;
    uintmax_t nFrames = UINTMAX_MAX;
    for (const auto& [nBit, szName, nPanels] : {std::tuple{kDbgComp, "comp", 3},
                                                {kDbgMotionArea, "motionArea", 1},
                                                {kDbgHogDist, "hogDist", 1}}) {
        if ((nBits & nBit) == 0) continue;
        const std::string sSize =
            std::to_string(nPanels * nMdWidth) + "x" + std::to_string(nMdHeight);
        const uintmax_t nBytes =
            fs::file_size(sFolder + "out/" + szName + "_" + sSize + "_P420.yuv");
        const uintmax_t nOne = nFrame * 3 * static_cast<uintmax_t>(nPanels) / 2;
        Require(nBytes % nOne == 0, "whole frames");
        Require(nFrames == UINTMAX_MAX || nFrames == nBytes / nOne, "as many in every video");
        nFrames = nBytes / nOne;
    }
}

}  // namespace

// In place of RunCommand: writes what the command would, or not.
extern "C" int __wrap__Z10RunCommandPKc(const char* szCommand) {
    FuzzedDataProvider& t = *pAnswers;
    const std::string sCommand = szCommand;
    const std::string sFile = sCommand.substr(sCommand.rfind(' ') + 1);
    if (t.ConsumeIntegralInRange(0, 7) == 7) return 1;
    std::ofstream tFile(sFile, std::ios::binary);
    if (sCommand.find("ffprobe") != std::string::npos) {
        tFile << (t.ConsumeBool() ? "32\n24\n" : t.ConsumeRandomLengthString(40));
    } else {
        tFile << VideoBytes(static_cast<size_t>(Pick(t, 0, 9000)));
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nData) {
    static const TempFolder tFolder;
    static const std::string sFolder = tFolder.Path().string() + "/";
    FuzzedDataProvider tData(pData, nData);
    pAnswers = &tData;
    fs::remove_all(sFolder + "out");
    WriteAll(sFolder + "ffmpeg", "");
    const bool bFail = tData.ConsumeIntegralInRange(0, 3) == 3;
    nFailingAllocation = bFail ? Pick(tData, 0, 60) : -1;
    sVideo = tData.ConsumeRandomLengthString(4000) + "\x40";
    WriteAll(sFolder + "a.cfg", PickConfig(tData, sFolder));
    std::string aTexts[] = {sFolder + "MD", "-d", sFolder + "a.cfg"};
    char* argv[] = {aTexts[0].data(), aTexts[1].data(), aTexts[2].data()};
    const int nStatus = RunTrapped([&] { MdSimRun(3, argv); });
    RequireKnownStatus(nStatus);
    if (nStatus == kCameBack) RequireEvenVideos(sFolder);
    return 0;
}
