// Replays the committed fuzz corpora (fuzz/corpus/<target>/) through the entry functions their
// fuzz targets call, so that every build of the test suite reads again what fuzzing once reached:
// each input must be read without a memory error (the asan build checks) and every record read
// must describe itself in exactly the bytes it writes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "fuzz_entries.h"
#include "record_vectors.h"

namespace {

namespace fs = std::filesystem;

using Entry = std::function<bool(const std::uint8_t*, std::size_t)>;

// Reads that pass when they return at all.
Entry Survives(void (*read)(const std::uint8_t*, std::size_t)) {
  return [read](const std::uint8_t* data, std::size_t size) {
    read(data, size);
    return true;
  };
}

// Every fuzz target, with the entry function it calls.
const std::map<std::string, Entry>& Targets() {
  static const std::map<std::string, Entry> targets = {
      {"archive_fuzz", Survives(&fuzz::ReadArchiveInput)},
      {"records_fuzz", &fuzz::CheckRecordInput},
      {"records_tokens_fuzz", &fuzz::CheckRecordInput},
      {"value_list_fuzz", Survives(&fuzz::ReadValueListInput)},
  };
  return targets;
}

fs::path CorpusRoot() {
  return fs::path(EHAL_SOURCE_DIR) / "fuzz" / "corpus";
}

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The names of the entries of a folder, in order.
std::vector<std::string> Listing(const fs::path& folder) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

class FuzzCorpusReplay : public ::testing::TestWithParam<std::string> {};

TEST_P(FuzzCorpusReplay, EveryInputReadsCleanly) {
  const fs::path folder = CorpusRoot() / GetParam();
  ASSERT_TRUE(fs::is_directory(folder)) << folder << " is missing";
  const Entry& entry = Targets().at(GetParam());
  const std::vector<std::string> names = Listing(folder);
  // A minimised campaign corpus holds hundreds of inputs; a handful means it was lost.
  EXPECT_GE(names.size(), 100u);
  for (const std::string& name : names) {
    const std::string bytes = ReadFile(folder / name);
    EXPECT_TRUE(entry(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size())) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzCorpusReplay,
                         ::testing::Values("archive_fuzz", "records_fuzz", "records_tokens_fuzz",
                                           "value_list_fuzz"),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                           return info.param;
                         });

// The fuzz targets are the *_fuzz.cpp sources and records_tokens_fuzz: each has a corpus, and
// the replay knows each (a corpus the replay does not know would never be read).
TEST(FuzzCorpus, EveryTargetHasACorpusTheReplayReads) {
  std::vector<std::string> targets = {"records_tokens_fuzz"};
  const std::string suffix = "_fuzz.cpp";
  for (const std::string& name : Listing(fs::path(EHAL_SOURCE_DIR) / "fuzz")) {
    if (name.size() > suffix.size() &&
        name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0)
      targets.push_back(name.substr(0, name.size() - 4));
  }
  std::sort(targets.begin(), targets.end());
  EXPECT_EQ(Listing(CorpusRoot()), targets);
  std::vector<std::string> known;
  for (const auto& target : Targets())
    known.push_back(target.first);
  EXPECT_EQ(known, targets);
}

std::vector<std::uint8_t> RecordInput(std::size_t picker, const std::string& archive) {
  const std::string bytes = static_cast<char>(picker) + archive;
  return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
}

// The first byte picks the class, modulo their number; a wrong signature reads no record.
TEST(FuzzCorpus, RecordInputPicksTheClassByItsFirstByte) {
  EXPECT_EQ(fuzz::ReadRecordInput(nullptr, 0).recordClass, nullptr);
  EXPECT_TRUE(fuzz::CheckRecordInput(nullptr, 0));
  const std::vector<ERecordClass>& classes = ERecordRegistry::Classes();
  const ERecordClass& prbs = *ERecordRegistry::Find("eHal::EPRBS");
  const std::size_t index = static_cast<std::size_t>(&prbs - classes.data());
  ASSERT_LT(index + classes.size(), 256u);
  const std::vector<std::uint8_t> golden =
      RecordInput(index + classes.size(), VectorsOf(prbs).front().bytes);
  const fuzz::RecordInput read = fuzz::ReadRecordInput(golden.data(), golden.size());
  EXPECT_EQ(read.recordClass, &prbs);
  ASSERT_NE(read.record, nullptr);
  EXPECT_TRUE(fuzz::DescribesItselfExactly(*read.record));
  EXPECT_TRUE(fuzz::CheckRecordInput(golden.data(), golden.size()));
  const std::vector<std::uint8_t> refused = RecordInput(index, "1 2 3 ");
  EXPECT_EQ(fuzz::ReadRecordInput(refused.data(), refused.size()).record, nullptr);
}

}  // namespace
