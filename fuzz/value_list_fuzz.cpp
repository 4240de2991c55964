// Feeds arbitrary bytes to the value list's reader and XML parser. An even first byte reads the
// rest as an archive, an odd one takes the rest as the XML content itself, so that the parser is
// reached without an archive around it (see fuzz::ReadValueListInput).
#include <cstddef>
#include <cstdint>

#include "fuzz_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::ReadValueListInput(data, size);
  return 0;
}
