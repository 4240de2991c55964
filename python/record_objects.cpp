#include "record_objects.h"

#include <pybind11/eval.h>

#include <cstdint>
#include <cstring>
#include <unordered_map>
#include <vector>

#include "eBlob.h"
#include "record_codec.h"

namespace eHal::python {

namespace {

std::string TypeName(py::handle object) {
  return Py_TYPE(object.ptr())->tp_name;
}

py::object Owned(PyObject* object) {
  if (object == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(object);
}

py::object TextObject(const std::string& bytes) {
  return Owned(
      PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "surrogateescape"));
}

py::object IntOf(ENumberWire wire, std::uint64_t value) {
  if (IsSignedWire(wire)) return Owned(PyLong_FromLongLong(static_cast<std::int64_t>(value)));
  return Owned(PyLong_FromUnsignedLongLong(value));
}

// The interned str of a name a record describes, made once per name. The names are the records'
// own constant texts, so they are found by address; the text is compared too, in case an address
// comes back with another name. A small table by address stands before the map of every name met.
PyObject* InternedName(const char* name) {
  struct Recent {
    const char* address = nullptr;
    const char* text = nullptr;  // the str's own UTF-8 form
    PyObject* interned = nullptr;
  };
  static Recent recent[512];
  // Never destroyed: its strs must not be released after the interpreter ends.
  static auto* const names = new std::unordered_map<const char*, py::object>();
  const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(name);
  // The top nine bits of the address times 2^64 / phi: addresses a few bytes apart spread out.
  Recent& slot = recent[(address * 0x9E3779B97F4A7C15u) >> 55];
  if (slot.address == name && std::strcmp(slot.text, name) == 0) return slot.interned;
  py::object& interned = (*names)[name];
  if (!interned || std::strcmp(PyUnicode_AsUTF8(interned.ptr()), name) != 0)
    interned = Owned(PyUnicode_InternFromString(name));
  slot = {name, PyUnicode_AsUTF8(interned.ptr()), interned.ptr()};
  return slot.interned;
}

// A NamedValue made as its __new__ makes one (int.__new__, then the name set), without running
// that Python function.
py::object NamedValueOf(py::object number, const char* valueName) {
  static PyObject* const nameAttribute = PyUnicode_InternFromString("name");
  const py::tuple arguments = py::make_tuple(std::move(number));
  auto* const type = reinterpret_cast<PyTypeObject*>(NamedValueType().ptr());
  py::object named = Owned(PyLong_Type.tp_new(type, arguments.ptr(), nullptr));
  if (PyObject_SetAttr(named.ptr(), nameAttribute, InternedName(valueName)) != 0)
    throw py::error_already_set();
  return named;
}

}  // namespace

namespace {

// Builds the Python form of a description as the record describes itself: a record a dict of its
// fields (keyed by interned names), a list a list, numbers int, texts str (undecodable bytes kept
// as surrogates), blobs bytes; no value tree is built in between.
class PythonBuilder : public ERecordVisitor {
 public:
  PythonBuilder() { m_Open.reserve(8); }

  py::object Result() const { return m_Result; }

  void Number(const char* name, ENumberWire wire, std::uint64_t value) override {
    Add(name, IntOf(wire, value));
  }
  void NamedNumber(const char* name, ENumberWire wire, std::uint64_t value,
                   const char* valueName) override {
    Add(name, NamedValueOf(IntOf(wire, value), valueName));
  }
  void Text(const char* name, const std::string& value) override { Add(name, TextObject(value)); }
  void Bytes(const char* name, const EBlob& value) override {
    const std::string_view bytes = value.GetView();
    Add(name,
        Owned(PyBytes_FromStringAndSize(bytes.data(), static_cast<Py_ssize_t>(bytes.size()))));
  }
  void BeginRecord(const char* name) override { Open(name, Owned(PyDict_New())); }
  void EndRecord() override { m_Open.pop_back(); }
  void BeginList(const char* name, ECountWire, std::size_t) override {
    Open(name, Owned(PyList_New(0)));
  }
  void EndList() override { m_Open.pop_back(); }

 private:
  void Add(const char* name, const py::object& value) {
    if (m_Open.empty()) {
      m_Result = value;
      return;
    }
    PyObject* const parent = m_Open.back();
    const int failed = PyDict_Check(parent)
                           ? PyDict_SetItem(parent, InternedName(name), value.ptr())
                           : PyList_Append(parent, value.ptr());
    if (failed != 0) throw py::error_already_set();
  }
  void Open(const char* name, const py::object& container) {
    Add(name, container);
    m_Open.push_back(container.ptr());
  }

  py::object m_Result = py::none();
  // The dicts and lists open, innermost last: borrowed, since the result holds each of them.
  std::vector<PyObject*> m_Open;
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

TextArgument::TextArgument(py::handle text) {
  Py_ssize_t size = 0;
  // Without surrogates a text's UTF-8 form is the one the str keeps (made once per str).
  if (const char* utf8 = PyUnicode_AsUTF8AndSize(text.ptr(), &size)) {
    m_View = std::string_view(utf8, static_cast<std::size_t>(size));
    return;
  }
  PyErr_Clear();
  m_Escaped = py::reinterpret_steal<py::bytes>(
      PyUnicode_AsEncodedString(text.ptr(), "utf-8", "surrogateescape"));
  if (!m_Escaped) throw py::error_already_set();
  m_View = std::string_view(PyBytes_AS_STRING(m_Escaped.ptr()),
                            static_cast<std::size_t>(PyBytes_GET_SIZE(m_Escaped.ptr())));
}

}  // namespace eHal::python
