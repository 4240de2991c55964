// The static description of a record class: the constructors of its value types and the field
// lookup.
#include "eRecordDescription.h"

#include <utility>

namespace {

EValueType OfKind(EValueType::Kind kind) {
  EValueType type;
  type.kind = kind;
  return type;
}

// True when every record a value of `type` holds keeps every value (see KeepsEveryValue).
bool KeepsEveryValue(const EValueType& type) {
  switch (type.kind) {
    case EValueType::Kind::kRecord:
      return type.record().KeepsEveryValue();
    case EValueType::Kind::kList:
      return KeepsEveryValue(*type.item);
    default:
      return true;
  }
}

}  // namespace

EValueType EValueType::Number(ENumberWire wire) {
  EValueType type = OfKind(Kind::kNumber);
  type.number = wire;
  return type;
}

EValueType EValueType::Text() {
  return OfKind(Kind::kText);
}

EValueType EValueType::Blob() {
  return OfKind(Kind::kBlob);
}

EValueType EValueType::RawBytes() {
  return OfKind(Kind::kRawBytes);
}

EValueType EValueType::HexLine() {
  return OfKind(Kind::kHexLine);
}

EValueType EValueType::Record(const ERecordDescription& (*record)()) {
  EValueType type = OfKind(Kind::kRecord);
  type.record = record;
  return type;
}

EValueType EValueType::List(ECountWire count, EValueType item, std::size_t fixedCount) {
  EValueType type = OfKind(Kind::kList);
  type.count = count;
  type.fixedCount = fixedCount;
  type.item = std::make_shared<const EValueType>(std::move(item));
  return type;
}

const EFieldDescription* ERecordDescription::FindField(std::string_view name) const {
  for (const std::vector<EFieldDescription>* group : {&fields, &readOnlyFields}) {
    for (const EFieldDescription& field : *group) {
      if (field.name == name) return &field;
    }
  }
  return nullptr;
}

bool ERecordDescription::KeepsEveryValue() const {
  if (!readKeepsFields) return false;
  for (const EFieldDescription& field : fields) {
    if (!::KeepsEveryValue(field.type)) return false;
  }
  return true;
}
