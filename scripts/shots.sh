#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Pictures of the report page in its states, to look at: scripts/shots.sh CLIP [OUT]
# They are in build/shots unless OUT says otherwise. Needs a release build with the report.
set -euo pipefail
cd "$(dirname "$0")/.."
clip=$(realpath "${1:?usage: scripts/shots.sh CLIP [OUT]}")
out=${2:-build/shots}
reports=$(mktemp -d)
trap 'rm -rf "$reports"' EXIT

report() {  # NAME [mdlab option...] -- [MD option...]
    local name=$1
    shift
    build/release/bin/mdlab report --quiet --out "$reports/$name.html" "$@" -p InputFilePath="$clip"
}
settings=(-d cfg/default.cfg -p MD_ScaledW=640 -p MD_HogDist_Th=16 -p MD_BlkCnt_Th=120
          -p MD_Bbox_PP_Enable=1)
report main -- "${settings[@]}"
report compare --against MD_HogDist_Th=10 --quiet -- "${settings[@]}"
report still -- "${settings[@]}" -p FramesToBeProcessed=60 -p MD_BlkCnt_Th=30000
report one -- "${settings[@]}" -p FramesToBeProcessed=1
report stride -- "${settings[@]}" -p FramesToBeProcessed=120 -p MD_HogBlockStride=64 -p MD_BlkCnt_Th=3
report large -- "${settings[@]}" -p MD_ScaledW=1920 -p FramesToBeProcessed=60
report short --budget 3 -- "${settings[@]}"
pages=()
for name in main compare still one stride large short; do pages+=("$name=$reports/$name.html"); done
node tests/lab/page/shots.js "$out" "${pages[@]}"
