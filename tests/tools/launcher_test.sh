#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# MD as README calls it: by its bare name from the search path, also through a link, on a video that
# needs the outside tools. Usage: launcher_test.sh FOLDER_OF_THE_LAUNCHERS SETTINGS
set -euo pipefail
path=$1 settings=$(realpath "$2")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
PATH=$path:$PATH
ffmpeg -v error -f lavfi -i testsrc=s=128x64:d=0.2 clip.mp4
run() {
    if ! "$@" -d "$settings" -p InputFilePath="$folder/clip.mp4" -p OutputFilePath="$folder/out" >log 2>&1 ||
        [ ! -s out/comp_960x160_P420.mp4 ]; then
        cat log
        exit 1
    fi
    rm -r out
}
run MD
ln -s "$path" folder
run folder/MD
