#include "eDataCenterModeSettings.h"

#include "eArchive.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x10062911;
}  // namespace

void EDataCenterModeSettings::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << m_DataCenterModeEnabled;
}

void EDataCenterModeSettings::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    // The report names the protocol-name reader; receivers match on this text.
    EArchive::SerializeError("x86_64/common/ehal/eDataCenterModeSettings", 79,
                             "eHal::EProtocolName::SerializeIn");
  }
  archive >> m_DataCenterModeEnabled;
}

EArchive& operator<<(EArchive& archive, const EDataCenterModeSettings& settings) {
  settings.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EDataCenterModeSettings& settings) {
  settings.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
