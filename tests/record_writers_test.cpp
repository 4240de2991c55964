// The streaming writers of a description: the text writer prints exactly what ERecordValue::ToText
// prints and the tool's JSON writer exactly what ToJson(...).dump(2) gives, for every golden
// vector; and neither builds a value tree, so a large record prints in little memory.
#include <gtest/gtest.h>

#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>

#include "allocation_watch.h"
#include "ehal.h"
#include "record_vectors.h"
#ifdef EHAL_RECORD_JSON
#include "eRecordJson.h"
#endif

namespace {

// A stream that drops what it is given, so that only the writer's own allocations count.
class NullBuffer : public std::streambuf {
 protected:
  int overflow(int c) override { return c; }
  std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

// Calls `check(record, className)` on the record of every golden vector; returns how many.
template <typename Check>
int ForEveryVector(Check&& check) {
  int checked = 0;
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    for (const RecordVector& vector : VectorsOf(recordClass)) {
      const ERecordRead read = recordClass.Read(vector.bytes);
      EXPECT_TRUE(read.Complete()) << recordClass.name;
      if (!read.Complete()) continue;
      check(*read.record, recordClass.name);
      ++checked;
    }
  }
  return checked;
}

TEST(RecordWriters, TheTextWriterPrintsWhatToTextPrintsForEveryVector) {
  const int compared = ForEveryVector([](const EAnyRecord& record, const std::string& name) {
    std::ostringstream text;
    ERecordTextWriter writer(text);
    record.Describe(writer);
    EXPECT_EQ(text.str(), ERecordValue::Of(record).ToText()) << name;
  });
  EXPECT_GT(compared, 100);
}

TEST(RecordWriters, NestedEmptyRecordsAndListsCloseOnTheirLine) {
  std::ostringstream text;
  ERecordTextWriter writer(text);
  writer.BeginRecord("");
  writer.BeginRecord("Empty");
  writer.EndRecord();
  writer.BeginList("Fixed", ECountWire::kFixed, 1);
  writer.Text("", "a\"b\x01");
  writer.EndList();
  writer.BeginList("Ended", ECountWire::kZeroEnded, 0);
  writer.EndList();
  writer.Number("Signature", ENumberWire::kSignedOutUnsignedIn, 0x11334358);
  writer.Number("Minus", ENumberWire::kSigned32, static_cast<std::uint64_t>(std::int64_t{-2}));
  writer.EndRecord();
  EXPECT_EQ(text.str(),
            "Empty = {}\n"
            "Fixed = fixed [\n"
            "  \"a\\\"b\\x01\"\n"
            "]\n"
            "Ended = zero-ended []\n"
            "Signature = 288572248 (0x11334358)\n"
            "Minus = -2\n");
}

// 100,000 one-byte strings: the record holds them; printing it allocates next to nothing, where
// a value tree holds a node per item.
TEST(RecordWriters, PrintingALargeRecordBuildsNoTree) {
  EStringList list;
  for (int i = 0; i < 100000; ++i)
    list.Add("x");
  NullBuffer nothing;
  std::ostream out(&nothing);
  AllocationWatch watch;
  ERecordTextWriter writer(out);
  list.Describe(writer);
  watch.Stop();
  EXPECT_LT(watch.PeakBytes(), 4096u);
  EXPECT_LT(watch.Allocations(), 16u);

  AllocationWatch tree;
  const ERecordValue value = ERecordValue::Of(list);
  tree.Stop();
  EXPECT_GT(tree.PeakBytes(), 100000 * sizeof(ERecordValue));
}

#ifdef EHAL_RECORD_JSON
TEST(RecordWriters, TheJsonWriterGivesToJsonsTextForEveryVector) {
  const int compared = ForEveryVector([](const EAnyRecord& record, const std::string& name) {
    std::ostringstream json;
    eHal::tools::JsonWriter writer(json, 0);
    record.Describe(writer);
    EXPECT_EQ(json.str(), eHal::tools::ToJson(ERecordValue::Of(record)).dump(2)) << name;
  });
  EXPECT_GT(compared, 100);

  eHal::EClientID client;
  client.SetMajorID("ok\xFF");
  std::ostringstream json;
  eHal::tools::JsonWriter writer(json, 0);
  client.Describe(writer);
  EXPECT_EQ(json.str(),
            "{\n  \"Signature\": 1167589410,\n  \"MajorID\": {\n    \"hex\": \"6F6BFF\"\n  },\n"
            "  \"MinorID\": 0\n}");
}
#endif

}  // namespace
