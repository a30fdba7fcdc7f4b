#!/bin/sh
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Prints what the engine asks of a job: running, success or failed. Works without an accounting
# database; a job that the controller has forgotten counts as failed, and its marks decide.
state=$(scontrol -o show job "$1" 2>/dev/null | sed -n 's/.* JobState=\([A-Z_]*\).*/\1/p')
case "$state" in
    COMPLETED) echo success ;;
    PENDING | CONFIGURING | RUNNING | COMPLETING | SUSPENDED | REQUEUED | RESIZING) echo running ;;
    *) echo failed ;;
esac
