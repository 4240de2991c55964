#include "eMultiComponentId.h"

#include "eArchive.h"
#include "eRecordLayout.h"

namespace {
// The same signature as a single identifier; the reader must know which one it expects.
constexpr unsigned int kSignature = 0x18111111;
constexpr ELayoutVersion kVersions[] = {{kSignature, 0}};
constexpr ESerializeErrorSite kErrorSite = {"x86_64/common/ehal/eMultiComponentId", 261,
                                            "EMultiComponentId::SerializeIn"};
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
  return m_Id == other.m_Id && m_Leaves == other.m_Leaves;
}

template <typename Self, typename Visit>
void EMultiComponentId::Fields(Self& self, Visit& field) {
  field.template Field<std::vector<unsigned int>>(self.m_Id);
  field.template Field<std::vector<unsigned int>>(self.m_Leaves);
}

void EMultiComponentId::SerializeOut(EArchive& archive) const {
  WriteRecord(archive, kSignature, [this](auto& field) { Fields(*this, field); });
}

void EMultiComponentId::SerializeIn(EArchive& archive) {
  ReadRecord(archive, kVersions, kErrorSite, [this](auto& field) { Fields(*this, field); });
}

EArchive& operator<<(EArchive& archive, const EMultiComponentId& id) {
  id.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EMultiComponentId& id) {
  id.SerializeIn(archive);
  return archive;
}
