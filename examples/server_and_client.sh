#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# server_and_client.sh SERVER CLIENT: the examples of connections talk to each other in all pairs of forms.
set -euo pipefail
server=$1
client=$2
failed=0

# expect EXPECTED ACTUAL
expect() {
    [ "$1" = "$2" ] || { printf 'expected: %s\nactual:   %s\n' "$1" "$2" >&2; failed=1; }
}

# with_server EXPECTED CLIENT_FORM [SERVER_FORM]: starts a server, asks it twice, and ends it.
with_server() {
    local lines pid port
    coproc SERVER { exec "$server" "${@:3}"; }
    pid=$SERVER_PID
    read -r lines <&"${SERVER[0]}"
    port=${lines##* }
    expect "master: yes, said in $1" "$("$client" "$port" "$2" 2>&1)"
    # The first client has left, so the next one may be master.
    expect "master: yes, said in $1" "$("$client" "$port" "$2" 2>&1)"
    kill "$pid"
    wait "$pid" || true
    # Nobody listens any more.
    complain "1 Cannot connect: Connection refused" "$client" "$port" "$2"
}

# complain EXPECTED PROGRAM WORD...
complain() {
    local status=0 said
    said=$("${@:2}" 2>&1) || status=$?
    expect "$1" "$status $said"
}

complain "2 usage: link_client PORT [binary | xml]" "$client"
complain "2 usage: link_client PORT [binary | xml]" "$client" 1 yaml
complain "1 Cannot listen on this port. " "$server" yaml

with_server binary binary
with_server xml xml
with_server xml binary xml
with_server binary xml binary
exit $failed
