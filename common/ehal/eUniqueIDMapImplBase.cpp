#include "eUniqueIDMapImplBase.h"

#include <utility>

#include "eRecordSchema.h"

using eHal::detail::DescriptionOf;
using eHal::detail::Field;
using eHal::detail::kSigned;
using eHal::detail::kUnsigned;
using eHal::detail::Layout;
using eHal::detail::LayoutsOf;
using eHal::detail::NestedCodec;
using eHal::detail::Property;
using eHal::detail::ReadPastEnd;
using eHal::detail::ReadRecord;
using eHal::detail::Write;

struct EUniqueIDMapImplBase::Schema {
  // A map read starts empty.
  static constexpr auto kBeforeRead = &EUniqueIDMapImplBase::Empty;
  // The items: their count (written as unsigned 64-bit, read as a signed int), then for each in
  // identifier order its identifier and the item in the typed map's form. The reader adds each
  // item under its identifier and stops early where the data runs out.
  struct ItemList {
    static void Write(EArchive& archive, const EUniqueIDMapImplBase& map) {
      archive.WriteUnsigned64Int(map.m_Items.size());
      for (const auto& entry : map.m_Items) {
        kUnsigned.Write(archive, map.GetItemId(entry.second));
        map.SerializeOutItem(entry.second, archive);
      }
    }
    static void Read(EArchive& archive, EUniqueIDMapImplBase& map) {
      int count = 0;
      kSigned.Read(archive, count);
      for (int i = 0; i < count && !ReadPastEnd(archive); ++i) {
        const unsigned int id = archive.ReadUnsignedInt();
        if (ReadPastEnd(archive)) return;
        map.AddOwnedItem(id, map.CreateItem(archive));
      }
    }
    static void Describe(ERecordVisitor& visitor, const char* name,
                         const EUniqueIDMapImplBase& map) {
      visitor.BeginList(name, ECountWire::kUnsigned64, map.m_Items.size());
      for (const auto& entry : map.m_Items) {
        visitor.BeginRecord("");
        kUnsigned.Describe(visitor, "Id", map.GetItemId(entry.second));
        map.DescribeItem(entry.second, visitor);
        visitor.EndRecord();
      }
      visitor.EndList();
    }
    // Each entry is its identifier and the item: the typed map states the item's type (see
    // DescriptionWithEntries).
    static EValueType Type() {
      return EValueType::List(ECountWire::kUnsigned64, EValueType::Record(nullptr));
    }
  };

  // The generator in its own form, which replaces the identifier state the items built up; a
  // stream that ran out among the items keeps that state instead (the archive would start over).
  struct Generator {
    static void Write(EArchive& archive, const EUniqueIDGenerator& generator) {
      archive << generator;
    }
    static void Read(EArchive& archive, EUniqueIDGenerator& generator) {
      if (!ReadPastEnd(archive)) archive >> generator;
    }
    static void Describe(ERecordVisitor& visitor, const char* name,
                         const EUniqueIDGenerator& generator) {
      generator.Describe(visitor, name);
    }
    static EValueType Type() { return NestedCodec::TypeFor<EUniqueIDGenerator>(); }
  };

  static constexpr auto kFields =
      std::make_tuple(Property<EUniqueIDMapImplBase>("Items", ItemList{}),
                      Field("IdGenerator", &EUniqueIDMapImplBase::m_IdGenerator, Generator{}));
  static constexpr Layout kLayouts[] = {{0x1101001}};
  // The map is a template in its header, which the report names.
  static constexpr ERefusalReport kRefusal = {"common/include/eUniqueIDMap", 472,
                                              "EUniqueIDMap<MapItem, ParentPType>::SerializeIn"};
};

EUniqueIDMapImplBase::iterator EUniqueIDMapImplBase::AddOwnedItem(void* item) {
  if (item == nullptr) return m_Items.end();
  return Store(m_IdGenerator.ReserveNewID(), item);
}

EUniqueIDMapImplBase::iterator EUniqueIDMapImplBase::AddOwnedItem(unsigned int id, void* item) {
  if (item == nullptr) return m_Items.end();
  if (!m_IdGenerator.ReserveID(id)) {
    DeleteItem(item);
    return m_Items.end();
  }
  return Store(id, item);
}

EUniqueIDMapImplBase::iterator EUniqueIDMapImplBase::Store(unsigned int id, void* item) {
  SetItemParent(item);
  SetItemId(item, id);
  try {
    const auto [entry, inserted] = m_Items.try_emplace(id, item);
    // The map took ownership: an item it cannot keep is destroyed.
    if (!inserted && entry->second != item) DeleteItem(item);
    return entry;
  } catch (...) {
    DeleteItem(item);
    throw;
  }
}

bool EUniqueIDMapImplBase::RemoveItem(iterator it) {
  if (it == m_Items.end()) return false;
  if (void* const item = std::exchange(it->second, nullptr)) {
    m_IdGenerator.UnReserveID(GetItemId(item));
    DeleteItem(item);
  }
  m_Items.erase(it);
  return true;
}

void EUniqueIDMapImplBase::Empty() {
  DestroyItems();
  m_IdGenerator.Empty();
}

void EUniqueIDMapImplBase::DestroyItems() {
  for (const auto& entry : m_Items)
    DeleteItem(entry.second);
  m_Items.clear();
}

void EUniqueIDMapImplBase::Swap(EUniqueIDMapImplBase& other) {
  m_Items.swap(other.m_Items);
  m_IdGenerator.Swap(other.m_IdGenerator);
  SetItemParents();
  other.SetItemParents();
}

// The other's entries are taken over for a moment, pointers and all, then every item is
// replaced by a copy of its own.
EUniqueIDMapImplBase& EUniqueIDMapImplBase::operator=(const EUniqueIDMapImplBase& other) {
  if (this == &other) return *this;
  m_IdGenerator = other.m_IdGenerator;
  DestroyItems();
  Items shared(other.m_Items);
  m_Items.swap(shared);
  UnshareChildren();
  return *this;
}

void EUniqueIDMapImplBase::UnshareChildren() {
  for (auto it = m_Items.begin(); it != m_Items.end(); ++it) {
    try {
      it->second = CloneItem(it->second);
    } catch (...) {
      m_Items.erase(it, m_Items.end());
      throw;
    }
    SetItemParent(it->second);
  }
}

void EUniqueIDMapImplBase::SetItemParents() {
  for (const auto& entry : m_Items)
    SetItemParent(entry.second);
}

void EUniqueIDMapImplBase::SerializeOut(EArchive& archive) const {
  Write<Schema>(archive, *this);
}

void EUniqueIDMapImplBase::SerializeIn(EArchive& archive) {
  ReadRecord<Schema>(archive, *this);
}

void EUniqueIDMapImplBase::Describe(ERecordVisitor& visitor, const char* name) const {
  eHal::detail::Describe<Schema>(visitor, name, *this);
}

ERecordDescription EUniqueIDMapImplBase::DescriptionWithEntries(
    const ERecordDescription& (*entry)()) {
  ERecordDescription description = DescriptionOf<Schema>();
  description.fields.front().type.item =
      std::make_shared<const EValueType>(EValueType::Record(entry));
  return description;
}

ERecordDescription EUniqueIDMapImplBase::EntryDescription(const EValueType* item) {
  ERecordDescription entry;
  entry.fields.push_back({"Id", kUnsigned.Type()});
  if (item != nullptr) entry.fields.push_back({"", *item});
  return entry;
}

std::vector<ERecordLayout> EUniqueIDMapImplBase::Layouts() {
  return LayoutsOf<Schema>();
}
