#include "eRecordValue.h"

#include <ostream>
#include <sstream>
#include <string_view>
#include <utility>

#include "eArchive.h"
#include "eBlob.h"
#include "eRecordRegistry.h"
#include "eTextDigits.h"

namespace {

// Writes a number in its wire form.
void WriteNumber(EArchive& archive, ENumberWire wire, std::uint64_t value) {
  switch (wire) {
    case ENumberWire::kSigned32:
    case ENumberWire::kSignedOutUnsignedIn:
      archive.WriteSignedInt(static_cast<int>(static_cast<std::int64_t>(value)));
      return;
    case ENumberWire::kUnsigned64:
      archive.WriteUnsigned64Int(value);
      return;
    default:
      archive.WriteUnsignedInt(static_cast<unsigned int>(value));
      return;
  }
}

// A text in double quotes, with C escapes for quotes, backslashes and bytes that do not print.
void AppendQuoted(std::string& text, std::string_view value) {
  text.push_back('"');
  for (const char c : value) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      text.push_back('\\');
      text.push_back(c);
    } else if (c == '\n') {
      text += "\\n";
    } else if (c == '\t') {
      text += "\\t";
    } else if (c == '\r') {
      text += "\\r";
    } else if (byte < 0x20 || byte >= 0x7F) {
      text += "\\x";
      text.push_back(eHal::detail::HexDigit(byte >> 4));
      text.push_back(eHal::detail::HexDigit(byte));
    } else {
      text.push_back(c);
    }
  }
  text.push_back('"');
}

// Writes a list's count in its form; nothing for the lists without a count.
void WriteCount(EArchive& archive, ECountWire countWire, std::size_t count) {
  switch (countWire) {
    case ECountWire::kUnsigned64:
      return WriteNumber(archive, ENumberWire::kUnsigned64, count);
    case ECountWire::kUnsigned32:
      return WriteNumber(archive, ENumberWire::kUnsigned32, count);
    case ECountWire::kSigned32:
      return WriteNumber(archive, ENumberWire::kSigned32, count);
    case ECountWire::kFixed:
    case ECountWire::kZeroEnded:
      return;
  }
}

ERecordValue OfKind(ERecordValue::Kind kind) {
  ERecordValue value;
  value.kind = kind;
  return value;
}

// A record of the description as a fresh one holds it (see ERecordValue::OfType).
ERecordValue OfDescription(const ERecordDescription& description) {
  if (const ERecordClass* recordClass = ERecordRegistry::ClassOf(description))
    return ERecordValue::Of(*recordClass->Create());
  ERecordValue record = OfKind(ERecordValue::Kind::kRecord);
  if (description.hasSignature) {
    ERecordValue& signature = record.items.emplace_back(OfKind(ERecordValue::Kind::kNumber));
    signature.name = "Signature";
    signature.wire = description.signatureWire;
    signature.number = description.layouts.front().signature;
    if (record.items.back().IsSigned())
      signature.number =
          static_cast<std::uint64_t>(std::int64_t{static_cast<int>(signature.number)});
  }
  for (const EFieldDescription& field : description.fields) {
    record.items.push_back(ERecordValue::OfType(field.type));
    record.items.back().name = field.name;
  }
  return record;
}

}  // namespace

ERecordValue ERecordValue::OfType(const EValueType& type) {
  switch (type.kind) {
    case EValueType::Kind::kNumber: {
      ERecordValue number = OfKind(Kind::kNumber);
      number.wire = type.number;
      return number;
    }
    case EValueType::Kind::kText:
      return OfKind(Kind::kText);
    case EValueType::Kind::kRecord:
      return OfDescription(type.record());
    case EValueType::Kind::kList: {
      ERecordValue list = OfKind(Kind::kList);
      list.countWire = type.count;
      if (type.count == ECountWire::kFixed) list.items.assign(type.fixedCount, OfType(*type.item));
      return list;
    }
    default:
      return OfKind(Kind::kBytes);
  }
}

std::string ERecordValue::Quoted(std::string_view text) {
  std::string quoted;
  AppendQuoted(quoted, text);
  return quoted;
}

bool ERecordValue::IsSigned() const {
  return IsSignedWire(wire);
}

std::string ERecordValue::HexBytes() const {
  return Hex(bytes);
}

std::string ERecordValue::Hex(std::string_view bytes) {
  std::string hex;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    hex.push_back(eHal::detail::HexDigit(byte >> 4));
    hex.push_back(eHal::detail::HexDigit(byte));
  }
  return hex;
}

const ERecordValue* ERecordValue::Find(std::string_view fieldName) const {
  for (const ERecordValue& item : items) {
    if (item.name == fieldName) return &item;
  }
  return nullptr;
}

ERecordValue* ERecordValue::Find(std::string_view fieldName) {
  return const_cast<ERecordValue*>(std::as_const(*this).Find(fieldName));
}

void ERecordValue::Write(EArchive& archive) const {
  switch (kind) {
    case Kind::kNumber:
      WriteNumber(archive, wire, number);
      return;
    case Kind::kText:
      archive << bytes;
      return;
    case Kind::kBytes:
      archive << EBlob(bytes.data(), static_cast<unsigned int>(bytes.size()));
      return;
    case Kind::kRecord:
    case Kind::kList:
      break;
  }
  if (kind == Kind::kList) WriteCount(archive, countWire, items.size());
  for (const ERecordValue& item : items)
    item.Write(archive);
  if (kind == Kind::kList && countWire == ECountWire::kZeroEnded) archive.WriteUnsignedInt(0);
}

std::string ERecordValue::ToText() const {
  std::ostringstream text;
  ERecordTextWriter writer(text);
  Describe(writer);
  return text.str();
}

void ERecordValue::Describe(ERecordVisitor& visitor) const {
  switch (kind) {
    case Kind::kNumber:
      if (!valueName.empty())
        return visitor.NamedNumber(name.c_str(), wire, number, valueName.c_str());
      return visitor.Number(name.c_str(), wire, number);
    case Kind::kText:
      return visitor.Text(name.c_str(), bytes);
    case Kind::kBytes:
      return visitor.Bytes(name.c_str(),
                           EBlob(bytes.data(), static_cast<unsigned int>(bytes.size())));
    case Kind::kRecord:
      visitor.BeginRecord(name.c_str());
      break;
    case Kind::kList:
      visitor.BeginList(name.c_str(), countWire, items.size());
      break;
  }
  for (const ERecordValue& item : items)
    item.Describe(visitor);
  if (kind == Kind::kRecord) {
    visitor.EndRecord();
  } else {
    visitor.EndList();
  }
}

ERecordTextWriter::ERecordTextWriter(std::ostream& out) : m_Out(out) {}

void ERecordTextWriter::Number(const char* name, ENumberWire wire, std::uint64_t value) {
  NamedNumber(name, wire, value, nullptr);
}

void ERecordTextWriter::NamedNumber(const char* name, ENumberWire wire, std::uint64_t value,
                                    const char* valueName) {
  Start(name);
  if (IsSignedWire(wire)) {
    m_Out << static_cast<std::int64_t>(value);
  } else {
    m_Out << value;
  }
  if (std::string_view(name) == "Signature") {
    char hex[8];
    m_Out << " (0x";
    m_Out.write(hex, eHal::detail::WriteUpperHex(hex, static_cast<unsigned int>(value)) - hex);
    m_Out << ")";
  }
  if (valueName != nullptr) m_Out << " (" << valueName << ')';
  m_Out << '\n';
}

void ERecordTextWriter::Text(const char* name, const std::string& value) {
  Start(name);
  m_Out << ERecordValue::Quoted(value) << '\n';
}

void ERecordTextWriter::Bytes(const char* name, const EBlob& value) {
  Start(name);
  m_Out << '<' << ERecordValue::Hex(value.GetView()) << ">\n";
}

void ERecordTextWriter::BeginRecord(const char* name) {
  Open(name, "{");
}

void ERecordTextWriter::EndRecord() {
  Close('}');
}

void ERecordTextWriter::BeginList(const char* name, ECountWire countWire, std::size_t) {
  const char* const opener = countWire == ECountWire::kFixed       ? "fixed ["
                             : countWire == ECountWire::kZeroEnded ? "zero-ended ["
                                                                   : "[";
  Open(name, opener);
}

void ERecordTextWriter::EndList() {
  Close(']');
}

void ERecordTextWriter::Start(const char* name) {
  if (m_Open.empty()) return;
  if (!m_Open.back()) {
    if (m_Open.size() > 1) m_Out << '\n';
    m_Open.back() = true;
  }
  Indent();
  if (*name != '\0') m_Out << name << " = ";
}

void ERecordTextWriter::Open(const char* name, const char* opener) {
  // The outermost record prints only its items.
  if (!m_Open.empty()) {
    Start(name);
    m_Out << opener;
  }
  m_Open.push_back(false);
}

void ERecordTextWriter::Close(char closer) {
  if (m_Open.empty()) return;
  const bool hadItems = m_Open.back();
  m_Open.pop_back();
  if (m_Open.empty()) return;
  if (hadItems) Indent();
  m_Out << closer << '\n';
}

void ERecordTextWriter::Indent() {
  for (std::size_t i = 1; i < m_Open.size(); ++i)
    m_Out << "  ";
}

ERecordValueBuilder::ERecordValueBuilder() {
  m_Open.push_back(&m_Root);
}

ERecordValue ERecordValueBuilder::Result() const {
  return m_Root.items.empty() ? ERecordValue() : m_Root.items.front();
}

ERecordValue& ERecordValueBuilder::Add(ERecordValue::Kind kind, const char* name) {
  ERecordValue& value = m_Open.back()->items.emplace_back();
  value.kind = kind;
  value.name = name;
  return value;
}

void ERecordValueBuilder::Number(const char* name, ENumberWire wire, std::uint64_t value) {
  ERecordValue& number = Add(ERecordValue::Kind::kNumber, name);
  number.wire = wire;
  number.number = value;
}

void ERecordValueBuilder::NamedNumber(const char* name, ENumberWire wire, std::uint64_t value,
                                      const char* valueName) {
  Number(name, wire, value);
  m_Open.back()->items.back().valueName = valueName;
}

void ERecordValueBuilder::Text(const char* name, const std::string& value) {
  Add(ERecordValue::Kind::kText, name).bytes = value;
}

void ERecordValueBuilder::Bytes(const char* name, const EBlob& value) {
  Add(ERecordValue::Kind::kBytes, name).bytes = value.GetView();
}

void ERecordValueBuilder::BeginRecord(const char* name) {
  m_Open.push_back(&Add(ERecordValue::Kind::kRecord, name));
}

void ERecordValueBuilder::EndRecord() {
  Close();
}

void ERecordValueBuilder::BeginList(const char* name, ECountWire countWire, std::size_t) {
  ERecordValue& list = Add(ERecordValue::Kind::kList, name);
  list.countWire = countWire;
  m_Open.push_back(&list);
}

void ERecordValueBuilder::EndList() {
  Close();
}

void ERecordValueBuilder::Close() {
  if (m_Open.size() > 1) m_Open.pop_back();
}
