// The registry as one JSON document, from the static descriptions of its classes.
#include "eSchemaDocument.h"

#include <string>
#include <vector>

namespace eHal::tools {

namespace {

OrderedJson FieldDocument(const EFieldDescription& field) {
  OrderedJson document = {{"name", field.name}, {"type", TypeDocument(field.type)}};
  if (!field.valueNames.empty()) document["values"] = field.valueNames;
  return document;
}

OrderedJson FieldsDocument(const std::vector<EFieldDescription>& fields) {
  OrderedJson document = OrderedJson::array();
  for (const EFieldDescription& field : fields)
    document.push_back(FieldDocument(field));
  return document;
}

}  // namespace

const char* WireName(ENumberWire wire) {
  switch (wire) {
    case ENumberWire::kUnsigned8:
      return "unsigned8";
    case ENumberWire::kUnsigned16:
      return "unsigned16";
    case ENumberWire::kUnsigned32:
      return "unsigned32";
    case ENumberWire::kSigned32:
      return "signed32";
    case ENumberWire::kSignedOutUnsignedIn:
      return "signed-out-unsigned-in";
    case ENumberWire::kUnsigned64:
      return "unsigned64";
    case ENumberWire::kBool:
      return "flag";
  }
  return "unsigned32";
}

const char* CountName(ECountWire count) {
  switch (count) {
    case ECountWire::kUnsigned64:
      return "unsigned64";
    case ECountWire::kUnsigned32:
      return "unsigned32";
    case ECountWire::kSigned32:
      return "signed32";
    case ECountWire::kFixed:
      return "fixed";
    case ECountWire::kZeroEnded:
      return "zero-ended";
  }
  return "unsigned64";
}

OrderedJson TypeDocument(const EValueType& type) {
  switch (type.kind) {
    case EValueType::Kind::kNumber:
      return {{"kind", "number"}, {"wire", WireName(type.number)}};
    case EValueType::Kind::kText:
      return {{"kind", "text"}};
    case EValueType::Kind::kBlob:
      return {{"kind", "blob"}};
    case EValueType::Kind::kRawBytes:
      return {{"kind", "raw-bytes"}};
    case EValueType::Kind::kHexLine:
      return {{"kind", "hex-line"}};
    case EValueType::Kind::kRecord: {
      const ERecordDescription& nested = type.record();
      if (const ERecordClass* recordClass = ERecordRegistry::ClassOf(nested))
        return {{"kind", "record"}, {"class", recordClass->name}};
      return {{"kind", "record"}, {"record", RecordDocument(nested)}};
    }
    case EValueType::Kind::kList: {
      OrderedJson document = {{"kind", "list"}, {"count", CountName(type.count)}};
      if (type.count == ECountWire::kFixed) document["fixedCount"] = type.fixedCount;
      document["item"] = TypeDocument(*type.item);
      return document;
    }
  }
  return {{"kind", "number"}, {"wire", WireName(type.number)}};
}

OrderedJson RecordDocument(const ERecordDescription& description) {
  OrderedJson document;
  document["signature"] =
      description.hasSignature ? OrderedJson(WireName(description.signatureWire)) : OrderedJson();
  document["fields"] = FieldsDocument(description.fields);
  document["readOnlyFields"] = FieldsDocument(description.readOnlyFields);
  OrderedJson layouts = OrderedJson::array();
  for (const ERecordLayout& layout : description.layouts)
    layouts.push_back({{"signature", layout.signature}, {"fields", layout.fields}});
  document["layouts"] = layouts;
  if (description.hasSignature) {
    const ERefusalReport& refusal = description.refusal;
    document["refusal"] = {
        {"file", refusal.file}, {"line", refusal.line}, {"function", refusal.function}};
  }
  return document;
}

OrderedJson SchemaDocument() {
  OrderedJson classes = OrderedJson::array();
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    std::vector<unsigned int> signatures;
    for (const ERecordLayout& layout : recordClass.layouts)
      signatures.push_back(layout.signature);
    OrderedJson entry = {{"name", recordClass.name}, {"signatures", signatures}};
    if (recordClass.envelope)
      entry["envelope"] = {{"type", kEnvelopeTypeField}, {"payload", kEnvelopePayloadField}};
    entry["record"] = RecordDocument(*recordClass.description);
    classes.push_back(entry);
  }
  OrderedJson document;
  document["format"] = "ehal-schema";
  document["version"] = kSchemaFormatVersion;
  document["blob"] = RecordDocument(EBlob::Form());
  document["classes"] = classes;
  return document;
}

}  // namespace eHal::tools
