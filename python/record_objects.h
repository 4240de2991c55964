// Records as Python objects: a description becomes dicts (records, by field name), lists, ints,
// str (texts, as UTF-8 with undecodable bytes kept as surrogates, so that they travel back
// unchanged) and bytes (blobs); and the bytes that str and bytes-like values stand for.
#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <string_view>

#include "eRecordRegistry.h"
#include "eRecordValue.h"

namespace eHal::python {

namespace py = pybind11;

// Defines ehal.NamedValue, the int a description gives for a number the record names, in
// `module`; NamedValueType() is that class afterwards.
void DefineNamedValue(py::module_& module);
const py::object& NamedValueType();

// The Python form of a record's description, built as the record describes itself: a dict of
// its fields (nested records dicts, lists lists), numbers int (NamedValue where the record names
// the value), texts str, blobs bytes.
py::object ToPython(const EAnyRecord& record);

// Holds the bytes of a bytes-like argument (bytes, bytearray, memoryview, ...) for the length
// of a call; anything else raises TypeError.
class BytesArgument {
 public:
  BytesArgument(py::handle object, const char* what);
  std::string_view View() const;

 private:
  py::bytes m_Bytes;
};

// Holds the UTF-8 bytes of a str for the length of a call, undecodable bytes kept as surrogates
// turned back into those bytes.
class TextArgument {
 public:
  explicit TextArgument(py::handle text);
  std::string_view View() const { return m_View; }

 private:
  py::bytes m_Escaped;  // the encoded text when it holds surrogates; otherwise the str keeps it
  std::string_view m_View;
};

}  // namespace eHal::python
