"""A running station for the web tests: the demonstration configuration, a log written by an
earlier run, a users file made by kova-cli passwd, and `kova-cli run --http` on a free port."""
import json
import os
import signal
import socket
import ssl
import subprocess
import tempfile
import time
import urllib.error
import urllib.request

PASSWORDS = {"vera": "viewer-secret-1", "otto": "operator-secret-1"}


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


class Station:
    def __init__(self, kova_cli, source_dir, extra=(), certificate=False):
        self.cli = os.path.abspath(kova_cli)
        source_dir = os.path.abspath(source_dir)
        self.dir = tempfile.mkdtemp(prefix="kova-web-")
        if certificate:
            subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout",
                            "key.pem", "-out", "cert.pem", "-days", "2", "-subj", "/CN=127.0.0.1"],
                           cwd=self.dir, check=True, capture_output=True)
            extra = (*extra, "--http-cert", "cert.pem", "--http-key", "key.pem")
        self.run_cli("build", os.path.join(source_dir, "examples", "demo.json"), "-o", "Demo.SUF")
        # A log written by the station itself: 150 simulated seconds, a record every 5 s.
        self.run_cli("run", "Demo.SUF", "--poll", "--log", "--start", "2026-11-20 10:00:00",
                     "--ticks", "300")
        os.rename(os.path.join(self.dir, "demo-log.CSV"), os.path.join(self.dir, "EARLIER.CSV"))
        for user, role in (("vera", "viewer"), ("otto", "operator")):
            self.run_cli("passwd", "users.txt", user, "--role", role, stdin=PASSWORDS[user] + "\n")
        self.port = free_port()
        self.out = open(os.path.join(self.dir, "out.txt"), "w")
        self.err = open(os.path.join(self.dir, "err.txt"), "w")
        self.proc = subprocess.Popen(
            [self.cli, "run", "Demo.SUF", "--poll", "--http", str(self.port), "--http-users",
             "users.txt", "--state", "state.json", *extra],
            cwd=self.dir, stdout=self.out, stderr=self.err)
        tls = "--http-cert" in extra
        self.url = ("https" if tls else "http") + "://127.0.0.1:%d/" % self.port
        self.context = ssl._create_unverified_context() if tls else None
        deadline = time.time() + 30
        while time.time() < deadline:
            try:
                self.get("api/live")
                return
            except (OSError, urllib.error.URLError):
                time.sleep(0.1)
        raise RuntimeError("the station's page did not come up: " + self.stderr())

    def run_cli(self, *args, stdin=None):
        r = subprocess.run([self.cli, *args], cwd=self.dir, input=stdin, text=True,
                           capture_output=True, timeout=120)
        if r.returncode != 0:
            raise RuntimeError("kova-cli %s failed: %s" % (args[0], r.stderr))
        return r

    def get(self, path):
        with urllib.request.urlopen(self.url + path, timeout=10, context=self.context) as r:
            return json.loads(r.read())

    def request(self, path, body=None, headers=None, method="POST"):
        data = None if body is None else json.dumps(body).encode()
        req = urllib.request.Request(self.url + path, data=data, method=method,
                                     headers=headers or {})
        try:
            with urllib.request.urlopen(req, timeout=60, context=self.context) as r:
                return r.status, json.loads(r.read() or b"{}"), r.headers
        except urllib.error.HTTPError as e:
            return e.code, json.loads(e.read() or b"{}"), e.headers

    def stop(self):
        """Stops the station; returns its --state JSON."""
        if self.proc.poll() is None:
            self.proc.send_signal(signal.SIGINT)
            self.proc.wait(timeout=30)
        self.out.close()
        self.err.close()
        with open(os.path.join(self.dir, "state.json")) as f:
            return json.load(f)

    def stdout(self):
        self.out.flush()
        with open(os.path.join(self.dir, "out.txt")) as f:
            return f.read()

    def stderr(self):
        self.err.flush()
        with open(os.path.join(self.dir, "err.txt")) as f:
            return f.read()

    def tag_value(self, state, name):
        return next(t["Value"] for t in state["tags"] if t["TagName"] == name)
