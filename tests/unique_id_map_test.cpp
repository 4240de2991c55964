#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "ehal.h"
#include "virtual_slot.h"

namespace {

struct Owner {
  int tag;
};

// An item that counts its lives: every item made is registered, and destroying one that is not
// registered (a second destruction) fails the test.
class CountedItem {
 public:
  CountedItem() { Register(); }
  explicit CountedItem(unsigned int value) : m_Value(value) { Register(); }
  // Throws when the item's value is the one ThrowOnCopying names.
  CountedItem(const CountedItem& other)
      : m_Value(other.m_Value),
        m_LocalId(other.m_LocalId),
        m_Parent(other.m_Parent),
        m_Copies(other.m_Copies + 1) {
    if (m_Value == ThrowOnCopying()) throw std::runtime_error("copy refused");
    Register();
  }
  CountedItem& operator=(const CountedItem&) = delete;
  ~CountedItem() { EXPECT_EQ(Live().erase(this), 1u) << "destroyed twice"; }

  unsigned int GetLocalId() const { return m_LocalId; }
  void SetLocalId(unsigned int id) { m_LocalId = id; }
  void SetParent(const Owner* parent) { m_Parent = parent; }
  const Owner* GetParent() const { return m_Parent; }
  unsigned int GetValue() const { return m_Value; }
  // How many copies lie between this item and the one first made.
  int GetCopies() const { return m_Copies; }

  // Its own signature 77, then the value.
  void SerializeOut(EArchive& archive) const {
    archive.WriteSignedInt(77);
    archive.WriteUnsignedInt(m_Value);
  }
  void SerializeIn(EArchive& archive) {
    if (archive.ReadUnsignedInt() != 77) {
      EArchive::SerializeError("test/countedItem", 7, "CountedItem::SerializeIn");
    }
    m_Value = archive.ReadUnsignedInt();
  }

  static std::set<const CountedItem*>& Live() {
    static std::set<const CountedItem*> live;
    return live;
  }
  static int& Made() {
    static int made = 0;
    return made;
  }
  // The value whose items refuse to be copied; 0 for none.
  static unsigned int& ThrowOnCopying() {
    static unsigned int value = 0;
    return value;
  }

 private:
  void Register() {
    Live().insert(this);
    ++Made();
  }

  unsigned int m_Value = 0;
  unsigned int m_LocalId = 0;
  const Owner* m_Parent = nullptr;
  int m_Copies = 0;
};

using Map = EUniqueIDMap<CountedItem, const Owner*>;

// Every test starts with no item alive and must end with none.
class EUniqueIDMapTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CountedItem::Live().clear();
    CountedItem::Made() = 0;
    CountedItem::ThrowOnCopying() = 0;
  }
  void TearDown() override { EXPECT_TRUE(CountedItem::Live().empty()) << "items leaked"; }

  static std::size_t Alive() { return CountedItem::Live().size(); }

  const Owner m_OwnerA{1};
  const Owner m_OwnerB{2};
};

// The entries as "id:value" items; every item must know its identifier and point at `parent`.
std::string Entries(const Map& map, const Owner* parent) {
  std::string text;
  for (auto it = map.begin(); it != map.end(); ++it) {
    const CountedItem* item = map.GetItem(it);
    EXPECT_NE(item, nullptr);
    if (item == nullptr) continue;
    EXPECT_EQ(item->GetLocalId(), it->first);
    EXPECT_EQ(item->GetParent(), parent);
    text += std::to_string(it->first) + ":" + std::to_string(item->GetValue()) + " ";
  }
  return text;
}

// A map of the items with these values, under identifiers 1, 2, ...
void Fill(Map& map, const std::vector<unsigned int>& values) {
  for (unsigned int value : values)
    map.AddOwnedItem(new CountedItem(value));
}

std::set<const CountedItem*> ItemsOf(const Map& map) {
  std::set<const CountedItem*> items;
  for (auto it = map.begin(); it != map.end(); ++it)
    items.insert(map.GetItem(it));
  return items;
}

// Reaches the item operations, which a map keeps to itself, for their slot positions.
template <typename Base>
struct SlotProbe : Base {
  static std::vector<std::ptrdiff_t> Slots() {
#if EHAL_HAS_VIRTUAL_SLOT
    return {VirtualSlot(&SlotProbe::GetItemId),       VirtualSlot(&SlotProbe::SetItemId),
            VirtualSlot(&SlotProbe::SerializeInItem), VirtualSlot(&SlotProbe::CloneItem),
            VirtualSlot(&SlotProbe::CreateItem),      VirtualSlot(&SlotProbe::SerializeOutItem),
            VirtualSlot(&SlotProbe::DeleteItem),      VirtualSlot(&SlotProbe::SetItemParent)};
#else
    return {};
#endif
  }
};

TEST(EUniqueIDMapImplBase, VirtualSlotOrder) {
#if EHAL_HAS_VIRTUAL_SLOT
  // After the two destructor entries; the typed map's overrides keep the core's slots.
  const std::vector<std::ptrdiff_t> expected = {2, 3, 4, 5, 6, 7, 8, 9};
  EXPECT_EQ(SlotProbe<EUniqueIDMapImplBase>::Slots(), expected);
  EXPECT_EQ(SlotProbe<Map>::Slots(), expected);
  EXPECT_EQ(VirtualSlot(&EUniqueIDMapImplBase::Empty), -1);
  EXPECT_TRUE(std::has_virtual_destructor_v<EUniqueIDMapImplBase>);
#else
  GTEST_SKIP() << "table layout not readable on this ABI";
#endif
}

TEST_F(EUniqueIDMapTest, AddOwnedItemAssignsIdentifiersAndTheParent) {
  Map map(&m_OwnerA);
  EXPECT_EQ(map.GetParent(), &m_OwnerA);
  EXPECT_EQ(map.size(), 0u);
  auto* const first = new CountedItem(10);
  const auto it = map.AddOwnedItem(first);
  EXPECT_EQ(it->first, 1u);
  EXPECT_EQ(map.GetItem(it), first);
  Fill(map, {20, 30});
  EXPECT_EQ(map.size(), 3u);
  EXPECT_EQ(Entries(map, &m_OwnerA), "1:10 2:20 3:30 ");
  EXPECT_EQ(map.find(2)->first, 2u);
  EXPECT_EQ(map.GetItem(map.find(2))->GetValue(), 20u);
  EXPECT_TRUE(map.find(4) == map.end());
  EXPECT_EQ(map.GetItem(map.find(4)), nullptr);
  const Map& constMap = map;
  EXPECT_EQ(constMap.GetItem(constMap.find(3))->GetValue(), 30u);
  EXPECT_EQ(constMap.GetItem(constMap.end()), nullptr);
  EXPECT_EQ(Alive(), 3u);
}

TEST_F(EUniqueIDMapTest, DefaultParentIsNull) {
  Map map;
  EXPECT_EQ(map.GetParent(), nullptr);
  Fill(map, {1});
  EXPECT_EQ(Entries(map, nullptr), "1:1 ");
}

TEST_F(EUniqueIDMapTest, AddOwnedItemUnderAGivenIdentifier) {
  Map map(&m_OwnerA);
  const auto it = map.AddOwnedItem(10, new CountedItem(5));
  EXPECT_EQ(it->first, 10u);
  Fill(map, {6});  // the counter follows the reserved identifier
  EXPECT_EQ(Entries(map, &m_OwnerA), "10:5 11:6 ");
}

TEST_F(EUniqueIDMapTest, AddOwnedItemUnderAnIdentifierInUseDestroysTheItem) {
  Map map(&m_OwnerA);
  Fill(map, {5, 6});
  EXPECT_TRUE(map.AddOwnedItem(2, new CountedItem(7)) == map.end());
  EXPECT_TRUE(map.AddOwnedItem(0, new CountedItem(8)) == map.end());
  EXPECT_EQ(Entries(map, &m_OwnerA), "1:5 2:6 ");
  EXPECT_EQ(Alive(), 2u);
  EXPECT_EQ(CountedItem::Made(), 4);
}

TEST_F(EUniqueIDMapTest, NullItemIsNotStored) {
  Map map(&m_OwnerA);
  EXPECT_TRUE(map.AddOwnedItem(nullptr) == map.end());
  EXPECT_TRUE(map.AddOwnedItem(4, nullptr) == map.end());
  EXPECT_EQ(map.size(), 0u);
  EXPECT_EQ(BytesOf(map.GetIdGenerator()), "17829889 0 1 4294967295 0 ");
  Fill(map, {1});
  EXPECT_EQ(Entries(map, &m_OwnerA), "1:1 ");  // no identifier was used up
}

TEST_F(EUniqueIDMapTest, ExhaustedGeneratorStoresUnderZeroOnce) {
  Map map(&m_OwnerA);
  EUniqueIDGenerator full;
  ReadFrom("17829889 0 5 5 0 ", full);
  ASSERT_TRUE(full.ReserveID(5));
  map.SetIdGenerator(full);
  Fill(map, {1});
  EXPECT_EQ(Entries(map, &m_OwnerA), "0:1 ");
  // Identifier 0 is a key already: the entry there stays and the new item, which the map owns,
  // is destroyed.
  auto* const second = new CountedItem(2);
  const auto it = map.AddOwnedItem(second);
  EXPECT_EQ(it->first, 0u);
  EXPECT_EQ(map.GetItem(it)->GetValue(), 1u);
  EXPECT_EQ(Alive(), 1u);
}

TEST_F(EUniqueIDMapTest, RemoveItemReleasesTheIdentifierAndDestroysTheItem) {
  Map map(&m_OwnerA);
  Fill(map, {5, 6, 7});
  EXPECT_FALSE(map.RemoveItem(map.end()));
  EXPECT_TRUE(map.RemoveItem(map.find(2)));
  EXPECT_EQ(Entries(map, &m_OwnerA), "1:5 3:7 ");
  EXPECT_EQ(Alive(), 2u);
  EXPECT_TRUE(map.AddOwnedItem(2, new CountedItem(8)) != map.end());
  EXPECT_EQ(Entries(map, &m_OwnerA), "1:5 2:8 3:7 ");
}

TEST_F(EUniqueIDMapTest, RemoveItemReleasesTheIdentifierTheItemHolds) {
  Map map(&m_OwnerA);
  Fill(map, {5, 6});
  map.GetItem(map.find(2))->SetLocalId(1);
  EXPECT_TRUE(map.RemoveItem(map.find(2)));
  // Identifier 1 was released although entry 1 still holds an item; 2 stays taken.
  EXPECT_EQ(BytesOf(map.GetIdGenerator()), "17829889 2 1 1 3 4294967295 0 ");
  EXPECT_TRUE(map.AddOwnedItem(2, new CountedItem(9)) == map.end());
}

TEST_F(EUniqueIDMapTest, EmptyDestroysEveryItemAndResetsTheIdentifiers) {
  Map map(&m_OwnerA);
  Fill(map, {5, 6, 7});
  map.Empty();
  EXPECT_EQ(map.size(), 0u);
  EXPECT_EQ(Alive(), 0u);
  Fill(map, {8});
  EXPECT_EQ(Entries(map, &m_OwnerA), "1:8 ");
}

TEST_F(EUniqueIDMapTest, DestructorDestroysEveryItem) {
  {
    Map map(&m_OwnerA);
    Fill(map, {5, 6, 7});
    map.AddOwnedItem(100, new CountedItem(8));
    EXPECT_EQ(Alive(), 4u);
  }
  EXPECT_EQ(Alive(), 0u);
  EXPECT_EQ(CountedItem::Made(), 4);
}

TEST_F(EUniqueIDMapTest, AssignmentCopiesDeeplyUnderTheTargetsParent) {
  Map source(&m_OwnerA);
  Fill(source, {5, 6, 7});
  source.RemoveItem(source.find(2));
  Map target(&m_OwnerB);
  Fill(target, {1, 2});
  target = source;
  EXPECT_EQ(target.GetParent(), &m_OwnerB);
  EXPECT_EQ(Entries(target, &m_OwnerB), "1:5 3:7 ");
  EXPECT_EQ(Entries(source, &m_OwnerA), "1:5 3:7 ");
  EXPECT_EQ(BytesOf(target.GetIdGenerator()), BytesOf(source.GetIdGenerator()));
  for (const CountedItem* item : ItemsOf(target))
    EXPECT_EQ(ItemsOf(source).count(item), 0u);
  EXPECT_EQ(Alive(), 4u);  // the target's two old items are gone, two copies made

  target = target;
  EXPECT_EQ(Entries(target, &m_OwnerB), "1:5 3:7 ");
  EXPECT_EQ(Alive(), 4u);
}

TEST_F(EUniqueIDMapTest, CopyConstructionSharesTheParentNotTheItems) {
  Map source(&m_OwnerA);
  Fill(source, {5, 6});
  const Map copy(source);
  EXPECT_EQ(copy.GetParent(), &m_OwnerA);
  EXPECT_EQ(Entries(copy, &m_OwnerA), "1:5 2:6 ");
  for (const CountedItem* item : ItemsOf(copy))
    EXPECT_EQ(ItemsOf(source).count(item), 0u);
  source.Empty();
  EXPECT_EQ(Entries(copy, &m_OwnerA), "1:5 2:6 ");
  EXPECT_EQ(Alive(), 2u);
}

TEST_F(EUniqueIDMapTest, SwapExchangesItemsAndRepointsThem) {
  Map a(&m_OwnerA);
  Fill(a, {5, 6});
  Map b(&m_OwnerB);
  Fill(b, {7});
  b.AddOwnedItem(40, new CountedItem(8));
  const auto itemsOfA = ItemsOf(a);
  a.Swap(b);
  EXPECT_EQ(a.GetParent(), &m_OwnerA);
  EXPECT_EQ(b.GetParent(), &m_OwnerB);
  EXPECT_EQ(Entries(a, &m_OwnerA), "1:7 40:8 ");
  EXPECT_EQ(Entries(b, &m_OwnerB), "1:5 2:6 ");
  EXPECT_EQ(ItemsOf(b), itemsOfA);  // the items moved, nothing was copied
  EXPECT_EQ(CountedItem::Made(), 4);
  EXPECT_EQ(a.AddOwnedItem(new CountedItem(9))->first, 41u);  // the generators moved too
  EXPECT_EQ(b.AddOwnedItem(new CountedItem(9))->first, 3u);
}

TEST_F(EUniqueIDMapTest, SetParentRepointsEveryItem) {
  Map map(&m_OwnerA);
  Fill(map, {5, 6});
  map.SetParent(&m_OwnerB);
  EXPECT_EQ(map.GetParent(), &m_OwnerB);
  EXPECT_EQ(Entries(map, &m_OwnerB), "1:5 2:6 ");
  map.GetItem(map.begin())->SetParent(nullptr);
  map.SetItemParents();
  EXPECT_EQ(Entries(map, &m_OwnerB), "1:5 2:6 ");
}

TEST_F(EUniqueIDMapTest, UnshareChildrenReplacesEveryItemByACopyAndLeavesTheOriginals) {
  Map map(&m_OwnerA);
  Fill(map, {5, 6});
  map.GetItem(map.begin())->SetParent(nullptr);
  const std::set<const CountedItem*> originals = ItemsOf(map);
  map.UnshareChildren();
  EXPECT_EQ(Entries(map, &m_OwnerA), "1:5 2:6 ");
  for (const CountedItem* item : ItemsOf(map)) {
    EXPECT_EQ(item->GetCopies(), 1);
    EXPECT_EQ(originals.count(item), 0u);
  }
  // The replaced items are the caller's: alive and untouched.
  EXPECT_EQ(Alive(), 4u);
  EXPECT_EQ(CountedItem::Made(), 4);
  std::set<std::string> left;
  for (const CountedItem* original : originals) {
    left.insert(std::to_string(original->GetLocalId()) + ":" +
                std::to_string(original->GetValue()) +
                (original->GetParent() == nullptr ? " under none" : " under A"));
  }
  EXPECT_EQ(left, (std::set<std::string>{"1:5 under none", "2:6 under A"}));
  for (const CountedItem* original : originals)
    delete original;
  EXPECT_EQ(Alive(), 2u);
}

TEST_F(EUniqueIDMapTest, AssignmentWhoseCopyThrowsKeepsTheCopiesMadeAndLeaksNothing) {
  Map source(&m_OwnerA);
  Fill(source, {5, 6, 7});
  Map target(&m_OwnerB);
  Fill(target, {1});
  CountedItem::ThrowOnCopying() = 6;
  EXPECT_THROW(target = source, std::runtime_error);
  EXPECT_EQ(Entries(target, &m_OwnerB), "1:5 ");
  EXPECT_EQ(Entries(source, &m_OwnerA), "1:5 2:6 3:7 ");
  EXPECT_EQ(Alive(), 4u);
  CountedItem::ThrowOnCopying() = 0;
  target = source;
  EXPECT_EQ(Entries(target, &m_OwnerB), "1:5 2:6 3:7 ");
  EXPECT_EQ(Alive(), 6u);
}

TEST_F(EUniqueIDMapTest, GeneratorCanBeReadAndReplaced) {
  Map map(&m_OwnerA);
  Fill(map, {5});
  EUniqueIDGenerator generator;
  ReadFrom("17829889 8 9 4294967295 0 ", generator);
  map.SetIdGenerator(generator);
  generator.Empty();  // the map holds a copy
  EXPECT_EQ(BytesOf(map.GetIdGenerator()), "17829889 8 9 4294967295 0 ");
  Fill(map, {6});
  EXPECT_EQ(Entries(map, &m_OwnerA), "1:5 9:6 ");
}

TEST_F(EUniqueIDMapTest, ArchiveBytes) {
  Map map(&m_OwnerA);
  EXPECT_EQ(BytesOf(map), "17829889 0 17829889 0 1 4294967295 0 ");
  Fill(map, {5, 6, 7});
  map.RemoveItem(map.find(2));
  EXPECT_EQ(BytesOf(map), "17829889 2 1 77 5 3 77 7 17829889 3 2 2 4 4294967295 0 ");
}

TEST_F(EUniqueIDMapTest, ArchiveRoundTripIntoAPrefilledMap) {
  Map source(&m_OwnerA);
  Fill(source, {5, 6, 7});
  source.RemoveItem(source.find(2));
  const std::string bytes = BytesOf(source);
  Map read(&m_OwnerB);
  Fill(read, {1, 2, 3, 4});
  ReadFrom(bytes, read);
  EXPECT_EQ(Entries(read, &m_OwnerB), "1:5 3:7 ");
  EXPECT_EQ(BytesOf(read), bytes);
  EXPECT_EQ(Alive(), 4u);
  EXPECT_EQ(read.AddOwnedItem(new CountedItem(8))->first, 4u);
}

TEST_F(EUniqueIDMapTest, ReadGeneratorReplacesTheIdentifiersTheItemsTook) {
  Map map(&m_OwnerA);
  ReadFrom("17829889 1 6 77 5 17829889 20 30 4294967295 0 ", map);
  EXPECT_EQ(Entries(map, &m_OwnerA), "6:5 ");
  EXPECT_EQ(BytesOf(map.GetIdGenerator()), "17829889 20 30 4294967295 0 ");
}

TEST_F(EUniqueIDMapTest, ReadDropsItemsUnderIdentifiersInUseOrZero) {
  Map map(&m_OwnerA);
  ReadFrom("17829889 3 4 77 5 4 77 6 0 77 7 17829889 4 1 3 5 4294967295 0 ", map);
  EXPECT_EQ(Entries(map, &m_OwnerA), "4:5 ");
  EXPECT_EQ(CountedItem::Made(), 3);
  EXPECT_EQ(Alive(), 1u);
}

TEST_F(EUniqueIDMapTest, ReadWithHostileCounts) {
  struct Case {
    const char* bytes;
    const char* entries;
    const char* generator;
    int made;
  };
  const Case cases[] = {
      // A count far beyond the data: the items there are read, and the identifiers they took
      // stay, since the stream has no generator after them.
      {"17829889 2147483647 1 77 5 2 77 6 ", "1:5 2:6 ", "17829889 2 3 4294967295 0 ", 2},
      // The same with a count that a signed int sees as negative: no items.
      {"17829889 4294967295 17829889 5 6 9 0 ", "", "17829889 5 6 9 0 ", 0},
      {"17829889 -3 17829889 5 6 9 0 ", "", "17829889 5 6 9 0 ", 0},
      {"17829889 0 17829889 5 6 9 0 ", "", "17829889 5 6 9 0 ", 0},
      // Ends inside an item: the item keeps what was there.
      {"17829889 3 1 77 5 2 77", "1:5 2:0 ", "17829889 2 3 4294967295 0 ", 2},
      {"17829889 3", "", "17829889 0 1 4294967295 0 ", 0},
  };
  for (const Case& c : cases) {
    SetUp();
    {
      Map map(&m_OwnerA);
      ReadFrom(c.bytes, map);
      EXPECT_EQ(Entries(map, &m_OwnerA), c.entries) << c.bytes;
      EXPECT_EQ(BytesOf(map.GetIdGenerator()), c.generator) << c.bytes;
      EXPECT_EQ(CountedItem::Made(), c.made) << c.bytes;
    }
    EXPECT_EQ(Alive(), 0u) << c.bytes;
  }
}

TEST_F(EUniqueIDMapTest, ReadWithACountBeyondTheItemsEndsInTheItemsReport) {
  // The count claims three items; the generator that follows the one item is read as a second.
  ExpectSerializeError(
      [] {
        Map map;
        ReadFrom("17829889 3 1 77 5 17829889 0 1 4294967295 0 ", map);
      },
      "test/countedItem", 7, "CountedItem::SerializeIn");
  // The stream ends after an identifier: the item there finds no signature.
  ExpectSerializeError(
      [] {
        Map map;
        ReadFrom("17829889 3 1 77 5 2 ", map);
      },
      "test/countedItem", 7, "CountedItem::SerializeIn");
}

TEST_F(EUniqueIDMapTest, WrongSignatureEndsTheProcess) {
  ExpectSerializeError(
      [] {
        Map map;
        ReadFrom("17829890 0 17829889 0 1 4294967295 0 ", map);
      },
      "common/include/eUniqueIDMap", 472, "EUniqueIDMap<MapItem, ParentPType>::SerializeIn");
}

TEST_F(EUniqueIDMapTest, WrongGeneratorSignatureEndsTheProcess) {
  ExpectSerializeError(
      [] {
        Map map;
        ReadFrom("17829889 0 17829890 0 1 4294967295 0 ", map);
      },
      "x86_64/common/ehal/eUniqueIDGenerator", 101, "EUniqueIDGenerator::SerializeIn");
}

TEST_F(EUniqueIDMapTest, ReadEmptiesTheMapBeforeCheckingTheSignature) {
  ScopedThrowingSerializeErrors throwing;
  Map map(&m_OwnerA);
  Fill(map, {5, 6});
  EXPECT_THROW(ReadFrom("1 ", map), SerializeErrorThrown);
  EXPECT_EQ(map.size(), 0u);
  EXPECT_EQ(Alive(), 0u);
}

TEST_F(EUniqueIDMapTest, ItemThatFailsToReadIsNotLeaked) {
  ScopedThrowingSerializeErrors throwing;
  Map map(&m_OwnerA);
  EXPECT_THROW(ReadFrom("17829889 2 1 77 5 2 78 6 ", map), SerializeErrorThrown);
  EXPECT_EQ(Entries(map, &m_OwnerA), "1:5 ");
  EXPECT_EQ(CountedItem::Made(), 2);
}

}  // namespace
