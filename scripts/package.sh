#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Makes the packages, checks them, and tries them in a clean Debian root: installs both, works with
# them as an ordinary user, removes them, and looks for anything that is left. Needs root.
set -euo pipefail
cd "$(dirname "$0")/.."
[ "$(id -u)" -eq 0 ] || { echo "usage: sudo $0" >&2 && exit 2; }
scripts/setup.sh dpkg-dev lintian mmdebstrap man-db

# The build stays that of the user who called sudo.
as_user_of_build() { if [ -n "${SUDO_USER:-}" ]; then sudo -H -u "$SUDO_USER" -- "$@"; else "$@"; fi; }
as_user_of_build cmake --preset release >/dev/null
as_user_of_build cmake --build --preset release --target product make_clip
rm -f build/release/*.deb
(cd build/release && as_user_of_build cpack >/dev/null)
lintian --fail-on error --allow-root build/release/*.deb

work=$(mktemp -d)
root=$work/root
finish() {
    umount "$root/proc" 2>/dev/null || true
    rm -rf --one-file-system "$work"
}
trap finish EXIT
in_root() { chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 "$@"; }
quietly() { "$@" >"$work/log" 2>&1 || { tail -n 20 "$work/log"; return 1; }; }
install() { quietly in_root DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "$@"; }
files() { (cd "$root" && find . -xdev ! -path './var/*' ! -path './tmp/*' ! -path './home/*' | sort); }

quietly mmdebstrap --variant=apt bookworm "$root"
mount -t proc proc "$root/proc"  # where mdlab finds the programs beside it
quietly in_root apt-get update
# What the packages depend on stays when they go; it is there before the comparison starts.
for name in md mdlab; do cp build/release/"$name"_*.deb "$root/tmp/$name.deb"; done
depends=$(for deb in build/release/*.deb; do dpkg-deb -f "$deb" Depends; done |
    tr ',' '\n' | sed 's/[(|].*//' | tr -d ' ' | grep -vx md | sort -u)
# shellcheck disable=SC2086
install $depends man-db
quietly in_root useradd --create-home user
build/release/bin/make_clip 320 180 60 "$work/clip.yuv"
ffmpeg -v error -f rawvideo -pix_fmt yuv420p -s 320x180 -i "$work/clip.yuv" \
    -c:v libx264 "$root/home/user/walker.mp4"
files >"$work/before"

install /tmp/md.deb /tmp/mdlab.deb
as_user() { in_root runuser -u user -- sh -euc "cd; $1"; }
as_user 'MD -d /usr/share/doc/md/default.cfg -p InputFilePath=$HOME/walker.mp4 \
            -p OutputFilePath=$HOME/out -p MD_DbgEn=0x37a >run.log && tail -n 1 run.log | grep -x finish.
         ls out/HOG_feature | wc -l; test -s out/comp_960x180_P420.mp4'
as_user 'MD -d /usr/share/doc/md/default.cfg -p InputFilePath=$HOME/walker.mp4 \
            -p OutputFilePath=$HOME/out2 -p MD_DbgEn=0x360 >/dev/null
         mdlab compare out out2; mdlab --version; man -w MD mdlab'
as_user 'mdlab report --quiet --out report.html -- -d /usr/share/doc/md/default.cfg \
            -p InputFilePath=$HOME/walker.mp4 2>report.log; test -s report.html
         printf "settings: /usr/share/doc/md/default.cfg\nclips: [walker.mp4]\nkeys: {MD_HogDist_Th: [8, 12]}\n" >plan.yaml
         mdlab sweep plan.yaml --into swept --quiet && test -s swept/sweep.html'

quietly in_root apt-get remove -y --purge md mdlab
files >"$work/after"
diff "$work/before" "$work/after" && echo "Nothing was left behind."
