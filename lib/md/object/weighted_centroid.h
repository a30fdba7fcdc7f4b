// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Box method 0: all available blocks over the distance threshold form one object. Its centre is the
// distance-weighted mean of their positions, its half size the shorter reach from that centre to
// the extreme blocks. No state between frames.
#pragma once

#include "md/md_result.h"

void PpWeightedCentroid(const MdPpConfig* pConfig, MdResult* pResult);
