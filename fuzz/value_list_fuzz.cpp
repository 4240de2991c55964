// Feeds arbitrary bytes to the value list's reader and XML parser. An even first byte reads the
// rest as an archive (SerializeIn, then Parse of the XML read); an odd one takes the rest as the
// XML content itself, so that the parser is reached without an archive around it. A
// serialisation error throws instead of ending the process.
#include <cstddef>
#include <cstdint>

#include "ehal.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ThrowSerializeErrors();
  if (size == 0) return 0;
  const EBlob rest(data + 1, static_cast<unsigned int>(size - 1));
  eValueList message;
  try {
    if ((data[0] & 1) != 0) {
      message.SetXmlContent(rest);
    } else {
      EArchive archive;
      archive.SetMode(eModeLoading);
      archive.SetFromEBlob(rest, (data[0] & 2) != 0);
      archive >> message;
    }
    message.Parse();
    // What was parsed encodes again, or is refused when its payload length is beyond the entries.
    message.Encode(1);
  } catch (const SerializeErrorRaised&) {
  }
  return 0;
}
