"""A station as a Sparkplug B edge node on a private broker, seen by a Python host that
decodes every message with Debian's protobuf module.

    sparkplug_station_test.py KOVA_CLI SOURCE_DIR PROTOC
"""
import json
import os
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
import unittest

import paho.mqtt.client as mqtt

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
import sparkplug_client  # noqa: E402

KOVA_CLI, SOURCE, PROTOC = (os.path.abspath(a) for a in sys.argv[1:4])
WORK = tempfile.mkdtemp(prefix="kova-sparkplug-")
SYSTEM_VARIABLES = ["TS", "HR", "MN", "SC", "DW", "SU"]
FLOAT, BOOLEAN, INT64 = 9, 11, 4


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


def wait_for(predicate, seconds=10, what="the condition"):
    end = time.time() + seconds
    while time.time() < end:
        value = predicate()
        if value:
            return value
        time.sleep(0.02)
    raise AssertionError("waited %s s for %s" % (seconds, what))


class Broker:
    def __init__(self):
        self.port = free_port()
        conf = os.path.join(WORK, "broker-%d.conf" % self.port)
        with open(conf, "w") as f:
            f.write("listener %d 127.0.0.1\nallow_anonymous true\npersistence false\n" % self.port)
        self.conf = conf
        self.start()

    def start(self):
        broker = next((p for p in ("/usr/sbin/mosquitto", "/usr/bin/mosquitto") if os.path.exists(p)),
                      "mosquitto")
        self.proc = subprocess.Popen([broker, "-c", self.conf], stdout=subprocess.DEVNULL,
                                     stderr=subprocess.DEVNULL)
        wait_for(self.accepts, 10, "the broker")

    def accepts(self):
        try:
            socket.create_connection(("127.0.0.1", self.port), 0.2).close()
            return True
        except OSError:
            return False

    def stop(self):
        # mosquitto can miss a TERM that comes just after it opened its port: repeat it.
        for _ in range(100):
            self.proc.terminate()
            try:
                self.proc.wait(0.1)
                return
            except subprocess.TimeoutExpired:
                pass
        self.proc.kill()
        self.proc.wait()


class Host:
    """Every message on spBv1.0/#, decoded, in the order it came."""

    def __init__(self, pb, port):
        self.pb = pb
        self.port = port
        self.lock = threading.Lock()
        self.messages = []
        self.client = mqtt.Client()
        self.client.on_message = self.on_message
        ready = threading.Event()
        self.client.on_subscribe = lambda *a: ready.set()
        self.client.on_connect = lambda c, *a: c.subscribe("spBv1.0/#", qos=1)
        self.client.connect("127.0.0.1", port, 30)
        self.client.loop_start()
        assert ready.wait(10), "the host could not subscribe"

    def on_message(self, _c, _u, msg):
        line = sparkplug_client.decode(self.pb, msg.topic, msg.payload, msg.retain)
        with self.lock:
            self.messages.append(line)

    def of(self, kind):
        with self.lock:
            return [m for m in self.messages if "/%s/" % kind in m["topic"]]

    def after(self, index):
        with self.lock:
            return self.messages[index:]

    def count(self):
        with self.lock:
            return len(self.messages)

    def state(self, host_id, online, timestamp):
        body = json.dumps({"online": online, "timestamp": timestamp}).encode()
        self.client.publish("spBv1.0/STATE/" + host_id, body, qos=1, retain=True).wait_for_publish()

    def ncmd(self, group, node, *metrics):
        p = self.pb.Payload()
        for name, value in metrics:
            m = p.metrics.add()
            m.name = name
            if isinstance(value, bool):
                m.datatype = self.pb.Boolean
                m.boolean_value = value
            else:
                m.datatype = self.pb.Float
                m.float_value = value
        self.client.publish("spBv1.0/%s/NCMD/%s" % (group, node), p.SerializeToString(),
                            qos=1).wait_for_publish()

    def close(self):
        self.client.loop_stop()
        self.client.disconnect()


class Station:
    def __init__(self, setup, port, *options):
        self.out = open(os.path.join(WORK, "station-%d.out" % port), "w+")
        self.err = open(os.path.join(WORK, "station-%d.err" % port), "w+")
        self.state_file = os.path.join(WORK, "state-%d.json" % port)
        self.proc = subprocess.Popen(
            [KOVA_CLI, "run", setup, "--port", "sim", "--poll", "--mqtt", "127.0.0.1:%d" % port,
             "--mqtt-client-id", "station-%d" % port, "--state", self.state_file] + list(options),
            stdout=self.out, stderr=self.err, cwd=WORK)

    def lines(self):
        with open(self.out.name) as f:
            return [l.rstrip("\n") for l in f if l.startswith("sparkplug")]

    def errors(self):
        with open(self.err.name) as f:
            return f.read()

    def kill(self):
        self.proc.send_signal(signal.SIGKILL)
        self.proc.wait(10)
        self.close()

    def stop(self):
        self.proc.send_signal(signal.SIGTERM)
        rc = self.proc.wait(20)
        self.close()
        return rc

    def close(self):
        self.out.close()
        self.err.close()


def build_setup(name, period_ms, log_period_ms=None):
    """The demo plant, scanning every period_ms, with a counter that changes every tick."""
    with open(os.path.join(SOURCE, "examples", "demo.json")) as f:
        setup = json.load(f)
    setup["IOPeriod"] = period_ms
    setup["IOUnits"] = 1
    if log_period_ms:
        setup["LogPeriod"] = log_period_ms
        setup["LogUnits"] = 1
    free = next(i for i, c in enumerate(setup["controls"]) if not c["ThenText"])
    setup["controls"][free] = ({
        "IfText": "", "IfCode": ",", "ThenText": "@SPARE13 = @SPARE13 + 1",
        "ThenCode": "@SPARE13,@SPARE13,1,+,!", "ElseText": "", "ElseCode": "",
        "LastResult": 0, "ThenOnRise": 0})
    src = os.path.join(WORK, name + ".json")
    with open(src, "w") as f:
        json.dump(setup, f)
    out = os.path.join(WORK, name + ".SUF")
    subprocess.run([KOVA_CLI, "build", src, "-o", out], check=True)
    return setup, out


class SparkplugStation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        subprocess.run([PROTOC, "--python_out=" + WORK, "-I" + os.path.join(SOURCE, "src/links/sparkplug"),
                        os.path.join(SOURCE, "src/links/sparkplug/sparkplug_b.proto")], check=True)
        cls.pb = sparkplug_client.load_pb(WORK)
        cls.setup, cls.fast = build_setup("fast", 10)
        _, cls.calm = build_setup("calm", 100)
        _, cls.logging = build_setup("logging", 50, 100)

    def setUp(self):
        self.broker = Broker()
        self.host = Host(self.pb, self.broker.port)

    def tearDown(self):
        self.host.close()
        self.broker.stop()

    def check_birth(self, birth, bd_seq):
        self.assertEqual(birth["seq"], 0)
        metrics = {m["name"]: m for m in birth["metrics"]}
        self.assertEqual(metrics["bdSeq"]["datatype"], INT64)
        self.assertEqual(metrics["bdSeq"]["value"], bd_seq)
        self.assertEqual(metrics["Node Control/Rebirth"]["datatype"], BOOLEAN)
        self.assertIs(metrics["Node Control/Rebirth"]["value"], False)
        named = [t for t in self.setup["tags"] if t["TagName"]]
        for tag in named:
            m = metrics[tag["TagName"]]
            self.assertEqual(m["datatype"], BOOLEAN if tag["Kind"] == 1 else FLOAT, tag["TagName"])
            units = m.get("properties", {}).get("engUnit", "")
            self.assertEqual(units, tag["Units"], tag["TagName"])
            self.assertEqual(m["timestamp"], birth["timestamp"])
        for name in SYSTEM_VARIABLES:
            self.assertEqual(metrics[name]["datatype"], FLOAT, name)
        self.assertEqual(len(metrics), len(named) + len(SYSTEM_VARIABLES) + 2)

    def test_births_data_commands_and_death(self):
        st = Station(self.fast, self.broker.port, "--sparkplug", "Plant/Station1", "--mqtt-writes")
        try:
            births = wait_for(lambda: self.host.of("NBIRTH"), 10, "the birth")
            self.check_birth(births[0], 0)
            self.assertEqual(births[0]["topic"], "spBv1.0/Plant/NBIRTH/Station1")
            # The counter changes every tick: NDATA seq 1, 2, ... 255, 0, 1 ... without a gap.
            data = wait_for(lambda: len(self.host.of("NDATA")) >= 300 and self.host.of("NDATA"),
                            20, "300 data messages")
            self.assertEqual([d["seq"] for d in data[:300]], [(i + 1) % 256 for i in range(300)])
            for d in data[:300]:
                self.assertTrue(d["metrics"])
                self.assertFalse(any(m.get("historical") for m in d["metrics"]))
                self.assertTrue(all(m["timestamp"] == d["timestamp"] for m in d["metrics"]))
            stamps = [d["timestamp"] for d in data[:300]]
            self.assertEqual(stamps, sorted(stamps))
            self.assertLess(abs(stamps[-1] / 1000 - time.time()), 60)

            # A write reaches the station; a refused one is one line.
            mark = self.host.count()
            self.host.ncmd("Plant", "Station1", ("SETPT", 55.5), ("LEVEL", 3.0))
            wait_for(lambda: "sparkplug NCMD: SETPT set to 55.5" in st.lines(), 10, "the write")
            wait_for(lambda: any(m.get("name") == "SETPT" and m["value"] == 55.5
                                 for d in self.host.after(mark) if "/NDATA/" in d["topic"]
                                 for m in d["metrics"]), 10, "SETPT 55.5 in the data")
            self.assertEqual(st.lines().count("sparkplug NCMD: refused: LEVEL is an input"), 1)

            # Rebirth: a new birth with the same bdSeq, seq 0, and data go on from it.
            mark = self.host.count()
            self.host.ncmd("Plant", "Station1", ("Node Control/Rebirth", True))
            rebirth = wait_for(lambda: [m for m in self.host.after(mark) if "/NBIRTH/" in m["topic"]],
                               10, "the new birth")[0]
            self.check_birth(rebirth, 0)
            after = wait_for(lambda: [m for m in self.host.after(mark) if "/NDATA/" in m["topic"]
                                      and m is not None], 10, "data after the birth")
            order = [m for m in self.host.after(mark) if "/NBIRTH/" in m["topic"] or "/NDATA/" in m["topic"]]
            i = next(k for k, m in enumerate(order) if "/NBIRTH/" in m["topic"])
            self.assertTrue(after)
            if i + 1 < len(order):
                self.assertEqual(order[i + 1]["seq"], 1)
        finally:
            # Killed: the broker sends the will, whose bdSeq is the birth's.
            st.kill()
        death = wait_for(lambda: self.host.of("NDEATH"), 10, "the will")[0]
        self.assertEqual(death["topic"], "spBv1.0/Plant/NDEATH/Station1")
        self.assertEqual(death["metrics"][0]["name"], "bdSeq")
        self.assertEqual(death["metrics"][0]["value"], 0)
        self.assertNotIn("seq", death)

    def test_waits_for_the_primary_host_and_leaves_when_it_goes(self):
        st = Station(self.calm, self.broker.port, "--sparkplug", "Plant/Station2",
                     "--sparkplug-host", "scada")
        try:
            # Connected (its commands are heard: sent again until the station is there) but
            # silent until the host is online.
            def refused():
                self.host.ncmd("Plant", "Station2", ("SETPT", 1.0))
                time.sleep(0.2)
                return st.lines()
            wait_for(refused, 10, "the refused write")
            self.assertEqual(set(st.lines()), {"sparkplug NCMD: refused: writes to SETPT are not "
                                               "taken (the station runs without --mqtt-writes)"})
            time.sleep(0.5)
            self.assertEqual(self.host.of("NBIRTH") + self.host.of("NDATA"), [])
            now = int(time.time() * 1000)
            self.host.state("scada", True, now)
            birth = wait_for(lambda: self.host.of("NBIRTH"), 10, "the birth")[0]
            self.check_birth(birth, 0)
            wait_for(lambda: self.host.of("NDATA"), 10, "data")
            # Offline: the node says its death and leaves; nothing more is published.
            self.host.state("scada", False, now + 1)
            death = wait_for(lambda: self.host.of("NDEATH"), 10, "the death")[0]
            self.assertEqual(death["metrics"][0]["value"], 0)
            time.sleep(0.3)
            mark = self.host.count()
            time.sleep(0.7)
            self.assertEqual([m for m in self.host.after(mark) if "/STATE/" not in m["topic"]], [])
            # A stale state (older than the newest) changes nothing; a new one brings a birth
            # on the next connection, bdSeq 1.
            self.host.state("scada", True, now - 5)
            time.sleep(0.7)
            self.assertEqual(len(self.host.of("NBIRTH")), 1)
            self.host.state("scada", True, now + 2)
            births = wait_for(lambda: len(self.host.of("NBIRTH")) >= 2 and self.host.of("NBIRTH"),
                              10, "the second birth")
            self.check_birth(births[1], 1)
        finally:
            rc = st.stop()
        # A clean stop sends the death itself, with the bdSeq of its connection.
        deaths = wait_for(lambda: len(self.host.of("NDEATH")) >= 2 and self.host.of("NDEATH"), 10,
                          "the clean stop's death")
        self.assertEqual(deaths[1]["metrics"][0]["value"], 1)
        self.assertEqual(rc, 0, st.errors())
        with open(st.state_file) as f:
            self.assertEqual(json.load(f)["LateTicks"], 0)
        self.assertIn("the primary host scada is online", st.errors())

    def test_records_held_during_an_outage_follow_the_new_birth_marked_historical(self):
        st = Station(self.logging, self.broker.port, "--sparkplug", "Plant/Station3",
                     "--outbox", os.path.join(WORK, "outbox-%d" % self.broker.port))
        try:
            wait_for(lambda: self.host.of("NBIRTH"), 10, "the birth")
            wait_for(lambda: len(self.host.of("NDATA")) > 5, 10, "live data")
            # (Records made before the first birth followed it as history: the station was
            # connecting then.)
            self.broker.stop()
            outage_start = time.time() * 1000
            time.sleep(2)
            outage_end = time.time() * 1000
            self.broker.start()
            births = wait_for(lambda: len(self.host.of("NBIRTH")) >= 2 and self.host.of("NBIRTH"),
                              15, "the birth after the outage")
            self.check_birth(births[1], 1)
            def held():
                after = self.host.after(self.host.messages.index(births[1]))
                return [d for d in after if "/NDATA/" in d["topic"] and d["metrics"]
                        and d["metrics"][0].get("historical")]
            wait_for(held, 10, "historical data")
            time.sleep(0.5)
            history = held()
            # A record every 100 ms for about 2 s, each with its own time, in order, all of
            # them from the outage and marked historical, named as the birth names them.
            self.assertGreaterEqual(len(history), 10)
            stamps = [d["timestamp"] for d in history]
            self.assertEqual(stamps, sorted(stamps))
            self.assertEqual(len(set(stamps)), len(stamps))
            for d in history:
                self.assertGreater(d["timestamp"], outage_start - 1500)
                self.assertLess(d["timestamp"], outage_end + 1500)
                self.assertTrue(all(m["historical"] and m["timestamp"] == d["timestamp"]
                                    for m in d["metrics"]))
                self.assertIn("LEVEL", [m["name"] for m in d["metrics"]])
            # They follow the new birth, and their seq goes on from it without a gap.
            after = self.host.after(self.host.messages.index(births[1]))
            seqs = [m["seq"] for m in after if "/NDATA/" in m["topic"]]
            self.assertEqual(seqs, [(i + 1) % 256 for i in range(len(seqs))])
        finally:
            st.kill()

    def test_bad_options_are_one_line_errors_before_anything_starts(self):
        broker = "127.0.0.1:%d" % self.broker.port
        cases = [
            (["--sparkplug", "Plant/N"], "--sparkplug needs the broker: --mqtt HOST[:PORT]"),
            (["--mqtt", broker, "--sparkplug", "PlantOnly"],
             '--sparkplug takes GROUP/NODE, not "PlantOnly"'),
            (["--mqtt", broker, "--sparkplug", "Pl+nt/N"],
             '--sparkplug: the group ID "Pl+nt" cannot be used: it holds a wildcard (+ or #)'),
            (["--mqtt", broker, "--sparkplug", "Plant/"],
             '--sparkplug: the node ID "" cannot be used: it is empty'),
            (["--mqtt", broker, "--sparkplug", "Plant/a/b"],
             '--sparkplug: the node ID "a/b" cannot be used: it holds a /'),
            (["--mqtt", broker, "--sparkplug-host", "scada"],
             "--sparkplug-host needs --sparkplug GROUP/NODE"),
            (["--mqtt", broker, "--sparkplug", "Plant/N", "--sparkplug-host", "sc#da"],
             '--sparkplug-host: the host ID "sc#da" cannot be used: it holds a wildcard (+ or #)'),
            (["--mqtt", broker, "--sparkplug", "Plant/N", "--mqtt-prefix", "kova/x"],
             "--mqtt-prefix does not go with --sparkplug: its topics are spBv1.0/GROUP/..."),
        ]
        for args, message in cases:
            run = subprocess.run([KOVA_CLI, "run", self.calm, "--ticks", "1", "--port", "sim"] + args,
                                 capture_output=True, text=True, cwd=WORK, timeout=30)
            self.assertEqual(run.returncode, 2, args)
            self.assertEqual(run.stderr, "kova-cli: run: %s\n" % message, args)
        self.assertEqual(self.host.of("NBIRTH"), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
