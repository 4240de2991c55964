"""The ehal Python module: the golden vectors read and written from Python, and its errors."""

import ast
import json
import os
import pathlib
import pickle
import pydoc
import re

import pytest

import ehal

VECTORS = pathlib.Path(os.environ.get("EHAL_VECTORS", pathlib.Path(__file__).parents[1] / "vectors"))
PRBS = "eHal::EPRBS"
PRBS_SIGNATURE = 288572248
PRBS_REPORT = (
    "*** Exception in FILE x86_64/common/ehal/ePRBS, LINE 160:\n"
    "eHal::EPRBS::SerializeIn - EArchive::SerializeError()\n"
)
WRAP_LIMIT_REPORT = (
    "*** Exception in FILE common/ehal/eArchive, LINE 150:\n"
    "EArchive read beyond its wrap limit - EArchive::SerializeError()\n"
)


def file_name(class_name):
    """A class name as the vector files spell it: other characters than letters and digits, run
    by run, become '_'."""
    return re.sub(r"[^A-Za-z0-9]+", "_", class_name)


def vectors():
    """(class name, signature or None, file name without suffix) of every golden vector."""
    by_file_name = {file_name(name): name for name in ehal.classes()}
    found = []
    for path in sorted(VECTORS.glob("*.bin")):
        stem, signature = path.stem.rsplit(".", 1)
        found.append((by_file_name[stem], None if signature == "none" else int(signature, 16),
                      path.stem))
    return found


VECTORS_FOUND = vectors()


def as_json(value):
    """A decoded record in the vectors' JSON form: blobs as upper-case hex, texts as UTF-8 with
    undecodable bytes replaced."""
    if isinstance(value, dict):
        return {name: as_json(field) for name, field in value.items()}
    if isinstance(value, list):
        return [as_json(item) for item in value]
    if isinstance(value, bytes):
        return value.hex().upper()
    if isinstance(value, str):
        return value.encode("utf-8", "surrogateescape").decode("utf-8", "replace")
    return value


def is_current(class_name, signature):
    signatures = ehal.classes()[class_name]
    return signature is None or signature == signatures[0]


def test_every_class_has_vectors():
    assert len(VECTORS_FOUND) >= len(ehal.classes())
    assert {name for name, _, _ in VECTORS_FOUND} == set(ehal.classes())


@pytest.mark.parametrize("class_name,signature,base", VECTORS_FOUND,
                         ids=[base for _, _, base in VECTORS_FOUND])
def test_vector_decodes_to_its_json(class_name, signature, base):
    data = (VECTORS / (base + ".bin")).read_bytes()
    expected = json.loads((VECTORS / (base + ".json")).read_text())
    record, consumed = ehal.decode(class_name, data, with_rest=True)
    # An older layout may carry what the reader skips (a hand-made example, a line feed).
    assert consumed == len(data) if is_current(class_name, signature) else consumed <= len(data)
    # Field order counts too: the JSON texts are compared.
    assert json.dumps(as_json(record)) == json.dumps(expected)


@pytest.mark.parametrize("class_name,signature,base",
                         [v for v in VECTORS_FOUND if is_current(v[0], v[1])],
                         ids=[v[2] for v in VECTORS_FOUND if is_current(v[0], v[1])])
def test_current_vector_encodes_back_to_its_bytes(class_name, signature, base):
    data = (VECTORS / (base + ".bin")).read_bytes()
    assert ehal.encode(class_name, ehal.decode(class_name, data)) == data


def test_older_layout_is_read_and_written_in_the_current_one():
    old = b"288572246 4 0 4096 0 0 0 "  # no client message id, no extra id
    record = ehal.decode(PRBS, old)
    assert record["Signature"] == PRBS_SIGNATURE
    assert record["RequestType"] == 4
    assert ehal.encode(PRBS, record) == b"288572248 0 0 4 0 4096 0 0 0 "


def test_classes_lists_signatures_newest_first():
    classes = ehal.classes()
    assert classes[PRBS] == [0x11334358, 0x11334357, 0x11334356]
    assert classes["eHal::EMacSec::ESecureAssociation"] == []
    assert list(classes)[0] == "EBlob"


def test_decode_with_rest_counts_the_bytes_taken():
    data = b"288572248 1 0 3 0 4096 0 0 0 " + b"7 8 9 "
    record, consumed = ehal.decode(PRBS, data, with_rest=True)
    assert consumed == 29
    assert record == {"Signature": PRBS_SIGNATURE, "ClientMessageId": 1, "ExtraId": 0,
                      "RequestType": 3, "ReturnCode": 0, "BufferSize": 4096, "PacketCount": 0,
                      "Start": 0, "Packets": []}
    assert ehal.decode(PRBS, bytearray(data)) == record
    assert ehal.decode(PRBS, memoryview(data)) == record


def test_encode_keeps_defaults_for_fields_left_out():
    assert ehal.encode(PRBS, {}) == b"288572248 0 0 0 0 0 0 0 0 "
    assert ehal.encode(PRBS, {"RequestType": 3, "BufferSize": 4096}) == \
        b"288572248 0 0 3 0 4096 0 0 0 "
    message = ehal.decode("eHal::EMessage", ehal.encode("eHal::EMessage", {"MessageType": 2}))
    assert message["Destination"] == 1 and message["MessagePortCount"] == 1


def test_encode_builds_list_items_from_dicts():
    fields = {"RequestType": 6, "Packets": [{"PacketTimestamp": 2**64 - 1, "PacketData": b"\xaa\x55"},
                                            {"PacketData": bytearray(b"\x01")}]}
    data = ehal.encode(PRBS, fields)
    assert data == (b"288572248 0 0 6 0 0 0 0 2 1123140 18446744073709551615 287454021 2 \xaa\x55"
                    b"1123140 0 287454021 1 \x01")
    packets = ehal.decode(PRBS, data)["Packets"]
    assert [p["PacketData"] for p in packets] == [b"\xaa\x55", b"\x01"]
    assert ehal.decode("EStringList", ehal.encode("EStringList", {"Items": ["a", "bc"]})) == \
        {"Signature": ehal.classes()["EStringList"][0], "Items": ["a", "bc"]}


def test_texts_keep_every_byte():
    text = b"caf\xc3\xa9 \xff".decode("utf-8", "surrogateescape")
    data = ehal.encode("eHal::EClientID", {"MajorID": text, "MinorID": -3})
    assert data == b"1167589410 7 caf\xc3\xa9 \xff-3 "
    assert ehal.decode("eHal::EClientID", data)["MajorID"] == text


def test_fixed_lists_take_their_own_length():
    data = ehal.encode("eHal::Integer16Byte", {"Bytes": list(range(240, 256))})
    assert ehal.decode("eHal::Integer16Byte", data)["Bytes"] == list(range(240, 256))


def test_signed_fields_take_their_whole_range():
    data = ehal.encode("ECommandLog", {"MessageDestination": -2**31, "CommandTarget": 2**31 - 1})
    record = ehal.decode("ECommandLog", data)
    assert (record["MessageDestination"], record["CommandTarget"]) == (-2**31, 2**31 - 1)


@pytest.mark.parametrize("class_name,fields", [
    ("eHal::EMessage", {"Destination": 256}),
    ("eHal::EMessage", {"Destination": -1}),
    ("eHal::EMessage", {"MessagePortId": 2**32}),
    ("ECommandLog", {"MessageDestination": 2**31}),
    ("ECommandLog", {"MessageDestination": -2**31 - 1}),
    ("eHal::EPRBS", {"Packets": [{"PacketTimestamp": 2**64}]}),
    ("eHal::EPRBS", {"Packets": [{"PacketTimestamp": -1}]}),
    ("eHal::EPRBS", {"Signature": 0x11334357}),
    ("eHal::Integer16Byte", {"Bytes": [1, 2, 3]}),
    ("eHal::Integer16Byte", {"Bytes": [0] * 15 + [256]}),
])
def test_values_out_of_range_raise_value_error(class_name, fields):
    with pytest.raises(ValueError):
        ehal.encode(class_name, fields)


def test_values_the_record_does_not_keep_raise_value_error():
    # Written signed, read back unsigned: a negative number does not survive the reader.
    with pytest.raises(ValueError, match=r"EFCParams.RtTOV: given -1, the record keeps -29"):
        ehal.encode("EFCParams", {"RtTOV": -1})
    assert ehal.decode("EFCParams", ehal.encode("EFCParams", {"RtTOV": 2**31 - 1}))["RtTOV"] == \
        2**31 - 1
    with pytest.raises(ValueError, match=r"EIPAddress.Address: the record keeps other bytes"):
        ehal.encode("EIPAddress", {"Type": 2})


def test_out_of_range_names_the_field():
    with pytest.raises(ValueError, match=r"eHal::EMessage\.Destination: 256 is out of range"):
        ehal.encode("eHal::EMessage", {"Destination": 256})


@pytest.mark.parametrize("fields", [
    {"RequestType": "3"},
    {"RequestType": 3.0},
    {"RequestType": True},
    {"RequestType": None},
    {"Packets": {}},
    {"Packets": [5]},
    {"Packets": [{"PacketData": "aa"}]},
    {1: 2},
])
def test_values_of_the_wrong_type_raise_type_error(fields):
    with pytest.raises(TypeError):
        ehal.encode(PRBS, fields)


def test_wrong_types_for_texts_and_records():
    with pytest.raises(TypeError, match=r"MajorID: a text is given as a str, not bytes"):
        ehal.encode("eHal::EClientID", {"MajorID": b"x"})
    with pytest.raises(TypeError, match=r"ClientID: a record is given as a dict, not list"):
        ehal.encode("eHal::EMessage", {"ClientID": []})
    with pytest.raises(TypeError):
        ehal.encode(PRBS, [("RequestType", 3)])
    with pytest.raises(TypeError):
        ehal.decode(PRBS, "288572248 1 0 3 0 4096 0 0 0 ")


def test_unknown_class_raises_key_error_with_close_names():
    with pytest.raises(KeyError, match=r'unknown record class "EPRBS"; close names: eHal::EPRBS'):
        ehal.decode("EPRBS", b"")
    with pytest.raises(KeyError, match=r"see ehal.classes\(\)"):
        ehal.encode("QQQQQQQQQQQQQQQ", {})


def test_unknown_field_raises_key_error_with_close_names():
    with pytest.raises(KeyError, match=r'unknown field "eHal::EPRBS.RequestTyp"; close names: '
                                       r"RequestType"):
        ehal.encode(PRBS, {"RequestTyp": 1})
    with pytest.raises(KeyError, match=r'"eHal::EMessage.ClientID.Major"; close names: MajorID'):
        ehal.encode("eHal::EMessage", {"ClientID": {"Major": "x"}})
    with pytest.raises(KeyError, match=r"its fields: Signature ClientMessageId"):
        ehal.encode(PRBS, {"Zzzzzzzzzzzzzzzzzzzz": 1})


def test_wrong_signature_raises_serialize_error_with_the_report():
    with pytest.raises(ehal.SerializeError) as raised:
        ehal.decode(PRBS, b"7 ")
    assert str(raised.value) == PRBS_REPORT
    assert isinstance(raised.value, RuntimeError)
    # The process goes on, and so does the module.
    assert ehal.decode(PRBS, ehal.encode(PRBS, {}))["Signature"] == PRBS_SIGNATURE


def test_truncated_bytes_raise_value_error():
    with pytest.raises(ValueError, match=r"input truncated: EDHCPStats needs more than the 6 "
                                         r"bytes given"):
        ehal.decode("EDHCPStats", b"1 2 3 ")
    full = ehal.encode("EDHCPStats", {"DHCPNAKReceived": 17})
    for size in range(len(full) - 1):
        with pytest.raises((ValueError, ehal.SerializeError)):
            ehal.decode("EDHCPStats", full[:size])


def test_hostile_counts_end_at_the_wrap_limit():
    signature = ehal.classes()["EStringList"][0]
    with pytest.raises(ehal.SerializeError) as raised:
        ehal.decode("EStringList", b"%d 4294967295 1 a" % signature)
    assert str(raised.value) == WRAP_LIMIT_REPORT
    with pytest.raises((ValueError, ehal.SerializeError)):
        ehal.decode(PRBS, b"288572248 1 0 3 0 4096 0 0 4294967295 ")


def test_guess_matches_the_dump_tool():
    assert ehal.guess(b"288572247 1 0 ") == [
        {"class": PRBS, "signature": 288572247, "current": False,
         "fields": ["ExtraId", "RequestType", "ReturnCode", "BufferSize", "PacketCount", "Start",
                    "Packets"]},
        {"class": "eHal::EPOSLinkLayerSettings", "signature": 288572247, "current": True,
         "fields": ["Ports"]},
    ]
    assert ehal.guess(b"12345678 ") == []
    with pytest.raises(ValueError, match="no number"):
        ehal.guess(b"")


def test_envelope_wraps_and_unwraps_a_record():
    request = ehal.encode(PRBS, {"ClientMessageId": 1, "RequestType": 3})
    data = ehal.envelope(request, 1, ("example-client", 1), 7)
    assert data == (b"3 1 7 1 1167589410 14 example-client1 1 287454021 %d " % len(request) +
                    request)
    assert ehal.decode("eHal::EMessage", data)["Message"] == request
    assert ehal.unwrap(data) == {"type": 1, "client": ("example-client", 1), "port": 7,
                                 "payload": request}
    unwrapped = ehal.unwrap(data, "eHal::EPRBS")
    assert unwrapped["payload"] == ehal.decode(PRBS, request)
    assert ehal.unwrap(ehal.envelope(b"", 2)) == {"type": 2, "client": ("", 0), "port": 0,
                                                  "payload": b""}
    with pytest.raises(ehal.SerializeError):
        ehal.unwrap(ehal.envelope(b"7 ", 1), PRBS)


PUBLIC = ["classes", "decode", "encode", "guess", "envelope", "unwrap"]


def test_help_documents_every_function():
    text = pydoc.render_doc(ehal, renderer=pydoc.plaintext)
    assert "Records of the ehal library" in text
    for name in PUBLIC:
        function = getattr(ehal, name)
        assert len(function.__doc__.splitlines()) > 1, name
        assert name + "(" in text
    assert "SerializeError" in text and "library's report text" in text
    assert "class NamedValue" in text and "its record's text" in ehal.NamedValue.__doc__
    classes = {"SerializeError", "NamedValue"}
    assert sorted(n for n in dir(ehal) if not n.startswith("_") and n not in classes) == \
        sorted(PUBLIC)


def test_stubs_name_every_function():
    stubs = pathlib.Path(ehal.__file__).with_name("ehal.pyi")
    tree = ast.parse(stubs.read_text())
    names = {node.name for node in tree.body if isinstance(node, (ast.FunctionDef, ast.ClassDef))}
    assert names == set(PUBLIC) | {"SerializeError", "NamedValue"}


def stub_record_types():
    """{TypedDict name: its field names} and {class name: TypedDict name} from the stubs, read
    from their decode overloads."""
    tree = ast.parse(pathlib.Path(ehal.__file__).with_name("ehal.pyi").read_text())
    types = {}
    for node in tree.body:
        if isinstance(node, ast.Assign) and isinstance(node.value, ast.Call) and \
                getattr(node.value.func, "id", "") == "TypedDict":
            types[node.targets[0].id] = [key.value for key in node.value.args[1].keys]
    classes = {}
    for node in tree.body:
        if isinstance(node, ast.FunctionDef) and node.name == "decode":
            annotation = node.args.args[0].annotation
            if isinstance(annotation, ast.Subscript) and isinstance(node.returns, ast.Name):
                classes[annotation.slice.value] = node.returns.id
    return types, classes


@pytest.mark.parametrize("class_name,signature,base",
                         [v for v in VECTORS_FOUND if is_current(v[0], v[1])],
                         ids=[v[2] for v in VECTORS_FOUND if is_current(v[0], v[1])])
def test_the_stubs_type_every_class_with_the_fields_it_decodes_to(class_name, signature, base):
    types, classes = stub_record_types()
    record = ehal.decode(class_name, (VECTORS / (base + ".bin")).read_bytes())
    assert list(record) == types[classes[class_name]]


def test_a_class_name_with_a_nul_is_named_whole_in_the_key_error():
    with pytest.raises(KeyError) as error:
        ehal.decode("eHal::EPRBS\x00junk", b"1 ")
    assert error.value.args[0] == \
        'unknown record class "eHal::EPRBS\\x00junk"; close names: eHal::EPRBS'


@pytest.mark.parametrize("arguments,field", [
    ((b"x", 2**40), "eHal::EMessage.MessageType: 1099511627776"),
    ((b"x", -1), "eHal::EMessage.MessageType: -1"),
    ((b"x", 1, ("gui", 2**40)), "eHal::EMessage.ClientID.MinorID: 1099511627776"),
    ((b"x", 1, ("gui", 1), -1), "eHal::EMessage.MessagePortId: -1"),
])
def test_envelope_refuses_numbers_out_of_range_as_encode_does(arguments, field):
    with pytest.raises(ValueError, match=re.escape(field + " is out of range for the field")):
        ehal.envelope(*arguments)
    with pytest.raises(ValueError, match="a \\(major id, minor id\\) pair"):
        ehal.envelope(b"x", 1, ("gui",))


@pytest.mark.parametrize("class_name,data", [
    ("EARPStats", b"405934865 2 "),
    ("EBlob", b"287454021 "),
    ("eHal::EPRBS", b"288572248 1 0 3 0 4096 0 0 "),
])
def test_bytes_that_end_before_the_record_are_a_value_error_as_in_the_tool(class_name, data):
    with pytest.raises(ValueError, match="input truncated: " + re.escape(class_name)):
        ehal.decode(class_name, data)


def test_named_values_are_ints_with_their_names():
    record = ehal.decode(PRBS, b"288572248 1 0 3 7 0 0 0 0 ")
    request, code = record["RequestType"], record["ReturnCode"]
    assert isinstance(request, ehal.NamedValue) and isinstance(request, int)
    assert (request, request.name) == (3, "kPRBSStartCapture")
    assert repr(request) == "NamedValue(3, 'kPRBSStartCapture')" and str(request) == "3"
    # A value beyond the record's table is a plain int.
    assert type(code) is int and code == 7
    # Written, compared, hashed and copied as the int.
    assert json.dumps(record["RequestType"]) == "3" and hash(request) == hash(3)
    assert pickle.loads(pickle.dumps(request)).name == "kPRBSStartCapture"
    assert ehal.encode(PRBS, record) == b"288572248 1 0 3 7 0 0 0 0 "
