#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs a command as root in a root folder of its own, which begins as what this machine has and is gone afterwards:
#
#     in_own_root.sh FOLDER COMMAND...     FOLDER is readable there as /given
#
# What the command installs or removes stays in memory. It needs root or sudo, and the right to mount.
set -euo pipefail
if [ "$(id -u)" -ne 0 ]; then
    exec sudo bash "$0" "$@"
fi
if [ "${IN_OWN_ROOT:-}" != yes ]; then
    IN_OWN_ROOT=yes exec unshare --mount --pid --fork --kill-child bash "$0" "$@"
fi
given=$1
shift
mount --make-rprivate /
scratch=$(mktemp -d)
mount -t tmpfs tmpfs "$scratch"
rmdir_later() { umount -R "$scratch" && rmdir "$scratch"; }
trap rmdir_later EXIT
mkdir "$scratch"/{upper,work,root}
mount -t overlay overlay -o "lowerdir=/,upperdir=$scratch/upper,workdir=$scratch/work" "$scratch/root"
mount -t proc proc "$scratch/root/proc"
mount --rbind /dev "$scratch/root/dev"
mount -t tmpfs tmpfs "$scratch/root/tmp"
mkdir "$scratch/root/given"
mount --bind "$given" "$scratch/root/given"
# No service is started or stopped there.
printf '#!/bin/sh\nexit 101\n' >"$scratch/root/usr/sbin/policy-rc.d"
chmod +x "$scratch/root/usr/sbin/policy-rc.d"
env -i PATH="$PATH" HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive chroot "$scratch/root" "$@"
