#!/usr/bin/env python3
"""Changes a trade of a site, or adds it: what an administration side would do, for a site that has none.

    set-trade.py SITE ID [FIELD=VALUE]...

    name=NAME          by which the hit logs name it, in lower case    url=ADDRESS
    mode=0|1|2         scoring mode                                    skim=N (-1: none)
    guarantee=N        clicks it is owed                               forced=0|1|2
    quota=N            clicks it is to get in each hour                hours=N (-1: for ever)
    override=0|1       1: these three count although it sends too few visitors
    measure=1..5 threshold=N below=N above=N     the trade's boost

Stop the scheduler, or do it right after a run: the run may write the index as well.
"""
import os
import struct
import sys

RECORD = 996
TEXTS = {"name": (4, 76), "url": (80, 120)}
NUMBERS = {"measure": 828, "threshold": 832, "below": 836, "above": 840, "skim": 844, "mode": 880,
           "guarantee": 884, "override": 888, "forced": 892, "hours": 896}


def new_record(number):
    record = bytearray(RECORD)
    for offset, value in ((0, number), (828, 1), (832, -1), (836, -1), (840, -1), (844, -1), (880, 1)):
        struct.pack_into("<i", record, offset, value)
    return record


def set_field(record, field, value):
    if field in TEXTS:
        offset, width = TEXTS[field]
        record[offset:offset + width] = value.encode()[:width - 1].ljust(width, b"\0")
    elif field == "quota":
        struct.pack_into("<24i", record, 900, *[int(value)] * 24)
    else:
        struct.pack_into("<i", record, NUMBERS[field], int(value))


def main(site, number, *settings):
    os.chdir(site)
    with open("d/t/index", "r+b") as index:
        records = index.read()
        ids = [struct.unpack_from("<i", records, at)[0] for at in range(0, len(records), RECORD)]
        position = ids.index(int(number)) if int(number) in ids else len(ids)
        record = bytearray(records[position * RECORD:][:RECORD]) or new_record(int(number))
        for setting in settings:
            try:
                set_field(record, *setting.split("=", 1))
            except (KeyError, TypeError, ValueError, struct.error):
                sys.exit(f"set-trade.py: {setting}: nothing was changed\n\n{__doc__}")
        # Everything the run looks for is there before the trade is.
        for path, length in (f"d/t/{number}", 1440 * 56), (f"d/h/{record[4:80].split(bytes(1))[0].decode()}.his", 0):
            with open(path, "ab") as file:
                file.truncate(max(file.tell(), length))
        index.seek(position * RECORD)
        index.write(record)


if len(sys.argv) < 3:
    sys.exit(__doc__)
main(*sys.argv[1:])
