#include "eComponentId.h"

#include <algorithm>

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;

struct EComponentId::Schema {
  // A record read starts empty.
  static constexpr auto kBeforeRead = &EComponentId::Empty;
  static constexpr auto kFields = std::make_tuple(Field("Components", &EComponentId::m_Components));
  static constexpr Layout kLayouts[] = {{0x18111111}};
  // The report deliberately names another class's reader; receivers match on this text.
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eComponentId", 235,
                                              "EBGPAttribute::SerializeIn"};
};

EComponentId& EComponentId::operator=(const std::vector<unsigned int>& components) {
  m_Components = components;
  return *this;
}

unsigned int EComponentId::operator[](unsigned long index) const {
  return index < m_Components.size() ? m_Components[index] : 0;
}

EComponentId& EComponentId::operator+=(unsigned int component) {
  AddMember(component);
  return *this;
}

EComponentId EComponentId::operator+(unsigned int component) const {
  EComponentId result(*this);
  result.AddMember(component);
  return result;
}

bool EComponentId::operator<(const std::vector<unsigned int>& components) const {
  if (m_Components.size() != components.size()) return m_Components.size() < components.size();
  return m_Components < components;
}

unsigned int EComponentId::IdMatching(unsigned int value, unsigned int index) const {
  if (index >= m_Components.size()) return 1;
  if (m_Components[index] != value) return 0;
  return index + 1 == m_Components.size() ? 2 : 3;
}

unsigned int EComponentId::IdMatching(const EComponentId& other) const {
  const std::size_t common = std::min(m_Components.size(), other.m_Components.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (m_Components[i] != other.m_Components[i]) return 0;
  }
  if (m_Components.size() == other.m_Components.size()) return 2;
  return m_Components.size() < other.m_Components.size() ? 1 : 3;
}

std::string EComponentId::ToString() const {
  std::string text;
  for (std::size_t i = 0; i < m_Components.size(); ++i) {
    if (i > 0) text += '.';
    text += std::to_string(m_Components[i]);
  }
  return text;
}

template class ERecord<EComponentId>;
