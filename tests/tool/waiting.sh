# SPDX-License-Identifier: MIT
# Functions for cases, about waiting for what another program does.

# wait_until WHAT COMMAND...: waits until the command succeeds. After a minute it complains that this did not happen.
wait_until() {
    local attempt
    for ((attempt = 0; attempt < 600; ++attempt)); do
        ! "${@:2}" || return 0
        sleep 0.1
    done
    echo "Not within a minute: $1."
    return 1
}
