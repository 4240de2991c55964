// Records as Python objects: a description becomes dicts (records, by field name), lists, ints,
// str (texts, as UTF-8 with undecodable bytes kept as surrogates, so that they travel back
// unchanged) and bytes (blobs); a dict of the same form is laid over a record's description,
// checking each value against the field it replaces.
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

// Replaces the values of `value`, the description of a record of `recordClass`, by those
// `fields` gives; fields left out keep theirs. An unknown field raises KeyError naming the close
// field names, a value of the wrong type TypeError, a number outside its wire form's range or a
// signature other than the record's ValueError.
void Overlay(const ERecordClass& recordClass, ERecordValue& value, py::handle fields);

// Holds the bytes of a bytes-like argument (bytes, bytearray, memoryview, ...) for the length
// of a call; anything else raises TypeError.
class BytesArgument {
 public:
  BytesArgument(py::handle object, const char* what);
  std::string_view View() const;

 private:
  py::bytes m_Bytes;
};

}  // namespace eHal::python
