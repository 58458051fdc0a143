#!/usr/bin/env python3
"""Starts runs under conditions and with files that a site should not have, but may.

    start.py BUILD_DIRECTORY [--short] [GROUP ...]

Groups: streams, masks, readonly, attributes, leftovers, neighbours, children, faults, kinds, limits,
names, texts, records. After each run: status 0, every store whole, nothing touched around the site,
and a next run that works once the cause is gone. Needs python3 and a C++ compiler; as root it also gives files away and runs as another user
(setpriv of util-linux). --short leaves cases out of the long tables.
"""
import site_case
import start_bytes as contents
import start_files as files
import start_others as others
import start_rights as rights

GROUPS = [rights.streams, rights.masks, rights.readonly, rights.attributes, others.leftovers,
          others.neighbours, others.children, others.faults, files.kinds, files.limits,
          contents.names, contents.texts, contents.records]
score = site_case.SCORE
site_case.reference()
for work in GROUPS:
    if site_case.CHOSEN and work.__name__ not in site_case.CHOSEN:
        continue
    ran = score.passed + score.failed
    work()
    print('%s: %d cases' % (work.__name__, score.passed + score.failed - ran), flush=True)
score.finish()
