// ERecordValue: the description of a record as a small value tree (numbers with their wire form,
// text, bytes, nested records and lists), with the names of the fields. It prints a record field
// by field, and it writes itself back into archive bytes, so that a record can be built from
// named values: describe a fresh record, replace some values, write the tree and read it back
// through the record's own reader.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "eRecord.h"
#include "eRecordDescription.h"

class EArchive;

class ERecordValue {
 public:
  enum class Kind : unsigned char { kNumber, kText, kBytes, kRecord, kList };

  Kind kind = Kind::kRecord;
  std::string name;                                // empty for the items of a list
  ENumberWire wire = ENumberWire::kUnsigned32;     // a number's form
  ECountWire countWire = ECountWire::kUnsigned64;  // a list's count form
  std::uint64_t number = 0;                        // sign-extended to 64 bits for the signed forms
  std::string valueName;            // the name the record gave the number as described, or empty
  std::string bytes;                // a text, or the raw bytes of a blob
  std::vector<ERecordValue> items;  // a record's fields or a list's items

  // The description of anything that describes itself as a record does.
  template <typename Record>
  static ERecordValue Of(const Record& record);
  // A value of the type as a fresh record holds it: a nested record of a registered class is
  // described fresh from its class, any other has zero numbers, empty texts, blobs and counted
  // lists, and a fixed list its items.
  static ERecordValue OfType(const EValueType& type);

  // True for the signed wire forms, whose number is signed (see Signed).
  bool IsSigned() const;
  std::int64_t Signed() const { return static_cast<std::int64_t>(number); }
  // A blob's bytes as upper-case hex digits, two per byte.
  std::string HexBytes() const;
  // The field of a record with that name, or null.
  const ERecordValue* Find(std::string_view fieldName) const;
  ERecordValue* Find(std::string_view fieldName);

  // Writes the value in its archive form: each number in its wire form, a text as its length
  // and bytes, a blob in its own form, a list's count (as its form says) and items.
  void Write(EArchive& archive) const;
  // The same, so that a description is written like the record it describes.
  friend EArchive& operator<<(EArchive& archive, const ERecordValue& value) {
    value.Write(archive);
    return archive;
  }
  // The fields of a record, one per line as "name = value"; nested records and lists open with
  // "{" or "[" and list their contents indented by two more blanks, a list without a count
  // opening with "fixed [" and one ended by a 0 with "zero-ended [". Numbers are decimal as
  // written (signed for the signed forms; a signature followed by its hex in parentheses, a
  // named value by its name in parentheses), texts
  // quoted with C escapes, blobs upper-case hex in angle brackets.
  std::string ToText() const;
  // A text as ToText prints one: in double quotes, with C escapes for quotes, backslashes and
  // bytes that do not print (so that no control sequence reaches a terminal).
  static std::string Quoted(std::string_view text);
  // Bytes as upper-case hex digits, two per byte.
  static std::string Hex(std::string_view bytes);
  // Hands the value to `visitor` as the record it describes would: a record's items between
  // BeginRecord and EndRecord, a list's between BeginList and EndList.
  void Describe(ERecordVisitor& visitor) const;
};

// Writes a description as ERecordValue::ToText prints it, as the visitor calls come: a record
// prints field by field while it describes itself, with no value tree in between, so that a
// record of any size prints in memory of its nesting depth.
class ERecordTextWriter : public ERecordVisitor {
 public:
  explicit ERecordTextWriter(std::ostream& out);

  void Number(const char* name, ENumberWire wire, std::uint64_t value) override;
  void NamedNumber(const char* name, ENumberWire wire, std::uint64_t value,
                   const char* valueName) override;
  void Text(const char* name, const std::string& value) override;
  void Bytes(const char* name, const EBlob& value) override;
  void BeginRecord(const char* name) override;
  void EndRecord() override;
  void BeginList(const char* name, ECountWire countWire, std::size_t count) override;
  void EndList() override;

 private:
  // Begins an item's line: ends its container's opening line first, indents, names it.
  void Start(const char* name);
  void Open(const char* name, const char* opener);
  void Close(char closer);
  void Indent();

  std::ostream& m_Out;
  std::vector<bool> m_Open;  // per open record or list, outermost first: whether it has items
};

// Builds the tree from a description (see ERecordVisitor).
class ERecordValueBuilder : public ERecordVisitor {
 public:
  ERecordValueBuilder();
  ERecordValueBuilder(const ERecordValueBuilder&) = delete;
  ERecordValueBuilder& operator=(const ERecordValueBuilder&) = delete;
  // The description received: the outermost record.
  ERecordValue Result() const;

  void Number(const char* name, ENumberWire wire, std::uint64_t value) override;
  void NamedNumber(const char* name, ENumberWire wire, std::uint64_t value,
                   const char* valueName) override;
  void Text(const char* name, const std::string& value) override;
  void Bytes(const char* name, const EBlob& value) override;
  void BeginRecord(const char* name) override;
  void EndRecord() override;
  void BeginList(const char* name, ECountWire countWire, std::size_t count) override;
  void EndList() override;

 private:
  ERecordValue& Add(ERecordValue::Kind kind, const char* name);
  void Close();

  ERecordValue m_Root;
  std::vector<ERecordValue*> m_Open;  // the records and lists open, innermost last
};

template <typename Record>
ERecordValue ERecordValue::Of(const Record& record) {
  ERecordValueBuilder builder;
  record.Describe(builder);
  return builder.Result();
}
