#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Holds all folders to .clang-format, .clang-tidy, shellcheck and the licence lines (reuse).
# With --quick, clang-tidy leaves out the files of tests/ and lab/ that the last commit did not
# change: their libraries' headers make them ten times as slow as the program itself.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh clang-format clang-tidy clang libbenchmark-dev shellcheck reuse
reuse lint --quiet || { reuse lint; exit 1; }
git ls-files -z '*.sh' .ci/run | xargs -0 shellcheck -x -S warning
git ls-files -z '*.cpp' '*.h' '*.inc' | xargs -0 clang-format --dry-run -Werror

# Configured only: the checks read the commands, not what they build.
cmake --preset dev >/dev/null
cmake --preset fuzz >/dev/null
slow=('tests/*.cpp' 'lab/*.cpp')
checked() { # BUILD FILES...
    local build=$1
    shift
    if ! printf '%s\0' "$@" | xargs -0 -P "$(nproc)" -n 2 clang-tidy -p "$build" --quiet \
        --extra-arg=-Wno-sign-conversion --extra-arg=-Wno-unknown-warning-option >"$build/tidy.log" 2>&1; then
        grep -vE '^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -header-filter' "$build/tidy.log"
        exit 1
    fi
}
mapfile -t core < <(git ls-files 'app/*.cpp' 'lib/*.cpp' 'tools/*.cpp' 'bench/*.cpp')
if [ "${1:-}" = --quick ]; then
    mapfile -t rest < <(git diff --name-only --diff-filter=d HEAD~1 -- "${slow[@]}")
else
    mapfile -t rest < <(git ls-files "${slow[@]}")
fi
fuzz=() main=()
for f in "${core[@]}" "${rest[@]}"; do
    case $f in
        *_windows.cpp | *_windows_test.cpp) ;; # needs headers that only Windows has
        *_neon.cpp) ;;                         # and those of another processor
        bench/opencv_peers.cpp)                # built where scripts/bench.sh has been
            ! grep -q "$f" build/dev/compile_commands.json || main+=("$f") ;;
        tests/fuzz/*) fuzz+=("$f") ;;
        *) main+=("$f") ;;
    esac
done
checked build/dev "${main[@]}"
[ ${#fuzz[@]} -eq 0 ] || checked build/fuzz "${fuzz[@]}"

# The pages, where their tools are: the build puts them into its tree.
page_tools=build/release/page/node_modules/.bin
if [ -x "$page_tools/eslint" ]; then
    "$page_tools/prettier" --check --log-level warn 'lab/**/*.{js,css}' 'tests/lab/page/**/*.js'
    "$page_tools/eslint" -c lab/page/eslint.config.js lab tests/lab/page
else
    echo "the pages are not checked: node or npm is missing"
fi
