#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Line and branch coverage of lib/ and app/ by the tests: a table here, pages under build/coverage/.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh gcovr
cmake --preset debug -B build/coverage -DCMAKE_CXX_FLAGS="--coverage -O0 -fno-inline" >/dev/null
cmake --build build/coverage
find build/coverage -name '*.gcda' -delete
ctest --test-dir build/coverage -j "$(nproc)" --output-on-failure
mkdir -p build/coverage/html
# Branches that only a thrown exception takes are the compiler's, not ours.
report=(gcovr --root . --filter lib/ --filter app/ --exclude-throw-branches build/coverage)
"${report[@]}" --html-details build/coverage/html/index.html
echo "Lines"
"${report[@]}"
echo "Branches; page by page in build/coverage/html/index.html"
"${report[@]}" --branches
