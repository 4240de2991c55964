"""The generated ehal.ksy, checked with the real Kaitai Struct compiler: it compiles without a
warning, and the reader it compiles into reads every golden vector (and bytes written here by
hand) as `ehal-dump --json` prints them, field by field, with the same rules as the independent
schema reader. JavaScript runs under node; Python where Debian's runtime matches a compiler."""

import functools
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys

import pytest

HERE = pathlib.Path(__file__).resolve().parent
BUILD = HERE.parents[1] / "build/release"
KSY = pathlib.Path(os.environ.get("EHAL_KSY", BUILD / "tools/ehal.ksy"))
NPM_DIR = pathlib.Path(os.environ.get("EHAL_NPM_DIR", BUILD / "npm"))

sys.path.insert(0, str(HERE.parent))
import schema_reader_test as reader  # noqa: E402  (the comparison rules are the reader's)

# The npm packages, pinned: the compiler and the JavaScript runtime of one version, and the YAML
# parser the compiler's npm build needs. 0.10.0 is also the version of Debian's Python runtime.
JS_YAML = "js-yaml@4.1.0"
COMPILER_FOR = {"javascript": "0.11.0", "python": "0.10.0"}

# Differences between the Kaitai reader and the tool, by vector file and field path, with the
# reason; each must still show. The schema reader's own list applies as well.
KAITAI_DIFFERENCES = {
    ("EBlob.11223344.bin", "(consumed)"):
        "the blob's old form ends with a line feed that the library leaves to the next number "
        "and the Kaitai reader takes with the hex text",
}

if not KSY.is_file():
    pytest.skip(f"no ehal.ksy at {KSY} (set EHAL_KSY to the generated file)",
                allow_module_level=True)
if shutil.which("node") is None or shutil.which("npm") is None:
    pytest.skip("node and npm are needed to run the Kaitai Struct compiler",
                allow_module_level=True)


def run(command, **options):
    """Runs a command and returns it done; its output is text."""
    return subprocess.run(command, capture_output=True, text=True, **options)


@functools.lru_cache(maxsize=None)
def npm_packages(version):
    """The folder holding the compiler and runtime of `version`, installed there on first use;
    the test skips where npm cannot install them."""
    folder = NPM_DIR / version
    wanted = [f"kaitai-struct-compiler@{version}", f"kaitai-struct@{version}", JS_YAML]
    installed = folder / "installed.txt"
    if installed.is_file() and installed.read_text() == " ".join(wanted):
        return folder
    folder.mkdir(parents=True, exist_ok=True)
    done = run(["npm", "install", "--prefix", str(folder), "--no-save", "--no-package-lock",
                "--no-audit", "--no-fund", *wanted], timeout=240)
    if done.returncode != 0:
        pytest.skip(f"npm cannot install {' '.join(wanted)}: {done.stderr.strip()[-300:]}")
    installed.write_text(" ".join(wanted))
    return folder


@functools.lru_cache(maxsize=None)
def compiled(target):
    """Compiles ehal.ksy for `target`: the output folder and the compiler's warnings."""
    folder = NPM_DIR / "compiled" / target
    shutil.rmtree(folder, ignore_errors=True)
    done = run(["node", str(HERE / "ksc.js"), str(npm_packages(COMPILER_FOR[target])), target,
                str(folder), str(KSY)], timeout=240)
    assert done.returncode == 0, f"the compiler fails on {KSY}: {done.stderr}"
    warnings = [line for line in done.stdout.splitlines() if line.startswith("warning:")]
    return folder, warnings


# ---- Reading: what the generated readers give, as plain values ----

def read_with_javascript(jobs):
    """Reads each (ksy type, bytes) with the JavaScript reader, through read.js."""
    folder, _ = compiled("javascript")
    request = json.dumps([{"type": kind, "hex": data.hex()} for kind, data in jobs])
    # The heap is bounded: a reader that reads on without end must fail, not take the machine.
    done = run(["node", "--max-old-space-size=512", str(HERE / "read.js"), str(npm_packages(COMPILER_FOR["javascript"])),
                str(folder)], input=request, timeout=240)
    assert done.returncode == 0, done.stderr
    return json.loads(done.stdout)


def python_runtime():
    """The kaitaistruct module, where its version is the Python compiler's; else a skip."""
    try:
        import kaitaistruct
    except ImportError:
        pytest.skip("no Python Kaitai Struct runtime (./dev deps installs python3-kaitaistruct)")
    version = getattr(kaitaistruct, "__version__", "?")
    if not COMPILER_FOR["python"].startswith(version + "."):
        pytest.skip(f"kaitaistruct {version} does not match compiler {COMPILER_FOR['python']}")
    return kaitaistruct


def upper_camel(identifier):
    """A Kaitai identifier as the compiler names its class."""
    return "".join(part[:1].upper() + part[1:] for part in identifier.split("_"))


class PythonDump:
    """What read.js does, for the Python reader: records as dicts under their `-orig-id`."""

    def __init__(self, module, description):
        self.module = module
        self.types = description["types"]
        self.by_class = {upper_camel(identifier): identifier for identifier in self.types}

    def plain(self, value):
        if isinstance(value, bytes):
            return {"hex": value.hex().upper()}
        if isinstance(value, list):
            return [self.plain(item) for item in value]
        if type(value).__name__ in self.by_class:
            return self.record(value)
        return value

    def record(self, value):
        definition = self.types[self.by_class[type(value).__name__]]
        out, keys = {}, {}
        for attribute in definition.get("seq", []):
            item = getattr(value, attribute["id"], None)
            if item is None:
                continue
            keys[attribute["id"]] = attribute.get("-orig-id", attribute["id"])
            out[keys[attribute["id"]]] = self.plain(item)
        for name, instance in definition.get("instances", {}).items():
            if "value" not in instance:
                continue
            item = getattr(value, name)
            if "enum" not in instance:
                out[name] = self.plain(item)
                continue
            # A value the enum names is its member; any other stays a number.
            named = hasattr(item, "name")
            out[keys[instance["value"].removesuffix(".value")]]["named"] = {
                "value": item.value if named else item, "member": item.name if named else None}
        return out


def read_with_python(jobs):
    """Reads each (ksy type, bytes) with the Python reader."""
    runtime = python_runtime()
    folder, _ = compiled("python")
    sys.path.insert(0, str(folder))
    try:
        import ehal as generated
    finally:
        sys.path.remove(str(folder))
    dump = PythonDump(generated, json.loads((folder / "ksy.json").read_text()))
    results = []
    for kind, data in jobs:
        stream = runtime.KaitaiStream(__import__("io").BytesIO(data))
        try:
            record = getattr(generated.Ehal, upper_camel(kind))(stream)
            results.append({"record": dump.record(record), "consumed": stream.pos()})
        except Exception as error:  # noqa: BLE001  (a reader's failure is a finding)
            results.append({"error": f"{type(error).__name__}: {error}"})
    return results


READERS = {"javascript": read_with_javascript, "python": read_with_python}


# ---- Turning what a reader gave into the schema reader's values ----

def member_matches(member, name):
    """Whether an enum member stands for a value name (case and "k" prefix aside)."""
    if re.match(r"k[A-Z]", name):
        name = name[1:]
    def letters(text):
        return re.sub(r"[^a-z0-9]", "", text.lower())
    return letters(member) == letters(name)


class Converter:
    """Walks what a Kaitai reader gave alongside the schema document, into the schema reader's
    Record, Text and Blob values, noting what it checked."""

    def __init__(self, document):
        self.document = document
        self.classes = {entry["name"]: entry["record"] for entry in document["classes"]}
        self.blobs = reader.SchemaReader(document)
        self.problems = []  # (where, what)
        self.named = 0  # enum members checked
        self.from_token = 0  # 64-bit numbers the language's numbers cannot hold, read as tokens
        self.signature = None  # the first signature read

    def record(self, record, given, path=""):
        types = {field["name"]: field for field in record["fields"] + record["readOnlyFields"]}
        names = [field["name"] for field in record["fields"]]
        if record["signature"] is None:
            values = {name: self.field(types[name], given[name], path) for name in names}
            return reader.Record(None, names, values)
        wire = record["signature"]
        read = given["signature"]["value"]
        if self.signature is None:
            self.signature = read
        layout = next(layout for layout in record["layouts"]
                      if reader.described_signature(layout["signature"], wire) == read)
        values = {name: self.field(types[name], given["layout"][name], path)
                  for name in layout["fields"] if name != reader.DROPPED}
        newest = reader.described_signature(record["layouts"][0]["signature"], wire)
        return reader.Record(newest, names, values)

    def field(self, field, given, path):
        where = f"{path}.{field['name']}" if path else field["name"]
        value = self.value(field["type"], given, where)
        if "values" in field and field["type"].get("wire") != "flag":
            self.check_named(field["values"], value, given.get("named"), where)
        return value

    def check_named(self, names, value, named, where):
        if named is None or named["value"] != value:
            return self.problems.append((where, f"enum instance {named}, the value {value}"))
        expected = names[value] if 0 <= value < len(names) and names[value] else None
        member = named["member"]
        if (expected is None) != (member is None) or (expected and not member_matches(member,
                                                                                     expected)):
            return self.problems.append((where, f"enum member {member!r} for {expected!r}"))
        self.named += expected is not None

    def number(self, given):
        value = given["value"]
        if isinstance(value, dict):  # beyond the language's exact integers: the token
            self.from_token += 1
            return int(given["token"])
        return int(value)

    def value(self, value_type, given, where):
        kind = value_type["kind"]
        if kind == "number":
            return self.number(given)
        if kind == "text":
            return reader.Text(bytes.fromhex(given["bytes"]["hex"]))
        if kind == "raw-bytes":
            return reader.Blob(bytes.fromhex(given["bytes"]["hex"]))
        if kind == "hex-line":
            return reader.Blob(reader.hex_bytes(given["hex_text"].encode("latin-1")))
        if kind == "blob":
            return self.blobs.blob_bytes(self.record(self.document["blob"], given, where))
        if kind == "record":
            record = self.classes[value_type["class"]] if "class" in value_type else \
                value_type["record"]
            return self.record(record, given, where)
        item = value_type["item"]
        if value_type["count"] == "zero-ended":
            return [self.value(item, entry["item"], where) for entry in given
                    if not entry["is_end"]]
        return [self.value(item, each, where) for each in given]


def type_of(class_name):
    """The ksy type of a class: the one whose `-orig-id` is the class name."""
    description = json.loads((compiled("javascript")[0] / "ksy.json").read_text())
    for identifier, definition in description["types"].items():
        if definition.get("-orig-id") == class_name:
            return identifier
    raise AssertionError(f"ehal.ksy has no type for {class_name}")


def compare(class_name, result, data, path=None):
    """Compares one reading with the tool's JSON: a schema reader Comparison, plus the Kaitai
    reader's own checks (enum members, bytes consumed); also returns the first signature read."""
    comparison = reader.Comparison()
    if "error" in result:
        comparison.mismatches.append(("(read)", f"the Kaitai reader fails: {result['error']}"))
        return comparison, None
    source = [str(path)] if path else []
    dumped = json.loads(reader.run_tool("--json", class_name, *source,
                                        data=None if path else data))
    converter = Converter(reader.document())
    try:
        value = converter.record(converter.classes[class_name], result["record"])
    except (KeyError, TypeError, ValueError, StopIteration) as error:
        comparison.mismatches.append(
            ("(read)", f"the Kaitai reading does not have the schema's shape: {error!r}"))
        return comparison, converter.signature
    reader.compare(value, dumped["record"], "", comparison)
    comparison.mismatches += converter.problems
    comparison.named = converter.named
    comparison.from_token = converter.from_token
    if result["consumed"] != dumped["consumed"]:
        comparison.mismatches.append(
            ("(consumed)", f"{result['consumed']} bytes, the tool {dumped['consumed']}"))
    return comparison, converter.signature


# ---- The tests ----

@pytest.mark.parametrize("target", sorted(COMPILER_FOR))
def test_the_compiler_warns_of_nothing(target):
    """ehal.ksy compiles for the target without a warning."""
    if target == "python":
        python_runtime()
    _, warnings = compiled(target)
    assert warnings == []


VECTOR_FILES = reader.VECTOR_FILES


@functools.lru_cache(maxsize=None)
def vector_results(target):
    """Every golden vector read by the target's reader and compared: {file name: Comparison}."""
    jobs, classes = [], []
    for path in VECTOR_FILES:
        class_name, _ = reader.class_of(path)
        classes.append(class_name)
        jobs.append((type_of(class_name), path.read_bytes()))
    results = READERS[target](jobs)
    found = {}
    for path, class_name, result in zip(VECTOR_FILES, classes, results):
        comparison, signature = compare(class_name, result, path.read_bytes(), path)
        expected = reader.class_of(path)[1]
        if expected is not None and signature is not None and signature % (1 << 32) != expected:
            comparison.mismatches.append(
                ("(file name)", f"names layout {expected:#x}, the reader read {signature:#x}"))
        found[path.name] = comparison
    return found


@pytest.mark.parametrize("target", sorted(COMPILER_FOR))
def test_every_vector_reads_as_the_tool_prints_it(target):
    """Each golden vector, through the compiled reader, gives every field the tool gives."""
    if target == "python":
        python_runtime()
    results = vector_results(target)
    known = {**reader.KNOWN_DIFFERENCES, **KAITAI_DIFFERENCES}
    problems, seen = [], set()
    for name, comparison in results.items():
        for where, what in comparison.mismatches:
            if (name, where) in known:
                seen.add((name, where))
            else:
                problems.append(f"{name}: {where}: {what}")
    assert not problems, "\n".join(problems)
    assert seen == set(known), f"listed differences no longer seen: {sorted(set(known) - seen)}"
    # Every vector and every class was compared, field by field.
    assert len(results) == len(VECTOR_FILES) == len(list(reader.VECTORS.glob("*.bin")))
    covered = {reader.class_of(path)[0] for path in VECTOR_FILES}
    assert covered == {entry["name"] for entry in reader.document()["classes"]}
    compared = sum(comparison.compared for comparison in results.values())
    skipped = sum(comparison.skipped for comparison in results.values())
    named = sum(comparison.named for comparison in results.values())
    print(f"\n{target}: {len(results)} vectors of {len(covered)} classes, {compared} fields "
          f"compared, {skipped} that older layouts lack skipped, {named} enum members checked, "
          f"{len(seen)} known differences")
    assert compared >= 400 and named > 0


# Bytes written here by hand: eHal::EPRBS in its oldest layout (0x11334356: no ClientMessageId,
# no ExtraId) holding two eHal::EPacket records, whose blobs travel in EBlob's form: the first in
# its old form (hex text and a line feed, 0x11223344), the second in its current form with a
# timestamp beyond JavaScript's exact integers.
HAND_MADE = (b"288572246 3 0 4096 2 7 2 "
             b"1123140 5 287454020 0AFF10\n"
             b"1123140 9007199254740993 287454021 3 abc")
HAND_MADE_FIELDS = {
    "RequestType": 3, "ReturnCode": 0, "BufferSize": 4096, "PacketCount": 2, "Start": 7,
    "Packets": [{"PacketTimestamp": 5, "PacketData": bytes([0x0A, 0xFF, 0x10])},
                {"PacketTimestamp": 9007199254740993, "PacketData": b"abc"}],
}


def plain_record(value):
    """A schema reader value as plain Python values, for exact expectations."""
    if isinstance(value, reader.Record):
        return {name: plain_record(item) for name, item in value.values.items()}
    if isinstance(value, list):
        return [plain_record(item) for item in value]
    return bytes(value) if isinstance(value, bytes) else value


@pytest.mark.parametrize("target", sorted(COMPILER_FOR))
def test_bytes_written_by_hand_in_older_layouts(target):
    """Three classes, nested, in older layouts and both blob forms, read to exact values."""
    if target == "python":
        python_runtime()
    (result,) = READERS[target]([("eprbs", HAND_MADE)])
    assert "error" not in result, result["error"]
    converter = Converter(reader.document())
    record = converter.record(converter.classes["eHal::EPRBS"], result["record"])
    assert converter.signature == 0x11334356
    assert plain_record(record) == HAND_MADE_FIELDS
    assert result["record"]["layout"]["RequestType"]["named"]["member"].lower() == \
        "prbs_start_capture"
    assert result["consumed"] == len(HAND_MADE)
    comparison, _ = compare("eHal::EPRBS", result, HAND_MADE)
    assert not comparison.mismatches, comparison.mismatches
    assert comparison.skipped == 2  # ClientMessageId and ExtraId
    assert converter.from_token == (1 if target == "javascript" else 0)


# A negative number in a field written signed and read unsigned reads as the library reads it.
EDGE_CASES = {name: reader.EDGE_CASES[name] for name in ("named values", "unnamed value")}


@pytest.mark.parametrize("target", sorted(COMPILER_FOR))
@pytest.mark.parametrize("case", sorted(EDGE_CASES))
def test_edge_case_reads_as_the_tool_reads_it(target, case):
    """Bytes beyond the golden vectors that the Kaitai form can say."""
    if target == "python":
        python_runtime()
    class_name, data = EDGE_CASES[case]
    (result,) = READERS[target]([(type_of(class_name), data)])
    comparison, _ = compare(class_name, result, data)
    assert not comparison.mismatches, comparison.mismatches
