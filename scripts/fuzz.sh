#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Runs every fuzz target for the given number of seconds (default 60). It starts from the inputs kept
# beside the targets and those that earlier runs added under build/fuzz. Ends with 1 if one found a
# fault.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
scripts/setup.sh clang libclang-rt-dev
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
# Whole runs write many small files; in memory that is ten times as fast.
[ -d /dev/shm ] && export TMPDIR=/dev/shm
export ASAN_OPTIONS=allocator_may_return_null=1:detect_leaks=0
status=0
for program in build/fuzz/tests/fuzz/*_fuzz; do
    target=$(basename "$program" _fuzz)
    work=build/fuzz/corpus/$target
    finding=build/fuzz/finding-$target
    mkdir -p "$work"
    rm -f "$finding"
    # Quiet while it runs: what a target prints is closed, and a finding is shown by a second run.
    "$program" "$work" "tests/fuzz/corpus/$target" -max_total_time="$seconds" -max_len=8192 \
        -detect_leaks=0 -close_fd_mask=3 -timeout=20 -print_final_stats=1 \
        -artifact_prefix=build/fuzz/ -exact_artifact_path="$finding" >"build/fuzz/$target.log" 2>&1 || status=1
    echo "$target: $(grep -oE 'cov: [0-9]+ ft: [0-9]+' "build/fuzz/$target.log" | tail -1)," \
        "$(sed -n 's/.*number_of_executed_units: *//p' "build/fuzz/$target.log") executions"
    if [ -e "$finding" ]; then
        echo "$target: FAULT, see $finding"
        "$program" "$finding" -detect_leaks=0 2>&1 | tail -40 || true
    fi
done
exit $status
