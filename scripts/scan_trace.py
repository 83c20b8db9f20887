#!/usr/bin/env python3
"""How steady KOVA's scan is, seen from outside and from inside.

  scan_trace.py watch LOGFILE SECONDS OUT   the time of every write to the log file (inotify),
                                            one line per write, for SECONDS
  scan_trace.py stats WRITES [TICKS]        median, p99 and max of the intervals between log
                                            writes (and between the ticks of a --tick-trace
                                            file), and how many were over 60 ms

Used by measure-scan.sh; standard library only.
"""
import ctypes
import os
import select
import struct
import sys
import time

IN_MODIFY = 0x00000002


def watch(path, seconds, out):
    libc = ctypes.CDLL("libc.so.6", use_errno=True)
    fd = libc.inotify_init1(os.O_NONBLOCK)
    if fd < 0:
        sys.exit("inotify_init1 failed: %s" % os.strerror(ctypes.get_errno()))
    if libc.inotify_add_watch(fd, path.encode(), IN_MODIFY) < 0:
        sys.exit("cannot watch %s: %s" % (path, os.strerror(ctypes.get_errno())))
    end = time.monotonic() + seconds
    stamps = []
    poller = select.poll()
    poller.register(fd, select.POLLIN)
    while True:
        left = end - time.monotonic()
        if left <= 0:
            break
        if not poller.poll(left * 1000):
            continue
        now = time.monotonic()
        try:
            data = os.read(fd, 65536)
        except BlockingIOError:
            continue
        # One stamp per batch read: the logger writes and flushes one record at a time, and
        # events of one record that arrive together are one write.
        if data:
            stamps.append(now)
    with open(out, "w") as f:
        for s in stamps:
            f.write("%.6f\n" % s)


def percentile(sorted_values, p):
    if not sorted_values:
        return float("nan")
    k = min(len(sorted_values) - 1, max(0, int(round(p / 100.0 * (len(sorted_values) - 1)))))
    return sorted_values[k]


def describe(label, intervals_ms):
    v = sorted(intervals_ms)
    if not v:
        return "%s: no intervals" % label
    over = sum(1 for x in v if x > 60.0)
    return "%s: n=%d median=%.2f p99=%.2f max=%.2f over60=%d" % (
        label, len(v), percentile(v, 50), percentile(v, 99), v[-1], over)


def intervals(stamps_s):
    return [(b - a) * 1000.0 for a, b in zip(stamps_s, stamps_s[1:])]


def stats(writes, ticks=None):
    with open(writes) as f:
        stamps = [float(line) for line in f if line.strip()]
    print(describe("log writes (ms between)", intervals(stamps)))
    if ticks and os.path.exists(ticks):
        starts, durations = [], []
        with open(ticks) as f:
            for line in f:
                if line.startswith("#") or not line.strip():
                    continue
                start, ms = line.split()
                starts.append(float(start))
                durations.append(float(ms))
        print(describe("ticks (ms between starts)", intervals(starts)))
        d = sorted(durations)
        if d:
            print("tick durations: n=%d median=%.3f p99=%.3f max=%.3f ms" % (
                len(d), percentile(d, 50), percentile(d, 99), d[-1]))


if __name__ == "__main__":
    if len(sys.argv) >= 5 and sys.argv[1] == "watch":
        watch(sys.argv[2], float(sys.argv[3]), sys.argv[4])
    elif len(sys.argv) >= 3 and sys.argv[1] == "stats":
        stats(sys.argv[2], sys.argv[3] if len(sys.argv) > 3 else None)
    else:
        sys.exit(__doc__)
