// EUniqueIDMapImplBase: the untyped core of the owning map EUniqueIDMap<MapItem, ParentPType>.
// It keeps items by identifier, owns them, assigns their identifiers through its generator and
// points them at the map's owner; the typed map supplies the item operations as virtuals.
#pragma once

#include <cstddef>
#include <map>

#include "eRecord.h"
#include "eRecordDescription.h"
#include "eUniqueIDGenerator.h"

class EArchive;
class ERecordVisitor;

class EUniqueIDMapImplBase {
 public:
  using Items = std::map<unsigned int, void*>;
  // Entries in identifier order; `it->first` is the identifier, `it->second` the item.
  using iterator = Items::iterator;
  using const_iterator = Items::const_iterator;

  // A typed map destroys its items in its own destructor (see EUniqueIDMap).
  virtual ~EUniqueIDMapImplBase() = default;

  iterator begin() { return m_Items.begin(); }
  iterator end() { return m_Items.end(); }
  const_iterator begin() const { return m_Items.begin(); }
  const_iterator end() const { return m_Items.end(); }
  std::size_t size() const { return m_Items.size(); }
  // The entry of `id`, or end().
  iterator find(unsigned int id) { return m_Items.find(id); }
  const_iterator find(unsigned int id) const { return m_Items.find(id); }

  // The item of an entry; null for end().
  void* GetItem(iterator it) { return it == m_Items.end() ? nullptr : it->second; }
  const void* GetItem(const_iterator it) const {
    return it == m_Items.end() ? nullptr : it->second;
  }

  // Takes ownership of `item` under a new identifier (0 when none is free), points it at the
  // owner and stores the identifier in it. Returns the entry of that identifier; when the
  // identifier is a key already, that entry is kept and `item` is destroyed. A null item is not
  // stored: end().
  iterator AddOwnedItem(void* item);
  // Takes ownership of `item` under `id`, as above; when `id` is in use, destroys `item` and
  // returns end().
  iterator AddOwnedItem(unsigned int id, void* item);
  // Releases the item's identifier and destroys the item; false for end().
  bool RemoveItem(iterator it);
  // Destroys every item in identifier order and empties the generator.
  void Empty();
  // Exchanges entries and generators; each item then points at its new map's owner.
  void Swap(EUniqueIDMapImplBase& other);
  // Destroys the own items and holds copies of the other's (pointed at this map's owner) and a
  // copy of its generator. No-op on self.
  EUniqueIDMapImplBase& operator=(const EUniqueIDMapImplBase& other);

  const EUniqueIDGenerator& GetIdGenerator() const { return m_IdGenerator; }
  // Replaces the generator by a copy of `generator`; the entries are not checked against it.
  void SetIdGenerator(const EUniqueIDGenerator& generator) { m_IdGenerator = generator; }
  // Replaces every item by its own copy, pointed at this map's owner, for when the map's item
  // pointers are shared with another owner (assignment takes over the other map's entries and
  // unshares them this way). The replaced items are left alone: the caller owns them and keeps or
  // destroys them. If a copy throws, the entries not yet copied are dropped (their items stay
  // the caller's) and the exception propagates.
  void UnshareChildren();
  // Points every item at this map's owner.
  void SetItemParents();

  // Signature, item count, each item's identifier and the item in identifier order, then the
  // generator.
  void SerializeOut(EArchive& archive) const;
  // Empties the map, then reads the items and the generator, which replaces the identifier state
  // the items built up. Items are read while the data lasts, whatever count the stream gives
  // (a stream that ends among them keeps the identifiers they took); an item whose identifier is
  // in use (or 0) is dropped.
  void SerializeIn(EArchive& archive);

  // Hands the map to `visitor` in its archive form: BeginRecord(name), the signature, the items
  // (each its identifier and the item's own description), the generator, EndRecord().
  void Describe(ERecordVisitor& visitor, const char* name = "") const;
  // The one layout the reader accepts, with its fields.
  static std::vector<ERecordLayout> Layouts();

  friend EArchive& operator<<(EArchive& archive, const EUniqueIDMapImplBase& map) {
    map.SerializeOut(archive);
    return archive;
  }
  friend EArchive& operator>>(EArchive& archive, EUniqueIDMapImplBase& map) {
    map.SerializeIn(archive);
    return archive;
  }

  struct Schema;  // the archive form, in eUniqueIDMapImplBase.cpp

 protected:
  EUniqueIDMapImplBase() = default;

  // The map's description, each entry described by `entry` (see EntryDescription).
  static ERecordDescription DescriptionWithEntries(const ERecordDescription& (*entry)());
  // An entry: its identifier, then the item of type `item` (none for an item that does not
  // describe itself).
  static ERecordDescription EntryDescription(const EValueType* item);
  EUniqueIDMapImplBase(const EUniqueIDMapImplBase&) = delete;

  // The item operations, in this order, implemented by the typed map.
  virtual unsigned int GetItemId(const void* item) const = 0;
  virtual void SetItemId(void* item, unsigned int id) const = 0;
  // Reads an existing item from the archive: the reading counterpart of SerializeOutItem, of
  // which CreateItem is a fresh item read. The core does not call it.
  virtual void SerializeInItem(void* item, EArchive& archive) const = 0;
  // A deep copy of the item.
  virtual void* CloneItem(const void* item) const = 0;
  // A new item read from the archive.
  virtual void* CreateItem(EArchive& archive) const = 0;
  virtual void SerializeOutItem(const void* item, EArchive& archive) const = 0;
  virtual void DeleteItem(void* item) const = 0;
  // Points the item at the map's owner.
  virtual void SetItemParent(void* item) const = 0;
  // Describes the item as the typed map's SerializeOutItem writes it.
  virtual void DescribeItem(const void* item, ERecordVisitor& visitor) const = 0;

 private:
  // Stores an item the map owns under `id`: see AddOwnedItem.
  iterator Store(unsigned int id, void* item);
  // Destroys every item and removes every entry.
  void DestroyItems();

  Items m_Items;
  EUniqueIDGenerator m_IdGenerator;
};
