// The Python module "ehal": every record class of the library's registry, read from and written
// into archive bytes as dicts, with no code per class; plus the envelope of the typical exchange.
// Serialisation errors raise ehal.SerializeError with the library's report text instead of ending
// the process (see record_codec.h for how other C++ users of the process are left alone).
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

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

py::object DecodeRecord(const std::string& className, py::handle data, bool withRest) {
  const ERecordClass& recordClass = ClassNamed(className);
  const BytesArgument bytes(data, "data");
  const Decoded decoded = eHal::python::Decode(recordClass, bytes.View());
  py::object record = ToPython(*decoded.record);
  if (!withRest) return record;
  return py::make_tuple(record, decoded.consumed);
}

py::bytes EncodeRecord(const std::string& className, py::handle fields) {
  return EncodeFields(ClassNamed(className), fields);
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
  return EncodeRecord(kEnvelopeClass, fields);
}

py::dict Unwrap(py::handle data, const std::optional<std::string>& payloadClass) {
  const py::dict message = DecodeRecord(kEnvelopeClass, data, false);
  const py::dict clientID = message["ClientID"];
  py::dict unwrapped;
  unwrapped["type"] = message["MessageType"];
  unwrapped["client"] = py::make_tuple(clientID["MajorID"], clientID["MinorID"]);
  unwrapped["port"] = message["MessagePortId"];
  unwrapped["payload"] =
      payloadClass ? DecodeRecord(*payloadClass, message["Message"], false) : message["Message"];
  return unwrapped;
}

// Translates the module's C++ exceptions into the Python ones its functions document.
void RegisterExceptions(py::module_& module) {
  static py::exception<SerializeFailure> serializeError(module, "SerializeError",
                                                        PyExc_RuntimeError);
  serializeError.doc() =
      "A record refused its bytes: a signature it does not accept, or a read beyond the archive's "
      "wrap limit. str() of the exception is the library's report text.";
  py::register_exception_translator([](std::exception_ptr error) {
    try {
      if (error) std::rethrow_exception(error);
    } catch (const SerializeFailure& failure) {
      PyErr_SetString(serializeError.ptr(), failure.what());
    } catch (const UnknownName& unknown) {
      PyErr_SetString(PyExc_KeyError, unknown.what());
    } catch (const BadInput& bad) {
      PyErr_SetString(PyExc_ValueError, bad.what());
    }
  });
}

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
  module.def("decode", &DecodeRecord, py::arg("class_name"), py::arg("data"), py::kw_only(),
             py::arg("with_rest") = false,
             "One record of the class read from the start of `data`, as a dict.\n\n"
             "With with_rest=True, a tuple (record, consumed): the bytes its reader took.\n"
             "Raises KeyError (unknown class), ValueError (bytes that end before the record),\n"
             "SerializeError (a signature the class does not accept, or a read beyond the\n"
             "archive's wrap limit).");
  module.def("encode", &EncodeRecord, py::arg("class_name"), py::arg("fields"),
             "The archive bytes of a record of the class built from `fields`, written in its\n"
             "current layout. Fields left out keep a fresh record's values. Raises KeyError\n"
             "(unknown class or field, naming the close names), TypeError (a value of the wrong\n"
             "type) and ValueError (a number out of its field's range, another signature than\n"
             "the one written, or a value the record does not keep); never truncates.");
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
