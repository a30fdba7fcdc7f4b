#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Builds MD for aarch64, which has row kernels of its own, for a big-endian and for a 32-bit system,
# which run the scalar ones; runs its tests there, and compares whole runs with those of the program
# built for this machine. Installs compilers and emulator where missing.
# Usage: scripts/cross.sh [TRIPLE...]
set -euo pipefail
cd "$(dirname "$0")/.."
[ $# -gt 0 ] || set -- aarch64-linux-gnu s390x-linux-gnu i686-linux-gnu
scripts/setup.sh "${@/#/g++-}" qemu-user-static
. scripts/platform_runs.sh
cmake --preset release >/dev/null
cmake --build --preset release --target MD

for triple; do
    cpu=${triple%%-*}
    build=$PWD/build/$cpu
    emulator=()
    [ "$cpu" = i686 ] || emulator=("qemu-$cpu-static")
    # Static: the emulator needs no libraries of that system.
    cmake -S . -B "$build" -G Ninja -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR="$cpu" \
        -DCMAKE_C_COMPILER="$triple-gcc" -DCMAKE_CXX_COMPILER="$triple-g++" \
        -DCMAKE_CROSSCOMPILING_EMULATOR="${emulator[*]}" \
        -DCMAKE_EXE_LINKER_FLAGS=-static -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_FLAGS_RELEASE=-O3 >/dev/null
    cmake --build "$build"
    # All but those that walk up limits of address space: they hold the emulator too, and start
    # where a dynamic 64-bit program begins to load.
    "${emulator[@]}" "$build/tests/md_tests" --gtest_brief=1 \
        --gtest_filter=-Fault.EveryStepOfMemory*:Fault.MissingMemory*:Fault.AFrameOfWhichThree*

    work=$build/runs
    rm -rf "$work"
    mkdir -p "$work/bin"
    cp build/release/bin/MD "$work/bin"
    cp "$build/bin/MD" "$work/bin/MD.$cpu"
    platform_clip "$work/clip"
    platform_run "$work/here" "$work/clip" "$work/bin/MD"
    platform_run "$work/$cpu" "$work/clip" "${emulator[@]}" "$work/bin/MD.$cpu"
    echo -n "$cpu: "
    platform_compare "$work/here" "$work/$cpu"
done
