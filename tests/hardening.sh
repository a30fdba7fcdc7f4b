#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# hardening.sh PROGRAM: fails unless the program has what the distribution's hardening flags give.
set -euo pipefail
failed=0
has() {
    grep -qE "$2" <<<"$3" || { echo "$1 is missing"; failed=1; }
}
symbols=$(readelf -W --dyn-syms "$1")
has "position independence" 'Type: +DYN' "$(readelf -Wh "$1")"
has "relocation protection" 'GNU_RELRO' "$(readelf -Wl "$1")"
has "binding at start" 'BIND_NOW|Flags:.* NOW' "$(readelf -Wd "$1")"
has "stack protector" '__stack_chk_fail' "$symbols"
has "checked library calls" '__v?f?printf_chk' "$symbols"
! readelf -Wl "$1" | grep -qE 'GNU_STACK.* RWE' || { echo "the stack is executable"; failed=1; }
exit "$failed"
