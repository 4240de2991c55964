#include "ePOSLinkLayerSettings.h"

#include <algorithm>
#include <sstream>

#include "eArchive.h"
#include "eRecordText.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x11334357;          // every port
constexpr unsigned int kSignaturePortZero = 0x11334356;  // port 0 only

const char* const kLinkTypeTexts[] = {"Cisco HDLC",       "PPP",   "FrameRelay",
                                      "Cisco FrameRelay", "Other", "SRP"};
}  // namespace

void EPOSLinkLayerSettings::Empty() {
  std::fill(std::begin(m_LinkType), std::end(m_LinkType), kOther);
  std::fill(std::begin(m_TxCRCSize), std::end(m_TxCRCSize), kCRC32);
  std::fill(std::begin(m_RxCRCSize), std::end(m_RxCRCSize), kCRC32);
}

void EPOSLinkLayerSettings::Copy(const EPOSLinkLayerSettings& other) {
  if (this == &other) return;
  std::copy(std::begin(other.m_LinkType), std::end(other.m_LinkType), m_LinkType);
  std::copy(std::begin(other.m_TxCRCSize), std::end(other.m_TxCRCSize), m_TxCRCSize);
  std::copy(std::begin(other.m_RxCRCSize), std::end(other.m_RxCRCSize), m_RxCRCSize);
}

void EPOSLinkLayerSettings::Copy(const EPOSLinkLayerSettings* other) {
  if (other != nullptr) Copy(*other);
}

unsigned int EPOSLinkLayerSettings::GetCRCSizeInBits(unsigned int code) const {
  switch (code) {
    case kCRC16:
      return 16;
    case kCRC32:
      return 32;
    default:
      return 0;
  }
}

bool EPOSLinkLayerSettings::IsEqual(const EPOSLinkLayerSettings& other) const {
  return std::equal(std::begin(m_LinkType), std::end(m_LinkType), other.m_LinkType) &&
         std::equal(std::begin(m_TxCRCSize), std::end(m_TxCRCSize), other.m_TxCRCSize) &&
         std::equal(std::begin(m_RxCRCSize), std::end(m_RxCRCSize), other.m_RxCRCSize);
}

std::string EPOSLinkLayerSettings::GetLogString(unsigned int port) const {
  std::ostringstream text;
  text << "Encapsulation:" << eRecordText::EnumText(m_LinkType[port], kLinkTypeTexts)
       << " TxCRCSize:" << GetTxCRCSizeInBits(port) << " RxCRCSize:" << GetRxCRCSizeInBits(port)
       << "\n";
  return text.str();
}

void EPOSLinkLayerSettings::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  for (unsigned int port = kPortCount; port-- > 0;)
    archive << m_LinkType[port] << m_TxCRCSize[port] << m_RxCRCSize[port];
}

void EPOSLinkLayerSettings::SerializeIn(EArchive& archive) {
  unsigned int portsToRead = 0;
  switch (archive.ReadUnsignedInt()) {
    case kSignature:
      portsToRead = kPortCount;
      break;
    case kSignaturePortZero:
      portsToRead = 1;
      break;
    default:
      EArchive::SerializeError("x86_64/common/ehal/ePOSLinkLayerSettings", 139,
                               "eHal::EProtocolName::SerializeIn");
  }
  for (unsigned int port = portsToRead; port-- > 0;)
    archive >> m_LinkType[port] >> m_TxCRCSize[port] >> m_RxCRCSize[port];
}

EArchive& operator<<(EArchive& archive, const EPOSLinkLayerSettings& settings) {
  settings.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EPOSLinkLayerSettings& settings) {
  settings.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
