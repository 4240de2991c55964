// Turns the golden vectors into the seed corpora of the fuzz targets. Each NAME.bin of a
// registered class becomes CORPUS_ROOT/records_fuzz/NAME, its bytes preceded by the byte that
// makes records_fuzz pick that class, and CORPUS_ROOT/archive_fuzz/NAME, preceded by the same byte
// (there it picks one of the sequences of reads). The value list's vectors also become seeds of
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

// The vector files of one class: one per layout, or one without a signature of its own.
std::vector<std::string> VectorNames(const ERecordClass& recordClass) {
  if (recordClass.layouts.empty()) return {VectorFileName(recordClass, nullptr)};
  std::vector<std::string> names;
  for (const ERecordLayout& layout : recordClass.layouts)
    names.push_back(VectorFileName(recordClass, &layout));
  return names;
}

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

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s VECTORS_DIR CORPUS_ROOT\n", argv[0]);
    return 2;
  }
  const fs::path vectors = argv[1];
  const fs::path root = argv[2];
  const std::vector<ERecordClass>& classes = ERecordRegistry::Classes();
  int seeds = 0;
  int missing = 0;
  for (std::size_t index = 0; index < classes.size(); ++index) {
    const auto picker = static_cast<unsigned char>(index);
    const bool valueList = classes[index].name == "eValueList";
    for (const std::string& name : VectorNames(classes[index])) {
      std::string bytes;
      if (!ReadVector(vectors / (name + ".bin"), bytes)) {
        std::fprintf(stderr, "no vector %s.bin\n", name.c_str());
        ++missing;
        continue;
      }
      WriteSeed(root / "records_fuzz", name, picker, bytes);
      WriteSeed(root / "archive_fuzz", name, picker, bytes);
      ++seeds;
      if (!valueList) continue;
      WriteSeed(root / "value_list_fuzz", name, 0, bytes);
      WriteSeed(root / "value_list_fuzz", name + ".terminated", 2, bytes);
    }
  }
  std::printf("%d vectors seeded into %s\n", seeds, root.c_str());
  return missing == 0 ? 0 : 1;
}
