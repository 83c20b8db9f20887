#!/usr/bin/python3
"""Many browsers on one station: N WebSocket clients (each also fetching its trend every
2 s, as an open trend view does) on `kova-cli run --http` for D seconds. Prints the station's
CPU without clients and with them, the messages each client got, and the LateTicks the run
ends with. Exits 1 when a tick was late, a client got fewer than one message a second, or
(with --max-added-cpu) the clients added more CPU than allowed.

  scripts/web-load.py KOVA-CLI [--clients 50] [--seconds 60] [--max-added-cpu 5]
"""
import argparse
import json
import os
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
import urllib.request

try:
    import websocket  # python3-websocket
except ImportError:
    print("skipped: python3-websocket is not installed")
    sys.exit(77)

HERE = os.path.dirname(os.path.abspath(__file__))
TICK = os.sysconf("SC_CLK_TCK")


def cpu_seconds(pid):
    with open("/proc/%d/stat" % pid) as f:
        fields = f.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / TICK  # utime + stime


def measure(pid, seconds):
    c0, t0 = cpu_seconds(pid), time.time()
    time.sleep(seconds)
    return 100.0 * (cpu_seconds(pid) - c0) / (time.time() - t0)


def client(url, port, stop, counts, i):
    ws = websocket.create_connection(url, timeout=10, origin="http://127.0.0.1:%d" % port)
    ws.settimeout(1)
    next_trend = time.time()
    while not stop.is_set():
        try:
            ws.recv()
            counts[i] += 1
        except websocket.WebSocketTimeoutException:
            pass
        if time.time() >= next_trend:
            with urllib.request.urlopen("http://127.0.0.1:%d/api/trend?n=%d" % (port, i % 10 + 1),
                                        timeout=10) as r:
                r.read()
            next_trend += 2
    ws.close()


def main():
    p = argparse.ArgumentParser()
    p.add_argument("kova_cli")
    p.add_argument("--clients", type=int, default=50)
    p.add_argument("--seconds", type=float, default=60)
    p.add_argument("--max-added-cpu", type=float, default=None)
    a = p.parse_args()

    work = tempfile.mkdtemp(prefix="kova-web-load-")
    cli = os.path.abspath(a.kova_cli)
    subprocess.run([cli, "build", os.path.join(HERE, "..", "examples", "demo.json"), "-o",
                    "Demo.SUF"], cwd=work, check=True, capture_output=True)
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        port = s.getsockname()[1]
    station = subprocess.Popen([cli, "run", "Demo.SUF", "--poll", "--http", str(port), "--state",
                                "state.json"], cwd=work, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    try:
        deadline = time.time() + 30
        while True:
            try:
                urllib.request.urlopen("http://127.0.0.1:%d/api/live" % port, timeout=2).read()
                break
            except OSError:
                if time.time() > deadline:
                    raise
                time.sleep(0.1)
        quiet_seconds = min(a.seconds, 20)
        quiet = measure(station.pid, quiet_seconds)

        stop, counts = threading.Event(), [0] * a.clients
        threads = [threading.Thread(target=client, args=("ws://127.0.0.1:%d/live" % port, port,
                                                         stop, counts, i)) for i in range(a.clients)]
        for t in threads:
            t.start()
        time.sleep(2)  # every client connected
        busy = measure(station.pid, a.seconds)
        stop.set()
        for t in threads:
            t.join()
    finally:
        station.send_signal(signal.SIGINT)
        station.wait(timeout=30)
    with open(os.path.join(work, "state.json")) as f:
        late = json.load(f)["LateTicks"]
    per_second = min(counts) / (a.seconds + 2)
    print("clients: %d for %.0f s" % (a.clients, a.seconds))
    print("station CPU without clients: %.2f %%" % quiet)
    print("station CPU with clients:    %.2f %%" % busy)
    print("CPU added by the clients:    %.2f %% of one core" % (busy - quiet))
    print("messages per client: fewest %d, most %d (%.2f a second at least)" %
          (min(counts), max(counts), per_second))
    print("LateTicks: %d" % late)
    failed = late != 0 or per_second < 1.0
    if a.max_added_cpu is not None and busy - quiet > a.max_added_cpu:
        failed = True
    print("1 failed" if failed else "1 passed, 0 failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
