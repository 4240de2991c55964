#include "eDataCenterModeSettings.h"

#include "eFlagSetting.h"

namespace eHal {

void EDataCenterModeSettings::SerializeOut(EArchive& archive) const {
  ehal_flag_setting::Write(archive, m_DataCenterModeEnabled);
}

void EDataCenterModeSettings::SerializeIn(EArchive& archive) {
  m_DataCenterModeEnabled =
      ehal_flag_setting::Read(archive, "x86_64/common/ehal/eDataCenterModeSettings", 79);
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
