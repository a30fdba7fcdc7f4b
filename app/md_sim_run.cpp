// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "app/md_sim_run.h"

#include "app/frame_reader.h"
#include "app/frame_scan.h"
#include "app/md_init.h"
#include "app/ref_schedule.h"
#include "app/reset_run.h"
#include "md/cfg_top/chip_limits.h"
#include "md/cfg_top/configure.h"
#include "md/compose_path.h"
#include "md/input/prepare_input.h"
#include "md/object/post_proc.h"
#include "md/output/dumps.h"
#include "md/output/videos.h"
#include "md/platform/platform.h"
#include "md/print.h"
#include "md/run_state.h"

namespace {

void MakeFolderIfMissing(const char* szPath) {
    if (!PathExists(szPath)) MakeFolder(szPath);
}

// Configuration up to complete paths and existing folders.
void Configure(int32_t argc, char** argv) {
    CfgArguments tArguments{argc, argv};
    CfgResult tResult{};
    cfgConfigure(&tArguments, &tResult);
    MdCheckChipLimits();
    SimParams& sim = tSimParams;
    cfgCompletePath(tResult.szCfgDir, sim.InputFilePath);
    cfgCompletePath(tResult.szCfgDir, sim.OutputFilePath);
    MakeFolderIfMissing(sim.OutputFilePath);
    ComposePath(sim.szFeaturePath, kExitRefused, "%s/HOG_feature", sim.OutputFilePath);
    MakeFolderIfMissing(sim.szFeaturePath);
}

FrameReader tReader;
int32_t nNextFrame;  // of this run, 0 on the first

}  // namespace

void SetPathSep(const char* szArgv0) {
    for (const char* p = szArgv0; p != nullptr && *p != '\0'; ++p) {
        if (*p == '\\') {
            cPathSep = '\\';
            return;
        }
    }
}

void MdSimStart(int32_t argc, char** argv) {
    ResetRunState();
    Configure(argc, argv);
    MdPrepareInput(argc > 0 ? argv[0] : "");
    MdInit();
    OutputFilesOpen(tSimParams.OutputFilePath);
    tReader = FrameReaderOpen(tSimParams.pScaledInputPath, nMdWidth, nMdHeight,
                              tSimParams.nStartFrameIdx, !VideosOn());
    nNextFrame = 0;
}

bool MdSimNext() {
    const SimParams& sim = tSimParams;
    const int32_t n = nNextFrame;
    if (sim.nFramesToBeProcessed != -1 && n >= sim.nFramesToBeProcessed) return false;
    const int32_t nRead = FrameReaderNext(&tReader, tFrameBuffers.pCurYuv);
    if (nRead < tReader.nFrameBytes) {
        MdPrint("read frame %d error: %d, %d\n", n + sim.nStartFrameIdx, nRead,
                tReader.nFrameBytes);
        if (FrameReaderFailed(tReader)) {
            std::fprintf(stderr, "[Warning] reading %s failed\n", sim.pScaledInputPath);
        }
        return false;
    }
    MdPrint("*****frame %d\n", n + sim.nStartFrameIdx);
    tSimParams.tMd.CurFrmId = n;
    MdProcessFrame();
    ++nNextFrame;
    return true;
}

void MdSimEnd() {
    FrameReaderClose(&tReader);
    OutputFilesClose();
    OutputConvertMp4();
    MdDeinit();
    MdPrint("finish.\n");
}

void MdSimRun(int32_t argc, char** argv) {
    MdSimStart(argc, argv);
    while (MdSimNext()) {
    }
    MdSimEnd();
}

int32_t MdProcessFrame() {
    MdRefSchedule();
    OutputCopyCanvases();
    MdDetectFrame();
    OutputBoxAndWrite();
    return 1;
}

void MdDetectFrame() {
    MdClearObjects(&tMdResult);
    FrameScanRun();
    MdPackAvailBits();
    MdPostProc(&tMdPpConfig, &tMdResult);
    DumpsWriteFrame();
    OutputDrawBlockDots();
}
