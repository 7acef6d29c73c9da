# SPDX-License-Identifier: MIT
# What gdb_printers.sh prints, in the running program and from a core file.
set print pretty on
up 1
print document
print fragments
print reference
print *pointer
print untouched
print withoutValues
print strange
print several
print notSet
print shared
print derived
print base
print *unconstructed
print *damaged
print type
print state
print noState
print choice
print noChoice
print failure
print none
print place
