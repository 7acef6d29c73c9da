# SPDX-License-Identifier: MIT
# Functions for cases, about commands that need little memory however many documents there are.

# make_documents: makes ten documents in the folder few, ten thousand in the folder many, and one document as large as
# all of those together, whole.xml. Each small document has 1027 bytes.
make_documents() {
    local i
    mkdir few many
    for ((i = 0; i < 10; ++i)); do
        cp documents/event-scan.xml few/$i.xml
    done
    for ((i = 0; i < 10000; ++i)); do
        echo many/$i.xml
    done | xargs -n 1000 sh -c 'tee "$@" <few/0.xml >/dev/null' _
    {
        sed '/<\/PelLu300RouterMessage>/,$d' few/0.xml
        yes "<!-- $(printf '%01000d' 0) -->" | head -n 10000
        sed -n '/<\/PelLu300RouterMessage>/,$p' few/0.xml
    } >whole.xml
}

# with_memory KIBIBYTES COMMAND...
with_memory() (
    ulimit -v "$1" && "${@:2}"
)

# least_memory COMMAND...: prints the least address space in which it works, to a quarter of a mebibyte.
least_memory() {
    local too_little=0 enough=1000000 middle
    with_memory $enough "$@" >/dev/null 2>&1 || return
    while ((enough - too_little > 256)); do
        middle=$(((enough + too_little) / 2))
        if with_memory $middle "$@" >/dev/null 2>&1; then
            enough=$middle
        else
            too_little=$middle
        fi
    done
    echo $enough
}

# with_little_memory COMMAND...: runs "COMMAND... many" with the memory that "COMMAND... few" needs, plus some for the
# names of the files, of which Qt 6 needs more than Qt 5. That is too little for the bytes of all documents: "COMMAND... whole.xml" must fail.
with_little_memory() {
    local least memory names=7
    ! ldd "$1" | grep -q libQt6Core || names=12
    "$@" few >/dev/null || { echo "It does not work even with all memory."; return 1; }
    if ! least=$(least_memory "$@" few); then
        # Sanitizers, for example, reserve a large address space.
        echo "No program gets along with little address space." >&2
        exit 77
    fi
    memory=$((least + names * 1024))
    "$@" whole.xml >/dev/null || echo "The document with all the bytes cannot be read at all."
    with_memory $memory "$@" whole.xml >/dev/null 2>&1 && echo "There is memory for all the bytes."
    with_memory $memory "$@" many
}
