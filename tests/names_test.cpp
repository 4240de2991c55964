#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eClientID.h"
#include "eConfigEvent.h"
#include "eProtocolName.h"
#include "eTableName.h"
#include "virtual_slot.h"

namespace {

using eHal::ConfigEvent;
using eHal::EClientID;
using eHal::EProtocolName;
using eHal::EProtocolNames;
using eHal::ETableName;

EClientID Client(const std::string& major, int minor) {
  EClientID id;
  id.SetMajorID(major);
  id.SetMinorID(minor);
  return id;
}

TEST(EProtocolNames, FixedTexts) {
  EXPECT_EQ(EProtocolNames::EPORT, "EPORT");
  EXPECT_EQ(EProtocolNames::BGP, "BGP");
  EXPECT_EQ(EProtocolNames::OSPF, "OSPF");
  EXPECT_EQ(EProtocolNames::ISIS, "ISIS");
  EXPECT_EQ(EProtocolNames::RSVP, "RSVP-TE");
  EXPECT_EQ(EProtocolNames::TCPClient, "TCPPROTOCOLCLIENT");
  EXPECT_EQ(EProtocolNames::TCPServer, "TCPPROTOCOLSERVER");
  EXPECT_EQ(EProtocolNames::RIP, "RIP");
  EXPECT_EQ(EProtocolNames::RIPng, "RIPNG");
  EXPECT_EQ(EProtocolNames::IGMP, "IGMP");
  EXPECT_EQ(EProtocolNames::LDP, "LDP");
  EXPECT_EQ(EProtocolNames::PIMSM, "PIM-SM");
  EXPECT_EQ(EProtocolNames::MLD, "MLD");
  EXPECT_EQ(EProtocolNames::OSPF3, "OSPFv3");
  EXPECT_EQ(EProtocolNames::INTERFACE_MANAGER, "INTERFACEMANAGER");
}

TEST(EProtocolName, DefaultsToUnknown) {
  const EProtocolName name;
  EXPECT_EQ(name.GetProtocolName(), "UnknownProtocol");
  EXPECT_EQ(&EProtocolName::GetUnknownProtocolName(), &EProtocolName::GetUnknownProtocolName());
  EProtocolName named("BGP");
  named.Empty();
  EXPECT_EQ(named.GetProtocolName(), "UnknownProtocol");
}

TEST(EProtocolName, ComparesAsZeroTerminatedText) {
  const EProtocolName name("OSPFv3");
  EXPECT_TRUE(name == EProtocolNames::OSPF3);
  EXPECT_FALSE(name == std::string("OSPFV3"));
  EXPECT_FALSE(name == std::string("OSPF"));
  const EProtocolName embedded(std::string("BGP\0x", 5));
  EXPECT_TRUE(embedded == std::string("BGP"));
  EXPECT_TRUE(embedded == std::string("BGP\0y", 5));
}

TEST(EProtocolName, CopyAndAssign) {
  const EProtocolName name("LDP");
  EProtocolName copy(name);
  EXPECT_EQ(copy.GetProtocolName(), "LDP");
  EProtocolName assigned;
  assigned = name;
  assigned = assigned;
  EXPECT_EQ(assigned.GetProtocolName(), "LDP");
  assigned.SetProtocolName("any text");
  EXPECT_EQ(assigned.GetProtocolName(), "any text");
}

TEST(EProtocolName, UnknownNameFromManyThreads) {
  std::vector<const std::string*> seen(8, nullptr);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < seen.size(); ++i) {
    threads.emplace_back([&seen, i] { seen[i] = &EProtocolName::GetUnknownProtocolName(); });
  }
  for (std::thread& thread : threads)
    thread.join();
  for (const std::string* text : seen) {
    ASSERT_EQ(text, seen.front());
    EXPECT_EQ(*text, "UnknownProtocol");
  }
}

TEST(EProtocolName, ArchiveForm) {
  EXPECT_EQ(BytesOf(EProtocolName("RSVP-TE")), "1109524514 7 RSVP-TE");
  EXPECT_EQ(BytesOf(EProtocolName()), "1109524514 15 UnknownProtocol");
  EProtocolName back("x");
  ReadFrom("1109524514 3 RIP", back);
  EXPECT_EQ(back.GetProtocolName(), "RIP");
}

TEST(EProtocolName, WrongSignature) {
  ExpectSerializeError(
      [] {
        EProtocolName name;
        ReadFrom("841089058 3 RIP", name);
      },
      "x86_64/common/ehal/eProtocolName", 109, "eHal::EProtocolName::SerializeIn");
}

TEST(ETableName, DefaultsAndConstants) {
  EXPECT_EQ(ETableName::UnknownTableName, "UnknownTable");
  EXPECT_EQ(ETableName::IPAddressTableName, "IPADDRESSTABLE");
  EXPECT_EQ(ETableName().GetTableName(), "UnknownTable");
  ETableName name(ETableName::IPAddressTableName);
  EXPECT_EQ(name.GetTableName(), "IPADDRESSTABLE");
  ETableName copy(name);
  EXPECT_EQ(copy.GetTableName(), "IPADDRESSTABLE");
  copy.Empty();
  EXPECT_EQ(copy.GetTableName(), "UnknownTable");
  copy = name;
  copy = copy;
  EXPECT_EQ(copy.GetTableName(), "IPADDRESSTABLE");
  copy.SetTableName("");
  EXPECT_EQ(copy.GetTableName(), "");
}

TEST(ETableName, ArchiveForm) {
  EXPECT_EQ(BytesOf(ETableName("T1")), "841089058 2 T1");
  EXPECT_EQ(BytesOf(ETableName()), "841089058 12 UnknownTable");
  ETableName back;
  ReadFrom("841089058 14 IPADDRESSTABLE", back);
  EXPECT_EQ(back.GetTableName(), "IPADDRESSTABLE");
}

TEST(ETableName, ProtocolNameSignatureIsRefused) {
  ExpectSerializeError(
      [] {
        ETableName name;
        ReadFrom("1109524514 2 T1", name);
      },
      "x86_64/common/ehal/eTableName", 102, "eHal::ETableName::SerializeIn");
}

TEST(EClientID, DefaultAndArchiveForm) {
  const EClientID id;
  EXPECT_EQ(id.GetMajorID(), "");
  EXPECT_EQ(id.GetMinorID(), 0);
  EXPECT_EQ(BytesOf(id), "1167589410 0 0 ");
  EXPECT_EQ(BytesOf(Client("gui", -7)), "1167589410 3 gui-7 ");
  EClientID back = Client("old", 3);
  ReadFrom("1167589410 5 tester42 ", back);
  EXPECT_EQ(back.GetMajorID(), "teste");
  EXPECT_EQ(back.GetMinorID(), 42);
}

TEST(EClientID, CopyAssignEmpty) {
  const EClientID id = Client("A", 5);
  EClientID copy(id);
  EXPECT_EQ(copy.GetMajorID(), "A");
  EXPECT_EQ(copy.GetMinorID(), 5);
  EClientID assigned;
  assigned = id;
  assigned = assigned;
  EXPECT_EQ(assigned.GetMajorID(), "A");
  EXPECT_EQ(assigned.GetMinorID(), 5);
  assigned.Empty();
  EXPECT_EQ(assigned.GetMajorID(), "");
  EXPECT_EQ(assigned.GetMinorID(), 0);
}

TEST(EClientID, OrdersByMajorThenSignedMinor) {
  EXPECT_TRUE(Client("A", 5) < Client("AB", 0));
  EXPECT_FALSE(Client("AB", 0) < Client("A", 5));
  EXPECT_TRUE(Client("A", -1) < Client("A", 0));
  EXPECT_FALSE(Client("A", 0) < Client("A", 0));
  EXPECT_TRUE(Client("a", 0) < Client("\xC3", 0));  // byte-wise: 0xC3 orders after 'a'
  std::map<EClientID, int> byClient;
  byClient[Client("B", 1)] = 1;
  byClient[Client("A", 2)] = 2;
  byClient[Client("A", 1)] = 3;
  byClient[Client("A", 1)] = 4;
  ASSERT_EQ(byClient.size(), 3u);
  EXPECT_EQ(byClient.begin()->second, 4);
}

TEST(EClientID, WrongSignature) {
  ExpectSerializeError(
      [] {
        EClientID id;
        ReadFrom("1167589411 0 0 ", id);
      },
      "x86_64/common/ehal/eClientID", 114, "eHal::EClientID::SerializeIn");
}

ConfigEvent Event() {
  ConfigEvent event;
  event.SetAction(static_cast<ESingleCommand::eAction>(-4));
  event.SetEditSubId({7, 8});
  event.SetId(EMultiComponentId(std::vector<unsigned int>{1, 2}, {3}));
  return event;
}

TEST(ConfigEvent, VirtualOperationsInSlotOrder) {
#if EHAL_HAS_VIRTUAL_SLOT
  EXPECT_EQ(VirtualSlot(&ConfigEvent::Empty), 2);  // after the two destructor entries
  EXPECT_EQ(VirtualSlot(&ConfigEvent::Clone), 3);
  EXPECT_EQ(VirtualSlot(&ConfigEvent::Copy), 4);
#else
  GTEST_SKIP() << "table layout not readable on this ABI";
#endif
}

TEST(ConfigEvent, DefaultsAndAccessors) {
  const ConfigEvent empty;
  EXPECT_EQ(empty.GetAction(), 0);
  EXPECT_TRUE(empty.GetEditSubId().empty());
  EXPECT_TRUE(empty.GetId() == EMultiComponentId());
  const ConfigEvent event = Event();
  EXPECT_EQ(event.GetAction(), -4);
  EXPECT_EQ(event.GetEditSubId(), (std::vector<unsigned int>{7, 8}));
  EXPECT_EQ(event.GetId().GetLeaves(), (std::vector<unsigned int>{3}));
}

TEST(ConfigEvent, SelfAssignmentLeavesItUnchanged) {
  ConfigEvent event = Event();
  ConfigEvent& same = event;
  event = same;
  event.Copy(event);
  EXPECT_EQ(event.GetAction(), -4);
  EXPECT_EQ(event.GetEditSubId(), (std::vector<unsigned int>{7, 8}));
  EXPECT_EQ(event.GetId().GetId(), (std::vector<unsigned int>{1, 2}));
}

TEST(ConfigEvent, EmptyKeepsTheEditSubIdStorage) {
  ConfigEvent event = Event();
  const std::size_t capacity = event.GetEditSubId().capacity();
  event.Empty();
  EXPECT_EQ(event.GetAction(), 0);
  EXPECT_TRUE(event.GetEditSubId().empty());
  EXPECT_EQ(event.GetEditSubId().capacity(), capacity);
  EXPECT_TRUE(event.GetId().GetId().empty());
  EXPECT_EQ(event.GetId().GetNumberOfIds(), 0u);
}

// A derived event whose Copy must take part in assignment through the base.
class TaggedEvent : public ConfigEvent {
 public:
  TaggedEvent() = default;
  TaggedEvent(const TaggedEvent& other) : ConfigEvent(other), m_Tag(other.m_Tag) {}
  TaggedEvent& operator=(const TaggedEvent& other) = default;
  ConfigEvent* Clone() const override { return new TaggedEvent(*this); }
  void Copy(const ConfigEvent& other) override {
    ConfigEvent::Copy(other);
    if (const auto* tagged = dynamic_cast<const TaggedEvent*>(&other)) m_Tag = tagged->m_Tag;
  }
  int m_Tag = 0;
};

TEST(ConfigEvent, AssignmentAndCloneAreVirtual) {
  TaggedEvent source;
  source.m_Tag = 9;
  source.SetAction(static_cast<ESingleCommand::eAction>(2));
  TaggedEvent target;
  ConfigEvent& base = target;
  base = static_cast<const ConfigEvent&>(source);
  EXPECT_EQ(target.m_Tag, 9);
  EXPECT_EQ(target.GetAction(), 2);

  const std::unique_ptr<ConfigEvent> clone(static_cast<const ConfigEvent&>(source).Clone());
  ASSERT_NE(dynamic_cast<TaggedEvent*>(clone.get()), nullptr);
  EXPECT_EQ(dynamic_cast<TaggedEvent*>(clone.get())->m_Tag, 9);

  const ConfigEvent plain = Event();
  const std::unique_ptr<ConfigEvent> plainClone(plain.Clone());
  EXPECT_EQ(plainClone->GetAction(), -4);
  EXPECT_EQ(plainClone->GetEditSubId(), (std::vector<unsigned int>{7, 8}));
  EXPECT_TRUE(plainClone->GetId() == plain.GetId());
}

}  // namespace
