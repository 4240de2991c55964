"""The schema document of ehal-dump, checked by use: a reader written from `ehal-dump --schema`
alone (no library code, no ehal module) decodes every golden vector, and what it reads must be
what `ehal-dump --json` prints, field by field, with the bytes consumed and the value names."""

import dataclasses
import functools
import json
import os
import pathlib
import re
import subprocess

import pytest

TOOL = pathlib.Path(os.environ.get(
    "EHAL_DUMP", pathlib.Path(__file__).resolve().parents[1] / "build/release/tools/ehal-dump"))
VECTORS = pathlib.Path(
    os.environ.get("EHAL_VECTORS", pathlib.Path(__file__).resolve().parent / "vectors"))

if not (TOOL.is_file() and os.access(TOOL, os.X_OK)):
    pytest.skip(f"ehal-dump not found at {TOOL} (set EHAL_DUMP to the built tool)",
                allow_module_level=True)

DROPPED = "(dropped)"
# A number token holds at most this many characters less one (the archive's number text buffer).
NUMBER_TEXT_CAPACITY = 30
NUMBER_CHARS = frozenset(b"0123456789-")
HEX_DIGITS = frozenset(b"0123456789abcdefABCDEF")
LINE_FEED = 0x0A
# Differences the schema document cannot account for, by vector file and field path, with the
# reason. Each must still show (a listed difference that has gone away fails too, so that the
# list is cut back as the document or the registry grows).
KNOWN_DIFFERENCES = {
    ("EIPAddress.18111111.bin", "Address"):
        "an address keeps as many bytes as its Type says (4 for type 17, else 16) and the layout "
        "without a type sets Type to 17; the document gives Address as a plain blob",
    ("EIPAddressTable.11111111.bin", "(file name)"):
        "the registry lists EIPAddressTable under its base class's signature 0x11111111 (which "
        "names the vector), while the record reads and writes 0x22222222",
}


class Overrun(Exception):
    """A read ran past the end of the bytes (the archive would start over from the beginning)."""


class Refused(Exception):
    """A signature that the record's layouts do not accept."""


class Text(bytes):
    """A text as the archive carries it: raw bytes."""


class Blob(bytes):
    """A blob's bytes."""


@dataclasses.dataclass
class Record:
    """A record read: the signature and field names it is described with, and what it carried."""

    signature: object  # the newest signature as described, or None without one
    names: list  # the described fields, in order
    values: dict  # the fields the bytes carried (read-only ones included), by name


class Archive:
    """Archive bytes as a receiver loads them (a zero byte after them), read token by token."""

    def __init__(self, data):
        """Takes a copy of the bytes and appends the terminating zero byte."""
        self.length = len(data)
        self.buffer = bytes(data) + b"\0"
        self.position = 0

    def start(self):
        """The read position; one beyond the bytes means the archive would start over."""
        if self.position > len(self.buffer):
            raise Overrun(f"read at {self.position} after the end of {self.length} bytes")
        return self.position

    def token(self):
        """The next number token (at most capacity - 1 characters) and the delimiter after it."""
        # Bytes that are no number chars are skipped first; a token cut at the limit loses the
        # character after it, which is taken as its delimiter.
        buffer, size = self.buffer, len(self.buffer)
        first = self.start()
        while first < size and buffer[first] not in NUMBER_CHARS:
            first += 1
        if first >= size:
            self.position = first + 1
            raise Overrun(f"no number left after position {self.position - 1}")
        last = first + min(NUMBER_TEXT_CAPACITY - 1, size - first)
        end = first + 1
        while end < last and buffer[end] in NUMBER_CHARS:
            end += 1
        self.position = end + 1
        return buffer[first:end]

    def unsigned(self, bits=32):
        """A token accumulated as digits modulo 2^bits ('-' counts as the digit -3)."""
        value = 0
        for c in self.token():
            value = (value * 10 + c - ord("0")) % (1 << bits)
        return value

    def signed(self):
        """A token as a signed 32-bit number: a leading '-' negates the rest."""
        text = self.token()
        negative = text[:1] == b"-"
        magnitude = 0
        for c in text[1:] if negative else text:
            magnitude = (magnitude * 10 + c - ord("0")) % (1 << 32)
        return as_signed32(-magnitude if negative else magnitude)

    def peek_unsigned(self):
        """The next token as an unsigned 32-bit number, left unread."""
        position = self.position
        try:
            return self.unsigned()
        finally:
            self.position = position

    def counted_bytes(self):
        """An unsigned 32-bit length, then that many raw bytes, clamped to what remains."""
        length = self.unsigned()
        start = self.start()
        length = min(length, len(self.buffer) - start)
        self.position = start + length
        return self.buffer[start:start + length]

    def line(self):
        """The bytes up to the next line feed (which stays unread) or the end."""
        start = self.start()
        end = self.buffer.find(LINE_FEED, start)
        if end < 0:
            end = len(self.buffer)
        self.position = end
        return self.buffer[start:end]

    def past_end(self):
        """Whether the last read ran past the end (the next would start over from the beginning)."""
        return self.position > len(self.buffer)

    def consumed(self):
        """The bytes read so far, as the decoder counts them."""
        return min(self.position, self.length)


def as_signed32(value):
    """The two's-complement reading of the low 32 bits."""
    value %= 1 << 32
    return value - (1 << 32) if value >= 1 << 31 else value


def hex_bytes(text):
    """Hex text as the blob's old form decodes it (see the comment in the body)."""
    def nibble(c):
        return int(chr(c), 16) if c in HEX_DIGITS else 0

    # A hex digit starts a byte and the character after it is its low half, 0 when that is no
    # hex digit (or when the text ends); anything else between bytes is skipped.
    out = bytearray()
    i = 0
    while i < len(text):
        if text[i] in HEX_DIGITS:
            low = nibble(text[i + 1]) if i + 1 < len(text) else 0
            out.append(nibble(text[i]) << 4 | low)
            i += 2
        else:
            i += 1
    return bytes(out)


def read_number(archive, wire):
    """A number in its wire form, as a description shows it."""
    if wire == "unsigned8":
        return archive.unsigned() & 0xFF
    if wire == "unsigned16":
        return archive.unsigned() & 0xFFFF
    if wire == "unsigned32":
        return archive.unsigned()
    if wire == "signed32":
        return archive.signed()
    if wire == "signed-out-unsigned-in":
        return as_signed32(archive.unsigned())
    if wire == "unsigned64":
        return archive.unsigned(64)
    if wire == "flag":
        return 1 if archive.unsigned() else 0
    raise AssertionError(f"unknown number wire {wire!r} in the schema document")


def described_signature(signature, wire):
    """A signature as a description shows it: in the record's signature wire form."""
    return as_signed32(signature) if wire in ("signed32", "signed-out-unsigned-in") else signature


class SchemaReader:
    """Reads records by the schema document and nothing else."""

    def __init__(self, document):
        """Indexes the document's classes by name."""
        self.blob = document["blob"]
        self.classes = {entry["name"]: entry for entry in document["classes"]}
        self.named = []  # (field name, value, value names) of every named number read

    def read_class(self, archive, name):
        """One record of a registered class."""
        return self.read_record(archive, self.classes[name]["record"])

    def read_record(self, archive, record):
        """A record: with a signature, the fields of the layout it names; without, its fields."""
        types = {field["name"]: field for field in record["fields"] + record["readOnlyFields"]}
        names = [field["name"] for field in record["fields"]]
        if record["signature"] is None:
            values = {name: self.read_field(archive, types[name]) for name in names}
            return Record(None, names, values)
        signature = archive.unsigned()
        layouts = record["layouts"]
        layout = next((each for each in layouts if each["signature"] == signature), None)
        if layout is None:
            accepted = [each["signature"] for each in layouts]
            raise Refused(f"signature {signature} is not one of {accepted}")
        values = {}
        for name in layout["fields"]:
            if name == DROPPED:
                archive.unsigned()
            else:
                values[name] = self.read_field(archive, types[name])
        newest = described_signature(layouts[0]["signature"], record["signature"])
        return Record(newest, names, values)

    def read_field(self, archive, field):
        """One field's value, noting a number whose values have names."""
        value = self.read_type(archive, field["type"])
        if "values" in field:
            self.named.append((field["name"], value, field["values"]))
        return value

    def read_type(self, archive, value_type):
        """One value of a schema type."""
        kind = value_type["kind"]
        if kind == "number":
            return read_number(archive, value_type["wire"])
        if kind == "text":
            return Text(archive.counted_bytes())
        if kind == "raw-bytes":
            return Blob(archive.counted_bytes())
        if kind == "hex-line":
            return Blob(hex_bytes(archive.line()))
        if kind == "blob":
            return self.blob_bytes(self.read_record(archive, self.blob))
        if kind == "record":
            if "class" in value_type:
                return self.read_class(archive, value_type["class"])
            return self.read_record(archive, value_type["record"])
        if kind == "list":
            return self.read_list(archive, value_type)
        raise AssertionError(f"unknown type kind {kind!r} in the schema document")

    def blob_bytes(self, blob):
        """A blob's bytes: its record's one described field, or what the old layout carries."""
        # The old layout carries a read-only field in place of the described one; the document
        # does not say what it stands for, and a blob holds nothing but its bytes.
        (described,) = blob.names
        if described in blob.values:
            return blob.values[described]
        (carried,) = blob.values.values()
        return carried

    def read_list(self, archive, list_type):
        """A list: its count in its count form (or none), then the items."""
        count_wire, item = list_type["count"], list_type["item"]
        if count_wire == "zero-ended":
            # A 0 where an item's leading number would stand ends the list.
            items = []
            while archive.peek_unsigned() != 0:
                items.append(self.read_type(archive, item))
            archive.unsigned()
            return items
        if count_wire == "fixed":
            count = list_type["fixedCount"]
        elif count_wire in ("unsigned64", "unsigned32"):
            count = archive.unsigned()
        elif count_wire == "signed32":
            count = max(archive.signed(), 0)
        else:
            raise AssertionError(f"unknown count form {count_wire!r} in the schema document")
        items = []
        for _ in range(count):
            if archive.past_end():
                break  # a count the data does not hold: the list stops where the data ends
            items.append(self.read_type(archive, item))
        return items


@dataclasses.dataclass
class Comparison:
    """What comparing one record's bytes found."""

    mismatches: list = dataclasses.field(default_factory=list)  # (where, what)
    compared: int = 0  # fields (at any depth) whose values were compared
    skipped: int = 0  # fields an older layout does not carry, so not compared
    named: int = 0  # named values checked in the text form


def compare(value, expected, path, result):
    """Compares a value read with the tool's JSON for it, noting each difference under its path."""
    def differ(what):
        result.mismatches.append((path or "(record)", what))

    if isinstance(value, Record):
        if not isinstance(expected, dict):
            return differ(f"the reader has a record, the tool {expected!r}")
        keys = (["Signature"] if value.signature is not None else []) + value.names
        if list(expected) != keys:
            return differ(f"keys {keys}, the tool {list(expected)}")
        if value.signature is not None and expected["Signature"] != value.signature:
            differ(f"Signature {value.signature}, the tool {expected['Signature']}")
        for name in value.names:
            inner = f"{path}.{name}" if path else name
            if name not in value.values:
                result.skipped += 1
                continue
            result.compared += 1
            compare(value.values[name], expected[name], inner, result)
    elif isinstance(value, list):
        if not isinstance(expected, list) or len(expected) != len(value):
            return differ(f"{len(value)} items, the tool {expected!r}")
        for i, (item, expected_item) in enumerate(zip(value, expected)):
            compare(item, expected_item, f"{path}[{i}]", result)
    elif isinstance(value, Blob):
        if expected != value.hex().upper():
            differ(f"blob {value.hex().upper()}, the tool {expected!r}")
    elif isinstance(value, Text):
        try:
            shown = value.decode("utf-8")
        except UnicodeDecodeError:
            shown = {"hex": value.hex().upper()}
        if expected != shown:
            differ(f"text {shown!r}, the tool {expected!r}")
    elif type(expected) is not int or expected != value:
        differ(f"number {value}, the tool {expected!r}")


def run_tool(*arguments, data=None):
    """Runs ehal-dump (with `data` on standard input) and returns its output; it must succeed."""
    done = subprocess.run([str(TOOL), *arguments], input=data, capture_output=True, timeout=60)
    assert done.returncode == 0, f"ehal-dump {' '.join(arguments)}: {done.stderr.decode()}"
    return done.stdout.decode("utf-8", "replace")


@functools.lru_cache(maxsize=None)
def document():
    """The schema document the tool prints."""
    schema = json.loads(run_tool("--schema"))
    assert schema["format"] == "ehal-schema" and schema["version"] == 1
    return schema


def file_stem(class_name):
    """A class name as the vector files spell it."""
    return re.sub(r"[^A-Za-z0-9]+", "_", class_name)


def class_of(path):
    """The class and the layout signature (None for `none`) a vector's file name names."""
    stem, signature = path.stem.rsplit(".", 1)
    names = [entry["name"] for entry in document()["classes"] if file_stem(entry["name"]) == stem]
    assert len(names) == 1, f"{path.name} names {len(names)} classes of the document"
    return names[0], None if signature == "none" else int(signature, 16)


def check_bytes(class_name, data, path=None):
    """Compares the schema reader with the tool (JSON, bytes consumed, names) on the same bytes."""
    source = [str(path)] if path else []
    stdin = None if path else data
    result = Comparison()
    reader = SchemaReader(document())
    archive = Archive(data)
    try:
        value = reader.read_class(archive, class_name)
    except (Overrun, Refused) as error:
        result.mismatches.append(("(read)", f"the schema reader fails: {error}"))
        return result
    if archive.position > archive.length:  # the decoder's test for bytes that end too soon
        result.mismatches.append(("(read)", "the schema reader ran past the end of the bytes"))

    dumped = json.loads(run_tool("--json", class_name, *source, data=stdin))
    compare(value, dumped["record"], "", result)
    if archive.consumed() != dumped["consumed"]:
        result.mismatches.append(
            ("(consumed)", f"{archive.consumed()} bytes, the tool {dumped['consumed']}"))

    if reader.named:
        lines = {line.strip() for line in run_tool(class_name, *source, data=stdin).splitlines()}
        for name, number, names in reader.named:
            named = 0 <= number < len(names)
            line = f"{name} = {number} ({names[number]})" if named else f"{name} = {number}"
            if line not in lines:
                result.mismatches.append(("(text form)", f"no line {line!r}"))
            result.named += named
    return result


VECTOR_FILES = sorted(VECTORS.glob("*.bin"))


@functools.lru_cache(maxsize=None)
def check_vector(path):
    """Checks one golden vector: its file name against its bytes, then check_bytes."""
    class_name, signature = class_of(path)
    data = path.read_bytes()
    result = check_bytes(class_name, data, path)
    if signature is not None:
        first = Archive(data).unsigned()
        if first != signature:
            result.mismatches.append(
                ("(file name)", f"names layout {signature:#x}, the bytes begin with {first:#x}"))
    return result


@pytest.mark.parametrize("path", VECTOR_FILES, ids=lambda path: path.name)
def test_vector_reads_as_the_tool_prints_it(path):
    """The schema reader decodes the vector to the tool's description of it."""
    result = check_vector(path)
    known = {where for name, where in KNOWN_DIFFERENCES if name == path.name}
    unexplained = [f"{where}: {what}" for where, what in result.mismatches if where not in known]
    assert not unexplained, "\n".join(unexplained)
    gone = known - {where for where, _ in result.mismatches}
    assert not gone, f"listed differences no longer seen: {sorted(gone)}"


def test_every_vector_and_class_was_compared():
    """The comparison covered every vector, every class of the document and enough fields."""
    assert VECTOR_FILES, f"no golden vectors in {VECTORS}"
    results = [check_vector(path) for path in VECTOR_FILES]
    assert len(results) == len(list(VECTORS.glob("*.bin")))
    assert sum(result.compared for result in results) >= 100
    assert sum(result.named for result in results) > 0, "no named value was checked"
    stale = {name for name, _ in KNOWN_DIFFERENCES} - {path.name for path in VECTOR_FILES}
    assert not stale, f"differences listed for vectors that do not exist: {sorted(stale)}"
    covered = {class_of(path)[0] for path in VECTOR_FILES}
    missing = {entry["name"] for entry in document()["classes"]} - covered
    assert not missing, f"classes of the document without a vector: {sorted(missing)}"


# Bytes the golden vectors never hold (they carry small plain numbers only), for the token rules.
EDGE_CASES = {
    # A leading '-' negates a signed read; a '-' inside a token counts as the digit -3.
    "signed reads": ("eHal::EActivePortSetting", b"2022773057 -5 12-3 "),
    # 32-bit wrap, '-' in unsigned reads, a 30-character token cut at 29 (its 30th character
    # skipped as the delimiter), signed-out-unsigned-in shown signed, 8/16-bit narrowing, flags
    # from any non-zero number, 64-bit wrap, a text that is not UTF-8.
    "number forms": ("EFCParams",
                     b"1 4294967297 -1 " + b"1" * 29 + b"78 -7 4294967295 7 3 2 0 1 0 1 1 0 1 "
                     b"300 256 70000 18446744073709551617 -1 4 ok\xff\xfe"),
    # A negative signed count reads no items.
    "negative count": ("ESwitchUpdateMessage", b"8 1 2 -2 "),
    # Bytes that are no number chars are skipped wherever they stand; a zero-ended list.
    "skipped bytes": ("EUniqueIDGenerator", b"xx17829889,,5;3 4 7 9 0 "),
    # Named values, one of them in a signed-out-unsigned-in field.
    "named values": ("eHal::EMacSec", b"326468162 2 1 0 5 2 0 "),
    # A signed-out-unsigned-in value outside the names.
    "unnamed value": ("eHal::EMacSec", b"326468162 2 1 0 5 -7 0 "),
}


@pytest.mark.parametrize("case", EDGE_CASES)
def test_edge_case_reads_as_the_tool_reads_it(case):
    """The schema reader and the tool agree on bytes that reach the rarer token rules."""
    class_name, data = EDGE_CASES[case]
    result = check_bytes(class_name, data)
    assert not result.mismatches, "\n".join(f"{where}: {what}" for where, what in result.mismatches)
