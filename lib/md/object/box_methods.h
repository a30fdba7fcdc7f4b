// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The table of box methods, values of nMD_PostProcMethod: the one place where a method is
// registered.
#pragma once

#include "md/md_result.h"
#include "md/sim_params.h"

struct BoxMethod {
    PostProcMethod nMethod;  // its place in the table
    void (*pRun)(const MdPpConfig* pConfig, MdResult* pResult);
    void (*pReset)();    // forgets all earlier frames; null for a method that keeps nothing
    int32_t nMaxBlocks;  // largest grid, blocks; INT32_MAX for any
    bool bReadsRecords;  // reads feature records, which the scan keeps only when it must
};

// nMethod: 0 to kPostProcMethods - 1.
const BoxMethod& BoxMethodOf(int32_t nMethod);

// All methods and the temporal gate forget earlier frames.
void BoxMethodsReset();
