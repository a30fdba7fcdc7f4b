#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Installs what building, running and testing need on Debian 12, and nothing that is there already.
#
#     setup.sh [--md] [PACKAGE...]     --md: for MD alone, without mdlab
set -euo pipefail

packages=(g++ cmake ninja-build libgtest-dev ffmpeg)
if [ "${1:-}" = --md ]; then
    shift
else
    packages+=(jq libcli11-dev nlohmann-json3-dev zlib1g-dev libyaml-cpp-dev libsqlite3-dev
               libxxhash-dev snakemake chromium)
    # node and npm may have come from elsewhere, where npm is no package of its own.
    command -v node >/dev/null || packages+=(nodejs)
    command -v npm >/dev/null || packages+=(npm)
fi
packages+=("$@")
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }
as_root apt-get update -qq
as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
