# SPDX-License-Identifier: MIT
# Sourced: skips a test on machines without gdb.
if ! command -v gdb >/dev/null; then
    echo "gdb is missing."
    exit 77
fi
if ! gdb -nx -batch -ex 'python print("Python")' 2>&1 | grep -qx Python; then
    echo "This gdb is built without Python."
    exit 77
fi
