# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

"""Planted faults; see mutants.sh, which starts this."""
import glob
import os
import queue
import random
import re
import shutil
import subprocess
import sys
import threading

ROOT = os.getcwd()
WORK = os.path.join(ROOT, "build", "mutants")
# Tests write many small files: in memory, where there is such a place. Sessions show what a file
# system says of a folder, and stay on the usual one.
IN_MEMORY = {**os.environ, **({"TMPDIR": "/dev/shm"} if os.path.isdir("/dev/shm") else {})}
CPU_LIMIT = 60   # seconds of each process of a test: a fault that makes one loop is noticed
WAIT_LIMIT = 900  # seconds for a group of tests, for a fault that makes one wait

# Groups in the order of what they notice in a second: the first failure ends a fault's tests.
SLOW = "Vectors/*:Table/*:Golden*:Kernel*:*Row*:Fault*:TextOut*:YuvDraw*"
SESSIONS = "*Session*:Sessions/*"
GROUPS = [f"*-{SLOW}:{SESSIONS}", "Vectors/*", f"{SLOW}-Vectors/*:Table/*", "Table/*", SESSIONS]

# clang-format puts blanks around binary operators, and none around template brackets, pointers and
# references.
OPERATORS = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "+": "-", "-": "+",
    "*": "+", "/": "*", "%": "/", "<<": ">>", ">>": "<<", "&": "|", "|": "&", "&&": "||",
    "||": "&&", "+=": "-=", "-=": "+=", "|=": "&=", "&=": "|=", "^": "|", "*=": "+=", ">>=": "<<=",
}
BINARY = re.compile(r"(?<= )(" + "|".join(re.escape(s) for s in OPERATORS) + r")(?=\s)")
STEP = re.compile(r"\+\+|--")
NUMBER = re.compile(r"(?<![\w.])(0x[0-9A-Fa-f]+|\d+\.\d+|\d+)(?=[uUlL]*\b)(?![\w.])")
WORD = re.compile(r"\b(true|false)\b")
NOT = re.compile(r"!(?=[\w(])")
# What is no code, or says nothing at run time.
SKIPPED = re.compile(r'//[^\n]*|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'|^\s*#(?:\\\n|[^\n])*'
                     r"|static_assert\(.*?\);", re.M | re.S)


def other_number(text):
    if "." in text:
        return [str(float(text) + 0.5)]
    value = int(text, 8 if re.fullmatch("0[0-7]+", text) else 0)
    return [str(n) for n in (value + 1, value - 1) if n >= 0]


def faults_in(path, source):
    """All faults of a file as (path, position, old text, new text)."""
    code = SKIPPED.sub(lambda m: re.sub(r"[^\n]", " ", m.group()), source)
    found = [(m, [OPERATORS[m.group()]]) for m in BINARY.finditer(code)]
    found += [(m, ["--" if m.group() == "++" else "++"]) for m in STEP.finditer(code)]
    found += [(m, other_number(m.group())) for m in NUMBER.finditer(code)]
    found += [(m, ["false" if m.group() == "true" else "true"]) for m in WORD.finditer(code)]
    found += [(m, [""]) for m in NOT.finditer(code)]
    return [(path, m.start(), m.group(), new) for m, all_new in found for new in all_new]


def sources():
    """Contents by path. Read once: the tree may change while the faults are tried."""
    paths = [path for end in ("cpp", "h", "inc")
             for path in glob.glob(f"lib/**/*.{end}", recursive=True) + glob.glob(f"app/*.{end}")]
    contents = {}
    for path in sorted(paths):
        if "windows" not in path and "neon" not in path:  # not built here
            with open(path, encoding="utf-8") as file:
                contents[path] = file.read()
    return contents


def described(fault, source):
    """The file, the number of its line, the line without the fault, and with it."""
    path, at, old, new = fault
    first, last = source.rfind("\n", 0, at) + 1, source.find("\n", at)
    changed = source[first:at] + new + source[at + len(old):last]
    return path, source.count("\n", 0, at) + 1, source[first:last].strip(), changed.strip()


def accepted():
    """(file, line) and (file, line, changed line) of tests/mutants.txt; a line "*" is every line."""
    entries, path, line = set(), "", ""
    with open("tests/mutants.txt", encoding="utf-8") as file:
        for text in file:
            mark, rest = text[:1], text[1:].strip()
            if mark == "@":
                path = rest
            elif mark == "-":
                line = rest
                entries.add((path, line))
            elif mark == "+":
                entries.discard((path, line))
                entries.add((path, line, rest))
    return entries


class Worker:
    def __init__(self, number):
        self.tree = os.path.join(WORK, f"tree{number}")
        self.build = os.path.join(WORK, f"build{number}")
        shutil.rmtree(self.tree, ignore_errors=True)
        listed = subprocess.run(["git", "ls-files", "-z"], capture_output=True, check=True).stdout
        for path in filter(os.path.exists, listed.decode().split("\0")):
            os.makedirs(os.path.dirname(os.path.join(self.tree, path)), exist_ok=True)
            shutil.copy2(path, os.path.join(self.tree, path))

    def prepare(self):
        # A shared library, so that a fault relinks one file and neither program.
        lists = os.path.join(self.tree, "CMakeLists.txt")
        with open(lists, encoding="utf-8") as file:
            text = file.read()
        with open(lists, "w", encoding="utf-8") as file:
            file.write(text.replace("add_library(md_sim STATIC", "add_library(md_sim SHARED"))
        self.run(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", "-DMD_LAB=OFF",
                  "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", "-DCMAKE_POSITION_INDEPENDENT_CODE=ON",
                  "-DCMAKE_BUILD_TYPE=Quick", "-DCMAKE_CXX_FLAGS=-O1"])  # no debug information
        if not self.builds():
            raise RuntimeError("the tree does not build")
        test = self.noticed()
        if test:
            raise RuntimeError(f"{test} fails without a planted fault")

    def run(self, command):
        return subprocess.run(command, cwd=WORK, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, check=False).returncode == 0

    def builds(self):
        return self.run(["cmake", "--build", self.build, "--target", "MD", "md_tests", "-j", "2"])

    def noticed(self):
        """The test that fails first, or what else a group ended with; empty when all pass."""
        program = os.path.join(self.build, "tests", "md_tests")
        for group in GROUPS:
            command = [program, "--gtest_fail_fast", "--gtest_brief=1", f"--gtest_filter={group}"]
            environment = None if group == SESSIONS else IN_MEMORY
            limited = ["timeout", "-k", "5", str(WAIT_LIMIT), "sh", "-c",
                       f'ulimit -t {CPU_LIMIT}; exec "$@"', "sh", *command]
            done = subprocess.run(limited, cwd=WORK, env=environment, stdout=subprocess.PIPE,
                                  stderr=subprocess.DEVNULL, check=False)
            if done.returncode != 0:
                failed = re.search(rb"\[  FAILED  \] ([\w./]+)", done.stdout)
                return failed.group(1).decode() if failed else f"status {done.returncode}"
        return ""

    def outcome(self, fault, source):
        path, at, old, new = fault
        target = os.path.join(self.tree, path)
        with open(target, "w", encoding="utf-8") as file:
            file.write(source[:at] + new + source[at + len(old):])
        try:
            if not self.builds():
                return "no build"
            test = self.noticed()
            return f"caught by {test}" if test else "SURVIVED"
        finally:
            with open(target, "w", encoding="utf-8") as file:
                file.write(source)


def main():
    count, seed, jobs = (int(n) for n in sys.argv[1:4])
    os.makedirs(WORK, exist_ok=True)
    contents = sources()
    faults = [f for path, source in contents.items() for f in faults_in(path, source)]
    drawn = random.Random(seed).sample(faults, min(count, len(faults)))
    print(f"{len(drawn)} of {len(faults)} faults, seed {seed}", flush=True)
    todo, lock, results = queue.Queue(), threading.Lock(), []
    for fault in drawn:
        todo.put(fault)

    def work(worker):
        worker.prepare()
        while True:
            try:
                fault = todo.get_nowait()
            except queue.Empty:
                return
            outcome = worker.outcome(fault, contents[fault[0]])
            path, number, line, changed = described(fault, contents[fault[0]])
            with lock:
                results.append((outcome, path, line, changed))
                text = f"{outcome}: {path}:{number}\n  - {line}\n  + {changed}\n"
                with open(os.path.join(WORK, "results.txt"), "a", encoding="utf-8") as file:
                    file.write(text)
                if outcome == "SURVIVED":
                    print(text, end="", flush=True)

    workers = [Worker(n) for n in range(jobs)]  # copies, before anything else changes the tree
    threads = [threading.Thread(target=work, args=(worker,)) for worker in workers]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    known = accepted()
    alive = [r[1:] for r in results if r[0] == "SURVIVED"]
    fine = [r for r in alive if r in known or r[:2] in known or (r[0], "*") in known]
    built = sum(r[0] != "no build" for r in results)
    caught = sum(r[0].startswith("caught") for r in results)
    print(f"{built} built, {caught} caught, {len(fine)} accepted survivors, "
          f"{len(alive) - len(fine)} others: {100 * caught / max(built - len(fine), 1):.1f} % "
          "of those that change anything observable are caught")
    sys.exit(1 if len(alive) > len(fine) else 0)


main()
