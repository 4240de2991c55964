// The custom mutator of records_tokens_fuzz: most of the time one to three token-aware mutations
// of the archive after the class picker byte (see archive_tokens.h), the rest of the time, or
// when those change nothing or would not fit, libFuzzer's own byte mutations. The signatures are
// those of every registered layout, the whole records those of the golden vectors.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "archive_tokens.h"
#include "ehal.h"
#include "record_vectors.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

// One byte-level mutation in this many.
constexpr unsigned int kByteMutationShare = 4;

fuzz::TokenMutator MakeMutator() {
  std::vector<unsigned int> signatures;
  std::vector<std::string> records;
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    for (const ERecordLayout& layout : recordClass.layouts)
      signatures.push_back(layout.signature);
    for (const RecordVector& vector : VectorsOf(recordClass))
      records.push_back(vector.bytes);
  }
  return fuzz::TokenMutator(std::move(signatures), std::move(records));
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
  static fuzz::TokenMutator mutator = MakeMutator();
  if (size < 2 || seed % kByteMutationShare == 0) return LLVMFuzzerMutate(data, size, maxSize);
  const std::string_view archive(reinterpret_cast<const char*>(data + 1), size - 1);
  const std::string mutated = mutator.Mutate(archive, seed);
  if (mutated == archive || mutated.size() + 1 > maxSize)
    return LLVMFuzzerMutate(data, size, maxSize);
  std::memcpy(data + 1, mutated.data(), mutated.size());
  return mutated.size() + 1;
}
