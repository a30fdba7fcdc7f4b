// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The configuration loader: defaults, default file, -f files and -p overrides in command-line
// order, limit check, gradient lists. Refusals and missing memory go to standard error and end the
// run; progress goes to standard output. Runs once, before anything else reads a setting.
#pragma once

#include <cstdint>

#include "md/sim_params.h"

struct CfgArguments {
    int32_t argc;
    char** argv;
};

struct CfgResult {
    SimParams* pSimParams;
    char szCfgDir[kPathSize];  // folder of the default configuration file
};

void cfgConfigure(CfgArguments* pArguments, CfgResult* pResult);

// Fills the working copy of the input map and stores the defaults in SimParams.
void cfgInitParams();

// Row of a key in the input map; -1 for a name that is no key.
int32_t cfgParamNameToIndex(const char* szName);

// Assigns the triples of key, "=" and value in `szText`, which is cut up in place. Any fault ends
// the run with status 4; what was stored before it stays.
void cfgParseContent(char* szText, int32_t nLength);

// Holds every value to the range in its row; the first outside ends the run with status 400.
void cfgTestParams();

// Splits a comma list of at most `nCount` decimal integers; those not given become `nFill`. An
// empty field or one too many ends the run with status -1.
void cfgParseMultiParam(const char* szText, int32_t* pValues, int32_t nCount, int32_t nFill);

// Prints the usage text and ends the run with status -1. `szProgram` may be null.
[[noreturn]] void cfgUsage(const char* szProgram);
