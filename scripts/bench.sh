#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Builds the benchmarks, makes the clips, and prints nanoseconds a block of each kernel and one table
# of whole-program ratios. Usage: scripts/bench.sh [VIDEO [ROUNDS]]; without a video the clips come
# from the generator. The machine should do nothing else during that time.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh libbenchmark-dev python3
for preset in bench o2; do
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" >/dev/null
done

video=${1:-}
work=build/bench/clips
mkdir -p "$work"
for spec in 320x180:1500 640x360:300 1920x1080:100; do
    size=${spec%:*} frames=${spec#*:}
    raw=$work/clip_${size}_P420.yuv
    if [ -n "$video" ]; then
        ffmpeg -y -v error -stream_loop -1 -i "$video" -vf "scale=${size/x/:}" -frames:v "$frames" \
            -pix_fmt yuv420p -f rawvideo "$raw"
    else
        build/bench/make_clip "${size%x*}" "${size#*x}" "$frames" "$raw"
    fi
    ffmpeg -y -v error -f rawvideo -pix_fmt yuv420p -s:v "$size" -i "$raw" -c:v libx264 \
        "$work/clip_$size.mp4"
done

grep -m1 'model name' /proc/cpuinfo || true
date -u +%Y-%m-%d
build/bench/bench/md_bench --benchmark_min_time=0.3 2>/dev/null |
    awk '/items_per_second/ { split($NF, n, "="); v = n[2]; u = v ~ /M/ ? 1e3 : v ~ /G/ ? 1 : 1e6;
         sub(/[kMG]?\/s/, "", v); printf "%-48s %8.1f ns\n", $1, u / v }'
python3 bench/whole_program.py build/bench/bin/MD build/o2/bin/MD "$work" "${2:-5}"
