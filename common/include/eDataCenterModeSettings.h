// eHal::EDataCenterModeSettings: the data-centre mode flag of a card or port. Its archive
// shares the leading number of eHal::EAggregateModeSetting: the receiver knows which it expects.
#pragma once

#include "eRecord.h"

namespace eHal {

class EDataCenterModeSettings : public ERecord<EDataCenterModeSettings> {
 public:
  EDataCenterModeSettings() = default;
  explicit EDataCenterModeSettings(bool enabled) : m_DataCenterModeEnabled(enabled) {}

  // Mode disabled.
  void Empty() { m_DataCenterModeEnabled = false; }
  void Copy(const EDataCenterModeSettings& other) { *this = other; }
  void SetDataCenterModeEnabled(bool enabled) { m_DataCenterModeEnabled = enabled; }
  bool GetDataCenterModeEnabled() const { return m_DataCenterModeEnabled; }

  struct Schema;  // the archive form, in eDataCenterModeSettings.cpp

 private:
  bool m_DataCenterModeEnabled = false;
};

}  // namespace eHal

extern template class ERecord<eHal::EDataCenterModeSettings>;
