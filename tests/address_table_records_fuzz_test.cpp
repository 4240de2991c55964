// Feeds random and mutated bytes to the readers of the address table records (see
// reader_fuzz.h).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eIPAddressTableItem.h"
#include "eISLIPAddressTableItemProperties.h"
#include "eVLANIPAddressTableItemProperties.h"
#include "network_values.h"
#include "reader_fuzz.h"

namespace {

using namespace network_values;

// Signatures of the item's layouts and of the records nested in it.
const std::vector<unsigned int> kSignatures = {
    3,          2,          1,          0x33333336, 0x33333335, 0x33333334, 0x33333333, 0x43156111,
    0x13156111, 0x18111112, 0x18111111, 0x11223345, 0x19111111, 0x44444444, 0x15111111, 0x17111111};

EIPAddressTableItem SampleItem() {
  EIPAddressTableItem item;
  EIPAddressRange range;
  range.SetAddress(V4(10, 0, 0, 1));
  range.SetRangeCount(4);
  item.SetIPAddressRange(range);
  EVLANIPAddressTableItemProperties vlan;
  vlan.SetVLANFromVLANIDDescription("10,20,30");
  item.SetVLANIPAddressTableItemProperties(vlan);
  item.SetGateway(V4(10, 0, 0, 254));
  return item;
}

TEST(AddressTableRecordReaders, SurviveArbitraryInput) {
  EVLANIPAddressTableItemProperties vlan;
  vlan.SetVLANFromVLANIDDescription("1,2,3,4,5,6");
  ExpectReaderSurvives(vlan, kSignatures, 21);
  // The older forms as samples, so that mutations reach their readers.
  EVLANIPAddressTableItemProperties version1 = vlan;
  ReadFrom("1 513 3 100 200 300 ", version1);
  ExpectReaderSurvives<EVLANIPAddressTableItemProperties>(
      [] { return EVLANIPAddressTableItemProperties(0, false); }, version1, kSignatures, 22);
  const ReaderOutcome singleTag = FeedReader<EVLANIPAddressTableItemProperties>(
      [] { return EVLANIPAddressTableItemProperties(); }, "320168209 1 0 100 5 1 ", kSignatures,
      23);
  EXPECT_GT(singleTag.completed, 0u);
  EXPECT_GT(singleTag.reported, 0u);
  const ReaderOutcome legacy = FeedReader<EVLANIPAddressTableItemProperties>(
      [] { return EVLANIPAddressTableItemProperties(); }, "1 1 2 53348 100 ", kSignatures, 24);
  EXPECT_GT(legacy.completed, 0u);

  EISLIPAddressTableItemProperties isl;
  isl.Enable();
  isl.SetVLANID(100);
  ExpectReaderSurvives(isl, kSignatures, 25);

  ExpectReaderSurvives(SampleItem(), kSignatures, 26);
  ExpectReaderSurvives(EIPAddressTableItem(), kSignatures, 27);
}

TEST(AddressTableRecordReaders, AHugeTagCountInsideAnItemEndsWithTheData) {
  // Four billion tag words announced and none there: no reservation, no endless re-reading;
  // the reader goes on past the list and meets the end of the data.
  ScopedThrowingSerializeErrors throwing;
  EIPAddressTableItem item;
  try {
    ReadFrom("858993461 1125474577 0 1 0 0 0 0 1 7 4294967295 ", item);
    FAIL() << "the missing network record must be reported";
  } catch (const SerializeErrorThrown& error) {
    EXPECT_EQ(error.file, "x86_64/common/ehal/eIPAddress");
  }
  EXPECT_EQ(item.GetVLANIPAddressTableItemProperties().GetVLANCount(), 1u);
}

}  // namespace
