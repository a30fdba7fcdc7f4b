// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// Settings that this chip does not have, and the completion of relative paths.
#pragma once

#include "md/sim_params.h"

// Refuses the settings that the input map allows and this chip lacks (status -1, standard error).
// Runs once, after cfgConfigure and before anything reads a setting. It corrects one setting only:
// the deprecated MD_HogWithoutBlkDiffCheck.
void MdCheckChipLimits();

// Completes a relative path in place with the folder `szBase`; a path that would not fit ends the
// run with status -1. An empty path, one that begins with '\\', '/' or '~' and one with ":\\" in it
// stay as they are.
void cfgCompletePath(const char* szBase, char (&szPath)[kPathSize]);
