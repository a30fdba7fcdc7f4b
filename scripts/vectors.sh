#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# vectors.sh [--refresh]: checks the frozen vectors of tests/vectors on every path of this processor.
# With --refresh their sums are written anew from the plain path and the changed files are listed:
# each is a change of what users get, so the commit that carries it says why.
set -euo pipefail
cd "$(dirname "$0")/.."
[ $# -eq 0 ] || [ "$*" = --refresh ] || { echo "usage: vectors.sh [--refresh]"; exit 2; }
cmake --preset release >/dev/null
cmake --build --preset release --target MD md_tests
[ $# -eq 0 ] || export MD_REFRESH=1
build/release/tests/md_tests --gtest_brief=1 --gtest_filter='Vectors/*'
git --no-pager diff --stat tests/vectors
