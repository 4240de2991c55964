// ERecord: the base of every archived record. A record states its archive form once, in a nested
// `Schema` defined in its source file (its fields in archive order, the layouts it reads, newest
// first, and the report for a signature it does not accept); ERecord turns that one statement into
// the writer, the reader of every layout and a describing walk, and supplies the archive operators.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class EArchive;
class EBlob;
struct ERecordDescription;

// How a number travels in the archive. Every number is decimal text and one blank; the form
// says how it is written and how many bits a reader keeps.
enum class ENumberWire : unsigned char {
  kUnsigned8,            // unsigned text; the reader keeps the low 8 bits
  kUnsigned16,           // unsigned text; the reader keeps the low 16 bits
  kUnsigned32,           // unsigned text
  kSigned32,             // signed text, read back signed
  kSignedOutUnsignedIn,  // written as signed text, read back as unsigned 32-bit
  kUnsigned64,           // unsigned 64-bit text
  kBool,                 // 1 or 0; the reader takes any non-zero 32-bit value as true
};

// True for the forms written as signed text, whose values a description carries sign-extended.
constexpr bool IsSignedWire(ENumberWire wire) {
  return wire == ENumberWire::kSigned32 || wire == ENumberWire::kSignedOutUnsignedIn;
}

// The bits of the numbers a form carries: 8, 16, 32 or 64, and 1 for a flag.
constexpr unsigned int WireBits(ENumberWire wire) {
  switch (wire) {
    case ENumberWire::kUnsigned8:
      return 8;
    case ENumberWire::kUnsigned16:
      return 16;
    case ENumberWire::kUnsigned64:
      return 64;
    case ENumberWire::kBool:
      return 1;
    default:
      return 32;
  }
}

// How a list says how many items it holds.
enum class ECountWire : unsigned char {
  kUnsigned64,  // a count written as unsigned 64-bit text, read back as unsigned 32-bit
  kUnsigned32,  // a count as unsigned 32-bit text
  kSigned32,    // a count as signed 32-bit text
  kFixed,       // no count: the record always holds the same number of items
  kZeroEnded,   // no count; a 0 follows the last item (a list whose items never begin with 0)
};

// The report a reader prints when it refuses a signature (see EArchive::SerializeError). Receivers
// match on these texts byte for byte, so each is a wire-compatibility constant: the file, line
// and operation it names are those of the peer's reader that first printed it, not this
// library's source locations, and they never change.
struct ERefusalReport {
  const char* file;
  int line;
  const char* function;

  // Prints the report and ends the process (or hands it to the installed handler).
  [[noreturn]] void Raise() const;
};

// Receives the description of a record: its fields in archive order with their names and values.
// Nested records and lists arrive between a Begin and the matching End call; their items have
// empty names. A record with a signature describes it first, as the number "Signature".
class ERecordVisitor {
 public:
  virtual ~ERecordVisitor() = default;

  // A number in the given wire form. For the signed forms `value` is the number sign-extended to
  // 64 bits (static_cast<std::int64_t>(value) gives it back).
  virtual void Number(const char* name, ENumberWire wire, std::uint64_t value) = 0;
  // A number whose value has a name in its record's table (`valueName`, the text ToString
  // prints). A visitor that has no use for the name takes it as a plain Number.
  virtual void NamedNumber(const char* name, ENumberWire wire, std::uint64_t value,
                           const char* valueName) {
    (void)valueName;
    Number(name, wire, value);
  }
  // A string: its length as unsigned 64-bit text, then its raw bytes.
  virtual void Text(const char* name, const std::string& value) = 0;
  // A byte blob in its own archive form (signature, length, raw bytes).
  virtual void Bytes(const char* name, const EBlob& value) = 0;
  virtual void BeginRecord(const char* name) = 0;
  virtual void EndRecord() = 0;
  // A list of `count` items; `countWire` is how the count is written.
  virtual void BeginList(const char* name, ECountWire countWire, std::size_t count) = 0;
  virtual void EndList() = 0;
};

// One layout a record reads: the signature that names it and the fields it carries, in archive
// order (a value that only an older layout carries and the record no longer keeps is "(dropped)").
struct ERecordLayout {
  unsigned int signature = 0;
  std::vector<std::string> fields;
};

// CRTP base: `Derived` declares `struct Schema;` (public) and defines it in its source file,
// which also instantiates the base explicitly (`template class ERecord<Derived>;`), since the
// operations below are compiled there. A record whose reader needs a step that a field list
// cannot say declares its own SerializeIn (or SerializeOut), which hides the one given here.
template <typename Derived>
class ERecord {
 public:
  // Writes the signature of the newest layout, then every field in archive order.
  void SerializeOut(EArchive& archive) const;
  // Reads the signature and the fields of the layout it names; fields that layout lacks keep
  // their values. A signature the record does not accept is the serialisation error of its
  // schema (see EArchive::SerializeError).
  void SerializeIn(EArchive& archive);
  // Hands the record to `visitor`: BeginRecord(name), the signature, the fields in archive
  // order, EndRecord().
  void Describe(ERecordVisitor& visitor, const char* name = "") const;
  // Every layout the reader accepts, newest (the one written) first; empty for a record that
  // travels without a signature of its own.
  static std::vector<ERecordLayout> Layouts();
  // What the record writes and reads, without an instance (made once, kept for the process).
  static const ERecordDescription& Description();

  friend EArchive& operator<<(EArchive& archive, const Derived& record) {
    record.SerializeOut(archive);
    return archive;
  }
  friend EArchive& operator>>(EArchive& archive, Derived& record) {
    record.SerializeIn(archive);
    return archive;
  }

 protected:
  ERecord() = default;
  ~ERecord() = default;
};
