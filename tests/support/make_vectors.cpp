// Writes the golden vectors of every registered record class into a folder (tests/vectors): for
// each layout a class reads, NAME.bin (the bytes), NAME.txt and NAME.json (the description they
// decode to). Run it after a record class changes, then review the differences it makes.
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include "eArchive.h"
#include "eRecordJson.h"
#include "record_vectors.h"

namespace {

void WriteFile(const std::string& path, const std::string& contents) {
  std::ofstream(path, std::ios::binary) << contents;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  const std::string folder = argv[1];
  unsigned int count = 0;
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    for (const RecordVector& vector : VectorsOf(recordClass)) {
      EArchive archive;
      archive.SetMode(eModeLoading);
      archive.SetFromEBlob(
          EBlob(vector.bytes.data(), static_cast<unsigned int>(vector.bytes.size())), true);
      const std::unique_ptr<EAnyRecord> record = recordClass.Create();
      archive >> *record;
      const ERecordValue value = ERecordValue::Of(*record);
      const std::string path = folder + "/" + VectorFileName(recordClass, vector.layout);
      WriteFile(path + ".bin", vector.bytes);
      WriteFile(path + ".txt", value.ToText());
      WriteFile(path + ".json", eHal::tools::JsonText(value) + "\n");
      ++count;
    }
  }
  std::printf("%u vectors written to %s\n", count, folder.c_str());
  return 0;
}
