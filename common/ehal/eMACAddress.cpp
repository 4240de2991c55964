#include "eMACAddress.h"

#include <algorithm>

#include "eRecordSchema.h"
#include "eTextDigits.h"

using eHal::detail::Field;
using eHal::detail::JoinLowerHexPairs;
using eHal::detail::Layout;

struct EMACAddress::Schema {
  static constexpr auto kFields = std::make_tuple(Field("MACAddress", &EMACAddress::m_Address));
  static constexpr Layout kLayouts[] = {{0x17111111}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eMACAddress", 119,
                                              "EMACAddress::SerializeIn"};
};

EMACAddress::EMACAddress() {
  Empty();
}

void EMACAddress::Empty() {
  m_Address.Empty(kLength);
  m_Address.ForceSize(kLength);
}

void EMACAddress::SetMACAddress(const EBlob& address) {
  m_Address = address;
  m_Address.ForceSize(kLength);
}

void EMACAddress::SetAsString(const std::string& text) {
  std::string digits(text);
  digits.erase(std::remove(digits.begin(), digits.end(), ':'), digits.end());
  m_Address.SetHexString(digits);
}

std::string EMACAddress::GetAsString() const {
  return JoinLowerHexPairs(m_Address.GetData(), m_Address.GetSize(), ":");
}

template class ERecord<EMACAddress>;
