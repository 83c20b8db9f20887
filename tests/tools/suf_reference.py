"""A small, independent reader and writer of KOVA setup files (*.SUF).

Written straight from the record table of the file, as a second opinion on the C++ codec.
A configuration is a dict shaped like the JSON of `kova-cli dump`: items and fields by name,
variants as {"type": code, "value": v}, floats as Python floats.

File: 363 records of 128 bytes; each item starts a record; little-endian numbers; texts as a
2-byte length and Windows-1252 bytes; records padded with zero bytes.
"""

import math
import struct

RECORD = 128
RECORDS = 363

TAG_FIELDS = [
    ("Label", "s"), ("TagName", "s"), ("IOName", "s"), ("Kind", "h"), ("Direction", "h"),
    ("Address", "h"), ("IONumber", "h"), ("RawValue1", "h"), ("EngValue1", "f"),
    ("RawValue2", "h"), ("EngValue2", "f"), ("EngText1", "s"), ("EngText2", "s"),
    ("Slope", "f"), ("Offset", "f"), ("Units", "s"), ("Log", "h"), ("Value", "f"),
]
SCREEN_HEADER_FIELDS = [("Title", "s"), ("JumpTo", "h")]
SCREEN_LINE_FIELDS = [("TagName", "s"), ("TagNumber", "h"), ("Editing", "h")]
ALARM_FIELDS = [
    ("TagName", "s"), ("TagNo", "h"), ("HiVal", "f"), ("HiMsg", "s"), ("LoVal", "f"),
    ("LoMsg", "s"), ("NormMsg", "s"), ("LastText", "s"), ("State", "h"),
]
CONTROL_FIELDS = [
    ("IfText", "s"), ("IfCode", "s"), ("ThenText", "s"), ("ThenCode", "s"),
    ("ElseText", "s"), ("ElseCode", "s"), ("LastResult", "h"), ("ThenOnRise", "h"),
]
# Records 283..310, one item each: (name, kind); "v" is a variant, "i" a 32-bit integer.
SETTINGS = [
    ("IOPeriod", "h"), ("IOUnits", "h"), ("LogPeriod", "h"), ("LogUnits", "h"),
    ("TrendAtLogPeriod", "h"), ("LogTimeColumn", "v"), ("LogDateColumn", "v"),
    ("LogFileName", "s"), ("OverwriteFile", "h"), ("PrinterPortNumber", "h"),
    ("PrinterPortBase", "h"), ("LogMode", "h"), ("StopSampleCount", "v"), ("StartHour", "v"),
    ("StartMinute", "v"), ("StartTimeSecs", "v"), ("StopHour", "v"), ("StopMinute", "v"),
    ("StopTimeSecs", "i"), ("ConditionTag", "h"), ("StartValue", "v"), ("StartAbove", "h"),
    ("StopValue", "f"), ("StopAbove", "h"), ("LoggingEnabled", "v"), ("DailyFiles", "h"),
    ("LogDirectory", "s"), ("DateFormatUS", "h"),
]

# Variant type codes and the struct format of their values ("s" = a text).
VARIANT_FORMATS = {0: None, 1: None, 2: "<h", 3: "<i", 4: "<f", 5: "<d", 7: "<d", 8: "s", 11: "<h"}


class SufError(Exception):
    pass


def single(x):
    """The value as a 32-bit float holds it."""
    return struct.unpack("<f", struct.pack("<f", x))[0]


# ---------------------------------------------------------------------------- writing

# Windows-1252 leaves five bytes undefined; they stand for the C1 controls of the same number.
_UNDEFINED = {0x81, 0x8D, 0x8F, 0x90, 0x9D}


def to_cp1252(text):
    return b"".join(bytes([ord(ch)]) if ord(ch) in _UNDEFINED else ch.encode("cp1252")
                    for ch in text)


def from_cp1252(raw):
    return "".join(chr(b) if b in _UNDEFINED else bytes([b]).decode("cp1252") for b in raw)


def _text(value):
    raw = to_cp1252(value)
    return struct.pack("<H", len(raw)) + raw


def _field(kind, value):
    if kind == "s":
        return _text(value)
    if kind == "h":
        return struct.pack("<h", value)
    if kind == "i":
        return struct.pack("<i", value)
    if kind == "f":
        return struct.pack("<f", value)
    if kind == "v":
        code = value["type"]
        fmt = VARIANT_FORMATS[code]
        out = struct.pack("<h", code)
        if fmt == "s":
            out += _text(value["value"])
        elif fmt is not None:
            out += struct.pack(fmt, value["value"])
        return out
    raise ValueError(kind)


def _record(body):
    if len(body) > RECORD:
        raise SufError("record of %d bytes" % len(body))
    return body + b"\0" * (RECORD - len(body))


def encode(config):
    """The bytes of a setup file holding the configuration."""
    records = []
    for tag in config["tags"]:
        records.append(b"".join(_field(k, tag[n]) for n, k in TAG_FIELDS))
    for screen in config["screens"]:
        records.append(b"".join(_field(k, screen[n]) for n, k in SCREEN_HEADER_FIELDS))
        for line in screen["Lines"]:
            records.append(b"".join(_field(k, line[n]) for n, k in SCREEN_LINE_FIELDS))
    for pens in config["TrendTable"]:
        for pen in pens:
            records.append(_field("h", pen))
    for name, kind in SETTINGS:
        records.append(_field(kind, config[name]))
    for alarm in config["alarms"]:
        records.append(b"".join(_field(k, alarm[n]) for n, k in ALARM_FIELDS))
    records.append(_field("h", config["AlarmsEnabled"]))
    for line in config["controls"]:
        records.append(b"".join(_field(k, line[n]) for n, k in CONTROL_FIELDS))
    records.append(_field("h", config["ControlsEnabled"]))
    records.append(_field("h", config["DaqType"]))
    assert len(records) == RECORDS
    return b"".join(_record(r) for r in records)


# ---------------------------------------------------------------------------- reading

class _Cursor:
    def __init__(self, data, record):
        self.data = data
        self.pos = (record - 1) * RECORD
        self.end = min(len(data), record * RECORD)
        self.record = record
        if self.pos >= len(data):
            raise SufError("record %d is missing" % record)

    def take(self, n):
        if self.pos + n > self.end:
            raise SufError("record %d: item runs past the end" % self.record)
        piece = self.data[self.pos:self.pos + n]
        self.pos += n
        return piece

    def field(self, kind):
        if kind == "s":
            (n,) = struct.unpack("<H", self.take(2))
            return from_cp1252(self.take(n))
        if kind == "h":
            return struct.unpack("<h", self.take(2))[0]
        if kind == "i":
            return struct.unpack("<i", self.take(4))[0]
        if kind == "f":
            return struct.unpack("<f", self.take(4))[0]
        if kind == "v":
            (code,) = struct.unpack("<h", self.take(2))
            if code not in VARIANT_FORMATS:
                raise SufError("record %d: unknown variant type %d" % (self.record, code))
            fmt = VARIANT_FORMATS[code]
            if fmt is None:
                value = None
            elif fmt == "s":
                value = self.field("s")
            else:
                value = struct.unpack(fmt, self.take(struct.calcsize(fmt)))[0]
            return {"type": code, "value": value}
        raise ValueError(kind)


def decode(data):
    """The configuration held by a setup file's bytes; SufError when it does not read."""
    record = [0]

    def next_cursor():
        record[0] += 1
        return _Cursor(data, record[0])

    def fields(layout):
        c = next_cursor()
        return {name: c.field(kind) for name, kind in layout}

    config = {"tags": [fields(TAG_FIELDS) for _ in range(32)], "screens": []}
    for _ in range(10):
        screen = fields(SCREEN_HEADER_FIELDS)
        screen["Lines"] = [fields(SCREEN_LINE_FIELDS) for _ in range(20)]
        config["screens"].append(screen)
    config["TrendTable"] = [[next_cursor().field("h") for _ in range(4)] for _ in range(10)]
    for name, kind in SETTINGS:
        config[name] = next_cursor().field(kind)
    config["alarms"] = [fields(ALARM_FIELDS) for _ in range(20)]
    config["AlarmsEnabled"] = next_cursor().field("h")
    config["controls"] = [fields(CONTROL_FIELDS) for _ in range(30)]
    config["ControlsEnabled"] = next_cursor().field("h")
    config["DaqType"] = next_cursor().field("h")
    return config


# ---------------------------------------------------------------------------- comparing

def normalize_singles(config):
    """Reads every single-float field of a dumped configuration as a 32-bit float, so that
    the shortest decimal of kova-cli compares equal to the float itself."""
    def fix(v):
        v = _json_number(v)
        return single(v) if isinstance(v, (int, float)) and not isinstance(v, bool) else v

    def fix_fields(record, layout):
        for name, kind in layout:
            if kind == "f":
                record[name] = fix(record[name])
            elif kind == "v" and record[name]["type"] == 4:
                record[name]["value"] = fix(record[name]["value"])

    for tag in config["tags"]:
        fix_fields(tag, TAG_FIELDS)
    for alarm in config["alarms"]:
        fix_fields(alarm, ALARM_FIELDS)
    fix_fields(config, SETTINGS)
    return config


def _same_number(a, b):
    if isinstance(a, float) or isinstance(b, float):
        if isinstance(a, str) or isinstance(b, str):
            return False
        if math.isnan(a) or math.isnan(b):
            return math.isnan(a) and math.isnan(b)
        return float(a) == float(b) and math.copysign(1, a) == math.copysign(1, b)
    return a == b


def _json_number(v):
    """The JSON form of kova-cli writes non-finite numbers as strings."""
    if v == "NaN":
        return math.nan
    if v == "Infinity":
        return math.inf
    if v == "-Infinity":
        return -math.inf
    return v


def differences(expected, actual, path=""):
    """Every place where two configurations differ (JSON non-finite strings allowed)."""
    out = []
    if isinstance(expected, dict):
        if not isinstance(actual, dict) or list(expected.keys()) != list(actual.keys()):
            return ["%s: keys %s != %s" % (path, list(expected.keys()),
                                           list(actual.keys()) if isinstance(actual, dict) else actual)]
        for k in expected:
            out += differences(expected[k], actual[k], path + "." + k if path else k)
        return out
    if isinstance(expected, list):
        if not isinstance(actual, list) or len(expected) != len(actual):
            return ["%s: lengths differ" % path]
        for i, (e, a) in enumerate(zip(expected, actual)):
            out += differences(e, a, "%s[%d]" % (path, i))
        return out
    e, a = _json_number(expected), _json_number(actual)
    if isinstance(e, bool) or isinstance(a, bool) or isinstance(e, str) or isinstance(a, str) \
            or e is None or a is None:
        if type(e) is not type(a) or e != a:
            out.append("%s: %r != %r" % (path, expected, actual))
    elif not _same_number(e, a):
        out.append("%s: %r != %r" % (path, expected, actual))
    return out
