# SPDX-License-Identifier: MIT
# make_week: writes week.rec, a recording of five messages in all forms.
make_week() {
    $ROUTERMSG new -o 1.xml Request MessageID=1 AcquireMastership
    $ROUTERMSG new -o 2.bin Reply MessageID=1 AcquireMastership Success=true
    $ROUTERMSG new -o 3.binz Event MessageID=2 DF_Params Frequency=98.5e6 Bandwidth=15000 DF_Params Frequency=99.1e6
    $ROUTERMSG new -o 4.jsonl Reply MessageID=3 DF_Params Frequency=87.5e6 MastershipState MasterClientID='R&D "North"'
    $ROUTERMSG new -o 5.json --root OstraInterfacePort Port=5002
    cat 1.xml 2.bin 3.binz 4.jsonl 5.json >week.rec
    rm 1.xml 2.bin 3.binz 4.jsonl 5.json
} >/dev/null
