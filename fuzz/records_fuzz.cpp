// Feeds arbitrary bytes to the reader of every registered record class: the first byte picks the
// class, the rest is the archive a receiver loads. A read either completes or ends in the
// serialisation error (which throws here); a record that was read describes itself in exactly
// the bytes it writes. The archive's wrap limit bounds every read by a fixed multiple of its
// input, so the run's memory and time limits (-rss_limit_mb, -malloc_limit_mb, -timeout) hold
// for any bytes. The seed corpus comes from the golden vectors (see records_seeds.cpp).
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "ehal.h"
#include "fuzz_support.h"

namespace {

EBlob Written(const EAnyRecord& record) {
  EArchive archive;
  archive.SetMode(eModeStoring);
  archive << record;
  return archive.GetAsEBlob();
}

EBlob Written(const ERecordValue& value) {
  EArchive archive;
  archive.SetMode(eModeStoring);
  value.Write(archive);
  return archive.GetAsEBlob();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ThrowSerializeErrors();
  if (size == 0) return 0;
  const std::vector<ERecordClass>& classes = ERecordRegistry::Classes();
  const ERecordClass& recordClass = classes[data[0] % classes.size()];
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(EBlob(data + 1, static_cast<unsigned int>(size - 1)), true);
  const std::unique_ptr<EAnyRecord> record = recordClass.Create();
  try {
    archive >> *record;
  } catch (const SerializeErrorRaised&) {
    return 0;
  }
  if (!(Written(ERecordValue::Of(*record)) == Written(*record))) __builtin_trap();
  return 0;
}
