#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# What a user gets on pressing Tab. Usage: completion_test.sh FOLDER_OF_THE_SCRIPTS
set -u
shopt -s extglob
. "$1/MD"
[ -f "$1/mdlab" ] && . "$1/mdlab"
cd "$(mktemp -d)" && touch street.mp4 night.mp4 "two words.mp4"
compopt() { :; }  # needs a real completion
failed=0

# complete_with FUNCTION WORD ...: the answers to the last word, one line, sorted.
complete_with() {
    local function=$1
    shift
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
    "$function"
    printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd' '
}
expect() {
    [ "$1" = "$2" ] && return
    echo "expected: $1"; echo "      got: $2"; failed=1
}

expect "-d -f -h -p" "$(complete_with _MD MD "")"
expect "night.mp4 street.mp4 two words.mp4" "$(complete_with _MD MD -d "")"
expect "MD_Bbox_PP_Enable= MD_Bbox_PP_Window=" "$(complete_with _MD MD -p MD_Bbox)"
expect "76" "$(complete_with _MD MD -p "" | wc -w)"
expect "street.mp4" "$(complete_with _MD MD -p InputFilePath = str)"
expect "night.mp4 street.mp4 two words.mp4" "$(complete_with _MD MD -p InputFilePath =)"
expect "" "$(complete_with _MD MD -p MD_DbgEn = "")"
if [ -f "$1/mdlab" ]; then
    expect "--help --version" "$(complete_with _mdlab mdlab --)"
    expect "street.mp4" "$(complete_with _mdlab mdlab compare str)"
    expect "MD_HogMagnitudeWeightEn= MD_HogMethod=" "$(complete_with _mdlab mdlab report -- -p MD_HogM)"
fi
exit $failed
