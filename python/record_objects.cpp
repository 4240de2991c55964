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

std::string TypeName(py::handle object) {
  return Py_TYPE(object.ptr())->tp_name;
}

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
