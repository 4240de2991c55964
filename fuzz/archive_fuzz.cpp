// Feeds arbitrary bytes to the archive readers and the core records. The first byte chooses the
// sequence of reads; a serialisation error throws instead of ending the process.
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ehal.h"
#include "fuzz_support.h"

namespace {

// Readers honour any element count, re-reading the stream once it is exhausted; counts beyond
// the input's size are therefore skipped here, to keep each run short and small.
bool CountFits(const EArchive& archive, int numbersBeforeCount) {
  EArchive peek(archive);
  for (int i = 0; i < numbersBeforeCount; ++i)
    peek.ReadUnsignedInt();
  return peek.ReadUnsignedInt() <= archive.GetAsEBlob().GetSize();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ThrowSerializeErrors();
  if (size == 0) return 0;
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(EBlob(data + 1, static_cast<unsigned int>(size - 1)), (data[0] & 1) != 0);
  unsigned int choices = data[0];
  try {
    for (int step = 0; step < 16; ++step, choices = choices * 7 + 3) {
      switch (choices % 8) {
        case 0:
          archive.ReadUnsignedInt();
          break;
        case 1:
          archive.ReadSignedInt();
          break;
        case 2: {
          std::string text;
          archive >> text;
          archive.SerializeRawStringIn(text);
          break;
        }
        case 3: {
          EBlob blob;
          archive >> blob;
          blob.GetHexDumpOfPacket();
          break;
        }
        case 4: {
          EStringList list;
          if (CountFits(archive, 1)) archive >> list;
          break;
        }
        case 5: {
          std::vector<unsigned int> numbers;
          if (CountFits(archive, 0)) SerializeIn(archive, numbers);
          break;
        }
        case 6: {
          std::map<unsigned int, std::string> entries;
          if (CountFits(archive, 0)) SerializeIn(archive, entries);
          break;
        }
        default: {
          EBlob blob;
          archive.ReadBlob(blob);
          blob.IncrementBy(archive.ReadUnsignedInt());
          break;
        }
      }
    }
  } catch (const SerializeErrorRaised&) {
  }
  return 0;
}
