// ERecordDescription: what a record class writes and reads, without an instance: its fields in
// archive order with their types, the layouts it accepts and the report for any other signature.
// Derived from the same schema that reads and writes, so generators and bindings never guess.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "eRecord.h"

struct ERecordDescription;

// The type of one value in the archive: how it travels and what it holds.
struct EValueType {
  enum class Kind : unsigned char {
    kNumber,    // a number in the form `number`
    kText,      // a string: its length, then its raw bytes
    kBlob,      // a byte blob in its own archive form (see EBlob::Form)
    kRecord,    // a nested record (see `record`)
    kList,      // a list of `item`, its count written as `count` says
    kRawBytes,  // inside a blob's form: its size as unsigned 32-bit text, then the raw bytes
    kHexLine,   // inside the old blob form: hex text up to a line feed, which stays unread
  };

  Kind kind = Kind::kNumber;
  ENumberWire number = ENumberWire::kUnsigned32;
  // The nested record's description. A registered class is found by it with
  // ERecordRegistry::ClassOf; others (a map's entry, a port's part) are described inline.
  const ERecordDescription& (*record)() = nullptr;
  ECountWire count = ECountWire::kUnsigned64;
  std::size_t fixedCount = 0;              // the number of items of a kFixed list
  std::shared_ptr<const EValueType> item;  // a list's item

  static EValueType Number(ENumberWire wire);
  static EValueType Text();
  static EValueType Blob();
  static EValueType RawBytes();
  static EValueType HexLine();
  static EValueType Record(const ERecordDescription& (*record)());
  static EValueType List(ECountWire count, EValueType item, std::size_t fixedCount = 0);
};

// One field: its name as a user prints it and its type.
struct EFieldDescription {
  EFieldDescription() = default;
  EFieldDescription(std::string name, EValueType type, std::vector<std::string> valueNames = {})
      : name(std::move(name)), type(std::move(type)), valueNames(std::move(valueNames)) {}

  std::string name;
  EValueType type;
  // For a number field whose values have names (the texts the record's ToString prints): the
  // name of value v is valueNames[v]; values beyond the list have none.
  std::vector<std::string> valueNames;
};

struct ERecordDescription {
  // Whether the record opens with a signature of its own, and in which form it is written.
  bool hasSignature = false;
  ENumberWire signatureWire = ENumberWire::kSignedOutUnsignedIn;
  // The fields of the layout written, in archive order (the signature not included).
  std::vector<EFieldDescription> fields;
  // Fields that only older layouts carry, in a form the record no longer writes.
  std::vector<EFieldDescription> readOnlyFields;
  // Every layout read, newest (the one written) first; a field name of a layout is one of
  // `fields` or `readOnlyFields`, or "(dropped)" for a value read and not kept (an unsigned
  // 32-bit number).
  std::vector<ERecordLayout> layouts;
  // The report for a signature that no layout names (for a record with a signature).
  ERefusalReport refusal = {"", 0, ""};
  // True when reading the written layout back stores each field's value as it was written, for
  // every value of the field's wire form, nested records aside (they answer for themselves).
  // False for a record whose reader runs code of its own over what it read.
  bool readKeepsFields = false;

  // True when this record and every record nested in it keep every value their fields' wire
  // forms carry: bytes written from any such values read back into a record that writes them
  // again unchanged.
  bool KeepsEveryValue() const;

  // The field of that name, among `fields` and then `readOnlyFields`; null when there is none.
  const EFieldDescription* FindField(std::string_view name) const;
};
