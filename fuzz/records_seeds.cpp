// Turns the golden vectors into the seed corpus of records_fuzz: each NAME.bin of a registered
// class becomes the file NAME in the output folder, its bytes preceded by the byte that makes the
// fuzz target pick that class.
//   ehal_records_seeds VECTORS_DIR CORPUS_DIR
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

// Writes the seed for one vector; false when the vector is missing or cannot be copied.
bool WriteSeed(const fs::path& vector, const fs::path& seed, unsigned char picker) {
  std::ifstream in(vector, std::ios::binary);
  if (!in) return false;
  std::ofstream out(seed, std::ios::binary | std::ios::trunc);
  out.put(static_cast<char>(picker));
  out << in.rdbuf();
  return static_cast<bool>(out);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s VECTORS_DIR CORPUS_DIR\n", argv[0]);
    return 2;
  }
  const fs::path vectors = argv[1];
  const fs::path corpus = argv[2];
  fs::create_directories(corpus);
  const std::vector<ERecordClass>& classes = ERecordRegistry::Classes();
  int written = 0;
  int missing = 0;
  for (std::size_t index = 0; index < classes.size(); ++index) {
    for (const std::string& name : VectorNames(classes[index])) {
      const bool ok =
          WriteSeed(vectors / (name + ".bin"), corpus / name, static_cast<unsigned char>(index));
      ok ? ++written : ++missing;
      if (!ok) std::fprintf(stderr, "no vector %s.bin\n", name.c_str());
    }
  }
  std::printf("%d seeds in %s\n", written, corpus.c_str());
  return missing == 0 ? 0 : 1;
}
