// The static description of a record class: the constructors of its value types and the field
// lookup.
#include "eRecordDescription.h"

#include <utility>

EValueType EValueType::Number(ENumberWire wire) {
  EValueType type;
  type.kind = Kind::kNumber;
  type.number = wire;
  return type;
}

EValueType EValueType::Text() {
  EValueType type;
  type.kind = Kind::kText;
  return type;
}

EValueType EValueType::Blob() {
  EValueType type;
  type.kind = Kind::kBlob;
  return type;
}

EValueType EValueType::Record(const ERecordDescription& (*record)()) {
  EValueType type;
  type.kind = Kind::kRecord;
  type.record = record;
  return type;
}

EValueType EValueType::List(ECountWire count, EValueType item, std::size_t fixedCount) {
  EValueType type;
  type.kind = Kind::kList;
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
