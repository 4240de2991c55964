#include "eVLAN.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

#include "eBlob.h"
#include "eStringList.h"
#include "virtual_slot.h"

namespace {

EBlob Bytes(const std::vector<unsigned char>& bytes) {
  return EBlob(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

// A tag with every field set to something other than its empty value.
EVLAN Prefilled() {
  EVLAN vlan;
  EXPECT_EQ(vlan.Decode(Bytes({0x88, 0xA8, 0xF1, 0x23, 0xAA}), 0u, nullptr), 4u);
  vlan.SetEnabled(true);
  return vlan;
}

// Checks the state Empty leaves: disabled, protocol type 5, every tag field 0.
void ExpectEmptyTag(const EVLAN& vlan) {
  EXPECT_FALSE(vlan.IsEnabled());
  EXPECT_EQ(vlan.GetProtocolType(), 5u);
  EXPECT_EQ(vlan.GetVLANID(), 0u);
  EXPECT_EQ(vlan.GetUserPriority(), 0);
  EXPECT_EQ(vlan.GetCanonicalFormat(), 0);
  EXPECT_EQ(vlan.GetVLANTPID(), 0u);
}

using BaseDecode = unsigned int (EProtocol::*)(const EBlob&, int, EStringList*);
using BaseIsEnough = bool (EProtocol::*)(const EBlob&, int);
using VlanDecode = unsigned int (EVLAN::*)(const EBlob&, unsigned int, EStringList*);
using VlanIsEnough = bool (EVLAN::*)(const EBlob&, unsigned int);

TEST(EVLAN, DefaultValueConstant) {
  EXPECT_EQ(kVlanDefaultValue, 0x81000000u);
}

TEST(EProtocol, VirtualSlotOrder) {
#if EHAL_HAS_VIRTUAL_SLOT
  EXPECT_EQ(VirtualSlot(&EProtocol::Encode), 2);  // after the two destructor entries
  EXPECT_EQ(VirtualSlot(static_cast<BaseDecode>(&EProtocol::Decode)), 3);
  EXPECT_EQ(VirtualSlot(&EProtocol::Log), 4);
  EXPECT_EQ(VirtualSlot(&EProtocol::GetSize), 5);
  EXPECT_EQ(VirtualSlot(&EProtocol::BytesRequired), 6);
  EXPECT_EQ(VirtualSlot(static_cast<BaseIsEnough>(&EProtocol::IsEnoughBytes)), 7);
  EXPECT_EQ(VirtualSlot(&EProtocol::SetEnabled), -1);
#else
  GTEST_SKIP() << "table layout not readable on this ABI";
#endif
}

TEST(EVLAN, VirtualSlotOrder) {
#if EHAL_HAS_VIRTUAL_SLOT
  // The overrides keep the base slots; the four new operations follow in order.
  EXPECT_EQ(VirtualSlot(&EVLAN::GetSize), 5);
  EXPECT_EQ(VirtualSlot(&EVLAN::BytesRequired), 6);
  EXPECT_EQ(VirtualSlot(&EVLAN::GetDataLength), 8);
  EXPECT_EQ(VirtualSlot(static_cast<VlanDecode>(&EVLAN::Decode)), 9);
  EXPECT_EQ(VirtualSlot(&EVLAN::GetHeaderSize), 10);
  EXPECT_EQ(VirtualSlot(static_cast<VlanIsEnough>(&EVLAN::IsEnoughBytes)), 11);
#else
  GTEST_SKIP() << "table layout not readable on this ABI";
#endif
}

TEST(EProtocol, BaseDecodesAndEncodesNothing) {
  EProtocol protocol;
  EXPECT_FALSE(protocol.IsEnabled());
  EXPECT_EQ(protocol.GetProtocolType(), 0u);
  EBlob blob = Bytes({0x81, 0x00, 0x60, 0x05});
  const EBlob before = blob;
  EXPECT_EQ(protocol.Encode(blob, 0), 0u);
  EXPECT_EQ(protocol.Decode(blob, 0, nullptr), 0u);
  EXPECT_EQ(blob, before);
  EXPECT_FALSE(protocol.IsEnabled());
  EXPECT_EQ(protocol.GetProtocolType(), 0u);
  EStringList log;
  log.Add("kept");
  protocol.Log(&log);
  protocol.Log(nullptr);
  EXPECT_EQ(log.GetString(), "kept");
  EXPECT_EQ(protocol.GetSize(), 0u);
  EXPECT_EQ(protocol.BytesRequired(blob, 0), 0xFFFFFFFFu);
  EXPECT_FALSE(protocol.IsEnoughBytes(blob, 0));
  EXPECT_FALSE(protocol.IsEnoughBytes(Bytes(std::vector<unsigned char>(100)), 0));
}

TEST(EProtocol, FlagsTypeCopyAndEmpty) {
  EProtocol protocol;
  EXPECT_FALSE(protocol.SetEnabled(true));
  EXPECT_TRUE(protocol.IsEnabled());
  EXPECT_TRUE(protocol.SetEnabled(true));
  protocol.SetProtocolType(9);
  EXPECT_EQ(protocol.GetProtocolType(), 9u);

  EProtocol copy(protocol);
  EXPECT_TRUE(copy.IsEnabled());
  EXPECT_EQ(copy.GetProtocolType(), 9u);
  EProtocol other;
  other.Copy(protocol);
  EXPECT_TRUE(other.IsEnabled());
  EXPECT_EQ(other.GetProtocolType(), 9u);
  EProtocol assigned;
  assigned = protocol;
  EXPECT_TRUE(assigned.IsEnabled());
  EXPECT_EQ(assigned.GetProtocolType(), 9u);

  protocol.Empty();
  EXPECT_FALSE(protocol.IsEnabled());
  EXPECT_EQ(protocol.GetProtocolType(), 0u);
}

TEST(EVLAN, Defaults) {
  EVLAN vlan;
  ExpectEmptyTag(vlan);
  EXPECT_EQ(vlan.GetDataLength(), 0u);
  EXPECT_EQ(vlan.GetHeaderSize(), 4u);
  EXPECT_EQ(vlan.GetSize(), 4u);
  EXPECT_EQ(vlan.BytesRequired(EBlob(), 0), 4u);
  EXPECT_EQ(vlan.BytesRequired(Bytes({1, 2}), 7), 4u);
}

TEST(EVLAN, SetEnabledReturnsThePreviousFlag) {
  EVLAN vlan;
  EXPECT_FALSE(vlan.SetEnabled(true));
  EXPECT_TRUE(vlan.SetEnabled(false));
  EXPECT_FALSE(vlan.SetEnabled(false));
  EXPECT_FALSE(vlan.IsEnabled());
}

TEST(EVLAN, DecodesACustomerTag) {
  EVLAN vlan;
  const EBlob blob = Bytes({0x81, 0x00, 0x60, 0x05, 0x08, 0x00, 0x45, 0x00, 0x00, 0x54});
  EXPECT_EQ(vlan.Decode(blob, 0u, nullptr), 4u);
  EXPECT_EQ(vlan.GetVLANID(), 5u);
  EXPECT_EQ(vlan.GetUserPriority(), 3);
  EXPECT_EQ(vlan.GetCanonicalFormat(), 0);
  EXPECT_EQ(vlan.GetVLANTPID(), 0x81006005u);  // the whole tag word, not the identifier alone
  EXPECT_EQ(vlan.GetDataLength(), 6u);         // length - 4
  EXPECT_EQ(vlan.GetProtocolType(), 5u);

  EXPECT_EQ(vlan.Decode(Bytes({0x81, 0x00, 0x60, 0x05}), 0u, nullptr), 4u);
  EXPECT_EQ(vlan.GetVLANID(), 5u);
  EXPECT_EQ(vlan.GetDataLength(), 0u);
}

TEST(EVLAN, DecodesAllFieldsAtAnOffset) {
  EVLAN vlan;
  EStringList log;
  const EBlob blob = Bytes({0xDE, 0xAD, 0x88, 0xA8, 0xFA, 0xBC, 0x01, 0x02, 0x03});
  EXPECT_EQ(vlan.Decode(blob, 2u, &log), 4u);
  EXPECT_EQ(vlan.GetUserPriority(), 7);
  EXPECT_EQ(vlan.GetCanonicalFormat(), 1);
  EXPECT_EQ(vlan.GetVLANID(), 0xABCu);
  EXPECT_EQ(vlan.GetVLANTPID(), 0x88A8FABCu);
  EXPECT_EQ(vlan.GetDataLength(), 3u);
  EXPECT_EQ(log.GetCount(), 0u);  // the list is not used
}

TEST(EVLAN, AcceptedTagProtocolIdentifiers) {
  const unsigned char ids[][2] = {
      {0x81, 0x00}, {0x88, 0xA8}, {0x91, 0x00}, {0x92, 0x00}, {0x93, 0x00}};
  for (const auto& id : ids) {
    EVLAN vlan;
    const EBlob blob = Bytes({id[0], id[1], 0x2F, 0xFF, 0x00});
    EXPECT_TRUE(EVLAN::IsVLAN(blob, 0));
    EXPECT_EQ(vlan.Decode(blob, 0u, nullptr), 4u);
    EXPECT_EQ(vlan.GetVLANID(), 0xFFFu);
    EXPECT_EQ(vlan.GetUserPriority(), 1);
    EXPECT_EQ(vlan.GetCanonicalFormat(), 0);
    EXPECT_EQ(vlan.GetVLANTPID(), (static_cast<unsigned int>(id[0]) << 24) |
                                      (static_cast<unsigned int>(id[1]) << 16) | 0x2FFFu);
    EXPECT_EQ(vlan.GetDataLength(), 1u);
  }
}

TEST(EVLAN, OtherEtherTypesEmptyTheTag) {
  const unsigned char others[][2] = {{0x86, 0xDD}, {0x08, 0x00}, {0x81, 0x01},
                                     {0x88, 0xA9}, {0x94, 0x00}, {0x00, 0x81}};
  for (const auto& other : others) {
    EVLAN vlan = Prefilled();
    vlan.SetProtocolType(9);
    const EBlob blob = Bytes({other[0], other[1], 0x60, 0x05, 0x11, 0x22});
    EXPECT_FALSE(EVLAN::IsVLAN(blob, 0));
    EXPECT_EQ(vlan.Decode(blob, 0u, nullptr), 4u);
    ExpectEmptyTag(vlan);                 // Decode starts with Empty
    EXPECT_EQ(vlan.GetDataLength(), 2u);  // still computed
  }
}

TEST(EVLAN, ShortBuffersWrapTheDataLength) {
  EVLAN vlan = Prefilled();
  EXPECT_EQ(vlan.Decode(Bytes({0x81, 0x00, 0x60}), 0u, nullptr), 4u);
  EXPECT_EQ(vlan.GetVLANID(), 0u);
  EXPECT_EQ(vlan.GetVLANTPID(), 0u);
  EXPECT_EQ(vlan.GetDataLength(), 0xFFFFu);

  // A tag cut off by the end of the buffer is not decoded.
  EXPECT_EQ(vlan.Decode(Bytes({0x00, 0x00, 0x81, 0x00, 0x60}), 2u, nullptr), 4u);
  EXPECT_EQ(vlan.GetVLANID(), 0u);
  EXPECT_EQ(vlan.GetDataLength(), 0xFFFFu);

  EXPECT_EQ(vlan.Decode(EBlob(), 0u, nullptr), 4u);
  EXPECT_EQ(vlan.GetDataLength(), 0xFFFCu);

  // An offset past the end: 4 - 10 - 4 in 16 bits.
  EXPECT_EQ(vlan.Decode(Bytes({0x81, 0x00, 0x60, 0x05}), 10u, nullptr), 4u);
  EXPECT_EQ(vlan.GetVLANID(), 0u);
  EXPECT_EQ(vlan.GetDataLength(), 0xFFF6u);

  // An offset so large that offset + 4 wraps in 32 bits finds no tag.
  EXPECT_EQ(vlan.Decode(Bytes({0x81, 0x00, 0x60, 0x05}), 0xFFFFFFFEu, nullptr), 4u);
  EXPECT_EQ(vlan.GetVLANTPID(), 0u);
  EXPECT_EQ(vlan.GetDataLength(), 2u);  // 4 - 0xFFFFFFFE - 4 in 16 bits
}

TEST(EVLAN, LongBuffersWrapTheDataLength) {
  std::vector<unsigned char> bytes(0x10000 + 4 + 7, 0);
  bytes[0] = 0x81;
  bytes[3] = 0x01;
  EVLAN vlan;
  EXPECT_EQ(vlan.Decode(Bytes(bytes), 0u, nullptr), 4u);
  EXPECT_EQ(vlan.GetVLANID(), 1u);
  EXPECT_EQ(vlan.GetDataLength(), 7u);
}

TEST(EVLAN, IsVLANBounds) {
  EXPECT_TRUE(EVLAN::IsVLAN(Bytes({0x81, 0x00}), 0));
  EXPECT_FALSE(EVLAN::IsVLAN(Bytes({0x81, 0x00}), 2));  // offset not below the length
  EXPECT_FALSE(EVLAN::IsVLAN(EBlob(), 0));
  EXPECT_FALSE(EVLAN::IsVLAN(Bytes({0x81}), 0));  // second byte beyond the storage
  EXPECT_FALSE(EVLAN::IsVLAN(Bytes({0x81, 0x00}), 0xFFFFFFFFu));

  // The second byte is read from the blob's storage, even past its length.
  EBlob reserved;
  reserved.SetSize(8, false);
  const unsigned char first = 0x81;
  reserved.SetData(&first, 1);
  ASSERT_EQ(reserved.GetSize(), 1u);
  ASSERT_EQ(reserved.GetCapacity(), 8u);
  EXPECT_TRUE(EVLAN::IsVLAN(reserved, 0));
}

TEST(EVLAN, TagWordBeyondTheStorageReadsAsZero) {
  // Ten bytes long but only two bytes of storage: the identifier is readable, the tag control
  // field is not.
  EBlob blob = Bytes({0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  blob.NewBuf(2);
  blob.Memset(0x81, 0, 1);
  ASSERT_EQ(blob.GetSize(), 10u);
  ASSERT_EQ(blob.GetCapacity(), 2u);
  EXPECT_TRUE(EVLAN::IsVLAN(blob, 0));
  EVLAN vlan = Prefilled();
  EXPECT_EQ(vlan.Decode(blob, 0u, nullptr), 4u);
  EXPECT_EQ(vlan.GetVLANTPID(), 0u);
  EXPECT_EQ(vlan.GetVLANID(), 0u);
  EXPECT_EQ(vlan.GetUserPriority(), 0);
  EXPECT_EQ(vlan.GetDataLength(), 6u);

  // Without any storage nothing is read.
  blob.FreeBuf();
  EXPECT_FALSE(EVLAN::IsVLAN(blob, 0));
  EXPECT_EQ(vlan.Decode(blob, 0u, nullptr), 4u);
  EXPECT_EQ(vlan.GetVLANTPID(), 0u);
}

TEST(EVLAN, IsEnoughBytes) {
  EVLAN vlan;
  const EBlob four = Bytes({1, 2, 3, 4});
  EXPECT_TRUE(vlan.IsEnoughBytes(four, 0u));
  EXPECT_FALSE(vlan.IsEnoughBytes(four, 1u));
  EXPECT_FALSE(vlan.IsEnoughBytes(Bytes({1, 2, 3}), 0u));
  EXPECT_TRUE(vlan.IsEnoughBytes(Bytes({1, 2, 3, 4, 5}), 1u));
  // Length - offset is taken in unsigned 32 bits: an offset past the end wraps to a large count.
  EXPECT_TRUE(vlan.IsEnoughBytes(four, 10u));
}

TEST(EVLAN, BaseOperationsThroughTheBaseDoNoTagWork) {
  EVLAN vlan = Prefilled();
  vlan.SetEnabled(true);
  EProtocol& base = vlan;
  const EBlob blob = Bytes({0x81, 0x00, 0x60, 0x05, 0x01});
  EXPECT_EQ(base.Decode(blob, 0, nullptr), 4u);  // GetSize() of the tag
  EXPECT_EQ(vlan.GetVLANID(), 0x123u);           // nothing decoded
  EXPECT_EQ(vlan.GetVLANTPID(), 0x88A8F123u);
  EXPECT_EQ(vlan.GetDataLength(), 1u);
  EXPECT_TRUE(vlan.IsEnabled());
  EXPECT_FALSE(base.IsEnoughBytes(blob, 0));
  EXPECT_EQ(base.GetSize(), 4u);
  EXPECT_EQ(base.BytesRequired(blob, 0), 4u);
  EBlob target = blob;
  EXPECT_EQ(base.Encode(target, 0), 4u);
  EXPECT_EQ(target, blob);
  EStringList log;
  base.Log(&log);
  EXPECT_EQ(log.GetCount(), 0u);
}

TEST(EVLAN, SettersStoreTheirArgument) {
  EVLAN vlan;
  vlan.SetVLANID(5000);  // no clamping to 12 bits here
  vlan.SetUserPriority(9);
  vlan.SetVLANTPID(0x12345678);
  EXPECT_EQ(vlan.GetVLANID(), 5000u);
  EXPECT_EQ(vlan.GetUserPriority(), 9);
  EXPECT_EQ(vlan.GetVLANTPID(), 0x12345678u);
  vlan.SetUserPriority(-1);
  EXPECT_EQ(vlan.GetUserPriority(), -1);
}

TEST(EVLAN, SetCanonicalFormatDoesNothing) {
  EVLAN vlan;
  vlan.SetCanonicalFormat(1);
  EXPECT_EQ(vlan.GetCanonicalFormat(), 0);
  EVLAN decoded = Prefilled();
  ASSERT_EQ(decoded.GetCanonicalFormat(), 1);
  decoded.SetCanonicalFormat(0);
  EXPECT_EQ(decoded.GetCanonicalFormat(), 1);
}

TEST(EVLAN, EmptyKeepsTheDataLength) {
  EVLAN vlan = Prefilled();
  vlan.SetProtocolType(2);
  vlan.Empty();
  ExpectEmptyTag(vlan);
  EXPECT_EQ(vlan.GetDataLength(), 1u);
}

TEST(EVLAN, CopyLeavesTheDataLength) {
  EVLAN source;
  source.Decode(Bytes({0x81, 0x00, 0xB0, 0x07, 1, 2, 3, 4, 5}), 0u, nullptr);
  source.SetEnabled(true);
  ASSERT_EQ(source.GetDataLength(), 5u);

  EVLAN target;
  target.Decode(Bytes({0x08, 0x00, 0, 0, 1}), 0u, nullptr);
  ASSERT_EQ(target.GetDataLength(), 1u);
  target.Copy(source);
  EXPECT_EQ(target.GetVLANID(), 7u);
  EXPECT_EQ(target.GetUserPriority(), 5);
  EXPECT_EQ(target.GetCanonicalFormat(), 1);
  EXPECT_EQ(target.GetVLANTPID(), 0x8100B007u);
  EXPECT_TRUE(target.IsEnabled());
  EXPECT_EQ(target.GetProtocolType(), 5u);
  EXPECT_EQ(target.GetDataLength(), 1u);

  const EVLAN constructed(source);
  EXPECT_EQ(constructed.GetVLANTPID(), 0x8100B007u);
  EXPECT_EQ(constructed.GetCanonicalFormat(), 1);
  EXPECT_TRUE(constructed.IsEnabled());
  EXPECT_EQ(constructed.GetDataLength(), 0u);
}

TEST(EVLAN, AssignmentYieldsAValue) {
  static_assert(
      std::is_same<decltype(std::declval<EVLAN&>() = std::declval<const EVLAN&>()), EVLAN>::value,
      "assignment returns a new tag, not a reference");
  EVLAN source;
  source.Decode(Bytes({0x92, 0x00, 0x40, 0x2A, 1, 2}), 0u, nullptr);
  EVLAN target;
  target.Decode(Bytes({0x08, 0x00, 0, 0, 9, 9, 9}), 0u, nullptr);
  const EVLAN result = (target = source);
  EXPECT_EQ(target.GetVLANID(), 42u);
  EXPECT_EQ(target.GetUserPriority(), 2);
  EXPECT_EQ(target.GetVLANTPID(), 0x9200402Au);
  EXPECT_EQ(target.GetDataLength(), 3u);  // kept
  EXPECT_EQ(result.GetVLANTPID(), 0x9200402Au);
  EXPECT_EQ(result.GetDataLength(), 0u);  // a fresh copy

  const EVLAN& alias = target;
  const EVLAN self = (target = alias);
  EXPECT_EQ(target.GetVLANID(), 42u);
  EXPECT_EQ(self.GetVLANID(), 42u);
}

}  // namespace
