"""Cross-checks kova-cli against the independent Python reader and writer of setup files.

usage: suf_crosscheck.py KOVA_CLI

(a) Python writes a setup file, `kova-cli dump` reads it: every field must match.
(b) `kova-cli build` writes a file from JSON, Python reads it: every field must match, and
    the bytes must equal the ones Python writes for the same configuration.
"""

import copy
import json
import math
import os
import random
import struct
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True  # leave no cache in the source tree
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import suf_reference as suf  # noqa: E402

TEXT_CHARS = "ABCDEFGHIJKLMNOPQRSTUVWXYZ abcxyz0123456789-+*/=<>\"'@,.;:!\\" \
             "°µ€éÄßñ×÷‰™Ÿ\x81\x8d\x8f\x90\x9d"


def random_single(rng):
    choice = rng.random()
    if choice < 0.1:
        return suf.single(rng.choice([0.0, -0.0, 1.0, -1.0, 0.1, 1e-45, 3.4028234663852886e38,
                                      12.5, 16777217.0, 1e-38]))
    if choice < 0.15:
        return rng.choice([math.inf, -math.inf, math.nan])
    bits = rng.getrandbits(32)
    value = struct.unpack("<f", struct.pack("<I", bits))[0]
    if math.isnan(value):
        return math.nan
    return value


def random_double(rng):
    choice = rng.random()
    if choice < 0.2:
        return rng.choice([0.0, 46341.5, -1e300, 5e-324, 0.1, math.inf, math.nan])
    bits = rng.getrandbits(64)
    value = struct.unpack("<d", struct.pack("<Q", bits))[0]
    return math.nan if math.isnan(value) else value


def random_text(rng, most):
    """A text of at most `most` Windows-1252 bytes (every character here is one byte)."""
    return "".join(rng.choice(TEXT_CHARS) for _ in range(rng.randint(0, most)))


def i16(rng):
    return rng.randint(-32768, 32767)


def random_variant(rng, code=None):
    code = rng.choice([0, 1, 2, 3, 4, 5, 7, 8, 11]) if code is None else code
    value = {0: None, 1: None, 2: i16(rng), 3: rng.randint(-2**31, 2**31 - 1),
             4: random_single(rng), 5: random_double(rng), 7: random_double(rng),
             8: random_text(rng, 60), 11: rng.choice([-1, 0])}[code]
    return {"type": code, "value": value}


# kova-cli build refuses a tag name with a character a topic level cannot hold.
NOT_IN_TAG_NAMES = str.maketrans("", "", "+#/")


def rich_config(seed):
    rng = random.Random(seed)
    # 34 bytes of numbers and 6 length fields leave 82 bytes for the tag's six texts.
    tags = []
    for _ in range(32):
        texts = [random_text(rng, 13) for _ in range(6)]
        tags.append({
            "Label": texts[0], "TagName": texts[1].translate(NOT_IN_TAG_NAMES), "IOName": texts[2],
            "Kind": i16(rng), "Direction": i16(rng), "Address": i16(rng), "IONumber": i16(rng),
            "RawValue1": i16(rng), "EngValue1": random_single(rng), "RawValue2": i16(rng),
            "EngValue2": random_single(rng), "EngText1": texts[3], "EngText2": texts[4],
            "Slope": random_single(rng), "Offset": random_single(rng), "Units": texts[5],
            "Log": i16(rng), "Value": random_single(rng),
        })
    tags[0].update({"Label": "Tank °C", "TagName": "TANK", "IOName": "AI-3", "Units": "°C"})
    screens = [{"Title": random_text(rng, 100), "JumpTo": i16(rng),
                "Lines": [{"TagName": random_text(rng, 100), "TagNumber": i16(rng),
                           "Editing": i16(rng)} for _ in range(20)]} for _ in range(10)]
    config = {"tags": tags, "screens": screens,
              "TrendTable": [[i16(rng) for _ in range(4)] for _ in range(10)]}
    for name, kind in suf.SETTINGS:
        if kind == "h":
            config[name] = i16(rng)
        elif kind == "i":
            config[name] = rng.randint(-2**31, 2**31 - 1)
        elif kind == "f":
            config[name] = random_single(rng)
        elif kind == "s":
            config[name] = random_text(rng, 120)
        else:
            config[name] = random_variant(rng)
    # Every variant type appears at least once.
    for code, name in zip([0, 1, 2, 3, 4, 5, 7, 8, 11],
                          ["LogTimeColumn", "LogDateColumn", "StopSampleCount", "StartTimeSecs",
                           "StartValue", "StartHour", "StartMinute", "StopHour", "LoggingEnabled"]):
        config[name] = random_variant(rng, code)
    config["alarms"] = []
    for _ in range(20):
        texts = [random_text(rng, 21) for _ in range(5)]
        config["alarms"].append({
            "TagName": texts[0], "TagNo": i16(rng), "HiVal": random_single(rng),
            "HiMsg": texts[1], "LoVal": random_single(rng), "LoMsg": texts[2],
            "NormMsg": texts[3], "LastText": texts[4], "State": i16(rng)})
    config["AlarmsEnabled"] = i16(rng)
    config["controls"] = []
    for _ in range(30):
        texts = [random_text(rng, 17) for _ in range(6)]
        config["controls"].append({
            "IfText": texts[0], "IfCode": texts[1], "ThenText": texts[2], "ThenCode": texts[3],
            "ElseText": texts[4], "ElseCode": texts[5], "LastResult": i16(rng),
            "ThenOnRise": i16(rng)})
    config["ControlsEnabled"] = i16(rng)
    config["DaqType"] = i16(rng)
    return config


def empty_config():
    blank = {"type": 2, "value": 0}
    config = {
        "tags": [{name: ("" if kind == "s" else 0) for name, kind in suf.TAG_FIELDS}
                 for _ in range(32)],
        "screens": [{"Title": "", "JumpTo": 0,
                     "Lines": [{"TagName": "", "TagNumber": 0, "Editing": 0}
                               for _ in range(20)]} for _ in range(10)],
        "TrendTable": [[0] * 4 for _ in range(10)],
    }
    for name, kind in suf.SETTINGS:
        config[name] = {"s": "", "v": copy.deepcopy(blank)}.get(kind, 0)
    config["alarms"] = [{name: ("" if kind == "s" else 0) for name, kind in suf.ALARM_FIELDS}
                        for _ in range(20)]
    config["AlarmsEnabled"] = 0
    config["controls"] = [{name: ("" if kind == "s" else 0) for name, kind in suf.CONTROL_FIELDS}
                          for _ in range(30)]
    config["ControlsEnabled"] = 0
    config["DaqType"] = 0
    return config


def to_cli_json(value):
    """Non-finite numbers as kova-cli writes them."""
    if isinstance(value, dict):
        return {k: to_cli_json(v) for k, v in value.items()}
    if isinstance(value, list):
        return [to_cli_json(v) for v in value]
    if isinstance(value, float) and not math.isfinite(value):
        return "NaN" if math.isnan(value) else ("Infinity" if value > 0 else "-Infinity")
    return value


def run(cli, *args):
    return subprocess.run([cli, *args], capture_output=True, check=False)


def check_dump(cli, folder, name, config, failures):
    path = os.path.join(folder, name + ".SUF")
    with open(path, "wb") as f:
        f.write(suf.encode(config))
    result = run(cli, "dump", path)
    if result.returncode != 0:
        failures.append("%s: dump failed: %s" % (name, result.stderr.decode()))
        return
    dumped = suf.normalize_singles(json.loads(result.stdout.decode("utf-8")))
    for d in suf.differences(config, dumped):
        failures.append("%s: dump: %s" % (name, d))
    # The random values need not make a usable configuration, but every record must read.
    result = run(cli, "check", path)
    unreadable = [l for l in result.stdout.decode().splitlines() if ": record " in l]
    if result.returncode == 2 or unreadable:
        failures.append("%s: check: %s" % (name, result.stdout.decode() + result.stderr.decode()))


def check_build(cli, folder, name, config, failures):
    source = os.path.join(folder, name + ".json")
    target = os.path.join(folder, name + "-built.SUF")
    with open(source, "w", encoding="utf-8") as f:
        json.dump(to_cli_json(config), f, ensure_ascii=False, indent=1)
    result = run(cli, "build", source, "-o", target)
    if result.returncode != 0:
        failures.append("%s: build failed: %s" % (name, result.stderr.decode()))
        return
    with open(target, "rb") as f:
        built = f.read()
    if len(built) != suf.RECORD * suf.RECORDS:
        failures.append("%s: build wrote %d bytes" % (name, len(built)))
    for d in suf.differences(config, suf.decode(built)):
        failures.append("%s: build: %s" % (name, d))
    if built != suf.encode(config):
        failures.append("%s: build: bytes differ from the reference writer's" % name)


def main():
    cli = sys.argv[1]
    failures = []
    with tempfile.TemporaryDirectory() as folder:
        configs = [("empty", empty_config())] + \
                  [("rich%d" % seed, rich_config(seed)) for seed in range(1, 6)]
        for name, config in configs:
            check_dump(cli, folder, name, config, failures)
            check_build(cli, folder, name, config, failures)
    for f in failures[:40]:
        print(f)
    if failures:
        print("%d differences" % len(failures))
        return 1
    print("setup files agree: %d configurations" % len(configs))
    return 0


if __name__ == "__main__":
    sys.exit(main())
