// EMultiComponentId: several sibling components named at once, a common prefix path plus a list
// of leaf components; each leaf completes the prefix to one full identifier, in leaf order.
#pragma once

#include <vector>

#include "eComponentId.h"
#include "eRecord.h"

class EMultiComponentId : public ERecord<EMultiComponentId> {
 public:
  EMultiComponentId() = default;
  EMultiComponentId(const std::vector<unsigned int>& id) : m_Id(id) {}
  EMultiComponentId(const std::vector<unsigned int>& id, const std::vector<unsigned int>& leaves)
      : m_Id(id), m_Leaves(leaves) {}
  EMultiComponentId(const EComponentId& id) : m_Id(id.GetId()) {}
  EMultiComponentId(const EComponentId& id, const std::vector<unsigned int>& leaves)
      : m_Id(id.GetId()), m_Leaves(leaves) {}
  EMultiComponentId(const EMultiComponentId& other) = default;
  EMultiComponentId& operator=(const EMultiComponentId& other) = default;

  void Copy(const EMultiComponentId& other) { *this = other; }

  // Replace the prefix.
  void SetId(const std::vector<unsigned int>& id) { m_Id = id; }
  void SetId(const EComponentId& id) { m_Id = id.GetId(); }
  std::vector<unsigned int> GetId() const { return m_Id; }
  void GetId(std::vector<unsigned int>& id) const { id = m_Id; }
  void GetId(EComponentId& id) const { id.SetId(m_Id); }
  // Sets `id` to prefix + leaves[index] and returns true; false (and `id` unchanged) when the
  // index is not below the number of leaves.
  bool GetId(EComponentId& id, unsigned int index) const;

  std::vector<unsigned int> GetLeaves() const { return m_Leaves; }
  void GetLeaves(std::vector<unsigned int>& leaves) const { leaves = m_Leaves; }
  void SetLeaves(const std::vector<unsigned int>& leaves) { m_Leaves = leaves; }
  // Appends a leaf without any check.
  void AddLeaf(unsigned int leaf) { m_Leaves.push_back(leaf); }

  // The number of leaves.
  unsigned int GetNumberOfIds() const { return static_cast<unsigned int>(m_Leaves.size()); }
  // Empties both the prefix and the leaves.
  void ClearAllIds();

  // Adds the component of `id` one level below the prefix as a leaf (an empty prefix is first
  // taken from `id` without its last component). False when `id` leaves the prefix; an `id` that
  // ends at or above the prefix, or whose leaf would be 0, is accepted and adds nothing.
  bool AddId(const EComponentId& id);

  bool operator==(const EMultiComponentId& other) const;

  struct Schema;  // the archive form, in eMultiComponentId.cpp

 private:
  std::vector<unsigned int> m_Id;
  std::vector<unsigned int> m_Leaves;
};

extern template class ERecord<EMultiComponentId>;
