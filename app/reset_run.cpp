// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "app/reset_run.h"

#include "app/frame_scan.h"
#include "md/decision/luma_threshold.h"
#include "md/object/box_methods.h"
#include "md/output/dumps.h"
#include "md/run_state.h"

void ResetRunState() {
    tSimParams = SimParams{};
    tFrameBuffers = FrameBuffers{};
    tMdResult = MdResult{};
    tMdPpConfig = MdPpConfig{};
    tOutputFiles = OutputFiles{};
    nMdWidth = nMdHeight = 0;
    pToolDir = nullptr;
    nYDiffThreCarry = 0;
    FrameScanReset();
    BoxMethodsReset();
    DumpsReset();
}
