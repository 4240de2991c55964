// EUniqueIDMap<MapItem, ParentPType>: an owning map from unique 32-bit identifiers to heap items,
// each of which knows its identifier and points at the map's owner (the parent). Copies are deep.
// The untyped work is EUniqueIDMapImplBase's; this template supplies the item operations.
//
// MapItem needs default and copy construction, `unsigned int GetLocalId() const`,
// `void SetLocalId(unsigned int)`, `void SetParent(ParentPType)`,
// `void SerializeOut(EArchive&) const` and `void SerializeIn(EArchive&)`; a MapItem that is a
// record (with `Describe`) makes the map describable too.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "eRecord.h"
#include "eRecordDescription.h"
#include "eUniqueIDMapImplBase.h"

namespace eHal::detail {
// True when T describes itself as a record does (`Describe(visitor, name) const`).
template <typename T, typename = void>
struct IsDescribable : std::false_type {};
template <typename T>
struct IsDescribable<T, std::void_t<decltype(std::declval<const T&>().Describe(
                            std::declval<ERecordVisitor&>(), ""))>> : std::true_type {};
}  // namespace eHal::detail

template <typename MapItem, typename ParentPType>
class EUniqueIDMap : public EUniqueIDMapImplBase {
 public:
  explicit EUniqueIDMap(ParentPType parent = ParentPType()) : m_Parent(parent) {}
  // Copies of the other's items, under the other's parent, which the copy shares.
  EUniqueIDMap(const EUniqueIDMap& other) : EUniqueIDMapImplBase(), m_Parent(other.m_Parent) {
    EUniqueIDMapImplBase::operator=(other);
  }
  // Copies of the other's items, pointed at this map's own parent, which stays.
  EUniqueIDMap& operator=(const EUniqueIDMap& other) {
    EUniqueIDMapImplBase::operator=(other);
    return *this;
  }
  // Destroys every item.
  ~EUniqueIDMap() override { Empty(); }

  // Points the map and every item at `parent`.
  void SetParent(ParentPType parent) {
    m_Parent = parent;
    SetItemParents();
  }
  ParentPType GetParent() const { return m_Parent; }

  // The item of an entry; null for end().
  MapItem* GetItem(iterator it) { return static_cast<MapItem*>(EUniqueIDMapImplBase::GetItem(it)); }
  const MapItem* GetItem(const_iterator it) const {
    return static_cast<const MapItem*>(EUniqueIDMapImplBase::GetItem(it));
  }

  // Takes ownership of a heap item: see EUniqueIDMapImplBase::AddOwnedItem.
  iterator AddOwnedItem(MapItem* item) { return EUniqueIDMapImplBase::AddOwnedItem(item); }
  iterator AddOwnedItem(unsigned int id, MapItem* item) {
    return EUniqueIDMapImplBase::AddOwnedItem(id, item);
  }

  // Takes ownership of a heap item under `id`, or under a new identifier when `id` is 0, and
  // returns it; null when the map destroys it instead (the identifier is in use; see
  // AddOwnedItem).
  MapItem* AdoptItem(std::unique_ptr<MapItem> item, unsigned int id = 0) {
    const std::size_t before = size();
    const iterator entry =
        id == 0 ? AddOwnedItem(item.release()) : AddOwnedItem(id, item.release());
    return size() > before ? GetItem(entry) : nullptr;
  }

  // Swap with a map of the same item type only.
  void Swap(EUniqueIDMap& other) { EUniqueIDMapImplBase::Swap(other); }

  // What the map holds, without an instance: its entries carry the item type's description.
  static const ERecordDescription& Description() {
    static const ERecordDescription description = DescriptionWithEntries(&Entry);
    return description;
  }

 protected:
  unsigned int GetItemId(const void* item) const override { return Cast(item)->GetLocalId(); }
  void SetItemId(void* item, unsigned int id) const override { Cast(item)->SetLocalId(id); }
  void SerializeInItem(void* item, EArchive& archive) const override {
    Cast(item)->SerializeIn(archive);
  }
  void* CloneItem(const void* item) const override { return new MapItem(*Cast(item)); }
  void* CreateItem(EArchive& archive) const override {
    auto item = std::make_unique<MapItem>();
    SerializeInItem(item.get(), archive);
    return item.release();
  }
  void SerializeOutItem(const void* item, EArchive& archive) const override {
    Cast(item)->SerializeOut(archive);
  }
  void DeleteItem(void* item) const override { delete Cast(item); }
  void SetItemParent(void* item) const override { Cast(item)->SetParent(m_Parent); }
  // An item type without a description of its own is described as nothing.
  void DescribeItem(const void* item, ERecordVisitor& visitor) const override {
    if constexpr (eHal::detail::IsDescribable<MapItem>::value) Cast(item)->Describe(visitor, "");
  }

 private:
  static const ERecordDescription& Entry() {
    if constexpr (eHal::detail::IsDescribable<MapItem>::value) {
      static const EValueType item = EValueType::Record(&MapItem::Description);
      static const ERecordDescription entry = EntryDescription(&item);
      return entry;
    } else {
      static const ERecordDescription entry = EntryDescription(nullptr);
      return entry;
    }
  }

  static MapItem* Cast(void* item) { return static_cast<MapItem*>(item); }
  static const MapItem* Cast(const void* item) { return static_cast<const MapItem*>(item); }

  ParentPType m_Parent;
};
