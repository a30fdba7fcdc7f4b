#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Builds the release program in two folders of different names and lengths; fails unless both give
# the same bytes.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for folder in a another/folder; do
    mkdir -p "$work/$folder"
    git ls-files -z | tar -c --null -T - | tar -x -C "$work/$folder"
    (cd "$work/$folder" && cmake --preset release -DMD_TESTS=OFF >/dev/null &&
        cmake --build --preset release --target MD >/dev/null)
done
cmp "$work/a/build/release/bin/MD" "$work/another/folder/build/release/bin/MD"
sha256sum <"$work/a/build/release/bin/MD"
