#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Brings up a Slurm of one node on this machine (munge, slurmctld, slurmd; no systemd, no database),
# runs a sweep on it, kills the sweep with -9 in the middle, cancels a job, goes on, and compares the
# results with those of a sweep without Slurm: they must be equal. Needs root.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh munge slurmctld slurmd slurm-client
bin=$PWD/build/release/bin
cfg=$PWD/cfg/default.cfg
folder=$(mktemp -d)
chmod 755 "$folder"
cd "$folder"

daemons=()
finish() {
    for pid in "${daemons[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$folder"
}
trap finish EXIT
fail() {
    echo "slurm: $*" >&2
    tail -n 20 ./*.log >&2 || true
    exit 1
}

# Keys and sockets of their own: a Slurm that this machine may have is not touched.
mkdir -m 700 munge
mkdir state spool
dd if=/dev/urandom of=munge/key bs=1k count=1 status=none
chmod 400 munge/key
node=$(hostname -s)
cat >slurm.conf <<CONF
ClusterName=sweep
SlurmctldHost=$node(127.0.0.1)
SlurmctldPort=26817
SlurmdPort=26818
SlurmUser=root
SlurmdUser=root
AuthType=auth/munge
AuthInfo=socket=$folder/munge/socket
CredType=cred/munge
StateSaveLocation=$folder/state
SlurmdSpoolDir=$folder/spool
SlurmctldPidFile=$folder/slurmctld.pid
SlurmdPidFile=$folder/slurmd.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
AccountingStorageType=accounting_storage/none
JobAcctGatherType=jobacct_gather/none
ReturnToService=2
NodeName=$node NodeAddr=127.0.0.1 CPUs=$(nproc) State=UNKNOWN
PartitionName=all Nodes=$node Default=YES MaxTime=INFINITE State=UP
CONF
export SLURM_CONF=$folder/slurm.conf
munged --foreground --force --socket="$folder/munge/socket" --key-file="$folder/munge/key" \
    --pid-file="$folder/munge/pid" --seed-file="$folder/munge/seed" --log-file="$folder/munge.log" 2>munged.log &
daemons+=($!)
for _ in $(seq 100); do [ -S munge/socket ] && break; sleep 0.1; done
chmod 755 munge
slurmctld -D >slurmctld.log 2>&1 &
daemons+=($!)
slurmd -D >slurmd.log 2>&1 &
daemons+=($!)
for _ in $(seq 300); do sinfo -h -o %T 2>/dev/null | grep -q idle && break; sleep 0.1; done
sinfo -h -o %T | grep -q idle || fail "the node does not come up"

{
    printf 'settings: %s\nclips:\n' "$cfg"
    for scene in walker two stops rain tree; do
        "$bin/make_clip" --scene $scene 320 180 60 "${scene}_320x180_P420.yuv" $scene.csv
        printf '  - {name: %s, file: %s_320x180_P420.yuv, labels: %s.csv}\n' $scene $scene $scene
    done
    printf 'keys: {MD_PostProcMethod: 0..3, MD_HogDist_Th: 6..16 step 2, MD_RefFrmIdx: [1, 2, 15]}\n'
} >plan.yaml
"$bin/mdlab" sweep plan.yaml --into local >local.txt 2>&1 || fail "the sweep without Slurm"

start() { "$bin/mdlab" sweep plan.yaml --into cluster --profile slurm >cluster.txt 2>&1 & driver=$!; }
wait_for_jobs() {
    for _ in $(seq 600); do
        [ "$(squeue -h -t "$1" | wc -l)" -ge 1 ] && return
        sleep 0.1
    done
    fail "no job is $1"
}

start
wait_for_jobs RUNNING
kill -9 $driver
wait $driver 2>/dev/null || true
echo "slurm: killed the sweep with $(squeue -h | wc -l) jobs in the queue"

# Wait until what the killed sweep had in the queue is over, so that the job is one of this sweep.
for _ in $(seq 600); do [ -z "$(squeue -h)" ] && break; sleep 0.1; done
start
wait_for_jobs RUNNING
job=$(squeue -h -o %A | sort -n | tail -n 1)
scancel "$job"
echo "slurm: cancelled job $job"
status=0
wait $driver || status=$?
echo "slurm: the sweep ended with status $status, $(grep -c ',failed,' cluster/results.csv || true) runs failed"

start
wait $driver || fail "the last sweep: $(cat cluster.txt)"
cmp local/results.csv cluster/results.csv || fail "other results than without Slurm"
cmp local/results.json cluster/results.json || fail "another results.json than without Slurm"
echo "slurm: $(($(wc -l <cluster/results.csv) - 1)) runs, the same as without Slurm"
