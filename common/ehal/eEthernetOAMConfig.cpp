#include "eEthernetOAMConfig.h"

#include <ostream>
#include <sstream>

#include "eArchive.h"
#include "eRecordText.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x1586192;

const char* const kRequestTypeTexts[] = {"Initial", "Configure", "UnConfigure", "EnableLoopback",
                                         "DisableLoopback"};
const char* const kReturnCodeTexts[] = {"Success", "Fail"};
}  // namespace

void EEthernetOAMConfig::Swap(EEthernetOAMConfig& other) {
  auto mine = Fields(*this);
  auto theirs = Fields(other);
  mine.swap(theirs);
}

bool EEthernetOAMConfig::operator==(const EEthernetOAMConfig& other) const {
  return Fields(*this) == Fields(other);
}

const char* EEthernetOAMConfig::RequestTypeToString() const {
  return eRecordText::EnumText(m_RequestType, kRequestTypeTexts);
}

const char* EEthernetOAMConfig::ReturnCodeToString() const {
  return eRecordText::EnumText(m_ReturnCode, kReturnCodeTexts);
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
  eRecordText::WriteHead(text, RequestTypeToString(), ReturnCodeToString());
  if (m_RequestType == kConfigure) WriteInformation(text);
  return text.str();
}

std::string EEthernetOAMConfig::ToStringFull() const {
  std::ostringstream text;
  eRecordText::WriteHead(text, RequestTypeToString(), ReturnCodeToString());
  WriteInformation(text);
  return text.str();
}

void EEthernetOAMConfig::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive.WriteUnsignedInt(m_RequestType);
  archive.WriteUnsignedInt(m_ReturnCode);
  archive << m_SrcMac << m_OAMCapability << m_MaxPDUSize << m_OrgUniqueIdentifier
          << m_VendorSpecificInfo << m_MaxIdleTimer << m_CustomTLV;
}

void EEthernetOAMConfig::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eEthernetOAMConfig", 147,
                             "eHal::EEthernetOAMConfig::SerializeIn");
  }
  const unsigned int requestType = archive.ReadUnsignedInt();
  const unsigned int returnCode = archive.ReadUnsignedInt();
  m_RequestType = static_cast<eRequestType>(requestType);
  m_ReturnCode = static_cast<eReturnCode>(returnCode);
  archive >> m_SrcMac >> m_OAMCapability >> m_MaxPDUSize >> m_OrgUniqueIdentifier >>
      m_VendorSpecificInfo >> m_MaxIdleTimer >> m_CustomTLV;
}

EArchive& operator<<(EArchive& archive, const EEthernetOAMConfig& config) {
  config.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EEthernetOAMConfig& config) {
  config.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
