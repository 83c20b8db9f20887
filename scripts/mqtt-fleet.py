#!/usr/bin/env python3
"""A fleet of stations on one mosquitto, measured.

N kova-cli stations (the demonstration setup on the TEST module, scanned and logged every
100 ms, each with a prefix of its own) publish their records to one broker; a historian
(mosquitto_sub, QoS 1, a persistent session) takes fleet/+/records. The broker is stopped
for several seconds a few times during the run. At the end every station is stopped cleanly
and the historian's records are checked: none missing, first arrivals in time order per
station, a duplicate carries the time stamp of the first.

Prints the figures: records/s, station CPU per record, end-to-end latency p50/p99 of live
records (the historian's arrival time minus the record's ts; same PC, same clock), the
largest outbox of a station during an outage. Exit code 0 when the checks hold, 1 when not,
77 when mosquitto is missing.

    scripts/mqtt-fleet.py KOVA_CLI [--stations 50] [--seconds 60] [--restarts 3] [--outage 5]
"""
import argparse
import json
import os
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time


def free_port():
    s = socket.socket()
    s.bind(("127.0.0.1", 0))
    port = s.getsockname()[1]
    s.close()
    return port


def cpu_seconds(pid):
    try:
        with open(f"/proc/{pid}/stat") as f:
            fields = f.read().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
    except OSError:
        return 0.0


def folder_bytes(path):
    total = 0
    for root, _, files in os.walk(path):
        for name in files:
            if name.endswith(".kq"):
                try:
                    total += os.path.getsize(os.path.join(root, name))
                except OSError:
                    pass
    return total


def stop_broker(broker):
    """mosquitto can miss a TERM that comes just after it opened its port: repeat it."""
    for _ in range(100):
        broker.send_signal(signal.SIGTERM)
        try:
            broker.wait(0.1)
            return
        except subprocess.TimeoutExpired:
            pass
    broker.kill()
    broker.wait()


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("cli")
    ap.add_argument("--stations", type=int, default=50)
    ap.add_argument("--seconds", type=float, default=60)
    ap.add_argument("--restarts", type=int, default=3)
    ap.add_argument("--outage", type=float, default=5)
    args = ap.parse_args()
    args.cli = os.path.abspath(args.cli)
    broker_bin = shutil.which("mosquitto") or "/usr/sbin/mosquitto"
    if not os.path.exists(broker_bin) or not shutil.which("mosquitto_sub"):
        print("mosquitto or mosquitto_sub is missing: skipped")
        return 77
    src = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    work = tempfile.mkdtemp(prefix="kova-fleet-")
    os.chmod(work, 0o777)  # the broker drops root's rights and saves its sessions here
    port = free_port()
    with open(os.path.join(work, "mosquitto.conf"), "w") as f:
        f.write(f"listener {port} 127.0.0.1\nallow_anonymous true\npersistence true\n"
                f"persistence_location {work}/\nmax_queued_messages 1000000\n"
                "max_inflight_messages 0\nlog_dest none\n")

    def start_broker():
        return subprocess.Popen([broker_bin, "-c", os.path.join(work, "mosquitto.conf")],
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    broker = start_broker()
    time.sleep(0.5)
    demo = json.load(open(os.path.join(src, "examples", "demo.json")))
    demo.update({"IOPeriod": 100, "IOUnits": 1, "LogPeriod": 100, "LogUnits": 1})
    with open(os.path.join(work, "fast.json"), "w") as f:
        json.dump(demo, f)
    subprocess.run([args.cli, "build", "fast.json", "-o", "PLANT.SUF"], cwd=work, check=True)
    historian_out = open(os.path.join(work, "historian.txt"), "w")
    historian = subprocess.Popen(
        ["mosquitto_sub", "-h", "127.0.0.1", "-p", str(port), "-q", "1", "-c", "-i",
         "fleet-historian", "-t", "fleet/+/records", "-F", "%U %t %p"],
        stdout=historian_out, stderr=subprocess.DEVNULL)
    time.sleep(0.5)
    stations = []
    for i in range(args.stations):
        d = os.path.join(work, f"s{i:02d}")
        os.mkdir(d)
        shutil.copy(os.path.join(work, "PLANT.SUF"), d)
        err = open(os.path.join(d, "stderr"), "w")
        p = subprocess.Popen([args.cli, "run", "PLANT.SUF", "--poll", "--mqtt",
                              f"127.0.0.1:{port}", "--mqtt-prefix", f"fleet/s{i:02d}",
                              "--state", "state.json"],
                             cwd=d, stdout=subprocess.DEVNULL, stderr=err)
        stations.append((p, d))
    started = time.time()
    largest_outbox = 0
    gap = args.seconds / (args.restarts + 1)
    for r in range(args.restarts):
        time.sleep(max(0.0, started + gap * (r + 1) - time.time()))
        stop_broker(broker)
        away = time.time()
        while time.time() - away < args.outage:
            largest_outbox = max(largest_outbox, max(folder_bytes(d) for _, d in stations))
            time.sleep(0.5)
        broker = start_broker()
    time.sleep(max(0.0, started + args.seconds - time.time()))
    cpu = sum(cpu_seconds(p.pid) for p, _ in stations)
    for p, _ in stations:
        p.send_signal(signal.SIGTERM)
    bad_exit = sum(1 for p, _ in stations if p.wait() != 0)
    elapsed = time.time() - started
    # Every record a station handed over has reached the historian: its newest delivered one.
    expected = {}
    for i, (_, d) in enumerate(stations):
        try:
            expected[f"fleet/s{i:02d}/records"] = int(
                open(os.path.join(d, "KOVA_OUTBOX", "PLANT", "delivered-mqtt")).read())
        except (OSError, ValueError):
            expected[f"fleet/s{i:02d}/records"] = 0
    deadline = time.time() + 30
    while True:
        historian_out.flush()
        seen = {}
        lines = open(os.path.join(work, "historian.txt")).read().splitlines()
        for line in lines:
            parts = line.split(" ", 2)
            if len(parts) < 3:
                continue
            try:
                rec = json.loads(parts[2])
            except ValueError:
                continue
            seen.setdefault(parts[1], []).append((float(parts[0]), rec))
        if all(len({r["seq"] for _, r in seen.get(t, [])}) >= n for t, n in expected.items()) \
                or time.time() > deadline:
            break
        time.sleep(0.5)
    historian.send_signal(signal.SIGTERM)
    historian.wait()
    stop_broker(broker)

    missing = out_of_order = dup_other_time = duplicates = total = replayed = 0
    latencies = []
    for topic, n in expected.items():
        first_time = {}
        highest = 0
        for arrived, rec in seen.get(topic, []):
            seq, ts = rec["seq"], rec["ts"]
            if seq in first_time:
                duplicates += 1
                dup_other_time += first_time[seq] != ts
                continue
            if seq != highest + 1:
                out_of_order += 1
            highest = max(highest, seq)
            first_time[seq] = ts
            total += 1
            replayed += rec["replayed"]
            if not rec["replayed"]:
                latencies.append(arrived * 1000 - ts)
        missing += sum(1 for s in range(1, n + 1) if s not in first_time)
        times = [first_time[s] for s in sorted(first_time)]
        out_of_order += sum(1 for a, b in zip(times, times[1:]) if b <= a)
    latencies.sort()

    def pct(p):
        return latencies[min(len(latencies) - 1, int(len(latencies) * p))] if latencies else 0

    late = 0
    for _, d in stations:
        try:
            late += json.load(open(os.path.join(d, "state.json")))["LateTicks"]
        except (OSError, ValueError, KeyError):
            late += 1
    print(f"stations {args.stations}, {elapsed:.0f} s, {args.restarts} broker restarts of "
          f"{args.outage:.0f} s")
    print(f"records {total} ({replayed} replayed, {duplicates} duplicates), "
          f"{total / elapsed:.0f} records/s")
    print(f"missing {missing}, out of order {out_of_order}, duplicates with another time "
          f"{dup_other_time}, stations not ending cleanly {bad_exit}, late ticks {late}")
    print(f"station CPU per record {cpu / max(total, 1) * 1e6:.0f} us")
    print(f"live latency p50 {pct(0.5):.1f} ms, p99 {pct(0.99):.1f} ms")
    print(f"largest outbox of a station during an outage {largest_outbox / 1024:.0f} KiB")
    ok = missing == 0 and out_of_order == 0 and dup_other_time == 0 and bad_exit == 0 and total > 0
    if ok:
        shutil.rmtree(work, ignore_errors=True)
    else:
        print(f"kept for a look: {work}")
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main())
