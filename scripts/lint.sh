#!/usr/bin/env bash
# Holds the sources to .clang-format and .clang-tidy. The checks read the release build's commands.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh clang-format clang-tidy
[ -f build/release/compile_commands.json ] || cmake --preset release >/dev/null
find app lib tools tests -name '*.cpp' -o -name '*.h' | sort | xargs clang-format --dry-run -Werror
# The Windows side needs headers that only Windows has.
find app lib tools -name '*.cpp' ! -name platform_windows.cpp | sort |
    xargs -P "$(nproc)" -n 4 clang-tidy -p build/release --quiet 2>/dev/null

# The pages, where their tools are: the build puts them into its tree.
page_tools=build/release/page/node_modules/.bin
if [ -x "$page_tools/eslint" ]; then
    "$page_tools/prettier" --check --log-level warn 'lab/**/*.{js,css}' 'tests/lab/page/**/*.js'
    "$page_tools/eslint" -c lab/page/eslint.config.js lab tests/lab/page
else
    echo "the pages are not checked: node or npm is missing"
fi
