#include "eVLANIPAddressTableItemProperties.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"
#include "eVLAN.h"

namespace {

using VLAN = EVLANIPAddressTableItemProperties;
using Words = std::vector<unsigned int>;

// A record with these tags (one to six). Flags beyond bit 0 come only from the archive, so the
// record is read from the version-2 form.
VLAN WithTags(const Words& tags, unsigned int flags = 0) {
  std::string bytes = "2 " + std::to_string(flags) + " " + std::to_string(tags.size()) + " ";
  for (const unsigned int tag : tags)
    bytes += std::to_string(tag) + " ";
  VLAN vlan;
  ReadFrom(bytes, vlan);
  return vlan;
}

void ExpectTags(const VLAN& vlan, const Words& tags) {
  EXPECT_EQ(vlan.GetVlans(), tags);
  EXPECT_EQ(vlan.GetVLANCount(), tags.size());
}

// A prefilled record: enabled, three tags.
VLAN Prefilled() {
  return WithTags({0x88A81001, 0x91002002, 0x92003003}, 1);
}

const char* const kFile = "x86_64/common/ehal/eVLANIPAddressTableItemProperties";
const char* const kFunction = "EVLANIPAddressTableItemProperties::SerializeIn";

TEST(EVLANProperties, DefaultHoldsOneDefaultTagAndIsDisabled) {
  const VLAN vlan;
  EXPECT_FALSE(vlan.IsEnabled());
  EXPECT_EQ(vlan.GetFlags(), 0u);
  ExpectTags(vlan, {kVlanDefaultValue});
  VLAN filled = Prefilled();
  filled.Empty();
  EXPECT_EQ(filled, vlan);
}

TEST(EVLANProperties, CapacityConstructorHoldsNoTags) {
  const VLAN enabled(4, true);
  EXPECT_TRUE(enabled.IsEnabled());
  EXPECT_EQ(enabled.GetFlags(), 1u);
  ExpectTags(enabled, {});
  EXPECT_GE(enabled.GetVlans().capacity(), 4u);
  const VLAN huge(4000000000u, false);  // reserves no more than six slots
  EXPECT_FALSE(huge.IsEnabled());
  ExpectTags(huge, {});
  EXPECT_LE(huge.GetVlans().capacity(), 6u);
}

TEST(EVLANProperties, EnableTouchesBitZeroOnly) {
  VLAN vlan = WithTags({kVlanDefaultValue}, 0x201);
  EXPECT_TRUE(vlan.IsEnabled());
  vlan.Disable();
  EXPECT_FALSE(vlan.IsEnabled());
  EXPECT_EQ(vlan.GetFlags(), 0x200u);
  vlan.Enable();
  EXPECT_EQ(vlan.GetFlags(), 0x201u);
  vlan.SetEnabled(false);
  EXPECT_EQ(vlan.GetFlags(), 0x200u);
  vlan.SetEnabled(true);
  EXPECT_EQ(vlan.GetFlags(), 0x201u);
}

TEST(EVLANProperties, SetVLANCountClampsIntoOneToSix) {
  VLAN vlan;
  EXPECT_FALSE(vlan.SetVLANCount(0));
  ExpectTags(vlan, {kVlanDefaultValue});
  EXPECT_FALSE(vlan.SetVLANCount(9));
  EXPECT_EQ(vlan.GetVLANCount(), 6u);
  VLAN one;
  one.SetVlanTag(0, 0x12345678);
  EXPECT_TRUE(one.SetVLANCount(3));
  ExpectTags(one, {0x12345678, 0x81000000, 0x81000000});
  EXPECT_TRUE(one.SetVLANCount(3));  // same count: nothing changes
  ExpectTags(one, {0x12345678, 0x81000000, 0x81000000});
  EXPECT_TRUE(one.SetVLANCount(1));  // truncated from the end
  ExpectTags(one, {0x12345678});
  EXPECT_TRUE(one.SetVLANCount(6));
  EXPECT_FALSE(one.SetVLANCount(7));
  EXPECT_EQ(one.GetVLANCount(), 6u);
  one.ResetVLANCount();
  ExpectTags(one, {});
  EXPECT_FALSE(one.SetVLANCount(0));
  ExpectTags(one, {kVlanDefaultValue});
}

TEST(EVLANProperties, SetVlanCopiesTheFirstWords) {
  VLAN vlan;
  const Words source = {1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_TRUE(vlan.SetVlan(3, &source));
  ExpectTags(vlan, {1, 2, 3});
  EXPECT_FALSE(vlan.SetVlan(8, &source));
  ExpectTags(vlan, {1, 2, 3, 4, 5, 6});
  const Words shorter = {9};
  EXPECT_TRUE(vlan.SetVlan(2, &shorter));  // a short source leaves the remaining slots
  ExpectTags(vlan, {9, 2});
  EXPECT_FALSE(vlan.SetVlan(0, nullptr));
  ExpectTags(vlan, {9});
}

TEST(EVLANProperties, WholeTagAccessIsBoundsChecked) {
  VLAN vlan = Prefilled();
  EXPECT_EQ(vlan.GetVlanTag(2), 0x92003003u);
  EXPECT_EQ(vlan.GetVLANTCID(1), 0x91002002u);
  EXPECT_EQ(vlan.GetVlanTag(3), 0u);
  EXPECT_TRUE(vlan.SetVlanTag(2, 7));
  EXPECT_EQ(vlan.GetVlanTag(2), 7u);
  EXPECT_FALSE(vlan.SetVlanTag(3, 7));
  ExpectTags(vlan, {0x88A81001, 0x91002002, 7});
}

TEST(EVLANProperties, TagParts) {
  VLAN vlan = WithTags({0x88A8B064});
  EXPECT_EQ(vlan.GetVLANID(0), 100);
  EXPECT_EQ(vlan.GetUserPriority(0), 5);
  EXPECT_EQ(vlan.GetCanonicalFormat(0), 1u);
  EXPECT_EQ(vlan.GetVLANTPID(0), 0x88A8);
  EXPECT_EQ(vlan.GetVLANTCID(0), 0x88A8B064u);

  vlan.SetVLANID(4094, 0);
  EXPECT_EQ(vlan.GetVlanTag(0), 0x88A8BFFEu);
  vlan.SetVLANID(4096, 0);  // clamped
  EXPECT_EQ(vlan.GetVLANID(0), 4095);
  vlan.SetVLANID(65535, 0);
  EXPECT_EQ(vlan.GetVlanTag(0), 0x88A8BFFFu);
  vlan.SetVLANID(0, 0);
  EXPECT_EQ(vlan.GetVlanTag(0), 0x88A8B000u);

  vlan.SetUserPriority(2, 0);
  EXPECT_EQ(vlan.GetVlanTag(0), 0x88A85000u);
  vlan.SetUserPriority(9, 0);  // the low three bits: 9 & 7 = 1
  EXPECT_EQ(vlan.GetUserPriority(0), 1);
  EXPECT_EQ(vlan.GetVlanTag(0), 0x88A83000u);

  vlan.SetCanonicalFormat(2, 0);  // bit 0 of 2 is 0
  EXPECT_EQ(vlan.GetVlanTag(0), 0x88A82000u);
  vlan.SetCanonicalFormat(3, 0);
  EXPECT_EQ(vlan.GetVlanTag(0), 0x88A83000u);

  vlan.SetVLANTPID(0x9300, 0);
  EXPECT_EQ(vlan.GetVlanTag(0), 0x93003000u);
  vlan.SetVLANTPID(0, 0);
  EXPECT_EQ(vlan.GetVlanTag(0), 0x00003000u);
}

TEST(EVLANProperties, TagPartsBeyondTheTagsReadZeroAndWriteNothing) {
  VLAN vlan = Prefilled();
  EXPECT_EQ(vlan.GetVLANID(3), 0);
  EXPECT_EQ(vlan.GetUserPriority(3), 0);
  EXPECT_EQ(vlan.GetCanonicalFormat(3), 0u);
  EXPECT_EQ(vlan.GetVLANTPID(3), 0);
  EXPECT_EQ(vlan.GetVLANTCID(100), 0u);
  vlan.SetVLANID(5, 3);
  vlan.SetUserPriority(5, 3);
  vlan.SetCanonicalFormat(1, 3);
  vlan.SetVLANTPID(0x8100, 3);
  EXPECT_EQ(vlan, Prefilled());
}

TEST(EVLANProperties, CopyTakesTheClampedCountAndTheTagsBothHold) {
  const VLAN source = Prefilled();
  const VLAN copy(source);
  EXPECT_EQ(copy, source);
  VLAN assigned = WithTags({1, 2, 3, 4, 5});
  assigned = source;
  EXPECT_EQ(assigned, source);
  VLAN copied;
  copied.Copy(source);
  EXPECT_EQ(copied, source);

  // A record without tags copies as one tag: a fresh copy gets a new default tag, an existing
  // target keeps its first tag.
  const VLAN none(3, true);
  const VLAN fromNone(none);
  EXPECT_TRUE(fromNone.IsEnabled());
  ExpectTags(fromNone, {kVlanDefaultValue});
  EXPECT_NE(fromNone, none);
  VLAN target = WithTags({7, 8});
  target = none;
  EXPECT_EQ(target.GetFlags(), 1u);
  ExpectTags(target, {7});

  VLAN self = Prefilled();
  self = *&self;
  EXPECT_EQ(self, Prefilled());
  VLAN selfNone(2, false);
  selfNone.Copy(selfNone);
  ExpectTags(selfNone, {});
}

TEST(EVLANProperties, SwapExchangesFlagsAndTags) {
  VLAN a = Prefilled();
  VLAN b(0, false);
  a.Swap(b);
  ExpectTags(a, {});
  EXPECT_FALSE(a.IsEnabled());
  EXPECT_EQ(b, Prefilled());
}

TEST(EVLANProperties, InequalityByFlagsCountOrTag) {
  const VLAN a = Prefilled();
  EXPECT_FALSE(a != a);
  EXPECT_FALSE(a != Prefilled());
  EXPECT_TRUE(a == Prefilled());
  VLAN flags = Prefilled();
  flags.Disable();
  EXPECT_TRUE(a != flags);
  VLAN count = Prefilled();
  count.SetVLANCount(2);
  EXPECT_TRUE(a != count);
  VLAN tag = Prefilled();
  tag.SetVLANID(1, 2);
  EXPECT_TRUE(a != tag);
  EXPECT_FALSE(a == tag);
}

TEST(EVLANProperties, IncrementVLANIDWrapsModulo4096) {
  VLAN vlan = WithTags({0x81000FFE, 0x88A8F000});
  EXPECT_EQ(vlan.IncrementVLANID(1, 1), 4095);
  EXPECT_EQ(vlan.GetVlanTag(1), 0x88A8FFFFu);  // other bits of tag 1 kept
  EXPECT_EQ(vlan.IncrementVLANID(1, 3), 1);
  EXPECT_EQ(vlan.GetVlanTag(1), 0x88A8F001u);
  EXPECT_EQ(vlan.IncrementVLANID(1, 4096 + 2), 0);  // the step's remainder: 2
  EXPECT_EQ(vlan.IncrementVLANID(1, 0), 4094);
  vlan.SetVLANID(5, 0);
  EXPECT_EQ(vlan.IncrementVLANID(1, -10), 4091);
  EXPECT_EQ(vlan.IncrementVLANID(1, -4096 - 3), 2);
  EXPECT_EQ(vlan.GetVlanTag(0), 0x81000005u);  // the source tag is untouched
}

TEST(EVLANProperties, IncrementUserPriorityWrapsModulo8) {
  VLAN vlan = WithTags({0x8100C000, 0x88A81FFF});  // priority 6; tag 1 priority 0 and CFI 1
  EXPECT_EQ(vlan.IncrementUserPriority(1, 1), 7);
  EXPECT_EQ(vlan.GetVlanTag(1), 0x88A8FFFFu);
  EXPECT_EQ(vlan.IncrementUserPriority(1, 3), 1);
  EXPECT_EQ(vlan.GetVlanTag(1), 0x88A83FFFu);
  EXPECT_EQ(vlan.IncrementUserPriority(1, -7), 7);
  EXPECT_EQ(vlan.IncrementUserPriority(1, 8 + 2), 0);
  EXPECT_EQ(vlan.IncrementUserPriority(1, -9), 5);
}

// The TPID that IncrementVLANTPID gives tag 1 when tag 0 carries `previous`.
unsigned short NextTPID(unsigned short previous, int step, bool use9300) {
  VLAN vlan = WithTags({0, 0x0000ABCD});
  vlan.SetVLANTPID(previous, 0);
  const unsigned short next = vlan.IncrementVLANTPID(1, step, use9300);
  EXPECT_EQ(vlan.GetVLANTPID(1), next);
  EXPECT_EQ(vlan.GetVlanTag(1) & 0xFFFF, 0xABCDu);
  return next;
}

TEST(EVLANProperties, IncrementVLANTPIDFollowsTheCycle) {
  struct Row {
    unsigned short previous, up, up9300, down, down9300;
  };
  const Row rows[] = {
      {0x8100, 0x88A8, 0x88A8, 0x9200, 0x9300}, {0x88A8, 0x9100, 0x9100, 0x8100, 0x8100},
      {0x9100, 0x9200, 0x9200, 0x88A8, 0x88A8}, {0x9200, 0x8100, 0x9300, 0x9100, 0x9100},
      {0x9300, 0x8100, 0x8100, 0x9200, 0x9200}, {0x1234, 0x8100, 0x8100, 0x8100, 0x8100},
      {0x0000, 0x8100, 0x8100, 0x8100, 0x8100},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.previous);
    EXPECT_EQ(NextTPID(row.previous, 1, false), row.up);
    EXPECT_EQ(NextTPID(row.previous, 100, true), row.up9300);
    EXPECT_EQ(NextTPID(row.previous, -1, false), row.down);
    EXPECT_EQ(NextTPID(row.previous, -7, true), row.down9300);
    EXPECT_EQ(NextTPID(row.previous, 0, true), row.previous);  // step 0 copies, even unknown
    EXPECT_EQ(NextTPID(row.previous, 0, false), row.previous);
  }
}

TEST(EVLANProperties, IncrementsFromTagZeroReadAZeroTag) {
  VLAN vlan = WithTags({0x88A8E123});
  EXPECT_EQ(vlan.IncrementVLANID(0, 1), 1);
  EXPECT_EQ(vlan.IncrementUserPriority(0, 1), 1);
  EXPECT_EQ(vlan.IncrementVLANTPID(0, 0, false), 0);
  EXPECT_EQ(vlan.GetVlanTag(0), 0x00002001u);
}

TEST(EVLANProperties, RemoveVLANItem) {
  VLAN vlan = WithTags({1, 2, 3});
  const unsigned int second[] = {2};
  EXPECT_TRUE(vlan.RemoveVLANItem(second, 1));
  ExpectTags(vlan, {1, 3});

  VLAN five = WithTags({1, 2, 3, 4, 5});
  const unsigned int ascending[] = {1, 3, 5};
  EXPECT_TRUE(five.RemoveVLANItem(ascending, 3));  // processed from the last: 5, 3, 1
  ExpectTags(five, {2, 4});

  VLAN three = WithTags({1, 2, 3});
  const unsigned int all[] = {1, 2, 3};
  EXPECT_TRUE(three.RemoveVLANItem(all, 3));  // n = count: only count - 1 positions, {1, 2}
  ExpectTags(three, {3});
  EXPECT_TRUE(three.RemoveVLANItem(all, 3));  // the last tag always survives
  ExpectTags(three, {3});

  VLAN unchanged = WithTags({1, 2});
  EXPECT_TRUE(unchanged.RemoveVLANItem(all, 0));
  ExpectTags(unchanged, {1, 2});
  const unsigned int beyond[] = {0, 9};
  EXPECT_TRUE(unchanged.RemoveVLANItem(beyond, 1));  // position 0 names no tag
  ExpectTags(unchanged, {1, 2});
  VLAN many = WithTags({1, 2, 3});
  EXPECT_TRUE(many.RemoveVLANItem(beyond, 2));  // position 9 names no tag either
  ExpectTags(many, {1, 2, 3});
  EXPECT_TRUE(many.RemoveVLANItem(nullptr, 2));
  ExpectTags(many, {1, 2, 3});
  VLAN none(1, false);
  EXPECT_TRUE(none.RemoveVLANItem(second, 1));
  ExpectTags(none, {});
}

TEST(EVLANProperties, LegacyTagConversions) {
  EXPECT_EQ(VLAN::ConvertLegacyTCIDToNewTCID(0x8100D064), 0x8100B064u);
  EXPECT_EQ(VLAN::ConvertLegacyTCIDToNewTCID(0x81008000), 0x81001000u);  // CFI only
  EXPECT_EQ(VLAN::ConvertLegacyTCIDToNewTCID(0x12347ABC), 0x1234EABCu);  // priority 7 only
  EXPECT_EQ(VLAN::ConvertLegacyTCIDToNewTCID(0xFFFFFFFF), 0xFFFFFFFFu);

  const VLAN vlan;
  EXPECT_EQ(vlan.EVlanTagOldToNewConvert(0x0064, 0x201, 0), 0x91000064u);
  EXPECT_EQ(vlan.EVlanTagOldToNewConvert(0xD064, 0x201, 0), 0x9100D064u);  // not rearranged
  EXPECT_EQ(vlan.EVlanTagOldToNewConvert(0x0064, 0x201, 1), 0x81000064u);
  const unsigned int selectors = 0x40321000;  // tags 1 to 5: 1, 2, 3, 0, 4
  EXPECT_EQ(vlan.EVlanTagOldToNewConvert(5, selectors, 0), 0x81000005u);
  EXPECT_EQ(vlan.EVlanTagOldToNewConvert(5, selectors, 1), 0x88A80005u);
  EXPECT_EQ(vlan.EVlanTagOldToNewConvert(5, selectors, 2), 0x91000005u);
  EXPECT_EQ(vlan.EVlanTagOldToNewConvert(5, selectors, 3), 0x92000005u);
  EXPECT_EQ(vlan.EVlanTagOldToNewConvert(5, selectors, 4), 0x81000005u);
  EXPECT_EQ(vlan.EVlanTagOldToNewConvert(5, selectors, 5), 0x81000005u);  // selector 4
  EXPECT_EQ(vlan.EVlanTagOldToNewConvert(5, 0x10000000, 5), 0x88A80005u);
  EXPECT_EQ(vlan.EVlanTagOldToNewConvert(5, 0xFFFFFFFF, 6), 0u);
}

TEST(EVLANProperties, DescriptionsOfEveryField) {
  const VLAN vlan = WithTags({0x81000005, 0x88A8E006, 0x9300000A});
  EXPECT_EQ(vlan.ConstructVLANTPIDDescription(), "0x8100,0x88A8,0x9300");
  EXPECT_EQ(vlan.ConstructVLANIDDescription(), "5,6,10");
  EXPECT_EQ(vlan.ConstructVLANUserPriorityDescription(), "0,7,0");
  EXPECT_EQ(vlan.ConstructVLANItemDescription(VLAN::eTPID), "0x8100,0x88A8,0x9300");
  EXPECT_EQ(vlan.ConstructVLANItemDescription(VLAN::eVLANID), "5,6,10");
  EXPECT_EQ(vlan.ConstructVLANItemDescription(VLAN::eUserPriority), "0,7,0");
  EXPECT_EQ(vlan.ConstructVLANItemDescription(static_cast<VLAN::eFields>(3)), "");
  EXPECT_EQ(WithTags({0x81000005, 0x88A80006}).ConstructVLANTPIDDescription(), "0x8100,0x88A8");
  EXPECT_EQ(WithTags({0x000A0FFF}).ConstructVLANTPIDDescription(), "0xA");
  EXPECT_EQ(WithTags({0x000A0FFF}).ConstructVLANIDDescription(), "4095");
  const VLAN none(0, false);
  EXPECT_EQ(none.ConstructVLANTPIDDescription(), "");
  EXPECT_EQ(none.ConstructVLANIDDescription(), "");
}

TEST(EVLANProperties, TPIDDescriptionIn) {
  VLAN vlan = WithTags({0x00000005, 0x0000E006, 0x00000007});
  vlan.SetVLANFromVLANTPIDDescription("0x9100,1234");
  ExpectTags(vlan, {0x91000005, 0x8100E006});

  vlan.SetVLANFromDescription("88a8, 0X9200,+9300,-7EFF,0x,zz,", VLAN::eTPID);
  ExpectTags(vlan, {0x88A80005, 0x9200E006, 0x93000000, 0x81000000, 0x81000000, 0x81000000});
}

TEST(EVLANProperties, TPIDDescriptionTokensAsTheHexScanReadsThem) {
  struct Row {
    const char* token;
    unsigned short tpid;
  };
  const Row rows[] = {
      {"8100", 0x8100},      {"0x88A8", 0x88A8}, {"0x88a8", 0x88A8}, {"  9100xyz", 0x9100},
      {"+0x9200", 0x9200},   {"9300", 0x9300},   {" ", 0x8100},      {"0x", 0x8100},
      {"g", 0x8100},         {"1234", 0x8100},   {"18100", 0x8100},  {"FFFFFFFF9100", 0x8100},
      {"-FFFF6E00", 0x9200},  // negated modulo 2^32
      {"0", 0x8100},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.token);
    VLAN vlan = WithTags({0x0000ABCD});
    vlan.SetVLANFromVLANTPIDDescription(row.token);
    ExpectTags(vlan, {(static_cast<unsigned int>(row.tpid) << 16) | 0xABCD});
  }
}

TEST(EVLANProperties, VLANIDDescriptionIn) {
  VLAN vlan = WithTags({0x88A80001, 0x91000002, 0x92000003});
  vlan.SetVLANFromVLANIDDescription("5000,7,");
  ExpectTags(vlan, {0x88A80FFF, 0x91000007});

  vlan.SetVLANFromVLANIDDescription("1,,3");  // an empty token between commas is 0
  ExpectTags(vlan, {0x88A80001, 0x91000000, 0x81000003});

  vlan.SetVLANFromVLANIDDescription(" 12abc,-1,65536,65543,4095,4096,99");  // six values at most
  ExpectTags(vlan, {0x88A8000C, 0x91000FFF, 0x81000000, 0x81000007, 0x81000FFF, 0x81000FFF});

  vlan.SetVLANFromVLANIDDescription(",");
  ExpectTags(vlan, {0x88A80000});
}

TEST(EVLANProperties, EmptyDescriptionLeavesOneTag) {
  VLAN vlan = WithTags({0x88A80001, 0x91000002});
  vlan.SetVLANFromVLANIDDescription("");
  ExpectTags(vlan, {0x88A80001});
  VLAN none(0, false);
  none.SetVLANFromVLANTPIDDescription("");
  ExpectTags(none, {kVlanDefaultValue});
}

TEST(EVLANProperties, UserPriorityDescriptionIn) {
  VLAN vlan = WithTags({0x88A81FFF});
  vlan.SetVLANFromUserPriorityDescription("3,8,7,200,x");
  ExpectTags(vlan, {0x88A87FFF, 0x8100E000, 0x8100E000, 0x8100E000, 0x81000000});
  vlan.SetVLANFromDescription("0", VLAN::eUserPriority);
  ExpectTags(vlan, {0x88A81FFF});
}

TEST(EVLANProperties, DescriptionOfAnUnknownFieldChangesNothing) {
  VLAN vlan = Prefilled();
  vlan.SetVLANFromDescription("1,2,3,4", static_cast<VLAN::eFields>(7));
  EXPECT_EQ(vlan, Prefilled());
}

TEST(EVLANProperties, DescriptionsRoundTrip) {
  const VLAN vlan = WithTags({0x88A82064, 0x9100E0C8, 0x81000FFF});
  VLAN back = WithTags({0x00000000});
  back.SetVLANFromVLANTPIDDescription(vlan.ConstructVLANTPIDDescription());
  back.SetVLANFromVLANIDDescription(vlan.ConstructVLANIDDescription());
  back.SetVLANFromUserPriorityDescription(vlan.ConstructVLANUserPriorityDescription());
  EXPECT_EQ(back.GetVlans(), vlan.GetVlans());
}

TEST(EVLANProperties, TheFixtureTakesTagsAndFlags) {
  VLAN direct;
  const Words tags = {0x88A8B064, 5};
  direct.SetVlan(2, &tags);
  direct.Enable();
  const VLAN read = WithTags(tags, 1);
  EXPECT_EQ(read, direct);
  EXPECT_EQ(WithTags(tags, 0x301).GetFlags(), 0x301u);
}

TEST(EVLANProperties, ArchiveBytesAndRoundTrip) {
  EXPECT_EQ(BytesOf(VLAN()), "2 0 1 2164260864 ");
  const VLAN vlan = WithTags({0x88A8B064, 5}, 0x301);
  EXPECT_EQ(BytesOf(vlan), "2 769 2 2292756580 5 ");
  VLAN back = Prefilled();
  ReadFrom(BytesOf(vlan), back);
  EXPECT_EQ(back, vlan);
  EXPECT_EQ(BytesOf(VLAN(0, true)), "2 1 0 ");
}

TEST(EVLANProperties, Version2KeepsTheCountInOneToSix) {
  VLAN vlan = Prefilled();
  ReadFrom("2 4 0 ", vlan);  // count 0: one tag, which keeps its value
  EXPECT_EQ(vlan.GetFlags(), 4u);
  ExpectTags(vlan, {0x88A81001});

  vlan = Prefilled();
  ReadFrom("2 1 5 1 2 3 4 5 ", vlan);
  ExpectTags(vlan, {1, 2, 3, 4, 5});

  vlan = Prefilled();
  ReadFrom("2 1 8 1 2 3 4 5 6 7 8 99 ", vlan);  // the words beyond six are consumed and dropped
  ExpectTags(vlan, {1, 2, 3, 4, 5, 6});
  EArchive archive = LoadingArchive("2 1 8 1 2 3 4 5 6 7 8 99 ");
  archive >> vlan;
  EXPECT_EQ(archive.ReadUnsignedInt(), 99u);
}

TEST(EVLANProperties, Version1ConvertsLegacyTags) {
  VLAN vlan = Prefilled();
  ReadFrom("1 1 1 53348 ", vlan);  // 0xD064: legacy priority 5 and CFI
  EXPECT_EQ(vlan.GetFlags(), 1u);
  ExpectTags(vlan, {0x8100B064});

  vlan = Prefilled();
  ReadFrom("1 513 1 100 ", vlan);  // flags 0x201: tag 0 selects 0x9100
  EXPECT_EQ(vlan.GetFlags(), 0x201u);
  ExpectTags(vlan, {0x91000064});

  vlan = Prefilled();
  ReadFrom("1 0 2 53348 65636 ", vlan);  // values are kept as 16 bits: 65636 is 0x0064
  EXPECT_EQ(vlan.GetFlags(), 0u);
  ExpectTags(vlan, {0x8100B064, 0x81000064});
}

TEST(EVLANProperties, Version1KeepsExactlyTheCount) {
  VLAN vlan = Prefilled();
  ReadFrom("1 1 0 ", vlan);
  ExpectTags(vlan, {});

  // With selectors, tags beyond the sixth become 0.
  vlan = Prefilled();
  ReadFrom("1 2147483906 8 1 2 3 4 5 6 7 8 ", vlan);  // 0x80000102: selectors 1, 0, 0, 0, 0, 8
  EXPECT_EQ(vlan.GetFlags(), 0x80000102u);
  ExpectTags(vlan, {0x88A80001, 0x81000002, 0x81000003, 0x81000004, 0x81000005, 0x81000006, 0, 0});

  vlan = Prefilled();
  ReadFrom("1 1 7 1 2 3 4 5 6 7 ", vlan);  // without selectors every tag is converted
  ExpectTags(vlan,
             {0x81000001, 0x81000002, 0x81000003, 0x81000004, 0x81000005, 0x81000006, 0x81000007});
}

TEST(EVLANProperties, SingleTagFormHasNoTPID) {
  VLAN vlan = Prefilled();
  ReadFrom("320168209 0 77 100 5 1 ", vlan);
  EXPECT_EQ(vlan.GetFlags(), 0u);
  ExpectTags(vlan, {0x0000B064});

  vlan = VLAN(0, true);
  ReadFrom("320168209 1 0 4097 15 2 ", vlan);  // each part masked: id 1, priority 7, CFI 0
  EXPECT_EQ(vlan.GetFlags(), 1u);
  ExpectTags(vlan, {0x0000E001});
}

TEST(EVLANProperties, UnknownSignatureIsReported) {
  for (const char* bytes : {"3 0 1 5 ", "0 ", "320168210 ", ""}) {
    SCOPED_TRACE(bytes);
    ExpectSerializeError(
        [bytes] {
          VLAN vlan;
          ReadFrom(bytes, vlan);
        },
        kFile, 414, kFunction);
  }
}

TEST(EVLANProperties, AHugeCountEndsWithTheData) {
  // The reader consumes the words the data holds and stops once it runs past the end, instead
  // of going round the same bytes four billion times; nothing is allocated ahead of the data.
  VLAN vlan = Prefilled();
  ReadFrom("2 1 4000000000 7 8 ", vlan);
  ExpectTags(vlan, {7, 8, 0, 0x81000000, 0x81000000, 0x81000000});

  vlan = Prefilled();
  ReadFrom("1 1 4294967295 7 8 ", vlan);
  ExpectTags(vlan, {0x81000007, 0x81000008, 0x81000000});
}

}  // namespace
