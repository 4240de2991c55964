// Records built from Python dicts. Each class's fresh description is compiled once into an encoder
// that writes a dict's values straight into archive bytes; whatever it does not take as it stands
// (a value in error, items inside a list's added item) goes through the overlay of the fresh
// description, which names the error, so both ways give the same bytes and the same exceptions.
#pragma once

#include <pybind11/pybind11.h>

#include "eRecordRegistry.h"

namespace eHal::python {

namespace py = pybind11;

// The archive bytes of a record of the class built from `fields`, written in its current layout;
// fields left out keep a fresh record's values. An unknown field raises KeyError naming the close
// field names, a value of the wrong type TypeError, a number outside its wire form's range or a
// signature other than the record's ValueError, and a value the record does not keep BadInput
// naming the first difference.
py::bytes EncodeFields(const ERecordClass& recordClass, py::handle fields);

}  // namespace eHal::python
