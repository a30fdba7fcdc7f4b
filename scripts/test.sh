#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Builds the release (GCC) and the sanitizer build (Clang), runs every test in both, and fuzzes for a
# few seconds.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh clang libclang-rt-dev
for preset in release asan; do
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset"
    ctest --preset "$preset" -j "$(nproc)"
done
tests/lab/sweep/faults.sh build/release/bin cfg/default.cfg all
scripts/fuzz.sh 4
