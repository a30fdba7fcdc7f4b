#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# usage: faults.sh BIN CFG. Sweeps that go wrong, for real: every one must leave whole results or say
# what is missing, and the next must come to the results of one that went well. BIN holds MD, mdlab
# and make_clip; CFG is a settings file to start from. With "all" as a third argument the slow ones
# run too: kills, vanished clips, damaged and shared caches, a full disk (needs the right to mount).
set -euo pipefail
bin=$(realpath "$1")
cfg=$(realpath "$2")
all=${3:-}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

fail() {
    echo "faults: $*" >&2
    exit 1
}
status_of() {
    local status=0
    "$@" >out.txt 2>err.txt || status=$?
    echo $status
}

# The MD of these tests: the real one, but it kills itself where the file `crash` names a value of
# MD_HogDist_Th, and waits where there is a file `slow`.
mkdir tools
cp -a "$bin"/ffmpeg "$bin"/ffprobe tools/ 2>/dev/null || true
cat >tools/MD <<MD
#!/bin/sh
if [ -s $folder/crash ] && grep -qx "MD_HogDist_Th = \$(cat $folder/crash)" "\$2"; then kill -9 \$\$; fi
[ ! -e $folder/slow ] || sleep 0.2
exec $bin/MD "\$@"
MD
chmod +x tools/MD

for scene in walker rain; do
    "$bin/make_clip" --scene $scene 96 64 40 "${scene}_96x64_P420.yuv" "$scene.csv"
done
ffmpeg -v error -f rawvideo -pix_fmt yuv420p -s 96x64 -r 25 -i walker_96x64_P420.yuv \
    -vf pad=97:65 -c:v ffv1 video.avi  # of an odd size
cat >plan.yaml <<PLAN
settings: $cfg
clips:
  - {name: walker, file: walker_96x64_P420.yuv, labels: walker.csv}
  - {name: rain, file: rain_96x64_P420.yuv, labels: rain.csv}
  - {name: video, file: video.avi, labels: walker.csv}
keys:
  MD_ScaledW: 96
  MD_HogDist_Th: [4, 8, 12]
  MD_RefFrmIdx: [1, 15]
  x_ds_pos: [0, 1]
PLAN
sweep() {
    "$bin/mdlab" sweep "${PLAN:-plan.yaml}" --md tools/MD --cores 2 "$@"
}

# A sweep that goes well. What MD refuses (a reference of 15) is a result.
[ "$(status_of sweep --into good)" = 0 ] || fail "a plain sweep: $(cat err.txt)"
[ "$(grep -c ',done,' good/results.csv)" = 9 ] || fail "9 runs are done"
[ "$(grep -c 'refused,"ERROR: nMD_RefFrmIdx >= 15, not supported"' good/results.csv)" = 9 ] ||
    fail "9 runs are refused"
grep -q '^not read: x_ds_pos' out.txt || fail "a key that nothing reads is reported"
equal() {
    cmp good/results.csv "$1/results.csv" || fail "$1 has other results"
    cmp good/results.json "$1/results.json" || fail "$1 has another results.json"
}

# Nothing to do: no engine, the same results.
rm -f good/engine.log
[ "$(status_of sweep --into good)" = 0 ] || fail "a repeated sweep"
grep -q '^18 runs were in the cache' err.txt || fail "18 runs come from the cache"
[ ! -e good/engine.log ] || fail "the engine was started for nothing"
[ "$(status_of sweep --into second --cache good/cache)" = 0 ] && equal second

# Only the point whose MD is killed fails, by name; a later sweep makes up for it.
echo 8 >crash
[ "$(status_of sweep --into crash1)" = 2 ] || fail "a crash ends with status 2"
grep -q 'killed by signal 9' err.txt || fail "the crash is reported"
grep -q 'walker: .*MD_HogDist_Th=8' err.txt || fail "the point is named"
[ "$(grep -c ',done,' crash1/results.csv)" = 6 ] || fail "the other points go on"
rm crash
[ "$(status_of sweep --into crash1)" = 0 ] && equal crash1

# What cannot be is refused before anything is converted.
[ "$(status_of sweep --into good/sweep.html/x)" = 2 ] || fail "a folder below a file"
grep -q '^mdlab: .*: Not a directory$' err.txt || fail "the reason: $(cat err.txt)"
[ "$(status_of sweep --into 'a "b"')" = 2 ] && [ ! -e 'a "b"' ] || fail "a folder that no setting can name"
[ "$(status_of sweep --into none --profile none)" = 2 ] || fail "a profile that is not there"
grep -q 'no config.yaml' err.txt && [ ! -e none ] || fail "the profile is named: $(cat err.txt)"

# expect is a verdict.
printf 'expect: {recall: at least 0}\n' | cat plan.yaml - >met.yaml
printf 'expect: {clips: {rain: {frames: at least 41}}}\n' | cat plan.yaml - >missed.yaml
[ "$(PLAN=met.yaml status_of sweep --into verdict --cache good/cache)" = 0 ] || fail "limits that are met"
[ "$(PLAN=missed.yaml status_of sweep --into verdict --cache good/cache)" = 1 ] || fail "limits that are missed"
grep -q 'frames at least 41 in rain: 40' out.txt || fail "the limit that is missed is named"

if [ "$all" != all ]; then
    echo "faults: as they should be"
    exit
fi

# A wider plan runs only what is new.
sed 's/\[4, 8, 12\]/[4, 8, 12, 16]/' plan.yaml >wide.yaml
[ "$(PLAN=wide.yaml status_of sweep --into wide --cache good/cache)" = 0 ] || fail "a wider plan"
grep -q '^18 runs were in the cache' err.txt || fail "a wider plan uses the cache"

# A clip that vanishes after the plan was read, or changes: nothing of it becomes a result.
touch slow
sweep --into gone >/dev/null 2>gone.err &
driver=$!
for _ in $(seq 100); do
    [ -e gone/cache/clips ] && break
    sleep 0.05
done
mv rain_96x64_P420.yuv kept.yuv
status=0
wait $driver || status=$?
[ $status = 2 ] || fail "a clip that vanished: status $status"
grep -q 'rain_96x64_P420.yuv: has vanished' gone.err || fail "the vanished clip is named"
grep -q ',rain,done,' gone/results.csv && fail "results of a clip that is not there"
mv kept.yuv rain_96x64_P420.yuv
rm slow
[ "$(status_of sweep --into gone)" = 0 ] && equal gone

# The driver is killed in the middle; what was finished stays, and the same command goes on.
touch slow
for n in $(seq 5); do
    setsid "$bin/mdlab" sweep plan.yaml --md tools/MD --cores 2 --into killed >/dev/null 2>&1 &
    driver=$!
    sleep "$((n + 2)).$((RANDOM % 10))"
    kill -9 $driver 2>/dev/null || true
    wait $driver 2>/dev/null || true
    [ ! -e killed/results.csv ] || cmp -s killed/results.csv good/results.csv ||
        fail "a killed sweep left half results"
done
rm slow
[ "$(status_of sweep --into killed)" = 0 ] && equal killed

# A chunk is killed: its runs fail, those of other chunks do not.
touch slow
sweep --into chunk >/dev/null 2>chunk.err &
driver=$!
job=
for _ in $(seq 200); do
    for pid in $(pgrep -x mdlab || true); do
        case "$(readlink "/proc/$pid/cwd" 2>/dev/null) $(tr '\0' ' ' <"/proc/$pid/cmdline" 2>/dev/null)" in
            "$folder"/chunk/engine/*chunk-*) job=$pid ;;
        esac
    done
    [ -z "$job" ] || break
    sleep 0.1
done
[ -n "$job" ] || fail "no chunk to kill"
kill -9 "$job"
status=0
wait $driver || status=$?
[ $status = 2 ] || fail "a killed chunk: status $status"
grep -q 'its job did not finish' chunk.err || fail "the killed chunk is reported"
[ "$(grep -c ',done,' chunk/results.csv)" -ge 3 ] || fail "the other chunks go on"
rm slow
[ "$(status_of sweep --into chunk)" = 0 ] && equal chunk

# A damaged and a cut store: they count as not there.
cp -r good/cache damaged
for file in damaged/runs/*/*.runs; do
    truncate -s -9 "$file"
done
for raw in damaged/clips/*/*.yuv; do
    truncate -s 1000 "$raw"
done
[ "$(status_of sweep --into repaired --cache damaged)" = 0 ] && equal repaired
grep -q '^0 runs were in the cache' err.txt || fail "damaged files were taken for results"

# Two sweeps on one cache at once.
sweep --into one --cache both >/dev/null 2>&1 &
first=$!
sweep --into two --cache both >/dev/null 2>&1 || fail "the second of two sweeps"
wait $first || fail "the first of two sweeps"
equal one
equal two

if mkdir small && mount -t tmpfs -o size=700k none small 2>/dev/null; then
    # Room for the converted clip, but not for all of it: no clip, no results of it.
    dd if=/dev/zero of=small/ballast bs=1k count=480 status=none
    [ "$(status_of sweep --into full --cache small/cache)" = 2 ] || fail "a full disk: $(cat out.txt)"
    grep -q ',video,done,' full/results.csv && fail "results of half a clip"
    rm small/ballast
    [ "$(status_of sweep --into full --cache small/cache)" = 0 ] && equal full
    umount small
else
    echo "faults: the full disk was not tried, it needs the right to mount"
fi
echo "faults: all as they should be"
