// The Python module "ehal": every record class of the library's registry, read from and written
// into archive bytes as dicts, with no code per class; plus the envelope of the typical exchange.
// Serialisation errors raise ehal.SerializeError with the library's report text instead of ending
// the process (see record_codec.h for how other C++ users of the process are left alone).
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <exception>
#include <iterator>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "record_codec.h"
#include "record_encoder.h"
#include "record_objects.h"

namespace py = pybind11;
using namespace eHal::python;

namespace {

constexpr const char* kEnvelopeClass = "eHal::EMessage";

py::dict Classes() {
  py::dict classes;
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    py::list signatures;
    for (const ERecordLayout& layout : recordClass.layouts)
      signatures.append(layout.signature);
    classes[py::str(recordClass.name)] = signatures;
  }
  return classes;
}

// A class name given as a str (or as bytes, as pybind11 takes a std::string); TypeError for
// anything else.
std::string NameText(py::handle name) {
  if (PyBytes_Check(name.ptr())) return std::string(BytesArgument(name, "class_name").View());
  Py_ssize_t size = 0;
  const char* const text =
      PyUnicode_Check(name.ptr()) ? PyUnicode_AsUTF8AndSize(name.ptr(), &size) : nullptr;
  if (text != nullptr) return std::string(text, static_cast<std::size_t>(size));
  PyErr_Clear();
  throw py::type_error("class_name: a class is named by a str, not " +
                       std::string(Py_TYPE(name.ptr())->tp_name));
}

// The registered class named by `name`, a str. The strs met are kept as the keys of a dict to
// the class's place in the registry, so that a name is looked up in the registry once and a str
// the caller keeps (with its hash) is found again at once.
const ERecordClass& ClassOf(py::handle name) {
  // Never released: the module keeps it for the life of the process.
  static PyObject* const known = PyDict_New();
  const bool exactStr = PyUnicode_CheckExact(name.ptr());
  if (exactStr) {
    if (PyObject* index = PyDict_GetItemWithError(known, name.ptr()))
      return ERecordRegistry::Classes()[PyLong_AsSize_t(index)];
    if (PyErr_Occurred() != nullptr) throw py::error_already_set();
  }
  const ERecordClass& recordClass = ClassNamed(NameText(name));
  const py::int_ index(&recordClass - ERecordRegistry::Classes().data());
  if (exactStr && PyDict_SetItem(known, name.ptr(), index.ptr()) != 0)
    throw py::error_already_set();
  return recordClass;
}

py::object DecodeRecord(const ERecordClass& recordClass, py::handle data, bool withRest) {
  const BytesArgument bytes(data, "data");
  const Decoded decoded = eHal::python::Decode(recordClass, bytes.View());
  py::object record = ToPython(*decoded.record);
  if (!withRest) return record;
  return py::make_tuple(record, decoded.consumed);
}

// Sets the Python error of one of the module's own exceptions; rethrows any other.
void SetModuleError(PyObject* serializeError) {
  try {
    throw;
  } catch (const SerializeFailure& failure) {
    PyErr_SetString(serializeError, failure.what());
  } catch (const UnknownName& unknown) {
    PyErr_SetString(PyExc_KeyError, unknown.what());
  } catch (const BadInput& bad) {
    PyErr_SetString(PyExc_ValueError, bad.what());
  }
}

PyObject* gSerializeError = nullptr;  // ehal.SerializeError, which the module holds

// Sets the Python error of the exception being handled, as pybind11 translates it.
void SetPythonError() {
  try {
    SetModuleError(gSerializeError);
  } catch (py::error_already_set& error) {
    error.restore();
  } catch (const py::builtin_exception& error) {
    error.set_error();
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_RuntimeError, error.what());
  } catch (...) {
    PyErr_SetString(PyExc_RuntimeError, "unknown C++ exception");
  }
}

// The arguments of a METH_FASTCALL | METH_KEYWORDS call bound to `names`: the first `positional`
// by position or keyword, the others by keyword only; null for those not given. TypeError, as
// Python words it, for too many, an unknown or repeated keyword, or a missing one of the first
// `required`.
template <std::size_t N>
std::array<PyObject*, N> Bound(const char* function, const char* const (&names)[N],
                               std::size_t positional, std::size_t required, PyObject* const* args,
                               Py_ssize_t count, PyObject* keywords) {
  const std::string called = std::string(function) + "() ";
  if (static_cast<std::size_t>(count) > positional)
    throw py::type_error(called + "takes at most " + std::to_string(positional) +
                         " positional arguments (" + std::to_string(count) + " given)");
  std::array<PyObject*, N> bound{};
  std::copy(args, args + count, bound.begin());
  const Py_ssize_t keywordCount = keywords != nullptr ? PyTuple_GET_SIZE(keywords) : 0;
  for (Py_ssize_t k = 0; k < keywordCount; ++k) {
    PyObject* const keyword = PyTuple_GET_ITEM(keywords, k);
    const auto named = std::find_if(std::begin(names), std::end(names), [&](const char* name) {
      return PyUnicode_CompareWithASCIIString(keyword, name) == 0;
    });
    if (named == std::end(names))
      throw py::type_error(called + "got an unexpected keyword argument '" +
                           py::str(keyword).cast<std::string>() + "'");
    PyObject*& slot = bound[static_cast<std::size_t>(named - std::begin(names))];
    if (slot != nullptr)
      throw py::type_error(called + "got multiple values for argument '" + *named + "'");
    slot = args[count + k];
  }
  for (std::size_t i = 0; i < required; ++i) {
    if (bound[i] == nullptr)
      throw py::type_error(called + "missing required argument '" + names[i] + "'");
  }
  return bound;
}

// Runs the body of a function called from Python: its result as a new reference, or null with
// the Python error set.
template <typename Body>
PyObject* Called(Body&& body) noexcept {
  try {
    return body().release().ptr();
  } catch (...) {
    SetPythonError();
    return nullptr;
  }
}

// decode() and encode() are plain METH_FASTCALL functions: they are called per record, and a
// call through them costs a fraction of a pybind11 dispatch.
PyObject* DecodeCall(PyObject*, PyObject* const* args, Py_ssize_t count, PyObject* keywords) {
  return Called([&] {
    static const char* const names[] = {"class_name", "data", "with_rest"};
    const auto bound = Bound("decode", names, 2, 2, args, count, keywords);
    const bool withRest = bound[2] != nullptr && py::handle(bound[2]).cast<bool>();
    return DecodeRecord(ClassOf(bound[0]), bound[1], withRest);
  });
}

PyObject* EncodeCall(PyObject*, PyObject* const* args, Py_ssize_t count, PyObject* keywords) {
  return Called([&] {
    static const char* const names[] = {"class_name", "fields"};
    const auto bound = Bound("encode", names, 2, 2, args, count, keywords);
    return EncodeFields(ClassOf(bound[0]), bound[1]);
  });
}

py::list Guess(py::handle data) {
  const BytesArgument bytes(data, "data");
  const unsigned int signature = FirstNumber(bytes.View());
  py::list matches;
  for (const ERecordMatch& match : ERecordRegistry::Guess(signature)) {
    py::dict entry;
    entry["class"] = match.recordClass->name;
    entry["signature"] = signature;
    entry["current"] = match.current;
    entry["fields"] = match.layout->fields;
    matches.append(entry);
  }
  return matches;
}

// The numbers go into the fields as given, so that one out of its field's range is the same
// ValueError as in encode().
py::bytes Envelope(py::handle payload, py::handle messageType, py::handle client, py::handle port) {
  const py::tuple majorMinor = py::tuple(py::reinterpret_borrow<py::object>(client));
  if (majorMinor.size() != 2)
    throw py::value_error("client: a (major id, minor id) pair, not " +
                          std::to_string(majorMinor.size()) + " items");
  py::dict clientID;
  clientID["MajorID"] = majorMinor[0];
  clientID["MinorID"] = majorMinor[1];
  py::dict fields;
  fields["MessageType"] = messageType;
  fields["ClientID"] = clientID;
  fields["MessagePortId"] = port;
  fields["Message"] = py::bytes(std::string(BytesArgument(payload, "payload").View()));
  return EncodeFields(ClassNamed(kEnvelopeClass), fields);
}

py::dict Unwrap(py::handle data, const std::optional<std::string>& payloadClass) {
  const py::dict message = DecodeRecord(ClassNamed(kEnvelopeClass), data, false);
  const py::dict clientID = message["ClientID"];
  py::dict unwrapped;
  unwrapped["type"] = message["MessageType"];
  unwrapped["client"] = py::make_tuple(clientID["MajorID"], clientID["MinorID"]);
  unwrapped["port"] = message["MessagePortId"];
  unwrapped["payload"] = payloadClass
                             ? DecodeRecord(ClassNamed(*payloadClass), message["Message"], false)
                             : message["Message"];
  return unwrapped;
}

// Translates the module's C++ exceptions into the Python ones its functions document.
void RegisterExceptions(py::module_& module) {
  static py::exception<SerializeFailure> serializeError(module, "SerializeError",
                                                        PyExc_RuntimeError);
  serializeError.doc() =
      "A record refused its bytes: a signature it does not accept, or a read beyond the archive's "
      "wrap limit. str() of the exception is the library's report text.";
  gSerializeError = serializeError.ptr();
  py::register_exception_translator([](std::exception_ptr error) {
    try {
      if (error) std::rethrow_exception(error);
    } catch (...) {
      SetModuleError(gSerializeError);
    }
  });
}

// Adds a METH_FASTCALL | METH_KEYWORDS function to the module; `method` lives as long as it.
void AddFunction(py::module_& module, PyMethodDef& method) {
  const py::object function = py::reinterpret_steal<py::object>(
      PyCFunction_NewEx(&method, nullptr, module.attr("__name__").ptr()));
  if (!function) throw py::error_already_set();
  module.add_object(method.ml_name, function);
}

template <typename Function>
PyCFunction AsCFunction(Function* function) {
  // The call convention in ml_flags tells Python the real signature.
  return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}

PyMethodDef gDecode = {
    "decode", AsCFunction(&DecodeCall), METH_FASTCALL | METH_KEYWORDS,
    "decode(class_name, data, *, with_rest=False)\n--\n\n"
    "One record of the class read from the start of `data`, as a dict.\n\n"
    "With with_rest=True, a tuple (record, consumed): the bytes its reader took.\n"
    "Raises KeyError (unknown class), ValueError (bytes that end before the record),\n"
    "SerializeError (a signature the class does not accept, or a read beyond the\n"
    "archive's wrap limit)."};

PyMethodDef gEncode = {
    "encode", AsCFunction(&EncodeCall), METH_FASTCALL | METH_KEYWORDS,
    "encode(class_name, fields)\n--\n\n"
    "The archive bytes of a record of the class built from `fields`, written in its\n"
    "current layout. Fields left out keep a fresh record's values. Raises KeyError\n"
    "(unknown class or field, naming the close names), TypeError (a value of the wrong\n"
    "type) and ValueError (a number out of its field's range, another signature than\n"
    "the one written, or a value the record does not keep); never truncates."};

}  // namespace

PYBIND11_MODULE(ehal, module) {
  module.doc() =
      "Records of the ehal library, read from and written into archive bytes.\n\n"
      "Every record class of the library's registry is reachable by its name (see classes()).\n"
      "A record is a dict of its fields in archive order, signature included; nested records\n"
      "are dicts, lists are lists, texts str (undecodable bytes kept as surrogates) and blobs\n"
      "bytes. A number whose value the record names (a request type, a return code) is an\n"
      "ehal.NamedValue: an int with the name in `.name`.\n\n"
      "Errors: KeyError for an unknown class or field (naming the close names), TypeError for\n"
      "a value of the wrong type, ValueError for a number out of its field's range or bytes\n"
      "that end before the record does, SerializeError for bytes the record refuses.";
  InstallSerializeErrorHandler();
  RegisterExceptions(module);
  DefineNamedValue(module);

  module.def("classes", &Classes,
             "Every registered record class, by name, with the signatures it accepts, newest\n"
             "(the one it writes) first; an empty list for a class without a signature.");
  AddFunction(module, gDecode);
  AddFunction(module, gEncode);
  module.def("guess", &Guess, py::arg("data"),
             "The classes that accept the first number of `data` as a signature: a list of\n"
             "dicts with 'class', 'signature', 'current' (the layout it writes) and 'fields'\n"
             "(those the layout carries). ValueError when `data` holds no number.");
  module.def("envelope", &Envelope, py::arg("payload"), py::arg("message_type"),
             py::arg("client") = py::make_tuple("", 0), py::arg("port") = 0,
             "The bytes of an eHal::EMessage carrying `payload` (a record's bytes) with the\n"
             "message type, the client identity (major id, minor id) and the port id.");
  module.def("unwrap", &Unwrap, py::arg("data"), py::arg("payload_class") = py::none(),
             "The eHal::EMessage read from `data`, as a dict with 'type', 'client' (major id,\n"
             "minor id), 'port' and 'payload': its bytes, or with payload_class the record they\n"
             "hold, decoded.");
}
