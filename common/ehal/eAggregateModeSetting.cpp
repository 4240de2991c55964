#include "eAggregateModeSetting.h"

#include "eFlagSetting.h"

namespace eHal {

EArchive& operator<<(EArchive& archive, const EAggregateModeSetting& setting) {
  ehal_flag_setting::Write(archive, setting.GetAggregateModeSetting());
  return archive;
}

EArchive& operator>>(EArchive& archive, EAggregateModeSetting& setting) {
  setting.SetAggregateModeSetting(
      ehal_flag_setting::Read(archive, "x86_64/common/ehal/eAggregateModeSetting", 65));
  return archive;
}

}  // namespace eHal
