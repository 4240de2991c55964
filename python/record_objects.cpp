#include "record_objects.h"

#include <pybind11/eval.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "eBlob.h"
#include "record_codec.h"

namespace eHal::python {

namespace {

// The numbers a wire form carries without loss.
struct NumberRange {
  std::int64_t least;
  std::uint64_t most;
};

NumberRange RangeOf(ENumberWire wire) {
  switch (wire) {
    case ENumberWire::kUnsigned8:
      return {0, 0xFF};
    case ENumberWire::kUnsigned16:
      return {0, 0xFFFF};
    case ENumberWire::kSigned32:
    case ENumberWire::kSignedOutUnsignedIn:
      return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    case ENumberWire::kUnsigned64:
      return {0, std::numeric_limits<std::uint64_t>::max()};
    case ENumberWire::kBool:
      return {0, 1};
    default:
      return {0, std::numeric_limits<std::uint32_t>::max()};
  }
}

// The Python int as the description keeps it (sign-extended for negative numbers), or nothing
// when it lies outside the range.
std::optional<std::uint64_t> InRange(PyObject* number, NumberRange range) {
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

std::string TypeName(py::handle object) {
  return Py_TYPE(object.ptr())->tp_name;
}

// Lays Python values over a record's description, keeping the path walked for messages and for
// finding list items.
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
    const bool isBool = PyBool_Check(given.ptr());
    if (!PyLong_Check(given.ptr()) || (isBool && value.wire != ENumberWire::kBool))
      throw py::type_error(where + ": a number is given as an int, not " + TypeName(given));
    const std::optional<std::uint64_t> number = InRange(given.ptr(), RangeOf(value.wire));
    if (!number)
      throw py::value_error(where + ": " + py::str(given).cast<std::string>() +
                            " is out of range for the field");
    if (value.name == "Signature" && *number != value.number)
      throw py::value_error(where + ": the record writes signature " +
                            std::to_string(value.number) + ", not " +
                            py::str(given).cast<std::string>());
    value.number = *number;
  }

  static void Text(ERecordValue& value, py::handle given, const std::string& where) {
    if (!PyUnicode_Check(given.ptr()))
      throw py::type_error(where + ": a text is given as a str, not " + TypeName(given));
    const py::bytes encoded = py::reinterpret_steal<py::bytes>(
        PyUnicode_AsEncodedString(given.ptr(), "utf-8", "surrogateescape"));
    if (!encoded) throw py::error_already_set();
    value.bytes = std::string(std::string_view(encoded));
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

py::object TextObject(const std::string& bytes) {
  PyObject* text =
      PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "surrogateescape");
  if (text == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(text);
}

}  // namespace

namespace {

// Builds the Python form of a description as the record describes itself: a record a dict of its
// fields, a list a list, numbers int, texts str (undecodable bytes kept as surrogates), blobs
// bytes; no value tree is built in between.
class PythonBuilder : public ERecordVisitor {
  static py::int_ IntOf(ENumberWire wire, std::uint64_t value) {
    return IsSignedWire(wire) ? py::int_(static_cast<std::int64_t>(value)) : py::int_(value);
  }

 public:
  py::object Result() const { return m_Result; }

  void Number(const char* name, ENumberWire wire, std::uint64_t value) override {
    Add(name, IntOf(wire, value));
  }
  void NamedNumber(const char* name, ENumberWire wire, std::uint64_t value,
                   const char* valueName) override {
    Add(name, NamedValueType()(IntOf(wire, value), py::str(valueName)));
  }
  void Text(const char* name, const std::string& value) override { Add(name, TextObject(value)); }
  void Bytes(const char* name, const EBlob& value) override {
    const std::string_view bytes = value.GetView();
    Add(name, py::bytes(bytes.data(), bytes.size()));
  }
  void BeginRecord(const char* name) override { Open(name, py::dict()); }
  void EndRecord() override { m_Open.pop_back(); }
  void BeginList(const char* name, ECountWire, std::size_t) override { Open(name, py::list()); }
  void EndList() override { m_Open.pop_back(); }

 private:
  void Add(const char* name, py::object value) {
    if (m_Open.empty()) {
      m_Result = std::move(value);
      return;
    }
    const py::object& parent = m_Open.back();
    if (PyDict_Check(parent.ptr())) {
      py::reinterpret_borrow<py::dict>(parent)[py::str(name)] = value;
    } else {
      py::reinterpret_borrow<py::list>(parent).append(value);
    }
  }
  void Open(const char* name, py::object container) {
    Add(name, container);
    m_Open.push_back(std::move(container));
  }

  py::object m_Result = py::none();
  std::vector<py::object> m_Open;  // the dicts and lists open, innermost last
};

}  // namespace

namespace {
py::object gNamedValueType;
}  // namespace

const py::object& NamedValueType() {
  return gNamedValueType;
}

void DefineNamedValue(py::module_& module) {
  py::dict scope;
  scope["__name__"] = module.attr("__name__");
  py::exec(R"py(
class NamedValue(int):
    """A number whose value the record names: an int, and `name`, the text its record's text
    form prints (a request type, a return code). Equal to, hashed and written as the int."""

    def __new__(cls, value, name):
        number = int.__new__(cls, value)
        number.name = name
        return number

    def __repr__(self):
        return "NamedValue(%d, %r)" % (int(self), self.name)

    __str__ = int.__repr__

    def __getnewargs__(self):
        return (int(self), self.name)
)py",
           scope);
  gNamedValueType = scope["NamedValue"];
  module.attr("NamedValue") = gNamedValueType;
}

py::object ToPython(const EAnyRecord& record) {
  PythonBuilder builder;
  record.Describe(builder);
  return builder.Result();
}

void Overlay(const ERecordClass& recordClass, ERecordValue& value, py::handle fields) {
  Overlayer(recordClass, value).Record(value, fields, recordClass.name);
}

BytesArgument::BytesArgument(py::handle object, const char* what) {
  if (PyBytes_Check(object.ptr())) {
    m_Bytes = py::reinterpret_borrow<py::bytes>(object);
    return;
  }
  if (!PyObject_CheckBuffer(object.ptr()))
    throw py::type_error(std::string(what) + ": bytes are given as bytes, not " + TypeName(object));
  m_Bytes = py::reinterpret_steal<py::bytes>(PyBytes_FromObject(object.ptr()));
  if (!m_Bytes) throw py::error_already_set();
}

std::string_view BytesArgument::View() const {
  return std::string_view(PyBytes_AS_STRING(m_Bytes.ptr()),
                          static_cast<std::size_t>(PyBytes_GET_SIZE(m_Bytes.ptr())));
}

}  // namespace eHal::python
