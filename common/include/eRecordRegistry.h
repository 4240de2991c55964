// ERecordRegistry: the one list of every record class the library archives, by the name a user
// writes (such as "eHal::EPRBS"), with the layouts each reads and a way to create, read, write and
// describe one without knowing its type. Decoders, fuzzers and conformance tests work from it, so
// a new record class is registered once.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "eRecord.h"
#include "eRecordDescription.h"

class EArchive;

// A record of some registered class, held without its type.
class EAnyRecord {
 public:
  virtual ~EAnyRecord() = default;

  // The record's own reader: a signature it does not accept is its serialisation error.
  virtual void SerializeIn(EArchive& archive) = 0;
  // The record's own writer (the newest layout).
  virtual void SerializeOut(EArchive& archive) const = 0;
  // The record's description (see ERecordVisitor), inside BeginRecord(name)/EndRecord().
  virtual void Describe(ERecordVisitor& visitor, const char* name = "") const = 0;

  friend EArchive& operator<<(EArchive& archive, const EAnyRecord& record) {
    record.SerializeOut(archive);
    return archive;
  }
  friend EArchive& operator>>(EArchive& archive, EAnyRecord& record) {
    record.SerializeIn(archive);
    return archive;
  }
};

// One record read from the start of some bytes (see ERecordClass::Read).
struct ERecordRead {
  std::unique_ptr<EAnyRecord> record;  // the record as its reader left it
  std::size_t consumed = 0;            // the bytes the reader took, at most all of them
  bool ranPastEnd = false;             // the last read ended beyond the bytes: they end too soon
  bool wrapped = false;  // a read ran past the end and the next started over from the first

  // True when every read stayed inside the bytes: the record is what they hold.
  bool Complete() const { return record != nullptr && !ranPastEnd && !wrapped; }
};

// One registered class.
struct ERecordClass {
  std::string name;                    // as a user writes it, such as "eHal::EPRBS"
  std::vector<ERecordLayout> layouts;  // newest first; empty: no signature of its own
  std::unique_ptr<EAnyRecord> (*create)() = nullptr;  // a fresh record, as its class makes it
  const ERecordDescription* description = nullptr;    // fields, types and layouts
  // An envelope: its kEnvelopeTypeField says what its kEnvelopePayloadField (a blob) carries.
  bool envelope = false;

  std::unique_ptr<EAnyRecord> Create() const { return create(); }
  // The layout named by `signature`, or null.
  const ERecordLayout* FindLayout(unsigned int signature) const;
  // The one decode step: reads a fresh record of the class from a copy of `bytes`, loaded as a
  // receiver loads them, and says how far the reads went. A signature the class does not accept
  // is its serialisation error (see EArchive::SerializeError). Bytes of 4 GiB or more are not
  // read (ranPastEnd, no record).
  ERecordRead Read(std::string_view bytes) const;
};

// A class that reads a given signature, and the layout it would read.
struct ERecordMatch {
  const ERecordClass* recordClass;
  const ERecordLayout* layout;
  bool current;  // the layout is the one the class writes
};

class ERecordRegistry {
 public:
  // Every registered class, in the registry's fixed order.
  static const std::vector<ERecordClass>& Classes();
  // The class of that exact name, or null.
  static const ERecordClass* Find(std::string_view name);
  // The registered class with that description, or null (a record part described inline).
  static const ERecordClass* ClassOf(const ERecordDescription& description);
  // The first number of the bytes, read as a signature is; none when the bytes hold no number.
  static std::optional<unsigned int> FirstNumber(std::string_view bytes);
  // The classes that accept `signature` as their first number, in registry order.
  static std::vector<ERecordMatch> Guess(unsigned int signature);
  // Registered names close to `name`: those containing it or contained in it, ignoring case and
  // the "eHal::" prefix, and those within a small edit distance of it; nearest first.
  static std::vector<std::string> CloseNames(std::string_view name);
  // The names of `candidates` close to `name` by the same measure (field names, say), nearest
  // first.
  static std::vector<std::string> CloseNames(std::string_view name,
                                             const std::vector<std::string>& candidates);
};
