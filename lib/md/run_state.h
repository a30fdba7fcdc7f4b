// The state of a run, all of it but what single stages keep for themselves (the luma threshold
// carry of the scan, the memories of box methods 1 and 2 and of the gate; each stands in the
// header of its stage). One thread, one run a process: everything starts as zero.
#pragma once

#include <cstdint>

#include "md/md_result.h"
#include "md/out_file.h"
#include "md/sim_params.h"

// Frame planes: Y, U, V, 4:2:0, tightly packed, nFrameBytes long. Owned by MdInit and MdDeinit.
struct FrameBuffers {
    uint8_t* pCurYuv;                    // the frame as read
    uint8_t* pCompYuv;                   // canvas of comp, three frames wide; null when off
    uint8_t* pHogDistYuv;                // canvas of hogDist; null when off
    uint8_t* ppPrevYBuffer[kPoolSlots];  // frame pool; whole frames, in spite of its name
};

// One raw output video.
struct OutputVideo {
    char szPath[kPathSize];
    OutFile tFile;
};

struct OutputFiles {
    OutputVideo motionArea;
    OutputVideo comp;
    OutputVideo hogDist;
};

extern SimParams tSimParams;
extern FrameBuffers tFrameBuffers;
extern MdResult tMdResult;
extern MdPpConfig tMdPpConfig;
extern OutputFiles tOutputFiles;

extern int32_t nMdWidth;  // working frame, pixels
extern int32_t nMdHeight;
extern char cPathSep;         // separator in the paths and commands built for the tools
extern const char* pToolDir;  // folder of ffmpeg and ffprobe; null if they are absent
