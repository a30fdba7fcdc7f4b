#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Builds MD for 64-bit Windows, runs its tests under wine, and compares whole runs with those of the
# program built for this machine. Installs the compiler and wine where they are missing.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh g++-mingw-w64-x86-64-posix wine64
. scripts/platform_runs.sh
build=$PWD/build/mingw64
export WINEPREFIX=$PWD/build/wine WINEARCH=win64 WINEDEBUG=-all DISPLAY=
export WINESERVER=/usr/lib/wine/wineserver64
wine=/usr/lib/wine/wine64

cmake --preset release >/dev/null
cmake --build --preset release --target MD
cmake -S . -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw64.cmake \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE=-O3 >/dev/null
cmake --build "$build"
mkdir -p "$WINEPREFIX"
# A process that stays until the end, and wine's services with it. Without it they stop and start
# between the runs, and a service that crashes on its way out says so on the stderr of some run.
coproc session { "$wine" cmd 2>/dev/null; }
echo "echo ready" >&"${session[1]}"
grep -qm1 ready <&"${session[0]}"
"$wine" "$build/tests/md_tests.exe" --gtest_brief=1

# Programs in folders without the outside tools.
work=$build/runs
rm -rf "$work"
mkdir -p "$work/bin" "$work/toolbin"
cp build/release/bin/MD "$build/bin/MD.exe" "$work/bin"
platform_clip "$work/clip"
platform_run "$work/here" "$work/clip" "$work/bin/MD"
paths=(avx2 ssse3 scalar plain)
! grep -qw avx512bw /proc/cpuinfo || paths=(avx512 "${paths[@]}")
for kernels in "${paths[@]}"; do
    rm -rf "$work/windows"
    MD_KERNELS=$kernels platform_run "$work/windows" "$work/clip" "$wine" "$work/bin/MD.exe"
    grep -qF '.\in.yuv' "$work/windows/method1/out/HOG_feature/HOGCount.txt"
    echo -n "$kernels: "
    platform_compare "$work/here" "$work/windows"
done
grep -q '^\[Warning\] ffmpeg/ffprobe is not exist' "$work/windows/method1/log"
# grep ends with 1 when it has read them all and found no other line.
rc=0
grep -vPm1 '^[^\r]*\r$' "$work"/windows/*/out/HOG_feature/*.csv || rc=$?
[ "$rc" -eq 1 ] || { echo "a csv line ends in something else than CR LF"; exit 1; }

# The whole statuses; a POSIX parent sees only their low byte. The folder before the name
# keeps the command processor from its own MD, which makes folders.
printf '%s\r\n' '@echo off' '..\..\bin\MD.exe -d run.cfg -p StartFrameIdx=-1' \
    'echo status=%errorlevel%' '..\..\bin\MD.exe -d run.cfg -p MD_RefFrmIdx=15' \
    'echo status=%errorlevel%' >"$work/windows/method1/status.bat"
statuses=$(cd "$work/windows/method1" &&
    { "$wine" cmd /c status.bat 2>err || true; } | tr -d '\r' | grep '^status=' | xargs)
[ "$statuses" = "status=400 status=-1" ] || { echo "statuses: $statuses"; exit 1; }

# Commands run when a tool is in the folder of the program. The stand-in is MD itself, which misses its
# default file and prints its usage under the name that it was called by.
cp "$build/bin/MD.exe" "$work/toolbin"
cp "$build/bin/MD.exe" "$work/toolbin/ffmpeg.exe"
cp "$work/clip" "$work/windows/method1/in.yuv"
(cd "$work/windows/method1" && "$wine" "$work/toolbin/MD.exe" -d run.cfg >log 2>err)
grep -qE '^INFO: exec: [A-Z]:\\.*\\ffmpeg -y .*out/comp_960x180_P420.yuv -c:v libx264 .*\\comp_960x180_P420.mp4' \
    "$work/windows/method1/log"
[ "$(grep -c 'Usage: .*toolbin.ffmpeg ' "$work/windows/method1/err")" -eq 4 ]
echo exit >&"${session[1]}"
"$WINESERVER" -w
echo "windows: all as on this machine"
