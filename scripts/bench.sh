#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Measures MD and mdlab beside the programs one would use in their place, all in one run, and
# writes docs/numbers.md. What is compared stands in bench/numbers/.
#
#     bench.sh [--quick] [VIDEO [ROUNDS]]
#
# Without a video (or with "") the clips come from the generator. The machine should do nothing else;
# the page says how much it did. About ten minutes with 7 rounds, and 8 GB of disk below build/.
# --quick: one round of less, to try it; the page is then build/bench/numbers.md.
set -euo pipefail
page=docs/numbers.md rounds=7 quick=
if [ "${1:-}" = --quick ]; then
    quick=quick rounds=1 page=build/bench/numbers.md
    shift
fi
video=${1:+$(realpath "$1")} rounds=${2:-$rounds}
command="scripts/bench.sh${quick:+ --$quick}${video:+ $(basename "$video")}"
cd "$(dirname "$0")/.."
scripts/setup.sh libbenchmark-dev libopencv-objdetect-dev libopencv-video-dev
cmake --preset bench >/dev/null
cmake --build --preset bench >/dev/null
cmake --preset o2 >/dev/null
cmake --build --preset o2 --target MD >/dev/null

work=build/bench/clips
mkdir -p "$work"
for spec in 320x180:1500 640x360:600 1920x1080:60; do
    size=${spec%:*} frames=${spec#*:}
    raw=$work/clip_${size}_P420.yuv
    if [ -n "$video" ]; then
        ffmpeg -y -v error -stream_loop -1 -i "$video" -vf "scale=${size/x/:}" -frames:v "$frames" \
            -pix_fmt yuv420p -f rawvideo "$raw" </dev/null
    else
        build/bench/bin/make_clip "${size%x*}" "${size#*x}" "$frames" "$raw"
    fi
    ffmpeg -y -v error -f rawvideo -pix_fmt yuv420p -s:v "$size" -i "$raw" -c:v libx264 \
        "$work/clip_$size.mp4" </dev/null
done
clip="a walker, by \`make_clip\`"
[ -z "$video" ] || clip="$(basename "$video"), scaled and repeated"
build/bench/bench/bench_numbers "$work" build/o2/bin/MD "$rounds" "$clip" "$command" "$page" $quick
echo "written: $page"
