#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# full_disk.sh PROGRAM: runs the program in a file system of its own, which has room for 16 pages of memory.
#
# Mounting it takes a namespace of mounts, and one of users for who is not root. Where neither is allowed
# nothing is tested; the exit status is then 77, which CTest takes for skipped.
set -euo pipefail
program=$1
folder=$(mktemp -d)
trap 'rmdir "$folder"' EXIT
size=$((16 * $(getconf PAGESIZE)))

# in_namespace NAMESPACES COMMAND...: the command with the small file system as its first argument.
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
