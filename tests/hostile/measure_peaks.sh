#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# measure_peaks.sh PROGRAM: reads every hostile input with the program measure_peaks and prints, in Markdown, the
# machine and the table of outcome, time and memory.
set -euo pipefail
program=$1

processor=$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1)
system=$(. /etc/os-release && echo "$PRETTY_NAME")
echo "Measured on ${processor:-an unknown processor}, $(nproc) cores, $(uname -m), $system; $("$program" --about)."
echo
"$program" --table
