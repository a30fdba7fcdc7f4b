// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The state of a run. One thread, one run at a time; everything starts as zero, and ResetRunState
// (app/reset_run.h) puts everything back. Beside the records below, stages keep for themselves:
//
//   tGradientTexts, aWorkMap   cfg_top   texts of the tap lists, working copy of the input map;
//                                        cfgConfigure fills both anew
//   szPreInput, szScaledInput, sToolDir  input: the texts that three pointers below point to
//   nYDiffThreCarry            decision/luma_threshold.h   threshold that the last frame left
//   pRowWalk                   app/frame_scan.cpp   memory of the row walk; null otherwise
//   bKeepRecords               app/frame_scan.cpp   set by a caller of runs, and stays set
//   aGridTune[].nScore         object/grid_cluster.h       memory of box method 1
//   tProjectionState           object/projection_box.h     memory of box method 2
//   tGateState                 object/bbox_gate.h          memory of the temporal gate
//   aOpenDumps, tFrameFile     output/dumps.cpp     open text files
//   bTextPlain                 output/text_out.h    from the environment, as DumpsOpen finds it
//   tReader, nNextFrame        app/md_sim_run.cpp   the working file; MdSimStart sets both
//
// For the process: the kernels chosen (decision/row_kernels.cpp) and the switches of the
// environment (run_switches.h), both read once.
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
