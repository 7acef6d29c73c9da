#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# full_disk.sh PROGRAM: runs the program in a small file system, which has room for 16 pages of memory.
#
# Mounting it needs a mount namespace, and without root a user namespace too. Where that is not allowed, nothing is
# tested and the exit status is 77, which CTest counts as skipped.
set -euo pipefail
program=$1
folder=$(mktemp -d)
trap 'rmdir "$folder"' EXIT
size=$((16 * $(getconf PAGESIZE)))

# in_namespace NAMESPACES COMMAND...: runs the command with the small file system as its first argument.
in_namespace() {
    local namespaces=$1
    shift
    unshare "$namespaces" bash -c 'mount -t tmpfs -o "size=$1" tmpfs "$2" && shift && exec "${@:2}" "$1"' \
        bash "$size" "$folder" "$@"
}

for namespaces in -m -Urm; do
    if reason=$(in_namespace "$namespaces" true 2>&1); then
        in_namespace "$namespaces" timeout --verbose 240 "$program"
        exit
    fi
done
echo "Skipped: a small file system cannot be mounted here: $reason"
exit 77
