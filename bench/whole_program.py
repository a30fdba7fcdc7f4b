#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

"""Whole-program comparisons: one table of ratios.

usage: whole_program.py MD MD_BUILT_O2 WORK_FOLDER [ROUNDS]

WORK_FOLDER holds clip_WxH_P420.yuv and clip_WxH.mp4 for each size. The programs of a comparison run
in turn, ROUNDS times, pinned to one processor; the best round of each counts. Times are processor
time, user and system together, which is wall time on one core of a machine that does nothing else.
"""
import os
import shutil
import sys

MD, MD_O2, WORK = (os.path.abspath(p) for p in sys.argv[1:4])
ROUNDS = int(sys.argv[4]) if len(sys.argv) > 4 else 5
SIZES = {(320, 180): 1500, (640, 360): 300, (1920, 1080): 100}  # frames of a fast run
OUT_ROOT = os.path.join(WORK, "out")
OUT = os.path.join(OUT_ROOT, "run")


def run(command, environment=None):
    """Seconds of processor time and peak memory in MiB of one run, output thrown away."""
    pid = os.fork()
    if pid == 0:
        os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})
        null = os.open(os.devnull, os.O_RDWR)
        for fd in (0, 1, 2):
            os.dup2(null, fd)
        os.execvpe(command[0], command, {**os.environ, **(environment or {})})
    _, status, used = os.wait4(pid, 0)
    if status != 0:
        sys.exit(f"failed: {' '.join(command)} {environment or ''}")
    return used.ru_utime + used.ru_stime, used.ru_maxrss / 1024


def best(*runs):
    """Best time of each of the runs, taken in turn. A run is a command and its environment; FOLDER
    in a word of it becomes a new folder every time, as for a user's next setting: emptying the files
    of an earlier run costs a file system more than making them. What one round left is on the disk
    before the next begins."""
    times = [float("inf")] * len(runs)
    for n in range(ROUNDS):
        for i, (command, environment) in enumerate(runs):
            command = [word.replace("FOLDER", f"{OUT}{i}_{n}") for word in command]
            times[i] = min(times[i], run(command, environment)[0])
        os.sync()
    shutil.rmtree(OUT_ROOT)
    os.mkdir(OUT_ROOT)
    return times


def md(size, frames, *settings, program=MD, kernels=None, text=None):
    w, h = size
    command = [program, "-d", os.path.join(WORK, "bench.cfg")]
    for s in (f"InputFilePath=clip_{w}x{h}_P420.yuv", f"InputWidth={w}", f"InputHeight={h}",
              f"MD_ScaledW={w}", f"MD_ScaledH={h}", f"FramesToBeProcessed={frames}",
              "OutputFilePath=FOLDER", *settings):
        command += ["-p", s]
    environment = {k: v for k, v in (("MD_KERNELS", kernels), ("MD_TEXT", text)) if v}
    return command, environment


def row(what, value, goal):
    print(f"| {what} | {value} | {goal} |", flush=True)


def peak(size, frames, *settings):
    command, environment = md(size, frames, *settings)
    return run([word.replace("FOLDER", OUT + "peak") for word in command], environment)[1]


def kernels_against_plain(ns):
    for size in ((640, 360), (1920, 1080)):
        frames = SIZES[size]
        few = max(frames // 20, 4)  # of the slow runs
        name = "%dx%d" % size
        for padding in range(3):
            p = f"MD_Padding_Method={padding}"
            fast, avx2, ssse3, scalar, plain = best(
                md(size, frames, p), md(size, frames, p, kernels="avx2"),
                md(size, frames // 2, p, kernels="ssse3"), md(size, few * 4, p, kernels="scalar"),
                md(size, few, p, program=MD_O2, kernels="plain"))
            fast, avx2 = fast / frames, avx2 / frames
            ssse3, scalar, plain = ssse3 / (frames // 2), scalar / (few * 4), plain / few
            row(f"{name}, padding {padding}: plain -O2 / fastest", f"{plain / fast:.1f}", "at least 40")
            row(f"{name}, padding {padding}: plain -O2 / scalar", f"{plain / scalar:.1f}", "at least 4")
            row(f"{name}, padding {padding}: SSSE3 / AVX2", f"{ssse3 / avx2:.2f}", "at most 1.7")
            ns[size] = fast * 1e9 / blocks(size)


def blocks(size):
    return ((size[0] - 16) // 8 + 1) * ((size[1] - 16) // 8 + 1)


def decoding(ns):
    for size in ((640, 360), (1920, 1080)):
        frames = SIZES[size]
        clip = os.path.join(WORK, "clip_%dx%d.mp4" % size)
        decode = (["ffmpeg", "-v", "error", "-threads", "1", "-i", clip, "-f", "null", "-"], {})
        fast, other = best(md(size, frames), decode)
        row("%dx%d: ffmpeg -threads 1 decoding H.264 / MD" % size, f"{other / fast:.1f}", "at least 3")
    size = (320, 180)
    ns[size], = (t * 1e9 / SIZES[size] / blocks(size) for t in best(md(size, SIZES[size])))
    listed = ", ".join(f"{ns[s]:.0f}" for s in SIZES)
    row("ns a block, start included, at 320x180, 640x360, 1920x1080", listed,
        "within 1.5 times: %.2f" % (max(ns.values()) / min(ns.values())))


def growth():
    size = (640, 360)
    one, two = best(md(size, SIZES[size] // 2), md(size, SIZES[size]))
    row("640x360: time of twice the frames / once", f"{two / one:.2f}", "at most 2")
    short, long_ = (peak(size, n) for n in (10, SIZES[size]))
    row(f"640x360: peak MiB over 10 and over {SIZES[size]} frames", f"{short:.1f}, {long_:.1f}", "equal")
    three, all_ = (peak((1920, 1080), 40, f"MD_RefFrmIdx={r}") for r in (3, 14))
    row("1920x1080: peak MiB with R = 3 and R = 14", f"{three:.1f}, {all_:.1f}", "R = 3 pays for 4 slots")


def files():
    size, frames = (640, 360), 100

    copy = ["cp", "-rT", f"{OUT}0_0", "FOLDER"], {}  # of what the first run left

    dumps = "MD_DbgEn=0x360"
    fast, fprintf, cp = best(md(size, frames, dumps), md(size, frames, dumps, text="plain"), copy)
    row("640x360, all dumps: fprintf a number at a time / MD", f"{fprintf / fast:.1f}", "at least 8")
    row("640x360, all dumps: MD / cp of its files", f"{fast / cp:.2f}", "at most 4")
    fast, cp = best(md(size, SIZES[size], "MD_DbgEn=0x1a"), copy)
    row("640x360, three videos: MD / cp of its files", f"{fast / cp:.2f}", "at most 2")


def main():
    shutil.rmtree(OUT_ROOT, ignore_errors=True)
    os.mkdir(OUT_ROOT)
    with open(os.path.join(WORK, "bench.cfg"), "w", encoding="ascii") as f:
        with open("cfg/raw.cfg", encoding="ascii") as raw:
            f.write(raw.read() + "MD_ShiftMetric2_Th = 8\n")
    print("| comparison | measured | goal |\n|---|---:|---|", flush=True)
    ns = {}
    kernels_against_plain(ns)
    decoding(ns)
    growth()
    files()


main()
