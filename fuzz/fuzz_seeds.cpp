// Turns the golden vectors into the seed corpora of the fuzz targets. Each NAME.bin of a
// registered class becomes CORPUS_ROOT/records_fuzz/NAME and CORPUS_ROOT/records_tokens_fuzz/NAME,
// its bytes preceded by the byte that makes those targets pick that class, and
// CORPUS_ROOT/archive_fuzz/NAME, preceded by the same byte (there it picks one of the sequences
// of reads). The value list's vectors also become seeds of
// value_list_fuzz, read as an archive with and without a terminating zero.
//   ehal_fuzz_seeds VECTORS_DIR CORPUS_ROOT
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "ehal.h"
#include "record_vectors.h"

namespace {

namespace fs = std::filesystem;

// The vector's bytes, or false when it is missing.
bool ReadVector(const fs::path& path, std::string& bytes) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  return true;
}

// Writes `first`, then `bytes`, as the seed `name` of the target's corpus.
void WriteSeed(const fs::path& corpus, const std::string& name, unsigned char first,
               const std::string& bytes) {
  fs::create_directories(corpus);
  std::ofstream out(corpus / name, std::ios::binary | std::ios::trunc);
  out.put(static_cast<char>(first));
  out << bytes;
}

// Seeds the corpora from the vectors of one class; returns how many of its vectors are missing.
int SeedFromClass(const fs::path& vectors, const fs::path& root, const ERecordClass& recordClass,
                  unsigned char picker) {
  int missing = 0;
  for (const RecordVector& vector : VectorsOf(recordClass)) {
    const std::string name = VectorFileName(recordClass, vector.layout);
    std::string bytes;
    if (!ReadVector(vectors / (name + ".bin"), bytes)) {
      std::fprintf(stderr, "no vector %s.bin\n", name.c_str());
      ++missing;
      continue;
    }
    WriteSeed(root / "records_fuzz", name, picker, bytes);
    WriteSeed(root / "records_tokens_fuzz", name, picker, bytes);
    WriteSeed(root / "archive_fuzz", name, picker, bytes);
    if (recordClass.name != "eValueList") continue;
    WriteSeed(root / "value_list_fuzz", name, 0, bytes);
    WriteSeed(root / "value_list_fuzz", name + ".terminated", 2, bytes);
  }
  return missing;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s VECTORS_DIR CORPUS_ROOT\n", argv[0]);
    return 2;
  }
  const std::vector<ERecordClass>& classes = ERecordRegistry::Classes();
  int missing = 0;
  for (std::size_t index = 0; index < classes.size(); ++index)
    missing += SeedFromClass(argv[1], argv[2], classes[index], static_cast<unsigned char>(index));
  std::printf("corpora seeded in %s\n", argv[2]);
  return missing == 0 ? 0 : 1;
}
