// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Which slots of the two rings a frame uses. Both rings are nMD_RefFrmIdx + 1 slots long, and all
// indexes follow from CurFrmId and nMD_RefFrmIdx only.
#pragma once

#include "md/sim_params.h"

// First step of a frame: sets RefBufIdx and pCurFeat and copies the current frame into the slot
// RefBufIdx of the frame pool.
void MdRefSchedule();

// RefBufIdx in reference mode 1.
void MdUpdateRefBufIdx(MdParams* pParams);
