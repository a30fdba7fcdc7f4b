#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Long runs in constant memory, a start beyond 4 GiB, and full runs under memcheck. Prints what it
# measured; ends with 1 if a long run needs more memory than a short one, or memcheck complains.
set -euo pipefail
shopt -s inherit_errexit  # what fails within $(...) ends the script too
cd "$(dirname "$0")/.."
scripts/setup.sh valgrind time
cmake --preset release >/dev/null
cmake --build --preset release >/dev/null
md=$PWD/build/release/bin/MD
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp cfg/raw.cfg "$work/a.cfg"
cd "$work"

# peak WIDTH HEIGHT FRAMES DBGEN: peak resident memory in KiB of a run on noise without end.
peak() {
    head -c $(($1 * $2 * 15)) /dev/urandom >clip
    rm -f in.yuv
    mkfifo in.yuv
    (while cat clip; do :; done >in.yuv) 2>/dev/null &
    local feeder=$!
    /usr/bin/time -o time -f %M "$md" -d a.cfg -p InputWidth="$1" -p InputHeight="$2" \
        -p MD_ScaledW="$1" -p MD_ScaledH="$2" -p FramesToBeProcessed="$3" -p MD_DbgEn="$4" >log
    wait $feeder || true
    [ "$(grep -c '^\*\*\*\*\*frame' log)" -eq "$3" ]
    cat time
}

# long WIDTH HEIGHT FEW MANY DBGEN
long() {
    local few many
    few=$(peak "$1" "$2" "$3" "$5")
    many=$(peak "$1" "$2" "$4" "$5")
    echo "${1}x$2: peak $few KiB after $3 frames, $many KiB after $4 (MD_DbgEn $5)"
    [ "$many" -le $((few + 256)) ]
}
long 48 32 1000 100000 8
long 1920 1080 20 2000 0

# The last of 1501 frames of which the others are a hole of 4.4 GiB.
rm -f in.yuv
head -c 3110400 /dev/urandom >last
truncate -s $((1500 * 3110400)) in.yuv
cat last >>in.yuv
"$md" -d a.cfg -p InputWidth=1920 -p InputHeight=1080 -p MD_ScaledW=1920 -p MD_ScaledH=1080 \
    -p FramesToBeProcessed=-1 -p StartFrameIdx=1500 -p MD_DbgEn=8 >log
cmp last out/motionArea_1920x1080_P420.yuv
grep '^read frame' log

# Everything on: videos, dumps, report, kept copy and mp4 files, each box method, both walks.
head -c $((64 * 48 * 12)) /dev/urandom >in.yuv
for method in 0 1 2 3; do
    for detail in 0 1; do
        valgrind -q --leak-check=full --show-leak-kinds=definite,indirect,possible \
            --errors-for-leak-kinds=definite,indirect,possible --error-exitcode=1 \
            "$md" -d a.cfg -p InputWidth=64 -p InputHeight=48 -p MD_ScaledW=64 -p MD_ScaledH=48 \
            -p FramesToBeProcessed=-1 -p MD_DbgEn=$((9082 + detail)) -p EnableBatch=0 \
            -p MD_PostProcMethod=$method -p MD_Bbox_PP_Enable=1 -p InputFileType=$((detail * 2)) \
            >log 2>err || { cat err; exit 1; }
    done
done
echo "memcheck: no error, no lost block"
