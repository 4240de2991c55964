// The entry functions of the fuzz targets: each feeds one input to the readers its target
// exercises. The libFuzzer targets call them, and so does the corpus replay test (built with any
// compiler, without libFuzzer), so that every committed input keeps being read by every build.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "eRecordRegistry.h"

namespace fuzz {

// archive_fuzz: the first byte chooses a sequence of reads of numbers, texts, blobs, string
// lists and containers from an archive of the rest.
void ReadArchiveInput(const std::uint8_t* data, std::size_t size);

// value_list_fuzz: an even first byte reads the rest as an archived value list, an odd one takes
// it as the list's XML content; the list is then parsed and encoded again.
void ReadValueListInput(const std::uint8_t* data, std::size_t size);

// The record of a records input, or null when the read ended in the serialisation error.
struct RecordInput {
  const ERecordClass* recordClass = nullptr;
  std::unique_ptr<EAnyRecord> record;
};

// records_fuzz and records_tokens_fuzz: the first byte picks a registered class, the rest is the
// archive a receiver loads; null class for an empty input.
RecordInput ReadRecordInput(const std::uint8_t* data, std::size_t size);

// True when the record's description writes exactly the bytes the record writes.
bool DescribesItselfExactly(const EAnyRecord& record);

// Reads a records input and checks what was read; false when a record does not describe itself
// exactly.
bool CheckRecordInput(const std::uint8_t* data, std::size_t size);

}  // namespace fuzz
