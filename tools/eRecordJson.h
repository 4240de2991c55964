// The JSON form of a record's description: a record is an object of its fields (the signature
// included), a list an array, a number a JSON number (signed for the signed wire forms), a text a
// string and a blob a string of upper-case hex digits. A text whose bytes are not UTF-8 is the
// object {"hex": "<its bytes as upper-case hex digits>"}, so that no byte is lost or replaced.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "eBlob.h"
#include "eRecordValue.h"

namespace eHal::tools {

using Json = nlohmann::ordered_json;

// True when `text` is well-formed UTF-8 (no overlong forms, surrogates or values beyond U+10FFFF).
inline bool IsUtf8(const std::string& text) {
  std::size_t i = 0;
  while (i < text.size()) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0x80                    ? 1
                               : lead >= 0xC2 && lead <= 0xDF ? 2
                               : lead >= 0xE0 && lead <= 0xEF ? 3
                               : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                              : 0;
    if (length == 0 || i + length > text.size()) return false;
    unsigned int code = length == 1 ? lead : lead & (0x7F >> length);
    for (std::size_t k = 1; k < length; ++k) {
      const auto next = static_cast<unsigned char>(text[i + k]);
      if ((next & 0xC0) != 0x80) return false;
      code = (code << 6) | (next & 0x3F);
    }
    const unsigned int least[] = {0, 0, 0x80, 0x800, 0x10000};
    if (code < least[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return false;
    i += length;
  }
  return true;
}

// The JSON of a text: a string, or {"hex": ...} for bytes that are not UTF-8.
inline Json TextJson(const std::string& text) {
  if (IsUtf8(text)) return Json(text);
  return Json{{"hex", ERecordValue::Hex(text)}};
}

inline Json ToJson(const ERecordValue& value) {
  switch (value.kind) {
    case ERecordValue::Kind::kNumber:
      return value.IsSigned() ? Json(value.Signed()) : Json(value.number);
    case ERecordValue::Kind::kText:
      return TextJson(value.bytes);
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

// The JSON text, indented by two blanks.
inline std::string JsonText(const ERecordValue& value) {
  return ToJson(value).dump(2, ' ', false, Json::error_handler_t::replace);
}

// Writes a description as JSON while the record describes itself, in the text that
// ToJson(value).dump(2) gives, with no value tree in between. `depth` is the nesting level of the
// place the outermost record goes, for its indentation.
class JsonWriter : public ERecordVisitor {
 public:
  JsonWriter(std::ostream& out, unsigned int depth) : m_Out(out), m_Depth(depth) {}

  void Number(const char* name, ENumberWire wire, std::uint64_t value) override {
    const bool isSigned = IsSignedWire(wire);
    Value(name, isSigned ? Json(static_cast<std::int64_t>(value)) : Json(value));
  }
  void Text(const char* name, const std::string& value) override { Value(name, TextJson(value)); }
  void Bytes(const char* name, const EBlob& value) override {
    Value(name, Json(ERecordValue::Hex(value.GetView())));
  }
  void BeginRecord(const char* name) override { Open(name, true); }
  void EndRecord() override { Close('}'); }
  void BeginList(const char* name, ECountWire, std::size_t) override { Open(name, false); }
  void EndList() override { Close(']'); }

  // Writes a small value in place, indented for the current depth.
  void Value(const char* name, const Json& value) {
    Start(name);
    const std::string text = value.dump(2, ' ', false, Json::error_handler_t::replace);
    for (const char c : text) {
      m_Out << c;
      if (c == '\n') Indent(m_Open.size());
    }
  }

 private:
  struct Container {
    bool object;
    bool hasItems;
  };

  // Begins an item: a comma after the one before, a new line, the indentation and its key.
  void Start(const char* name) {
    if (m_Open.empty()) return;
    m_Out << (m_Open.back().hasItems ? ",\n" : "\n");
    m_Open.back().hasItems = true;
    Indent(m_Open.size());
    if (m_Open.back().object) m_Out << Json(name).dump() << ": ";
  }
  void Open(const char* name, bool object) {
    Start(name);
    m_Out << (object ? '{' : '[');
    m_Open.push_back({object, false});
  }
  void Close(char closer) {
    const bool hadItems = m_Open.back().hasItems;
    m_Open.pop_back();
    if (hadItems) {
      m_Out << '\n';
      Indent(m_Open.size());
    }
    m_Out << closer;
  }
  void Indent(std::size_t open) {
    for (std::size_t i = 0; i < m_Depth + open; ++i)
      m_Out << "  ";
  }

  std::ostream& m_Out;
  unsigned int m_Depth;
  std::vector<Container> m_Open;
};

}  // namespace eHal::tools
