// eHal::EDataCenterModeSettings: the data-centre mode flag of a card or port. Its archive
// shares the leading number of eHal::EAggregateModeSetting: the receiver knows which it expects.
#pragma once

class EArchive;

namespace eHal {

class EDataCenterModeSettings {
 public:
  EDataCenterModeSettings() = default;
  explicit EDataCenterModeSettings(bool enabled) : m_DataCenterModeEnabled(enabled) {}
  EDataCenterModeSettings(const EDataCenterModeSettings& other) = default;
  EDataCenterModeSettings& operator=(const EDataCenterModeSettings& other) = default;

  // Mode disabled.
  void Empty() { m_DataCenterModeEnabled = false; }
  void Copy(const EDataCenterModeSettings& other) { *this = other; }
  void SetDataCenterModeEnabled(bool enabled) { m_DataCenterModeEnabled = enabled; }
  bool GetDataCenterModeEnabled() const { return m_DataCenterModeEnabled; }

  void SerializeOut(EArchive& archive) const;
  void SerializeIn(EArchive& archive);

 private:
  bool m_DataCenterModeEnabled = false;
};

EArchive& operator<<(EArchive& archive, const EDataCenterModeSettings& settings);
EArchive& operator>>(EArchive& archive, EDataCenterModeSettings& settings);

}  // namespace eHal
