// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/input/prepare_input.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "md/cfg_top/cfg_text.h"
#include "md/compose_path.h"
#include "md/input/input_types.h"
#include "md/input/name_marks.h"
#include "md/input/raw_files.h"
#include "md/input/tool_commands.h"
#include "md/platform/platform.h"
#include "md/platform/run_tool.h"
#include "md/print.h"
#include "md/run_state.h"

namespace {

constexpr size_t kDerivedPathSize = 768;

// The derived paths; SimParams points here up to the end of the process.
char szPreInput[kDerivedPathSize];
char szScaledInput[kDerivedPathSize];

void FindTools(const char* szArgv0) {
    static std::string sToolDir;
    sToolDir = cfgDirName(szArgv0);
    char szTool[512];
    if (!FitText(szTool, "%s%c%s", sToolDir.c_str(), cPathSep, kToolFile)) {
        EndRun(stdout, kExitInput, "[ERROR] ffmpeg path is too long\n");
    }
    pToolDir = PathExists(szTool) ? sToolDir.c_str() : nullptr;
}

// Stores a size that differs from the current one, and prints a line that begins with `szWord`.
void OverwriteInputSize(int32_t nWidth, int32_t nHeight, const char* szWord) {
    SimParams& sim = tSimParams;
    if (nWidth == sim.nInputWidth && nHeight == sim.nInputHeight) return;
    MdPrint("%s input video %s resolution %dx%d, overwrite cfg file\n", szWord, sim.InputFilePath,
            nWidth, nHeight);
    sim.nInputWidth = nWidth;
    sim.nInputHeight = nHeight;
}

void ReadNameMarks() {
    SimParams& sim = tSimParams;
    sim.nInputFileType = InputTypeFromName(sim.InputFilePath);
    int32_t nWidth = 0;
    int32_t nHeight = 0;
    ForEachNameSize(sim.InputFilePath, [&](int32_t nFoundWidth, int32_t nFoundHeight) {
        MdPrint("[INFO] new input size detected: %dx%d\n", nFoundWidth, nFoundHeight);
        nWidth = nFoundWidth;
        nHeight = nFoundHeight;
    });
    if (nWidth > 0) OverwriteInputSize(nWidth, nHeight, "[Warning]");
}

// A line of the prober's result; an empty or missing one reads as 0.
int32_t ReadNumberLine(std::FILE* pFile) {
    char szLine[256];
    if (std::fgets(szLine, sizeof szLine, pFile) == nullptr) return 0;
    return std::atoi(szLine);
}

void ProbeInputSize() {
    SimParams& sim = tSimParams;
    RunSilently(
        "%sffprobe -v error -select_streams v:0 -show_entries stream=width,height "
        "-of default=nw=1:nk=1 %s > %sinput_resolution.txt",
        InFolder(pToolDir).c_str(), CommandWord(sim.InputFilePath).c_str(),
        InFolder(sim.OutputFilePath).c_str());
    char szResult[kDerivedPathSize];
    ComposePath(szResult, kExitInput, "%s%cinput_resolution.txt", sim.OutputFilePath, cPathSep);
    std::FILE* pFile = std::fopen(szResult, "r");
    if (pFile == nullptr) EndRun(stdout, kExitInput, "ERROR: can't open %s\n", szResult);
    const int32_t nWidth = ReadNumberLine(pFile);
    const int32_t nHeight = ReadNumberLine(pFile);
    std::fclose(pFile);
    if (nWidth == 0 || nHeight == 0) {
        EndRun(stdout, kExitInput, "ERROR: get W/H from %s fail: %d, %d\n", szResult, nWidth,
               nHeight);
    }
    OverwriteInputSize(nWidth, nHeight, "Warning:");
}

// Makes pPreInputPath from an input that is not raw 4:2:0.
void ConvertInput(const InputTypeRow& tType) {
    SimParams& sim = tSimParams;
    if (pToolDir == nullptr) {
        EndRun(stdout, kExitInput,
               "[ERROR] ffmpeg/ffprobe is not exist for converting input yuv420p\n");
    }
    if (tType.bAskSize) ProbeInputSize();
    if (sim.nInputWidth == 0 || sim.nInputHeight == 0) {
        EndRun(stdout, kExitInput, "[ERROR] auto detect W,H fail\n");
    }
    ComposePath(szPreInput, kExitInput, "%s%cPreInput_%dx%d_P420.yuv", sim.OutputFilePath, cPathSep,
                sim.nInputWidth, sim.nInputHeight);
    sim.pPreInputPath = szPreInput;
    tType.pConvert(szPreInput);
    if (!PathExists(szPreInput)) {
        EndRun(stdout, kExitInput, "ERROR: generate YUV420p file %s fail\n", szPreInput);
    }
}

void FixWorkingSize() {
    SimParams& sim = tSimParams;
    MdParams& md = sim.tMd;
    nMdWidth = md.nMD_ScaledW;
    nMdHeight = md.nMD_ScaledH;
    if (md.nMD_Scale_KeepAspectRatio != 0) {
        if (sim.nInputWidth == 0) EndRun(stdout, kExitInput, "[ERROR] auto detect W,H fail\n");
        // Sizes from names and from the prober are not limited.
        const int64_t nHeight = (int64_t{sim.nInputHeight} * nMdWidth) / sim.nInputWidth;
        if (nHeight > INT32_MAX) {
            EndRun(stdout, kExitInput, "[ERROR] input size %dx%d gives no usable working height\n",
                   sim.nInputWidth, sim.nInputHeight);
        }
        nMdHeight = static_cast<int32_t>(nHeight) & ~1;
    }
    if (nMdHeight != md.nMD_ScaledH) {
        md.nMD_ScaledH = nMdHeight;
        MdPrint("INFO: set output H to %d to keep Scale AspectRatio\n", nMdHeight);
    }
}

// At an odd size the outside converter rounds chroma planes up, and we read them rounded down.
void RefuseOddDelivery() {
    if ((nMdWidth & 1) != 0 || (nMdHeight & 1) != 0) {
        EndRun(stdout, kExitInput,
               "[ERROR] working size %dx%d is odd: ffmpeg can deliver even sizes only\n", nMdWidth,
               nMdHeight);
    }
}

void ScaleInput() {
    SimParams& sim = tSimParams;
    RefuseOddDelivery();
    MdPrint("[WARNING]: **************************************************\n");
    MdPrint("           use ffmpeg to do scale, not match HW Scale Module\n");
    MdPrint("           to use HW bit-match Scale, use Tessel simulator before MD simulator\n");
    MdPrint("           **************************************************\n");
    PrintAndRun(
        "%sffmpeg %s -f rawvideo -pix_fmt yuv420p -s:v %dx%d -i %s -vf scale=\"%d:%d\" "
        "-c:v rawvideo -pix_fmt yuv420p %s",
        InFolder(pToolDir).c_str(), szToolFlags, sim.nInputWidth, sim.nInputHeight,
        CommandWord(sim.pPreInputPath).c_str(), nMdWidth, nMdHeight,
        CommandWord(szScaledInput).c_str());
}

// Makes pScaledInputPath, at working size, and an mp4 of it.
void MakeScaledInput() {
    SimParams& sim = tSimParams;
    const bool bSameSize = nMdWidth == sim.nInputWidth && nMdHeight == sim.nInputHeight;
    if (bSameSize) {
        if (InputTypeOf(sim.nInputFileType).bByTool) RefuseOddDelivery();
        sim.pScaledInputPath = sim.pPreInputPath;
        if ((sim.tMd.nDbgEn & kDbgKeepScaled) == 0) return;
        if (pToolDir == nullptr) {
            MdPrint("[Warning] nDbgEn BIT13 is ignored because ffmpeg/ffprobe is not exist\n");
            return;
        }
    }
    if (pToolDir == nullptr) {
        EndRun(stdout, kExitInput, "[ERROR] ffmpeg/ffprobe is not exist for scaling input\n");
    }
    ComposePath(szScaledInput, kExitInput, "%s%cScaledInput_%dx%d_P420.yuv", sim.OutputFilePath,
                cPathSep, nMdWidth, nMdHeight);
    if (bSameSize) {
        copyfile(szScaledInput, sim.pPreInputPath);
    } else {
        ScaleInput();
    }
    sim.pScaledInputPath = szScaledInput;
    PrintAndRun(
        "%sffmpeg %s -f rawvideo -pix_fmt yuv420p -s:v %dx%d -i %s -c:v libx264 "
        "%sScaledInput_%dx%d_P420.mp4",
        InFolder(pToolDir).c_str(), szToolFlags, nMdWidth, nMdHeight,
        CommandWord(szScaledInput).c_str(), InFolder(sim.OutputFilePath).c_str(), nMdWidth,
        nMdHeight);
    if (!PathExists(szScaledInput)) {
        EndRun(stdout, kExitInput, "ERROR: generate Scaled YUV420p file %s fail\n", szScaledInput);
    }
}

}  // namespace

void MdPrepareInput(const char* szArgv0) {
    FindTools(szArgv0);
    if (tSimParams.nInputFileType == kAnyVideo) ReadNameMarks();
    const InputTypeRow& tType = InputTypeOf(tSimParams.nInputFileType);
    if (tType.pConvert == nullptr) {
        tSimParams.pPreInputPath = tSimParams.InputFilePath;
    } else {
        ConvertInput(tType);
    }
    FixWorkingSize();
    MakeScaledInput();
}
