#!/usr/bin/env python3
"""Decoding and encoding records from Python through the ehal module, beside a literal pure-Python
reader and writer of the same archive bytes (no struct, no ehal) written here, so that the ratio
is measured in one run on one machine. The records are those of bench/archive_boost_bench.cpp:
an eHal::EMessage with a 1 KiB payload and an EDHCPStats.

    PYTHONPATH=build/release/python python3 bench/python_bench.py
"""

import timeit

import ehal

PAYLOAD = bytes(i * 7 % 256 for i in range(1024))
MESSAGE = {"MessagePortId": 7, "MessageType": 5, "Message": PAYLOAD,
           "ClientID": {"MajorID": "bench-client", "MinorID": 3}}
STATS = {"DHCPDiscoversSent": 123456, "DHCPDiscoversOffersReceived": 120000,
         "DHCPRequestsSent": 119000, "DHCPEnabledInterfaces": 4096,
         "DHCPAddressesDiscovered": 118500, "DHCPACKReceived": 118000, "DHCPNAKReceived": 17,
         "DHCPReleasesSent": 3}
BLOB_SIGNATURE = 287454021
DIGITS = b"-0123456789"


class Reader:
    """The archive's reading rules in plain Python: a number is the next run of digits (and '-'),
    anything else before it skipped; a text is its length, a blank and its bytes; a blob its
    signature, its length and its bytes."""

    def __init__(self, data):
        self.data = data
        self.position = 0

    def number(self):
        data, position = self.data, self.position
        while data[position] not in DIGITS:
            position += 1
        end = position
        while end < len(data) and data[end] in DIGITS:
            end += 1
        self.position = end + 1
        return int(data[position:end])

    def raw(self, length):
        start = self.position
        self.position += length
        return self.data[start:self.position]

    def text(self):
        return self.raw(self.number()).decode("utf-8", "surrogateescape")

    def blob(self):
        if self.number() != BLOB_SIGNATURE:
            raise ValueError("not a blob")
        return self.raw(self.number())


def read_message(data):
    reader = Reader(data)
    record = {"Signature": reader.number(), "MessagePortCount": reader.number(),
              "MessagePortId": reader.number(), "Destination": reader.number()}
    record["ClientID"] = {"Signature": reader.number(), "MajorID": reader.text(),
                          "MinorID": reader.number()}
    record["MessageType"] = reader.number()
    record["Message"] = reader.blob()
    return record


def write_message(record):
    client = record["ClientID"]
    major = client["MajorID"].encode("utf-8", "surrogateescape")
    message = record["Message"]
    return b"".join((
        b"%d %d %d %d " % (record["Signature"], record["MessagePortCount"],
                           record["MessagePortId"], record["Destination"]),
        b"%d %d " % (client["Signature"], len(major)), major, b"%d " % client["MinorID"],
        b"%d %d %d " % (record["MessageType"], BLOB_SIGNATURE, len(message)), message))


STATS_FIELDS = ["Signature"] + list(STATS)


def read_stats(data):
    reader = Reader(data)
    return {name: reader.number() for name in STATS_FIELDS}


def write_stats(record):
    return b"".join(b"%d " % record[name] for name in STATS_FIELDS)


def best_microseconds(function, argument):
    timer = timeit.Timer(lambda: function(argument))
    number, _ = timer.autorange()
    return min(timer.repeat(5, number)) / number * 1e6


def main():
    cases = [("eHal::EMessage, 1 KiB payload", "eHal::EMessage", MESSAGE, read_message,
              write_message),
             ("EDHCPStats", "EDHCPStats", STATS, read_stats, write_stats)]
    print(f"{'record':32} {'operation':9} {'ehal us':>9} {'Python us':>10} {'ehal/Python':>12}")
    for title, class_name, fields, read, write in cases:
        data = ehal.encode(class_name, fields)
        record = ehal.decode(class_name, data)
        # The literal reader and writer agree with the module, byte for byte.
        assert read(data) == record and write(record) == data, title
        timings = [("decode", lambda d: ehal.decode(class_name, d), read, data),
                   ("encode", lambda r: ehal.encode(class_name, r), write, record)]
        for operation, library, literal, argument in timings:
            library_time = best_microseconds(library, argument)
            literal_time = best_microseconds(literal, argument)
            print(f"{title:32} {operation:9} {library_time:9.2f} {literal_time:10.2f} "
                  f"{library_time / literal_time:12.2f}")


if __name__ == "__main__":
    main()
