#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Set-up, release build, one whole run on a clip made on the spot, and a report of it; at the
# end it lists what it left. Everything it makes is under build/ and demo/.
#
#     demo.sh [--quick]     --quick: without the report
set -euo pipefail
cd "$(dirname "$0")/.."

report=yes
case ${1:-} in
--quick) report=no ;;
'') ;;
*) echo "usage: $0 [--quick]" >&2 && exit 2 ;;
esac

mkdir -p demo
log=demo/demo.log
step() {
    local what=$1
    shift
    echo "demo: $what" >&2
    if ! "$@" >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        echo "demo: $what failed; the whole text is in $log" >&2
        exit 1
    fi
}

bin=build/release/bin
# On a new machine the set-up downloads for some minutes.
if [ $report = yes ]; then setup=() target=product; else setup=(--md) target=MD; fi
step "set-up" scripts/setup.sh "${setup[@]}"
step "configuring the build" cmake --preset release
step "the build" cmake --build --preset release --target $target make_clip
rm -rf demo/out
step "making the clip" $bin/make_clip 640 360 120 demo/walker.yuv
step "encoding the clip" ffmpeg -y -v error -f rawvideo -pix_fmt yuv420p -s 640x360 -r 25 \
    -i demo/walker.yuv -c:v libx264 demo/walker.mp4
rm demo/walker.yuv
# 0x37a: the three videos, both groups of dumps, the count log and the object report.
step "the run" $bin/MD -d cfg/default.cfg -p MD_DbgEn=0x37a

boxes=$(grep -c '^MotionDetected=1' "$log")
frames=$(grep -c '^\*\*\*\*\*frame' "$log")
mv "$log" demo/run.log
# Without node there is no report, without its libraries no mdlab at all.
if [ $report = yes ] && $bin/mdlab report --help >/dev/null 2>&1; then
    step "the report" $bin/mdlab report --out demo/report.html -- -d cfg/default.cfg
else
    report=no
fi
echo "MD found motion in $boxes of $frames frames. In demo/ are:"
cat <<'LIST'
walker.mp4                            the clip that went in
run.log                               what the run printed
out/comp_960x180_P420.mp4             the frame three times, right with the active blocks and the box
out/motionArea_320x180_P420.mp4       the frame with the box and its centre
out/hogDist_320x180_P420.mp4          the frame with the active blocks and the box
out/*_P420.yuv                        the same videos and the scaled input, raw 4:2:0
out/HOG_feature/NNNN_ObjOut.txt       the box of frame NNNN as JSON
out/HOG_feature/NNNN_HOGCur.txt       features of frame NNNN; NNNN_HOGRef.txt those of its reference
out/HOG_feature/NNNN_Full.json, .csv  features, distances and active blocks of frame NNNN
out/HOG_feature/NNNN_HOGDist.txt      distances of frame NNNN, and as NNNN_HOGDist.json
out/HOG_feature/hogmd_golden.txt      features of all frames
out/HOG_feature/hogmd_dist.txt        distances and active blocks of all frames
out/HOG_feature/HOGCount.txt          one line per run
LIST
rm -f "$log"
if [ $report = yes ]; then
    echo "report.html                           why each block is active or not: open it in a browser"
fi
