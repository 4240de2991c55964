#include "eEthernetOAMConfig.h"

#include <ostream>
#include <sstream>
#include <utility>

#include "eRecordSchema.h"
#include "eRecordText.h"

namespace eHal {

using detail::EnumText;
using detail::Field;
using detail::Layout;
using detail::SameFields;
using detail::WriteHead;

// The names of the values of the request and reply codes, as the text forms print them.
namespace {
const char* const kRequestTypeTexts[] = {"Initial", "Configure", "UnConfigure", "EnableLoopback",
                                         "DisableLoopback"};
const char* const kReturnCodeTexts[] = {"Success", "Fail"};
}  // namespace

struct EEthernetOAMConfig::Schema {
  using C = EEthernetOAMConfig;
  static constexpr auto kFields = std::make_tuple(
      Field("RequestType", &C::m_RequestType).Named(kRequestTypeTexts),
      Field("ReturnCode", &C::m_ReturnCode).Named(kReturnCodeTexts), Field("SrcMac", &C::m_SrcMac),
      Field("OAMCapability", &C::m_OAMCapability), Field("MaxPDUSize", &C::m_MaxPDUSize),
      Field("OrgUniqueIdentifier", &C::m_OrgUniqueIdentifier),
      Field("VendorSpecificInfo", &C::m_VendorSpecificInfo),
      Field("MaxIdleTimer", &C::m_MaxIdleTimer), Field("CustomTLV", &C::m_CustomTLV));
  static constexpr Layout kLayouts[] = {{0x1586192}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eEthernetOAMConfig", 147,
                                              "eHal::EEthernetOAMConfig::SerializeIn"};
};

void EEthernetOAMConfig::Swap(EEthernetOAMConfig& other) {
  std::swap(*this, other);
}

bool EEthernetOAMConfig::operator==(const EEthernetOAMConfig& other) const {
  return SameFields<Schema>(*this, other);
}

const char* EEthernetOAMConfig::RequestTypeToString() const {
  return EnumText(m_RequestType, kRequestTypeTexts);
}

const char* EEthernetOAMConfig::ReturnCodeToString() const {
  return EnumText(m_ReturnCode, kReturnCodeTexts);
}

void EEthernetOAMConfig::WriteInformation(std::ostream& text) const {
  // The stream stays in hexadecimal once switched, so the idle timer comes out in hex as well.
  text << ", SrcMac: " << m_SrcMac.GetAsString() << ", OAMCapability: " << m_OAMCapability
       << ", MaxPDUSize: " << m_MaxPDUSize << ", OrgUniqueIdentifier: " << std::hex
       << m_OrgUniqueIdentifier << ", VendorSpecificInfo: " << m_VendorSpecificInfo
       << ", MaxIdleTimer: " << m_MaxIdleTimer << ", CustomTLV: " << m_CustomTLV.GetAsString();
}

std::string EEthernetOAMConfig::ToString() const {
  std::ostringstream text;
  WriteHead(text, RequestTypeToString(), ReturnCodeToString());
  if (m_RequestType == kConfigure) WriteInformation(text);
  return text.str();
}

std::string EEthernetOAMConfig::ToStringFull() const {
  std::ostringstream text;
  WriteHead(text, RequestTypeToString(), ReturnCodeToString());
  WriteInformation(text);
  return text.str();
}

}  // namespace eHal

template class ERecord<eHal::EEthernetOAMConfig>;
