# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# shellcheck shell=bash
# Runs of MD through every stage and box method, to compare one platform's program with another's.
# Sourced by windows.sh and cross.sh.

# name, frame size, exit status, settings; later settings win
platform_cases=(
    "method0 320 180 0 MD_DbgEn=0x37b MD_Padding_Method=0 MD_HogRefMode=0"
    "method1 320 180 0 MD_PostProcMethod=1 MD_HogNormalizeMode=1 MD_HogMagnitudeWeightEn=1"
    "method2 320 180 0 MD_PostProcMethod=2 MD_Bbox_PP_Enable=1 MD_Bbox_PP_Window=3 MD_RefFrmIdx=14"
    "method3 320 180 0 MD_PostProcMethod=3 MD_HogDistAvailCheck=1 MD_HogDist_AvgYDiffCalc_Method=1"
    "odd 163 91 0 MD_PostProcMethod=2 MD_Padding_Method=1 MD_HogBlockStride=24 \
        MD_HogDist_AvgYDiffCalc_Method=2"
    "wide 1912 40 0 MD_NeighborCorrelation=0 MD_HogCellSize=8 MD_HogDist_WeightMethod=1"
    "start 320 180 0 StartFrameIdx=7 FramesToBeProcessed=3 MD_DbgEn=0x2338"
    "far 640 480 0 StartFrameIdx=10000"
    "no_tool 320 180 1 InputFileType=1"
    "too_far_back 320 180 255 MD_RefFrmIdx=15"
)

# Makes the clip that all cases read, with a compiler of this machine.
platform_clip() {
    g++ -O2 -std=c++20 -I. tools/{make_clip,scenes,squares,street,walker}.cpp -o "$1.tool"
    "$1.tool" 320 180 24 "$1"
}

# platform_run FOLDER CLIP COMMAND...: every case in a folder of its own; the outputs stay there.
platform_run() {
    local folder=$1 clip=$2 case name w h status settings rc s
    shift 2
    for case in "${platform_cases[@]}"; do
        read -r name w h status settings <<<"$case"
        mkdir -p "$folder/$name"
        # A hole of more than 4 GiB comes before the far frames.
        [ "$name" != far ] || truncate -s $((w * h * 3 / 2 * 10000)) "$folder/$name/in.yuv"
        cat "$clip" >>"$folder/$name/in.yuv"
        {
            cat cfg/raw.cfg
            printf '%s\n' "InputWidth = $w" "InputHeight = $h" "MD_ScaledW = $w" "MD_ScaledH = $h" \
                "MD_HogNormalizeMode = 0" "EnableBatch = 0" "MD_DbgEn = 0x237a"
            for s in $settings; do echo "${s%%=*} = ${s#*=}"; done
        } >"$folder/$name/run.cfg"
        rc=0
        (cd "$folder/$name" && "$@" -d run.cfg >log 2>err) || rc=$?
        rm "$folder/$name/in.yuv"
        [ "$rc" -eq "$status" ] || { echo "$folder/$name ended with $rc, not $status"; return 1; }
        # Runs without a box would be equal even if the object stages were wrong.
        [ "$status" -ne 0 ] || grep -q 'MotionDetected=1' "$folder/$name/log" ||
            { echo "$folder/$name found nothing"; return 1; }
    done
}

# platform_compare ONE OTHER: all files to the byte. The logs, and the one output that holds the
# path of the input, may differ in their path separators; logs in the line ends of their platform.
platform_compare() {
    local f
    for f in "$1" "$2"; do
        find "$f" \( -name log -o -name err -o -name HOGCount.txt \) -exec sed -i 's/\r$//; s/\\/\//g' {} +
    done
    diff -rq "$1" "$2"
    echo "$(find "$1" -type f | wc -l) files of ${#platform_cases[@]} runs are the same"
}
