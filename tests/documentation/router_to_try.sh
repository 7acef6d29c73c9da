#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# router_to_try.sh ROUTERSIM ROUTERMSG CLIENT README: does in three terminals what README.md shows of the simulated
# router, runs its clients, and compares what all of them print with the page. Only times, ports and seeds may differ.
set -euo pipefail
PATH=$(dirname "$1"):$(dirname "$2"):$PATH
client=$3
readme=$4
. "$(dirname "$0")/../tool/waiting.sh"

folder=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; wait; rm -rf "$folder"' EXIT
cd "$folder"

# The blocks with commands and with what they print, each in a file of its own.
awk '/^```(sh|text)$/ { kind = substr($0, 4); file = kind (++count[kind]); next } /^```/ { file = "" } file { print > file }' "$readme"
[ -e sh3 ] && [ ! -e sh4 ] && [ -e text3 ] && [ ! -e text4 ] || {
    echo "$readme has not three blocks with commands and three with what they print." >&2
    exit 1
}

# The router takes any free port.
port=0
# run N: the last command of a block, with that port.
run() { exec bash -c "exec $(tail -n 1 "sh$1" | sed "s/4711/$port/")" 2>&1; }
# steady: without what differs from run to run.
steady() { sed -E "s/^[0-9:.]{12} /TIME /; s/:$port\b/:4711/; s/seed [0-9]+/seed N/"; }
has_all_events() { [ "$(wc -l <connected)" -ge "$(wc -l <text3)" ]; }

# Standard input stays open, as in a terminal.
mkfifo typed
exec 9<>typed
run 1 >router &
wait_until 'the router listens' grep -q 'Listening.*seed.*[.]$' router
port=$(sed -nE 's/.*Listening.*:([0-9]+), seed.*/\1/p' router)
run 2 <&9 >connected &
wait_until 'the second terminal is connected' grep -q connected connected
(run 3) >sent
wait_until 'the second terminal shows all events' has_all_events
diff -u --label README.md --label 'the router' <(steady <text1) <(steady <router)
diff -u --label README.md --label 'the replies' <(steady <text2) <(steady <sent)
diff -u --label README.md --label 'the second terminal' <(steady <text3) <(steady <connected)

# What is typed is sent.
echo AcquireMastership >&9
wait_until 'the reply is shown' grep -q 'received Reply 1: AcquireMastership' connected
# The clients on the page, in C++ and in Python.
awk '/^```python$/ { inside = 1; next } /^```/ { inside = 0 } inside' "$readme" | sed "s/4711/$port/" >client.py
PYTHONPATH=$(dirname "$readme")/examples/python python3 client.py >replies
[ "$(grep -c Reply replies)" -eq 2 ] && grep -q Event replies || { cat replies >&2; exit 1; }
"$client" "$port" >reply
grep -q '<Frequency>98500000.00</Frequency>' reply
