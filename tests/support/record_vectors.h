// Golden vectors of the record classes: for every registered class and every layout it reads,
// archive bytes and the description they decode to. The generator writes them into
// tests/vectors; the vectors test reads them back. Both build them the same way, here.
#pragma once

#include <string>
#include <vector>

#include "eRecordRegistry.h"
#include "eRecordValue.h"

struct RecordVector {
  const ERecordClass* recordClass;
  const ERecordLayout* layout;  // null for a class without a signature of its own
  std::string bytes;            // as they travel, in this layout
};

// The file name of a vector without its extension: the class name with every run of characters
// other than letters and digits replaced by "_", then the signature as 8 hex digits (or "none").
std::string VectorFileName(const ERecordClass& recordClass, const ERecordLayout* layout);

// The description with every number but the signatures replaced by the next of a sequence of
// small distinct numbers (0 and 1 in turn for flags), every text by distinct contents one byte
// longer, every blob by distinct bytes of the same length.
ERecordValue WithDistinctValues(const ERecordValue& value);

// The vectors of a class, newest layout first. The newest carries a record holding distinct
// values, as the record writes it; an older layout carries the same values, written field by
// field in the order the layout names them (or a worked example where a layout carries values
// the current record no longer describes).
std::vector<RecordVector> VectorsOf(const ERecordClass& recordClass);

// Archive bytes spelled out from the text form of a description (see ERecordValue::ToText),
// without the record classes' code: a number is its decimal text and a blank, a text its length
// and bytes, a blob the blob signature, its length and bytes, a counted list its count and
// items, a list ended by a 0 its items and a 0.
std::string BytesFromText(const std::string& text);
