// The JSON form of a record's description: a record is an object of its fields (the signature
// included), a list an array, a number a JSON number (signed for the signed wire forms), a text a
// string and a blob a string of upper-case hex digits.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "eRecordValue.h"

namespace eHal::tools {

using Json = nlohmann::ordered_json;

inline Json ToJson(const ERecordValue& value) {
  switch (value.kind) {
    case ERecordValue::Kind::kNumber:
      return value.IsSigned() ? Json(value.Signed()) : Json(value.number);
    case ERecordValue::Kind::kText:
      return Json(value.bytes);
    case ERecordValue::Kind::kBytes:
      return Json(value.HexBytes());
    case ERecordValue::Kind::kList: {
      Json items = Json::array();
      for (const ERecordValue& item : value.items)
        items.push_back(ToJson(item));
      return items;
    }
    case ERecordValue::Kind::kRecord:
      break;
  }
  Json fields = Json::object();
  for (const ERecordValue& field : value.items)
    fields[field.name] = ToJson(field);
  return fields;
}

// The JSON text, indented by two blanks; bytes of a text that are not UTF-8 are replaced by
// U+FFFD rather than refused.
inline std::string JsonText(const ERecordValue& value) {
  return ToJson(value).dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace eHal::tools
