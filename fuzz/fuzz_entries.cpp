// The entry functions of the fuzz targets (see fuzz_entries.h). A serialisation error throws
// SerializeErrorRaised while an entry runs and ends that input's reads.
#include "fuzz_entries.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ehal.h"
#include "fuzz_support.h"

namespace fuzz {
namespace {

// One of the archive_fuzz reads, chosen by `choice` (0 to 7).
void ReadOne(EArchive& archive, unsigned int choice) {
  switch (choice) {
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

}  // namespace

void ReadArchiveInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return;
  const ThrowingSerializeErrors throwing;
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(EBlob(data + 1, static_cast<unsigned int>(size - 1)), (data[0] & 1) != 0);
  unsigned int choices = data[0];
  try {
    for (int step = 0; step < 16; ++step, choices = choices * 7 + 3)
      ReadOne(archive, choices % 8);
  } catch (const SerializeErrorRaised&) {
  }
}

void ReadValueListInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return;
  const ThrowingSerializeErrors throwing;
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
}

RecordInput ReadRecordInput(const std::uint8_t* data, std::size_t size) {
  RecordInput input;
  if (size == 0) return input;
  const std::vector<ERecordClass>& classes = ERecordRegistry::Classes();
  input.recordClass = &classes[data[0] % classes.size()];
  const ThrowingSerializeErrors throwing;
  try {
    input.record =
        input.recordClass->Read(std::string_view(reinterpret_cast<const char*>(data + 1), size - 1))
            .record;
  } catch (const SerializeErrorRaised&) {
  }
  return input;
}

bool DescribesItselfExactly(const EAnyRecord& record) {
  // The description and the record, each written into a fresh archive; their bytes compared.
  EArchive described;
  EArchive written;
  described.SetMode(eModeStoring);
  written.SetMode(eModeStoring);
  described << ERecordValue::Of(record);
  written << record;
  return described.GetAsEBlob() == written.GetAsEBlob();
}

bool CheckRecordInput(const std::uint8_t* data, std::size_t size) {
  const RecordInput input = ReadRecordInput(data, size);
  return input.record == nullptr || DescribesItselfExactly(*input.record);
}

}  // namespace fuzz
