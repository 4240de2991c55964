// EStringList: an ordered list of strings (duplicates allowed, insertion order kept) with an
// archive form. Positions stay valid while items are added.
#pragma once

#include <list>
#include <string>

#include "eRecord.h"

class EStringList : public ERecord<EStringList> {
 public:
  using Position = std::list<std::string>::const_iterator;

  EStringList() = default;
  EStringList(const EStringList& other);
  EStringList& operator=(const EStringList& other);
  ~EStringList() { Empty(); }

  // Replaces the items by copies of the other's (no-op on self).
  void Copy(const EStringList& other);
  // Appends one item at the end.
  void Add(const std::string& text);
  void Add(const char* text);
  void Empty();
  unsigned int GetCount() const;

  Position GetHeadPosition() const { return m_Items.begin(); }
  Position GetEndPosition() const { return m_Items.end(); }
  // The item at `position` and advances it; null at the end position.
  const char* GetNext(Position& position) const;
  // The first item, or null when the list is empty.
  const char* GetHeadItem() const;
  const char* GetFirst() const { return GetHeadItem(); }
  // All items concatenated in order, without separators.
  std::string GetString() const;

  // The archive form, in eStringList.cpp; the reader appends the items read to the list (it is
  // not emptied first).
  struct Schema;

 private:
  std::list<std::string> m_Items;
};

extern template class ERecord<EStringList>;
