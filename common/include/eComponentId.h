// EComponentId: a hierarchical component identifier, a path of unsigned 32-bit components from
// the root, printed with dots ("1.2.3" is component 3 under 1.2). The empty identifier is the
// root, or "none".
#pragma once

#include <string>
#include <vector>

#include "eRecord.h"

class EComponentId : public ERecord<EComponentId> {
 public:
  EComponentId() = default;
  EComponentId(const std::vector<unsigned int>& components) : m_Components(components) {}
  EComponentId(const EComponentId& other) = default;
  EComponentId& operator=(const EComponentId& other) = default;
  EComponentId& operator=(const std::vector<unsigned int>& components);

  void Copy(const EComponentId& other) { m_Components = other.m_Components; }
  void SetId(const std::vector<unsigned int>& components) { m_Components = components; }
  std::vector<unsigned int> GetId() const { return m_Components; }
  void GetId(std::vector<unsigned int>& components) const { components = m_Components; }

  // Number of components.
  unsigned long GetIdSize() const { return m_Components.size(); }
  // The component at `index`, or 0 when the index is not below the size.
  unsigned int operator[](unsigned long index) const;
  // Removes every component: the identifier becomes the root ("none").
  void Empty() { m_Components.clear(); }
  // True when the identifier has no components.
  bool IsEmpty() const { return m_Components.empty(); }

  // Appends one component.
  void AddMember(unsigned int component) { m_Components.push_back(component); }
  EComponentId& operator+=(unsigned int component);
  EComponentId operator+(unsigned int component) const;

  bool operator==(const EComponentId& other) const { return m_Components == other.m_Components; }
  // Shorter identifiers order first; equal lengths compare component by component.
  bool operator<(const EComponentId& other) const { return *this < other.m_Components; }
  bool operator<(const std::vector<unsigned int>& components) const;

  // Match codes, for walking a path one level at a time: 0 the component at `index` differs
  // from `value`; 1 the index is at or beyond the length; 2 `value` equals the last component;
  // 3 `value` equals the component and more components follow.
  unsigned int IdMatching(unsigned int value, unsigned int index) const;
  // Match codes against a whole identifier: 0 they differ within their common length; 1 this
  // one is a proper prefix of `other`; 2 equal; 3 `other` is a proper prefix of this one.
  unsigned int IdMatching(const EComponentId& other) const;

  // The components in decimal joined by "."; empty text for the empty identifier.
  std::string ToString() const;

  struct Schema;  // the archive form, in eComponentId.cpp

 private:
  std::vector<unsigned int> m_Components;
};

extern template class ERecord<EComponentId>;
