// Feeds arbitrary bytes to the archive readers and the core records. The first byte chooses the
// sequence of reads; a serialisation error (a wrong signature, a read beyond the archive's wrap
// limit) ends the input's reads instead of the process (see fuzz::ReadArchiveInput).
#include <cstddef>
#include <cstdint>

#include "fuzz_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::ReadArchiveInput(data, size);
  return 0;
}
