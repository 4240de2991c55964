#include "record_encoder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "eArchive.h"
#include "eBlob.h"
#include "record_codec.h"
#include "record_objects.h"

namespace eHal::python {

namespace {

// The numbers a wire form carries without loss.
struct NumberRange {
  std::int64_t least;
  std::uint64_t most;
};

NumberRange RangeOf(ENumberWire wire) {
  const unsigned int bits = WireBits(wire);
  if (IsSignedWire(wire))
    return {-(std::int64_t{1} << (bits - 1)), (std::uint64_t{1} << (bits - 1)) - 1};
  return {0,
          bits == 64 ? std::numeric_limits<std::uint64_t>::max() : (std::uint64_t{1} << bits) - 1};
}

// True when `given` is a number for a field of the wire form: an int, a bool only for kBool.
bool IsNumberFor(PyObject* given, ENumberWire wire) {
  return PyLong_Check(given) && (!PyBool_Check(given) || wire == ENumberWire::kBool);
}

// The Python int as the description keeps it (sign-extended for negative numbers), or nothing
// when it lies outside the wire form's range.
std::optional<std::uint64_t> InRange(PyObject* number, ENumberWire wire) {
  const NumberRange range = RangeOf(wire);
  int overflow = 0;
  const long long value = PyLong_AsLongLongAndOverflow(number, &overflow);
  if (overflow < 0) return std::nullopt;
  if (overflow > 0) {
    const unsigned long long large = PyLong_AsUnsignedLongLong(number);
    if (PyErr_Occurred() != nullptr) {
      PyErr_Clear();
      return std::nullopt;
    }
    if (large > range.most) return std::nullopt;
    return large;
  }
  if (value < range.least) return std::nullopt;
  if (value >= 0 && static_cast<unsigned long long>(value) > range.most) return std::nullopt;
  return static_cast<std::uint64_t>(value);
}

// A signature field: its name, as every record describes it.
bool IsSignature(const ERecordValue& value) {
  return value.kind == ERecordValue::Kind::kNumber && value.name == "Signature";
}

std::string TypeName(py::handle object) {
  return Py_TYPE(object.ptr())->tp_name;
}

// Lays Python values over a record's description, keeping the path walked for messages and for
// finding list items. It is the reference for what encode() takes: every check names the value
// it refuses by its path from the record.
class Overlayer {
 public:
  Overlayer(const ERecordClass& recordClass, ERecordValue& root)
      : m_Class(recordClass), m_Root(root) {}

  void Record(ERecordValue& record, py::handle fields, const std::string& where) {
    if (!PyDict_Check(fields.ptr()))
      throw py::type_error(where + ": a record is given as a dict, not " + TypeName(fields));
    for (const auto& [key, given] : py::reinterpret_borrow<py::dict>(fields)) {
      if (!PyUnicode_Check(key.ptr()))
        throw py::type_error(where + ": field names are str, not " + TypeName(key));
      const std::string name = key.cast<std::string>();
      Field(record, name, given, where);
    }
  }

 private:
  void Field(ERecordValue& record, const std::string& name, py::handle given,
             const std::string& where) {
    for (std::size_t i = 0; i < record.items.size(); ++i) {
      if (record.items[i].name != name) continue;
      m_Path.push_back(i);
      Value(record.items[i], given, where + "." + name);
      m_Path.pop_back();
      return;
    }
    std::vector<std::string> names;
    for (const ERecordValue& field : record.items)
      names.push_back(field.name);
    throw py::key_error(UnknownNameMessage("field", where + "." + name,
                                           ERecordRegistry::CloseNames(name, names),
                                           "; its fields: " + Joined(names)));
  }

  void Value(ERecordValue& value, py::handle given, const std::string& where) {
    switch (value.kind) {
      case ERecordValue::Kind::kNumber:
        return Number(value, given, where);
      case ERecordValue::Kind::kText:
        return Text(value, given, where);
      case ERecordValue::Kind::kBytes:
        value.bytes = std::string(BytesArgument(given, where.c_str()).View());
        return;
      case ERecordValue::Kind::kList:
        return List(value, given, where);
      case ERecordValue::Kind::kRecord:
        return Record(value, given, where);
    }
  }

  static void Number(ERecordValue& value, py::handle given, const std::string& where) {
    if (!IsNumberFor(given.ptr(), value.wire))
      throw py::type_error(where + ": a number is given as an int, not " + TypeName(given));
    const std::optional<std::uint64_t> number = InRange(given.ptr(), value.wire);
    if (!number)
      throw py::value_error(where + ": " + py::str(given).cast<std::string>() +
                            " is out of range for the field");
    if (IsSignature(value) && *number != value.number)
      throw py::value_error(where + ": the record writes signature " +
                            std::to_string(value.number) + ", not " +
                            py::str(given).cast<std::string>());
    value.number = *number;
  }

  static void Text(ERecordValue& value, py::handle given, const std::string& where) {
    if (!PyUnicode_Check(given.ptr()))
      throw py::type_error(where + ": a text is given as a str, not " + TypeName(given));
    value.bytes = std::string(TextArgument(given).View());
  }

  void List(ERecordValue& list, py::handle given, const std::string& where) {
    if (!PyList_Check(given.ptr()) && !PyTuple_Check(given.ptr()))
      throw py::type_error(where + ": a list is given as a list, not " + TypeName(given));
    const py::sequence items = py::reinterpret_borrow<py::sequence>(given);
    const std::size_t count = items.size();
    if (list.countWire == ECountWire::kFixed && count != list.items.size())
      throw py::value_error(where + ": this list has exactly " + std::to_string(list.items.size()) +
                            " items, not " + std::to_string(count));
    if (count > list.items.size()) Grow(list, count, where);
    list.items.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
      m_Path.push_back(i);
      Value(list.items[i], items[i], where + "[" + std::to_string(i) + "]");
      m_Path.pop_back();
    }
  }

  // Adds fresh items to the list up to `count`, shaped as the record describes one.
  void Grow(ERecordValue& list, std::size_t count, const std::string& where) {
    const std::optional<ERecordValue> item = ListItem(m_Class, m_Root, m_Path);
    if (!item) throw py::value_error(where + ": the record's list items cannot be told");
    list.items.resize(count, *item);
  }

  static std::string Joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
      text += (text.empty() ? "" : " ") + name;
    return text;
  }

  const ERecordClass& m_Class;
  ERecordValue& m_Root;
  std::vector<std::size_t> m_Path;  // indices from the root to the value being laid over
};

// One value of a record as the compiled encoder writes it: its kind and wire form, the bytes of
// the fresh record's value (written for a field left out), for a record its fields (held in place,
// so that a record's fields lie together), for a list its items.
struct EncoderField;

struct EncoderNode {
  ERecordValue::Kind kind = ERecordValue::Kind::kRecord;
  ENumberWire wire = ENumberWire::kUnsigned32;
  std::optional<std::uint64_t> signature;  // the one number a signature field takes
  std::string fresh;
  std::vector<EncoderField> fields;
  ECountWire countWire = ECountWire::kUnsigned64;
  std::vector<EncoderNode> items;      // the fresh list's items
  std::unique_ptr<EncoderNode> grown;  // an item beyond them; null where the overlay tells it
};

struct EncoderField {
  py::object key;  // the field's name, interned; null for a name an earlier field has
  EncoderNode node;
};

// True when a field before the one at `index` has its name.
bool NamedBefore(const ERecordValue& record, std::size_t index) {
  for (std::size_t i = 0; i < index; ++i) {
    if (record.items[i].name == record.items[index].name) return true;
  }
  return false;
}

// Where a value lies in the fresh record of a class, for telling the items of its lists.
struct FreshPlace {
  const ERecordClass& recordClass;
  const ERecordValue& record;
  std::vector<std::size_t> path;  // indices from the record to the value
};

EncoderNode Compile(const ERecordValue& fresh, FreshPlace* place);

// The items of a list: those of the fresh list, and one for the items beyond them, shaped as the
// overlay shapes one. Inside such an item (no `place`) a list's further items are left to the
// overlay.
void CompileItems(EncoderNode& list, const ERecordValue& fresh, FreshPlace* place) {
  list.countWire = fresh.countWire;
  for (std::size_t i = 0; i < fresh.items.size(); ++i) {
    if (place != nullptr) place->path.push_back(i);
    list.items.push_back(Compile(fresh.items[i], place));
    if (place != nullptr) place->path.pop_back();
  }
  if (place == nullptr) return;
  const std::optional<ERecordValue> item = ListItem(place->recordClass, place->record, place->path);
  if (item) list.grown = std::make_unique<EncoderNode>(Compile(*item, nullptr));
}

// The fields of a record. Only the first of two fields of one name takes a given value, as in the
// overlay.
void CompileFields(EncoderNode& record, const ERecordValue& fresh, FreshPlace* place) {
  for (std::size_t i = 0; i < fresh.items.size(); ++i) {
    const ERecordValue& item = fresh.items[i];
    py::object key;
    if (!NamedBefore(fresh, i)) {
      key = py::reinterpret_steal<py::object>(PyUnicode_InternFromString(item.name.c_str()));
      if (!key) throw py::error_already_set();
    }
    if (place != nullptr) place->path.push_back(i);
    record.fields.push_back({std::move(key), Compile(item, place)});
    if (place != nullptr) place->path.pop_back();
  }
}

// The encoder of a value of a fresh record, at `place` in it.
EncoderNode Compile(const ERecordValue& fresh, FreshPlace* place) {
  EncoderNode node;
  node.kind = fresh.kind;
  node.wire = fresh.wire;
  if (IsSignature(fresh)) node.signature = fresh.number;
  node.fresh = Written(fresh);
  if (fresh.kind == ERecordValue::Kind::kRecord) CompileFields(node, fresh, place);
  if (fresh.kind == ERecordValue::Kind::kList) CompileItems(node, fresh, place);
  return node;
}

// Replaces the values of `value`, the description of a record of `recordClass`, by those `fields`
// gives, with the checks and errors of EncodeFields.
void Overlay(const ERecordClass& recordClass, ERecordValue& value, py::handle fields) {
  Overlayer(recordClass, value).Record(value, fields, recordClass.name);
}

// A class's compiled encoder, and whether its records keep every value their wire forms carry
// (see ERecordDescription::KeepsEveryValue), so that what the encoder writes needs no reading back.
struct ClassEncoder {
  EncoderNode record;
  bool keepsEveryValue = false;
};

// The compiled encoder of the class, made on its first use and kept for the process (the caller
// holds the GIL, which guards the table).
const ClassEncoder& EncoderOf(const ERecordClass& recordClass) {
  // Never destroyed: its Python keys must not be released after the interpreter ends.
  static auto* const encoders = new std::map<const ERecordClass*, ClassEncoder>();
  const auto found = encoders->find(&recordClass);
  if (found != encoders->end()) return found->second;
  const ERecordValue& fresh = FreshValue(recordClass);
  FreshPlace place{recordClass, fresh, {}};
  ClassEncoder encoder{Compile(fresh, &place), recordClass.description->KeepsEveryValue()};
  return encoders->emplace(&recordClass, std::move(encoder)).first->second;
}

// Where the encoder writes its values: an archive, each in the form its description writes.
class ValueWriter {
 public:
  explicit ValueWriter(EArchive& archive) : m_Archive(archive) {
    m_Number.kind = ERecordValue::Kind::kNumber;
  }

  // A number, through one description reused for every number of the call.
  void Number(ENumberWire wire, std::uint64_t number) {
    m_Number.wire = wire;
    m_Number.number = number;
    m_Number.Write(m_Archive);
  }
  void Text(std::string_view text) { m_Archive << std::string(text); }
  // Bytes in a blob's archive form, through a blob the thread keeps, so that a call does not
  // allocate one.
  void Blob(std::string_view bytes) {
    constexpr unsigned int kLargestKept = 1u << 20;
    thread_local EBlob blob;
    blob.SetData(bytes.data(), static_cast<unsigned int>(bytes.size()));
    m_Archive << blob;
    if (blob.Room() > kLargestKept) EBlob().Swap(blob);
  }
  // A list's count as a description writes it, in the count's own form; nothing for a list
  // without one.
  void Count(ECountWire countWire, std::size_t count) {
    switch (countWire) {
      case ECountWire::kUnsigned64:
        return Number(ENumberWire::kUnsigned64, count);
      case ECountWire::kUnsigned32:
        return Number(ENumberWire::kUnsigned32, count);
      case ECountWire::kSigned32:
        return Number(ENumberWire::kSigned32, count);
      case ECountWire::kFixed:
      case ECountWire::kZeroEnded:
        return;
    }
  }
  // What follows a list's items: the 0 of a zero-ended one.
  void ListEnd(ECountWire countWire) {
    if (countWire == ECountWire::kZeroEnded) Number(ENumberWire::kUnsigned32, 0);
  }
  // Bytes written before, as they are.
  void Written(const std::string& bytes) {
    m_Archive.Append(static_cast<unsigned int>(bytes.size()),
                     reinterpret_cast<const unsigned char*>(bytes.data()));
  }

 private:
  EArchive& m_Archive;
  ERecordValue m_Number;
};

bool EncodeValue(const EncoderNode& node, PyObject* given, ValueWriter& out);

// The place of the field that `key` names among the record's fields, trying `next` first (a dict
// in archive order, as a decoded one, names them in turn): by identity, as the interned names
// are, else by text, as the overlay compares names. Null for a key that names no field.
std::optional<std::size_t> FieldNamed(const EncoderNode& record, PyObject* key, std::size_t next) {
  const std::vector<EncoderField>& fields = record.fields;
  if (next < fields.size() && fields[next].key.ptr() == key) return next;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].key.ptr() == key) return i;
  }
  if (!PyUnicode_Check(key)) return std::nullopt;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].key && PyUnicode_Compare(fields[i].key.ptr(), key) == 0) return i;
  }
  PyErr_Clear();  // a comparison that failed on a malformed str names no field either
  return std::nullopt;
}

// The values a dict gives a record's fields, by the fields' places: on the stack for the usual
// record.
class GivenValues {
 public:
  explicit GivenValues(std::size_t count) {
    if (count > m_Few.size()) m_Many.resize(count);
    m_Values = count > m_Few.size() ? m_Many.data() : m_Few.data();
    std::fill_n(m_Values, count, nullptr);
  }
  PyObject*& operator[](std::size_t index) { return m_Values[index]; }

 private:
  std::array<PyObject*, 32> m_Few;  // set as far as the record's fields go
  std::vector<PyObject*> m_Many;
  PyObject** m_Values;
};

// Writes the fields of a record, given or fresh, in archive order. False for anything but a dict,
// for a key that names no field and for two keys of one field (both of which the overlay takes
// in turn), which the overlay then names.
bool EncodeRecord(const EncoderNode& node, PyObject* fields, ValueWriter& out) {
  if (!PyDict_Check(fields)) return false;
  GivenValues given(node.fields.size());
  Py_ssize_t position = 0;
  PyObject* key = nullptr;
  PyObject* value = nullptr;
  std::size_t next = 0;
  while (PyDict_Next(fields, &position, &key, &value)) {
    const std::optional<std::size_t> field = FieldNamed(node, key, next);
    if (!field || given[*field] != nullptr) return false;
    given[*field] = value;
    next = *field + 1;
  }
  for (std::size_t i = 0; i < node.fields.size(); ++i) {
    const EncoderNode& field = node.fields[i].node;
    if (given[i] != nullptr) {
      if (!EncodeValue(field, given[i], out)) return false;
      continue;
    }
    out.Written(field.fresh);
  }
  return true;
}

// Writes the items of a list, given as a list or tuple: the fresh list's own for as many as it has,
// then fresh ones. False where the overlay would refuse the count, or where it tells the items.
bool EncodeList(const EncoderNode& node, PyObject* given, ValueWriter& out) {
  if (!PyList_Check(given) && !PyTuple_Check(given)) return false;
  const auto count = static_cast<std::size_t>(PySequence_Fast_GET_SIZE(given));
  const std::size_t fresh = node.items.size();
  if (node.countWire == ECountWire::kFixed && count != fresh) return false;
  if (count > fresh && node.grown == nullptr) return false;
  out.Count(node.countWire, count);
  PyObject** const items = PySequence_Fast_ITEMS(given);
  for (std::size_t i = 0; i < count; ++i) {
    if (!EncodeValue(i < fresh ? node.items[i] : *node.grown, items[i], out)) return false;
  }
  out.ListEnd(node.countWire);
  return true;
}

// Writes `given` as the value `node` describes, with the overlay's checks; false when it does not
// pass them.
bool EncodeValue(const EncoderNode& node, PyObject* given, ValueWriter& out) {
  switch (node.kind) {
    case ERecordValue::Kind::kNumber: {
      if (!IsNumberFor(given, node.wire)) return false;
      const std::optional<std::uint64_t> number = InRange(given, node.wire);
      if (!number || (node.signature && *number != *node.signature)) return false;
      out.Number(node.wire, *number);
      return true;
    }
    case ERecordValue::Kind::kText:
      if (!PyUnicode_Check(given)) return false;
      out.Text(TextArgument(given).View());
      return true;
    case ERecordValue::Kind::kBytes: {
      if (!PyBytes_Check(given) && !PyObject_CheckBuffer(given)) return false;
      out.Blob(BytesArgument(given, "").View());
      return true;
    }
    case ERecordValue::Kind::kRecord:
      return EncodeRecord(node, given, out);
    case ERecordValue::Kind::kList:
      return EncodeList(node, given, out);
  }
  return false;
}

}  // namespace

// The encoder writes what the overlay of the same dict would: the fresh bytes of each field left
// out, and the given values after the overlay's own checks, so the bytes are those the overlay
// writes. Whether the record keeps them is asked of its own reader, unless the class's schema
// says its records keep every value of their wire forms (an address cut to its type's length, a
// map that orders its entries, a negative number read back unsigned are not).
py::bytes EncodeFields(const ERecordClass& recordClass, py::handle fields) {
  {
    const ClassEncoder& encoder = EncoderOf(recordClass);
    StoringArchive out;
    ValueWriter writer(out.Archive());
    if (EncodeRecord(encoder.record, fields.ptr(), writer)) {
      // Reading back leaves a terminating zero after the bytes.
      const std::size_t size = out.Bytes().size();
      if (encoder.keepsEveryValue || KeepsWritten(recordClass, out.Archive()))
        return py::bytes(out.Bytes().data(), size);
    }
  }
  // The overlay names what the encoder did not take; it writes what the encoder leaves to it.
  ERecordValue value = FreshValue(recordClass);
  Overlay(recordClass, value, fields);
  return py::bytes(Encode(recordClass, value));
}

}  // namespace eHal::python
