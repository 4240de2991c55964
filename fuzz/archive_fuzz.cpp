// Feeds arbitrary bytes to the archive readers and the core records. The first byte chooses the
// sequence of reads; a serialisation error (a wrong signature, a read beyond the archive's wrap
// limit) throws instead of ending the process.
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ehal.h"
#include "fuzz_support.h"

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
          archive >> list;
          break;
        }
        case 5: {
          std::vector<unsigned int> numbers;
          SerializeIn(archive, numbers);
          break;
        }
        case 6: {
          std::map<unsigned int, std::string> entries;
          SerializeIn(archive, entries);
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
