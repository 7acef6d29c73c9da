# SPDX-License-Identifier: MIT
# For cases: writes frames of an OstraInterfacePort with port 5000, one in each file. Their names say whether
# the class id is in front, and the byte order.
printf '\x7F\x01\x2E\xB8\0\0\0\x10\x1F\x98\x05\x17\0\0\0\x08\0\0\0\0\0\0\x13\x88' >id_big
printf '\xB8\x2E\x01\x7F\x10\0\0\0\x17\x05\x98\x1F\x08\0\0\0\x88\x13\0\0\0\0\0\0' >id_little
tail -c 20 id_big >big
tail -c 20 id_little >little
port='--record OstraInterfacePort --no-id'
