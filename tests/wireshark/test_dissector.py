"""The generated Wireshark dissector, run by tshark over captures written here: the example
conversation, every golden vector as an envelope's payload (against ehal-dump --json), and
captures cut, packed and damaged in every way a network does, which must never raise a Lua error."""

import json
import os
import pathlib
import random
import re
import shutil
import struct
import subprocess
import xml.etree.ElementTree as ElementTree

import pytest

BUILD = pathlib.Path(__file__).resolve().parents[2] / "build/release/tools"
DUMP = os.environ.get("EHAL_DUMP", str(BUILD / "ehal-dump"))
DISSECTOR = os.environ.get("EHAL_LUA", str(BUILD / "ehal.lua"))
VECTORS = pathlib.Path(os.environ.get("EHAL_VECTORS",
                                      pathlib.Path(__file__).parents[1] / "vectors"))
PORT = 7300
BLOB_SIGNATURE = 287454021

pytestmark = pytest.mark.skipif(shutil.which("tshark") is None,
                                reason="tshark is not installed (./dev deps installs it)")


def envelope(payload, message_type, major=b"example-client", minor=1, port=7):
    """The bytes of an eHal::EMessage carrying `payload`, spelled out token by token."""
    head = b"3 1 %d 1 1167589410 %d %s%d %d %d %d " % (
        port, len(major), major, minor, message_type, BLOB_SIGNATURE, len(payload))
    return head + payload


def framed(data):
    """An envelope as the examples send it: its length, 4 bytes most significant first."""
    return struct.pack(">I", len(data)) + data


def write_capture(path, segments, port=PORT):
    """A pcap file of one TCP connection to `port`: `segments` are (from the client?, payload
    bytes)."""
    records = [struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 262144, 1)]
    sequence = {True: 1000, False: 5000}
    for index, (from_client, data) in enumerate(segments):
        ports = (40000, port) if from_client else (port, 40000)
        hosts = (b"\x0a\0\0\x01", b"\x0a\0\0\x02") if from_client else (b"\x0a\0\0\x02",
                                                                       b"\x0a\0\0\x01")
        tcp = struct.pack(">HHIIBBHHH", *ports, sequence[from_client], sequence[not from_client],
                          0x50, 0x18, 65535, 0, 0)
        sequence[from_client] += len(data)
        ip = struct.pack(">BBHHHBBH4s4s", 0x45, 0, 20 + len(tcp) + len(data), index & 0xFFFF,
                         0x4000, 64, 6, 0, *hosts)
        frame = b"\x02\0\0\0\0\x02\x02\0\0\0\0\x01\x08\x00" + ip + tcp + data
        records.append(struct.pack("<IIII", 1700000000 + index, 0, len(frame), len(frame)) + frame)
    path.write_bytes(b"".join(records))


def tshark(capture, *options):
    """tshark's output for the capture with the dissector loaded; a Lua error fails the test."""
    command = ["tshark", "-r", str(capture), "-X", "lua_script:" + DISSECTOR, *options]
    result = subprocess.run(command, capture_output=True, text=True, check=True)
    for text in (result.stdout, result.stderr):
        assert "Lua Error" not in text and "dissector failed" not in text, text[-2000:]
    return result.stdout


def walk_json(value, found):
    """Every (key, value) of tshark's JSON tree, in order, into `found`."""
    if isinstance(value, list):
        for key, item in value:
            found.append((key, item))
            if isinstance(item, list):
                walk_json(item, found)
    return found


# ---- The example conversation ----


def test_the_example_conversation_names_every_field(tmp_path):
    request = b"288572248 1 0 3 0 0 0 0 0 "
    reply = b"288572248 1 0 3 0 0 0 0 0 "
    capture = tmp_path / "conversation.pcap"
    write_capture(capture, [(True, framed(envelope(request, 1))),
                            (False, framed(envelope(reply, 2)))])
    packets = json.loads(tshark(capture, "-T", "json"), object_pairs_hook=lambda p: p)
    assert len(packets) == 2
    for packet, message_type in zip(packets, ("1", "2")):
        fields = walk_json(packet, [])
        values = {}
        for key, value in fields:
            if isinstance(value, str):
                values.setdefault(key, []).append(value)
        assert values["ehal.length"] == ["79"]
        assert values["ehal.class"] == ["eHal::EMessage", "eHal::EPRBS"]
        assert values["ehal.MessageType"] == [message_type]
        assert values["ehal.MessagePortId"] == ["7"]
        assert values["ehal.MajorID"] == ["example-client"]
        assert values["ehal.MinorID"] == ["1"]
        assert values["ehal.Signature"] == ["3", "1167589410", str(BLOB_SIGNATURE), "288572248"]
        assert values["ehal.RequestType"] == ["3"]
        assert values["ehal.RequestType.name"] == ["kPRBSStartCapture"]
        assert values["ehal.ReturnCode.name"] == ["kSuccess"]


def test_a_display_filter_finds_a_field_and_a_named_value(tmp_path):
    capture = tmp_path / "filter.pcap"
    write_capture(capture, [(True, framed(envelope(b"288572248 1 0 3 0 0 0 0 0 ", 1))),
                            (False, framed(envelope(b"288572248 1 0 4 0 0 0 0 0 ", 2)))])
    lines = tshark(capture, "-Y", 'ehal.RequestType.name == "kPRBSStopCapture"').splitlines()
    assert len(lines) == 1 and "eHal::EMessage type 2: eHal::EPRBS" in lines[0]
    assert len(tshark(capture, "-Y", "ehal.MessageType == 1").splitlines()) == 1


def test_decode_as_reaches_another_port(tmp_path):
    capture = tmp_path / "other-port.pcap"
    write_capture(capture, [(True, framed(envelope(b"288572248 1 0 3 0 0 0 0 0 ", 1)))], 9100)
    assert "EHAL" not in tshark(capture)
    assert "eHal::EMessage type 1: eHal::EPRBS" in tshark(capture, "-d", "tcp.port==9100,ehal")


# ---- Every golden vector, against ehal-dump ----


def vector_files():
    """(class name, .bin path, whether it is the class's current layout) of every vector."""
    listed = json.loads(subprocess.run([DUMP, "--list", "--json"], capture_output=True,
                                       text=True, check=True).stdout)
    by_file = {re.sub(r"[^A-Za-z0-9]+", "_", name): name for name in listed}
    found = []
    for path in sorted(VECTORS.glob("*.bin")):
        stem, signature = path.stem.rsplit(".", 1)
        name = by_file[stem]
        signatures = listed[name]
        current = signature == "none" or int(signature, 16) == signatures[0]
        found.append((name, path, current))
    return found


def json_leaves(value, path, leaves):
    """{path: value} of ehal-dump's JSON, texts and numbers as tshark shows them."""
    if isinstance(value, dict) and set(value) != {"hex"}:
        for key, item in value.items():
            json_leaves(item, path + (key or "item",), leaves)
    elif isinstance(value, list):
        for index, item in enumerate(value):
            json_leaves(item, path + (index,), leaves)
    elif isinstance(value, bool):
        leaves[path] = str(int(value))
    else:
        leaves[path] = str(value) if not isinstance(value, dict) else value["hex"]
    return leaves


def pdml_leaves(field, path, leaves):
    """{path: value} of the fields under a PDML field; a blob's value is its Bytes child."""
    index = 0
    for child in field.findall("field"):
        name = child.get("name")[len("ehal."):]
        if name.endswith(".name"):
            continue
        if name.endswith(".item"):
            key, index = index, index + 1
        else:
            key = name.split(".")[0]
        children = [c for c in child.findall("field") if not c.get("name").endswith(".name")]
        raw = [c for c in children if c.get("name") in ("ehal.Bytes", "ehal.HexText")]
        if raw and len(children) == 2:
            # A blob: its bytes, or the bytes its old form's hex text spells.
            value = raw[0].get("value", "") if int(raw[0].get("size")) else ""
            if raw[0].get("name") == "ehal.HexText":
                value = bytes.fromhex(value).decode("ascii")
            leaves[path + (key,)] = value.upper()
        elif children:
            pdml_leaves(child, path + (key,), leaves)
        elif child.get("showname", "").endswith(" [0]"):
            continue  # an empty list, which ehal-dump's JSON shows as []
        else:
            leaves[path + (key,)] = child.get("show")
    return leaves


def test_every_vector_dissects_as_ehal_dump_decodes_it(tmp_path):
    vectors = vector_files()
    segments, choices = [], []
    for message_type, (name, path, _) in enumerate(vectors, start=1):
        segments.append((True, framed(envelope(path.read_bytes(), message_type))))
        choices.append("%d=%s" % (message_type, name))
    capture = tmp_path / "vectors.pcap"
    write_capture(capture, segments)
    pdml = tshark(capture, "-T", "pdml", "-o", "ehal.payload_classes:" + ";".join(choices))
    packets = ElementTree.fromstring(pdml).findall("packet")
    assert len(packets) == len(vectors)
    compared = 0
    for packet, (name, path, current) in zip(packets, vectors):
        classes = [f for f in packet.iter("field") if f.get("name") == "ehal.class"]
        assert [c.get("show") for c in classes] == ["eHal::EMessage", name], path.name
        seen = pdml_leaves(classes[1], (), {})
        dumped = json.loads(subprocess.run([DUMP, "--json", name, str(path)], capture_output=True,
                                           text=True, check=True).stdout)["record"]
        expected = json_leaves(dumped, (), {})
        if current:
            assert seen == expected, path.name
            compared += len(seen)
        else:
            # An older layout reads as its own fields (which the record may convert): it must
            # decode whole, without a mark.
            assert seen and not [f for f in packet.iter("field")
                                 if f.get("name") == "_ws.expert.message"], path.name
    assert compared > 400


# ---- Frames as a network delivers them ----


REQUEST = framed(envelope(b"288572248 1 0 3 0 0 0 0 0 ", 1))


def infos(capture, *options):
    return [line for line in tshark(capture, *options).splitlines() if "EHAL" in line]


def test_a_frame_split_over_segments_decodes_once_whole(tmp_path):
    capture = tmp_path / "split.pcap"
    write_capture(capture, [(True, REQUEST[:3]), (True, REQUEST[3:40]), (True, REQUEST[40:])])
    lines = infos(capture)
    assert len(lines) == 1 and "eHal::EMessage type 1: eHal::EPRBS" in lines[0]


def test_several_frames_in_one_segment_all_decode(tmp_path):
    capture = tmp_path / "packed.pcap"
    write_capture(capture, [(True, REQUEST * 3 + REQUEST[:20]), (True, REQUEST[20:])])
    lines = infos(capture)
    assert len(lines) == 2 and lines[0].count("eHal::EPRBS") == 3
    assert lines[1].count("eHal::EPRBS") == 1


def test_bare_envelopes_back_to_back(tmp_path):
    bare = envelope(b"288572248 1 0 3 0 0 0 0 0 ", 1)
    capture = tmp_path / "bare.pcap"
    write_capture(capture, [(True, bare * 2 + bare[:30]), (True, bare[30:])])
    lines = infos(capture, "-o", "ehal.length_prefix:FALSE")
    assert [line.count("eHal::EPRBS") for line in lines] == [2, 1]


def test_damaged_frames_are_marked_malformed(tmp_path):
    unknown = framed(envelope(b"12345 1 2 3 ", 1))
    truncated_payload = framed(envelope(b"288572248 1 0 3", 1)[:-2] + b" ")
    wrong_signature = framed(b"3 1 7 1 99 14 example-client1 1 287454021 2 7 ")
    short = struct.pack(">I", 30) + b"3 1 7 1 "
    capture = tmp_path / "damaged.pcap"
    write_capture(capture, [(True, unknown), (True, truncated_payload), (True, wrong_signature),
                            (True, short)])
    text = tshark(capture, "-V", "-o", "tcp.desegment_tcp_streams:FALSE")
    assert "No registered class reads this signature" in text
    assert "The bytes end before the record does" in text
    assert "A signature no layout of the class names" in text


def test_random_bytes_never_raise_a_lua_error(tmp_path):
    generator = random.Random(7)
    tokens = [b"3 ", b"1 ", b"0 ", b"-1 ", b"4294967295 ", b"287454021 ", b"288572248 ",
              b"1167589410 ", b"14 ", b"99999999999999999999 ", b"\n", b"x"]
    segments = []
    for _ in range(300):
        if generator.random() < 0.5:
            body = b"".join(generator.choice(tokens) for _ in range(generator.randrange(40)))
        else:
            body = bytes(generator.randrange(256) for _ in range(generator.randrange(120)))
        data = framed(body) if generator.random() < 0.7 else body
        segments.append((generator.random() < 0.8, data))
    capture = tmp_path / "random.pcap"
    write_capture(capture, segments)
    for options in ([], ["-o", "ehal.length_prefix:FALSE"], ["-o", "tcp.desegment_tcp_streams:FALSE"]):
        tshark(capture, "-V", *options)
