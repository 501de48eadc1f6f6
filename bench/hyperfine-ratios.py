#!/usr/bin/env python3
# The times of one hyperfine CSV export (--export-csv), a line per command, each compared with
# the reference command (orwick-cli, as the disk-tool benchmarks run it):
#   bench/hyperfine-ratios.py CSV REFERENCE             "NAME / REFERENCE = mean ratio (CPU ratio)"
#   bench/hyperfine-ratios.py CSV REFERENCE --inverse   "REFERENCE / NAME = mean ratio (median ratio)"
import csv
import sys

path, reference = sys.argv[1], sys.argv[2]
inverse = sys.argv[3:] == ["--inverse"]
rows = {r["command"]: r for r in csv.DictReader(open(path))}
ref = rows[reference]


def cpu(r):
    return float(r["user"]) + float(r["system"])


for name, r in rows.items():
    line = f"  {name:12} mean {float(r['mean'])*1000:8.1f} ms  (user {float(r['user'])*1000:7.1f} ms, system {float(r['system'])*1000:7.1f} ms)"
    if name != reference:
        if inverse:
            line += (f"   {reference} / {name} = {float(ref['mean'])/float(r['mean']):.2f}"
                     f" (median {float(ref['median'])*1000:.1f} / {float(r['median'])*1000:.1f} ms = {float(ref['median'])/float(r['median']):.2f})")
        else:
            line += f"   {name} / {reference} = {float(r['mean'])/float(ref['mean']):.2f} (CPU {cpu(r)/cpu(ref):.2f})"
    print(line)
