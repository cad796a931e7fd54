#!/usr/bin/python3
"""Speed of the measurement CSV conversion against pandas' to_csv, in one run.

    bench/csv_bench.py CLI MAKE_LARGE_RECORD FOLDER [--records N] [--pandas-records M]
                       [--rounds R]

Makes FOLDER/SBIG.FDT (72 channels, one decimal, 1 s period, binary) with
make_large_record when it is not there, converts it R times with `CLI csv`
(removing the CSV files between rounds), then writes the first M records' same
values (times as "yyyy/mm/dd hh:mm:ss", 72 values with one decimal) with pandas'
to_csv into FOLDER, also R times. Rates are bytes written over wall time. Run it
with Debian's python3 (python3-pandas). Put FOLDER on tmpfs (/dev/shm) to measure
the conversion rather than the disk.
"""
import argparse
import glob
import os
import subprocess
import sys
import time

import numpy as np
import pandas as pd


def load_average():
    with open("/proc/loadavg") as f:
        return " ".join(f.read().split()[:3])


def convert(cli, record):
    start = time.perf_counter()
    out = subprocess.run([cli, "--home", os.path.dirname(record), "csv", record],
                         check=True, capture_output=True, text=True).stdout.split()
    seconds = time.perf_counter() - start
    size = sum(os.path.getsize(p) for p in out)
    for p in out:
        os.remove(p)
    return size, seconds, len(out)


def pandas_frame(record, count):
    analog, header = 72, 108 + 56 * 72 + 26 * 8 + 2
    dtype = np.dtype([("time", "<i4"), ("units", "<i2", (analog,))])
    data = np.fromfile(record, dtype=dtype, count=count, offset=header)
    frame = pd.DataFrame(data["units"] / 10.0, columns=["CH%02d" % (c + 1) for c in range(analog)])
    frame.insert(0, "time", pd.to_datetime(data["time"], unit="s"))
    return frame


def pandas_write(frame, path, formatted):
    # formatted: the same texts as the conversion writes (7 wide, one decimal);
    # otherwise pandas' own shortest text of each float, its fastest path.
    start = time.perf_counter()
    frame.to_csv(path, index=False, header=False, float_format="%7.1f" if formatted else None,
                 date_format="%Y/%m/%d %H:%M:%S", lineterminator="\r\n")
    seconds = time.perf_counter() - start
    size = os.path.getsize(path)
    os.remove(path)
    return size, seconds


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("cli")
    ap.add_argument("maker")
    ap.add_argument("folder")
    ap.add_argument("--records", type=int, default=7000000)
    ap.add_argument("--pandas-records", type=int, default=1000000)
    ap.add_argument("--rounds", type=int, default=3)
    args = ap.parse_args()
    os.makedirs(args.folder, exist_ok=True)
    record = os.path.join(args.folder, "SBIG.FDT")
    if not os.path.exists(record):
        subprocess.run([args.maker, args.folder, "--records", str(args.records), "--format", "2"],
                       check=True, stdout=subprocess.DEVNULL)
    for stale in glob.glob(os.path.join(args.folder, "SBIG*.CSV")):
        os.remove(stale)
    records = (os.path.getsize(record) - (108 + 56 * 72 + 26 * 8 + 2)) // 148
    frame = pandas_frame(record, args.pandas_records)
    print(f"record: {record}, {records} records, {os.path.getsize(record)} bytes")
    for r in range(args.rounds):
        load = load_average()
        size, seconds, files = convert(args.cli, record)
        ours = size / seconds / 1e6
        psize, pseconds = pandas_write(frame, os.path.join(args.folder, "pandas.csv"), True)
        theirs = psize / pseconds / 1e6
        fsize, fseconds = pandas_write(frame, os.path.join(args.folder, "pandas.csv"), False)
        fast = fsize / fseconds / 1e6
        print(f"round {r + 1} (load {load}): recscope-cli csv {size} bytes in {files} files, "
              f"{seconds:.2f} s, {ours:.0f} MB/s; pandas to_csv {len(frame)} rows: "
              f"'%7.1f' {psize} bytes {pseconds:.2f} s {theirs:.1f} MB/s (ratio {ours / theirs:.0f}), "
              f"default floats {fsize} bytes {fseconds:.2f} s {fast:.1f} MB/s "
              f"(ratio {ours / fast:.0f})")
        sys.stdout.flush()


if __name__ == "__main__":
    main()
