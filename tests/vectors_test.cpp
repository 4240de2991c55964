// The golden vectors in tests/vectors: for every registered record class and every layout it
// reads, the committed bytes are those built from the layout, they decode to the committed
// description (text and JSON), the record writes them back in its current layout, and that
// layout's bytes are the ones spelled out from the description without the record's code.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "archive_text.h"
#include "ehal.h"
#include "record_vectors.h"
#ifdef EHAL_RECORD_JSON
#include "eRecordJson.h"
#endif

namespace {

const std::string kFolder = std::string(EHAL_SOURCE_DIR) + "/tests/vectors/";

std::string Committed(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in.good()) << "missing " << path;
  std::stringstream contents;
  contents << in.rdbuf();
  return contents.str();
}

// Reads the bytes into a fresh record of the class; the reader must stay within them.
std::unique_ptr<EAnyRecord> Decoded(const ERecordClass& recordClass, const std::string& bytes) {
  std::unique_ptr<EAnyRecord> record = recordClass.Create();
  EArchive archive = LoadingArchive(bytes);
  archive >> *record;
  EXPECT_LE(archive.GetReadPosition(), bytes.size()) << recordClass.name;
  return record;
}

void CheckVector(const RecordVector& vector) {
  const ERecordClass& recordClass = *vector.recordClass;
  const std::string path = kFolder + VectorFileName(recordClass, vector.layout);
  SCOPED_TRACE(path);
  const std::string bytes = Committed(path + ".bin");
  EXPECT_EQ(bytes, vector.bytes);

  const std::unique_ptr<EAnyRecord> record = Decoded(recordClass, bytes);
  const ERecordValue value = ERecordValue::Of(*record);
  const std::string text = Committed(path + ".txt");
  EXPECT_EQ(value.ToText(), text);
#ifdef EHAL_RECORD_JSON
  EXPECT_EQ(eHal::tools::ToJson(value), eHal::tools::Json::parse(Committed(path + ".json")));
#endif

  const std::string written = BytesOf(*record);
  EXPECT_EQ(BytesFromText(text), written);
  const bool current = vector.layout == nullptr || vector.layout == &recordClass.layouts.front();
  if (current) {
    EXPECT_EQ(written, bytes);
  } else {
    EXPECT_EQ(ERecordValue::Of(*Decoded(recordClass, written)).ToText(), text);
  }
}

TEST(GoldenVectors, EveryLayoutOfEveryClassDecodesAsCommitted) {
  std::set<std::string> expected;
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    for (const RecordVector& vector : VectorsOf(recordClass)) {
      CheckVector(vector);
      for (const char* extension : {".bin", ".txt", ".json"})
        expected.insert(VectorFileName(recordClass, vector.layout) + extension);
    }
  }
  std::set<std::string> present;
  for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
    const std::string name = entry.path().filename().string();
    if (name != "README.md") present.insert(name);
  }
  EXPECT_EQ(present, expected);
}

TEST(GoldenVectors, OlderLayoutsAreBuiltFromTheirFieldLists) {
  const ERecordClass* prbs = ERecordRegistry::Find("eHal::EPRBS");
  ASSERT_NE(prbs, nullptr);
  const std::vector<RecordVector> vectors = VectorsOf(*prbs);
  ASSERT_EQ(vectors.size(), 3u);
  EXPECT_EQ(vectors[0].bytes, "288572248 2 3 4 5 6 7 8 0 ");
  EXPECT_EQ(vectors[1].bytes, "288572247 3 4 5 6 7 8 0 ");
  EXPECT_EQ(vectors[2].bytes, "288572246 4 5 6 7 8 0 ");
}

TEST(GoldenVectors, TheTextFormSpellsOutTheBytes) {
  EXPECT_EQ(
      BytesFromText("Signature = 17829889 (0x1101001)\nLastId = 3\nFreeRanges = zero-ended [\n"
                    "  {\n    First = 1\n    Last = 2\n  }\n]\n"),
      "17829889 3 1 2 0 ");
  EXPECT_EQ(BytesFromText("Name = \"a\\\"b\\x01\"\nBytes = <00FF>\nItems = []\nFixed = fixed [\n"
                          "  -1\n]\nEmpty = {}\n"),
            std::string("4 a\"b\x01") + "287454021 2 " + std::string("\0\xFF", 2) + "0 -1 ");
}

}  // namespace
