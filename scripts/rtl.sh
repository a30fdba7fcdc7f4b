#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# A hardware unit held to MD's dumps: builds the distance unit of examples/rtl with its bench, runs
# it on the features of a clip, and has mdlab find its distances equal. Then the same with a planted
# fault, which mdlab has to name. Installs the simulator where it is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh verilator make
bin=$PWD/build/release/bin
work=$PWD/build/rtl
rm -rf "$work"
mkdir -p "$work"
quiet() {
    "$@" >"$work/log" 2>&1 && return
    tail -n 20 "$work/log" >&2
    echo "rtl: failed: $*" >&2
    exit 1
}

quiet cmake --preset release
quiet cmake --build --preset release --target MD mdlab make_clip
quiet "$bin/make_clip" 320 180 60 "$work/clip.yuv"
# 0x60: features, distances and active blocks.
quiet "$bin/MD" -d cfg/default.cfg -p InputFileType=0 -p InputFilePath="$work/clip.yuv" \
    -p InputWidth=320 -p InputHeight=180 -p OutputFilePath="$work/golden" -p MD_DbgEn=0x60 \
    -p EnableBatch=1
golden=$work/golden/HOG_feature

# simulate NAME DEFINE...: the unit's distances end up in $work/NAME.
simulate() {
    local name=$1
    shift
    mkdir "$work/$name"
    quiet verilator --binary --timing --top-module block_distance_bench "$@" \
        --Mdir "$work/$name.obj" -o bench examples/rtl/block_distance.sv \
        examples/rtl/block_distance_bench.sv
    quiet "$work/$name.obj/bench" +golden="$golden/hogmd_golden.txt" \
        +dist="$work/$name/hogmd_dist.txt" +ref_frames=1
}
# compare NAME STATUS: mdlab's words, and that it ends with the status.
compare() {
    local status=0
    "$bin/mdlab" compare --stages distance --limit 0 "$golden/hogmd_dist.txt" \
        "$work/$1/hogmd_dist.txt" | sed "s,$work/,,g" | tee "$work/$1.txt" || status=$?
    [ "$status" -eq "$2" ] || { echo "rtl: $1 ended with $status, not $2" >&2; exit 1; }
}
quiet verilator --lint-only -Wall examples/rtl/block_distance.sv
simulate unit
compare unit 0
simulate faulty -DFAULT_NO_SATURATION
compare faulty 1
grep -q '^stage *distance: ' "$work/faulty.txt"
grep -q '^looks like: saturates' "$work/faulty.txt"
