// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

#include "md/run_state.h"

SimParams tSimParams;
FrameBuffers tFrameBuffers;
MdResult tMdResult;
MdPpConfig tMdPpConfig;
OutputFiles tOutputFiles;

int32_t nMdWidth;
int32_t nMdHeight;
char cPathSep = '/';
const char* pToolDir;
