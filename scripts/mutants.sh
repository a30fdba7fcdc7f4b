#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# mutants.sh [N] [SEED]: plants one fault at a time in lib/ and app/, an operator or a constant that
# differs, and prints those that no test notices. N faults (50 unless given) are drawn by SEED (1).
# tests/mutants.txt lists the survivors that were looked at and accepted, each with the reason. Ends
# with 1 if there is another one, with 2 if the tests fail without a fault. Works on copies of the
# tree under build/mutants, one for each of MD_MUTANT_JOBS workers (as many as processors); results
# are added to build/mutants/results.txt.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target plant_faults >/dev/null
exec build/release/bin/plant_faults "${1:-50}" "${2:-1}" "${MD_MUTANT_JOBS:-$(nproc)}"
