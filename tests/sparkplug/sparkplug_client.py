#!/usr/bin/env python3
"""A Sparkplug B host for tests and for looking at a station by hand.

    sparkplug_client.py --pb DIR --port N watch [--seconds S]   one JSON line per message
    sparkplug_client.py --pb DIR --port N ncmd GROUP NODE NAME=VALUE...
    sparkplug_client.py --pb DIR --port N state HOST true|false [--timestamp MS]

DIR holds sparkplug_b_pb2.py (protoc --python_out). Every message on spBv1.0/# is decoded
with Python's protobuf module: NBIRTH/NDATA/NDEATH/NCMD as payloads, STATE as JSON.
Values of ncmd: true/false (Boolean), a number with a dot or exponent (Float), a whole
number (Int64), "rebirth" (Node Control/Rebirth true), anything else (String).
"""
import argparse
import json
import sys
import time

import paho.mqtt.client as mqtt


def load_pb(folder):
    sys.path.insert(0, folder)
    import sparkplug_b_pb2  # noqa: E402
    return sparkplug_b_pb2


def metric_json(m):
    out = {"name": m.name if m.HasField("name") else None, "datatype": m.datatype}
    kind = m.WhichOneof("value")
    out["value"] = getattr(m, kind) if kind in (
        "int_value", "long_value", "float_value", "double_value", "boolean_value",
        "string_value") else None
    if m.HasField("timestamp"):
        out["timestamp"] = m.timestamp
    if m.is_historical:
        out["historical"] = True
    if m.HasField("properties"):
        props = {}
        for key, value in zip(m.properties.keys, m.properties.values):
            props[key] = value.string_value if value.HasField("string_value") else None
        out["properties"] = props
    return out


def decode(pb, topic, payload, retained):
    line = {"topic": topic, "retained": bool(retained)}
    if "/STATE/" in topic:
        try:
            line["state"] = json.loads(payload.decode("utf-8"))
        except ValueError:
            line["state_raw"] = payload.decode("utf-8", "replace")
        return line
    p = pb.Payload()
    p.ParseFromString(payload)
    if p.HasField("seq"):
        line["seq"] = p.seq
    if p.HasField("timestamp"):
        line["timestamp"] = p.timestamp
    line["metrics"] = [metric_json(m) for m in p.metrics]
    return line


def connect(port):
    client = mqtt.Client()
    client.connect("127.0.0.1", port, 30)
    return client


def watch(pb, args):
    client = connect(args.port)

    def on_message(_c, _u, msg):
        try:
            line = decode(pb, msg.topic, msg.payload, msg.retain)
        except Exception as e:  # a payload that does not decode is a finding, not a crash
            line = {"topic": msg.topic, "error": str(e)}
        print(json.dumps(line), flush=True)

    def on_connect(c, _u, _f, _rc):
        c.subscribe("spBv1.0/#", qos=1)
        print(json.dumps({"subscribed": True}), flush=True)

    client.on_message = on_message
    client.on_connect = on_connect
    client.loop_start()
    end = time.time() + args.seconds
    while time.time() < end:
        time.sleep(0.05)
    client.loop_stop()


def ncmd(pb, args):
    p = pb.Payload()
    p.timestamp = int(time.time() * 1000)
    for item in args.metrics:
        m = p.metrics.add()
        if item == "rebirth":
            m.name = "Node Control/Rebirth"
            m.datatype = pb.Boolean
            m.boolean_value = True
            continue
        name, _, value = item.partition("=")
        m.name = name
        if value in ("true", "false"):
            m.datatype = pb.Boolean
            m.boolean_value = value == "true"
        elif value.lstrip("-").isdigit():
            m.datatype = pb.Int64
            m.long_value = int(value) & 0xFFFFFFFFFFFFFFFF
        else:
            try:
                m.float_value = float(value)
                m.datatype = pb.Float
            except ValueError:
                m.datatype = pb.String
                m.string_value = value
    publish(args.port, "spBv1.0/%s/NCMD/%s" % (args.group, args.node), p.SerializeToString())


def state(args):
    ts = args.timestamp if args.timestamp is not None else int(time.time() * 1000)
    body = json.dumps({"online": args.online == "true", "timestamp": ts})
    publish(args.port, "spBv1.0/STATE/" + args.host, body.encode(), retain=True)


def publish(port, topic, payload, retain=False):
    client = connect(port)
    client.loop_start()
    info = client.publish(topic, payload, qos=1, retain=retain)
    info.wait_for_publish()
    client.disconnect()
    client.loop_stop()


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--pb", required=True)
    ap.add_argument("--port", type=int, required=True)
    sub = ap.add_subparsers(dest="command", required=True)
    w = sub.add_parser("watch")
    w.add_argument("--seconds", type=float, default=5)
    n = sub.add_parser("ncmd")
    n.add_argument("group")
    n.add_argument("node")
    n.add_argument("metrics", nargs="+")
    s = sub.add_parser("state")
    s.add_argument("host")
    s.add_argument("online", choices=["true", "false"])
    s.add_argument("--timestamp", type=int)
    args = ap.parse_args()
    pb = load_pb(args.pb)
    if args.command == "watch":
        watch(pb, args)
    elif args.command == "ncmd":
        ncmd(pb, args)
    else:
        state(args)


if __name__ == "__main__":
    main()
