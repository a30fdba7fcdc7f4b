#!/bin/sh
# Installed as bin/MD. Starts the program by its full path, since it looks for ffmpeg and ffprobe in
# the folder of the name it was called by. Works from any folder, through links, and wherever the
# installed tree was moved to.
self=$(readlink -f -- "$0") || exit 1
exec "${self%/bin/*}/lib/md/MD" "$@"
