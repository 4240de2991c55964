// The registry as one JSON document: every record class with its signatures, the fields each
// layout carries in archive order and how each field travels. Built from the same static
// descriptions that read and write, so that other readers (the Wireshark dissector, scripts in
// other languages) never work from a second hand-written copy. The format is in the README.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "ehal.h"

namespace eHal::tools {

using OrderedJson = nlohmann::ordered_json;

// The format's version; a reader refuses a document of another.
inline constexpr int kSchemaFormatVersion = 1;

// The name of a number form in the document ("unsigned32", "signed-out-unsigned-in", ...).
const char* WireName(ENumberWire wire);
// The name of a count form in the document ("unsigned64", "fixed", "zero-ended", ...).
const char* CountName(ECountWire count);

// A value type: {"kind": ...} with what the kind needs (see the README).
OrderedJson TypeDocument(const EValueType& type);
// A record's description: signature form, fields, read-only fields, layouts, refusal report.
OrderedJson RecordDocument(const ERecordDescription& description);
// The whole registry.
OrderedJson SchemaDocument();

}  // namespace eHal::tools
