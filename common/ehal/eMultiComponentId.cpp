#include "eMultiComponentId.h"

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;
using eHal::detail::SameFields;

struct EMultiComponentId::Schema {
  static constexpr auto kFields = std::make_tuple(Field("Id", &EMultiComponentId::m_Id),
                                                  Field("Leaves", &EMultiComponentId::m_Leaves));
  // The same signature as a single identifier; the reader must know which one it expects.
  static constexpr Layout kLayouts[] = {{0x18111111}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eMultiComponentId", 261,
                                              "EMultiComponentId::SerializeIn"};
};

namespace {
// The leaf value that is never added (the reserved "no identifier" value).
constexpr unsigned int kNoLeaf = 0;
}  // namespace

bool EMultiComponentId::GetId(EComponentId& id, unsigned int index) const {
  if (index >= m_Leaves.size()) return false;
  std::vector<unsigned int> components = m_Id;
  components.push_back(m_Leaves[index]);
  id.SetId(components);
  return true;
}

void EMultiComponentId::ClearAllIds() {
  m_Id.clear();
  m_Leaves.clear();
}

bool EMultiComponentId::AddId(const EComponentId& id) {
  unsigned int leaf = kNoLeaf;
  const unsigned long size = id.GetIdSize();
  if (m_Id.empty()) {
    if (size > 0) {
      std::vector<unsigned int> prefix = id.GetId();
      leaf = prefix.back();
      prefix.pop_back();
      m_Id = prefix;
    }
  } else {
    // Only the component right below the prefix counts; deeper components are ignored.
    for (std::size_t i = 0; i < m_Id.size(); ++i) {
      if (i >= size) return true;
      if (id[i] != m_Id[i]) return false;
    }
    leaf = id[m_Id.size()];
  }
  if (leaf != kNoLeaf) m_Leaves.push_back(leaf);
  return true;
}

bool EMultiComponentId::operator==(const EMultiComponentId& other) const {
  return SameFields<Schema>(*this, other);
}

template class ERecord<EMultiComponentId>;
