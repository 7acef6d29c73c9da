# SPDX-License-Identifier: MIT
# Functions for cases, about programs on connections. All ports are those that the programs choose themselves.

. "$SUPPORT/waiting.sh"

# serve BEHAVIOUR: starts a server (see peer.py) and sets $port to its port.
serve() {
    command -v python3 >/dev/null || { echo "There is no python3 here." >&2 && exit 77; }
    rm -f port
    # Without this, the server would have no standard input.
    python3 "$SUPPORT/peer.py" "$1" port <&0 &
    wait_until "the server listens" test -e port
    port=$(cat port)
}

# launch WORD...: starts the program, which listens. Sets $port to its port, and $! to its process. It writes to the files
# shown and complaints.
launch() {
    # Those of another program would tell its port.
    rm -f shown complaints
    $ROUTERMSG "$@" >shown 2>complaints &
    wait_until "the program listens" grep -qs '^routermsg: Listening on .*\.$' complaints
    port=$(sed -n 's/^routermsg: Listening on .*:\([0-9]*\)\.$/\1/p' complaints)
}

# has_lines FILE COUNT: whether the file has that many lines.
has_lines() { [ -e "$1" ] && [ "$(wc -l <"$1")" -ge "$2" ]; }

# stop PROCESS: ends a program as Ctrl-C does and says how it ended.
stop() {
    kill -TERM "$1"
    wait "$1"
    echo "ended with status $?"
}

# steady: replaces the times and ports in what is shown or recorded.
steady() {
    sed -E 's/[0-9]{2}:[0-9]{2}:[0-9]{2}\.[0-9]{3}/TIME/; s/"time":"[^"]*"/"time":"TIME"/
            s/(127\.0\.0\.1|localhost|\[?::1\]?):[0-9]+/\1:PORT/g'
}

# say PORT: sends standard input as it is, and ends the connection.
say() { python3 -c 'import socket, sys
with socket.create_connection(("127.0.0.1", int(sys.argv[1]))) as s: s.sendall(sys.stdin.buffer.read())' "$1"; }
