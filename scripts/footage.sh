#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# usage: footage.sh [FOLDER]. Fetches the clip of pedestrians from Debian's package opencv-doc and
# makes the scenes at 640x360, all into FOLDER (demo/footage): the footage of the tables in README.
# labels/vtest.csv has the clip's labels; the scenes bring theirs.
set -euo pipefail
cd "$(dirname "$0")/.."
folder=$(realpath -m "${1:-demo/footage}")
make_clip=$PWD/build/release/bin/make_clip
mkdir -p "$folder"

if [ ! -s "$folder/vtest.avi" ]; then
    package=$(mktemp -d)
    trap 'rm -rf "$package"' EXIT
    (cd "$package" && apt-get download -qq opencv-doc)
    dpkg-deb --fsys-tarfile "$package"/opencv-doc_*.deb |
        tar -xO ./usr/share/doc/opencv-doc/examples/data/vtest.avi >"$package/vtest.avi"
    mv "$package/vtest.avi" "$folder/vtest.avi"
fi
cp labels/vtest.csv "$folder/vtest.csv"
for scene in $($make_clip --scenes | cut -d' ' -f1); do
    $make_clip --scene "$scene" 640 360 120 "$folder/${scene}_640x360_P420.yuv" "$folder/$scene.csv"
done
echo "footage: $(find "$folder" -name '*.avi' -o -name '*.yuv' | wc -l) clips in $folder"
