#include "app/md_sim_run.h"

#include <cstdio>

#include "app/md_init.h"
#include "app/ref_schedule.h"
#include "md/cfg_top/chip_limits.h"
#include "md/cfg_top/configure.h"
#include "md/compose_path.h"
#include "md/decision/frame_block_scan.h"
#include "md/input/prepare_input.h"
#include "md/object/post_proc.h"
#include "md/output/dumps.h"
#include "md/output/object_report.h"
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

std::FILE* OpenWorkingFile(int32_t nFrameBytes) {
    const SimParams& sim = tSimParams;
    std::FILE* pFile = std::fopen(sim.pScaledInputPath, "rb");
    if (pFile == nullptr) {
        EndRun(stdout, kExitRefused, "open input yuv file '%s' error\n", sim.pScaledInputPath);
    }
    // A start beyond the end shows at the first read.
    (void)FileSeek64(pFile, int64_t{nFrameBytes} * sim.nStartFrameIdx);
    return pFile;
}

// Up to FramesToBeProcessed frames or a short read, whichever comes first.
void FrameLoop(std::FILE* pFile, int32_t nFrameBytes) {
    const SimParams& sim = tSimParams;
    const int32_t nFrames = sim.nFramesToBeProcessed;
    for (int32_t n = 0; nFrames == -1 || n < nFrames; ++n) {
        const size_t nRead =
            std::fread(tFrameBuffers.pCurYuv, 1, static_cast<size_t>(nFrameBytes), pFile);
        if (nRead < static_cast<size_t>(nFrameBytes)) {
            MdPrint("read frame %d error: %d, %d\n", n + sim.nStartFrameIdx,
                    static_cast<int32_t>(nRead), nFrameBytes);
            return;
        }
        MdPrint("*****frame %d\n", n + sim.nStartFrameIdx);
        tSimParams.tMd.CurFrmId = n;
        MdProcessFrame();
    }
}

}  // namespace

void SetPathSep(const char* szArgv0) {
    for (const char* p = szArgv0; p != nullptr && *p != '\0'; ++p) {
        if (*p == '\\') {
            cPathSep = '\\';
            return;
        }
    }
}

void MdSimRun(int32_t argc, char** argv) {
    Configure(argc, argv);
    MdPrepareInput(argc > 0 ? argv[0] : "");
    MdInit();
    OutputFilesOpen(tSimParams.OutputFilePath);
    const int32_t nFrameBytes =
        static_cast<int32_t>((int64_t{nMdWidth} * nMdHeight * 3) >> 1);  // MdInit saw that it fits
    std::FILE* pFile = OpenWorkingFile(nFrameBytes);
    FrameLoop(pFile, nFrameBytes);
    std::fclose(pFile);
    OutputFilesClose();
    OutputConvertMp4();
    MdDeinit();
    MdPrint("finish.\n");
}

int32_t MdProcessFrame() {
    MdRefSchedule();
    OutputCopyCanvases();
    MdDetectFrame();
    OutputBoxAndWrite();
    return 1;
}

void MdDetectFrame() {
    const MdParams& md = tSimParams.tMd;
    MdResult& res = tMdResult;
    MdClearObjects(&res);
    // The first frame is compared with itself, whatever the reference mode.
    const BlockFeature* pRefFeat = md.CurFrmId == 0 ? res.pCurFeat : res.pFeaturePool[md.RefBufIdx];
    FrameBlockScan_NormalHog(&md, tFrameBuffers.pCurYuv, nMdWidth, nMdHeight, &res.aGaussWin[0][0],
                             res.pCurFeat, pRefFeat, res.pAvailMap, res.pDistMap, res.ppHistory);
    MdPackAvailBits();
    MdPostProc(&tMdPpConfig, &res);
    if ((md.nDbgEn & kDbgFeatures) != 0) DumpFrameFeatures(md.RefBufIdx);
    if ((md.nDbgEn & kDbgDistances) != 0) DumpFrameDist();
    if ((md.nDbgEn & kDbgObjects) != 0) ObjectReportWrite();
    OutputDrawBlockDots();
}
