"""The ways encode() and decode() take their arguments: fields in any order and of any str kind,
errors named in the order the dict gives them, the values a record does not keep, keyword
arguments, and calls made again from inside a call."""

import gc
import sys

import pytest

import ehal

PRBS = "eHal::EPRBS"
MESSAGE = "eHal::EMessage"


def test_field_order_does_not_change_the_bytes():
    fields = {"RequestType": 3, "BufferSize": 4096, "ClientMessageId": 7}
    reversed_fields = dict(reversed(list(fields.items())))
    assert ehal.encode(PRBS, fields) == ehal.encode(PRBS, reversed_fields) == \
        b"288572248 7 0 3 0 4096 0 0 0 "


def test_the_first_error_in_dict_order_is_raised():
    # RequestType comes before BufferSize in the archive; the dict's order decides.
    with pytest.raises(ValueError, match=r"eHal::EPRBS\.BufferSize: -1 is out of range"):
        ehal.encode(PRBS, {"BufferSize": -1, "RequestType": "3"})
    with pytest.raises(TypeError, match=r"eHal::EPRBS\.RequestType: a number is given as an int"):
        ehal.encode(PRBS, {"RequestType": "3", "BufferSize": -1})
    with pytest.raises(KeyError, match=r"unknown field \"eHal::EPRBS\.Zzz\""):
        ehal.encode(PRBS, {"Zzz": 1, "RequestType": "3"})
    with pytest.raises(TypeError, match=r"field names are str, not int"):
        ehal.encode(PRBS, {1: 2, "RequestType": "3"})


def test_nested_records_keep_the_fresh_values_of_fields_left_out():
    fresh = ehal.decode(MESSAGE, ehal.encode(MESSAGE, {}))
    record = ehal.decode(MESSAGE, ehal.encode(MESSAGE, {"ClientID": {"MinorID": 5}}))
    assert record["ClientID"] == dict(fresh["ClientID"], MinorID=5)
    assert {k: v for k, v in record.items() if k != "ClientID"} == \
        {k: v for k, v in fresh.items() if k != "ClientID"}


class Name(str):
    """A str subclass, as a caller's own field names may be."""


def test_keys_of_any_str_kind_name_fields():
    built = "".join(["Request", "Type"])  # equal to the field name, not the same object
    expected = ehal.encode(PRBS, {"RequestType": 3})
    assert ehal.encode(PRBS, {built: 3}) == expected
    assert ehal.encode(PRBS, {Name("RequestType"): 3}) == expected
    assert ehal.decode(Name(PRBS), expected)["RequestType"] == 3
    assert ehal.decode("".join(["eHal::", "EPRBS"]), expected)["RequestType"] == 3


class OtherHash(str):
    """A str subclass hashed apart from the str of the same text: a dict holds both."""

    def __hash__(self):
        return 1


def test_two_keys_of_one_field_are_laid_over_in_turn():
    assert ehal.encode(PRBS, {"RequestType": 1, OtherHash("RequestType"): 2}) == \
        ehal.encode(PRBS, {"RequestType": 2})
    with pytest.raises(TypeError, match=r"RequestType: a number is given as an int, not str"):
        ehal.encode(PRBS, {"RequestType": "1", OtherHash("RequestType"): 2})


def test_decoded_field_names_are_interned():
    record = ehal.decode(MESSAGE, ehal.encode(MESSAGE, {}))
    assert all(sys.intern(name) is name for name in record)
    assert all(sys.intern(name) is name for name in record["ClientID"])


def test_values_the_record_does_not_keep_are_found_in_nested_records_and_blobs():
    with pytest.raises(ValueError, match=r"EFCParams\.RtTOV: given -1, the record keeps -29"):
        ehal.encode("EFCParams", {"RtTOV": -1, "EdTOV": 5})
    # Kept values of the same fields pass.
    assert ehal.decode("EFCParams", ehal.encode("EFCParams", {"RtTOV": 0}))["RtTOV"] == 0


def test_lists_inside_list_items_take_their_items():
    # The items added to Commands hold lists of their own, which grow from a fresh item too.
    commands = [{"EditSubId": [1, 2], "Action": 3, "Id": {"Id": [4], "Leaves": [5, 6]},
                 "Data": b"x"}, {"Action": 7}]
    record = ehal.decode("ECommandLog", ehal.encode("ECommandLog", {"Commands": commands}))
    first, second = record["Commands"]
    assert (first["EditSubId"], first["Id"]["Id"], first["Id"]["Leaves"], first["Data"]) == \
        ([1, 2], [4], [5, 6], b"x")
    assert (second["Action"], second["EditSubId"], second["Id"]["Leaves"]) == (7, [], [])


def test_lists_are_given_as_lists_or_tuples_and_fixed_ones_whole():
    assert ehal.encode("EStringList", {"Items": ("a", "bc")}) == \
        ehal.encode("EStringList", {"Items": ["a", "bc"]})
    with pytest.raises(ValueError, match=r"ESwitchUpdateMessage\.Entries\[0\]\.Octets: this list "
                                         r"has exactly 6 items, not 3"):
        ehal.encode("ESwitchUpdateMessage", {"Entries": [{"FirstValue": 1, "Octets": [1, 2, 3]}]})
    with pytest.raises(ValueError, match=r"eHal::EPRBS\.Packets\[1\]\.PacketTimestamp: -1 is out"):
        ehal.encode(PRBS, {"Packets": [{}, {"PacketTimestamp": -1}]})
    with pytest.raises(TypeError, match=r"eHal::EPRBS\.Packets: a list is given as a list, not "
                                        r"dict"):
        ehal.encode(PRBS, {"Packets": {}})


def test_texts_with_surrogates_travel_in_lists():
    text = b"\xff\xfe".decode("utf-8", "surrogateescape")
    data = ehal.encode("EStringList", {"Items": [text, "b"]})
    assert ehal.decode("EStringList", data)["Items"] == [text, "b"]


def test_large_payloads_travel_both_ways_more_than_once():
    payload = bytes(range(256)) * 8192  # 2 MiB, more than the module keeps between calls
    for _ in range(2):
        data = ehal.encode(MESSAGE, {"Message": payload})
        assert ehal.decode(MESSAGE, data)["Message"] == payload


def test_keyword_arguments():
    data = ehal.encode(class_name=PRBS, fields={"RequestType": 3})
    assert ehal.decode(class_name=PRBS, data=data) == ehal.decode(PRBS, data)
    assert ehal.decode(PRBS, data, with_rest=True)[1] == len(data)
    with pytest.raises(TypeError, match="at most 2 positional"):
        ehal.decode(PRBS, data, True)
    with pytest.raises(TypeError, match="missing required argument 'data'"):
        ehal.decode(PRBS)
    with pytest.raises(TypeError, match="unexpected keyword argument 'field'"):
        ehal.encode(PRBS, field={})
    with pytest.raises(TypeError, match="multiple values for argument 'class_name'"):
        ehal.encode(PRBS, class_name=PRBS)
    with pytest.raises(TypeError, match="class_name: a class is named by a str, not int"):
        ehal.decode(3, data)
    assert ehal.decode(PRBS.encode(), data) == ehal.decode(PRBS, data)


def test_an_unknown_class_stays_unknown():
    for _ in range(2):
        with pytest.raises(KeyError, match="unknown record class"):
            ehal.encode("eHal::EPRBSS", {})


class Finalised:
    """An object in a reference cycle whose finaliser calls the module: a collection that runs
    while the module builds a record's dicts calls it again from inside a call."""

    results = []

    def __init__(self):
        self.cycle = self

    def __del__(self):
        data = ehal.encode(MESSAGE, {"MessageType": 9, "Message": b"xyz"})
        Finalised.results.append(ehal.decode(MESSAGE, data)["MessageType"])


def test_calls_made_while_a_call_runs_keep_apart():
    data = ehal.encode(MESSAGE, {"MessageType": 4, "Message": b"abc"})
    threshold = gc.get_threshold()
    gc.set_threshold(1)
    try:
        for _ in range(200):
            Finalised()
            record = ehal.decode(MESSAGE, data)
            assert (record["MessageType"], record["Message"]) == (4, b"abc")
            assert ehal.encode(MESSAGE, record) == data
    finally:
        gc.set_threshold(*threshold)
    gc.collect()
    assert Finalised.results and set(Finalised.results) == {9}


def test_every_class_keeps_what_encode_writes_without_reading_it_back():
    # Most classes keep every value of their fields' forms, and encode() writes those without
    # reading them back; the others are read back. Either way, what encode() returns decodes to
    # the values given, or encode() refuses them.
    written = 0
    for class_name in ehal.classes():
        fresh = ehal.decode(class_name, ehal.encode(class_name, {}))
        given = {}
        for name, value in fresh.items():
            if name == "Signature" or isinstance(value, bool):
                continue
            if isinstance(value, int):
                given[name] = 255
            elif isinstance(value, str):
                given[name] = "t\0\xff"
            elif isinstance(value, bytes):
                given[name] = b"\0\xff\n"
        try:
            data = ehal.encode(class_name, given)
        except ValueError:
            continue
        decoded = ehal.decode(class_name, data)
        assert {name: decoded[name] for name in given} == given, class_name
        written += 1
    assert written >= 40
