// eHal::EAggregateModeSetting: the aggregate mode flag of a port. Its archive operators do the
// whole work; the archive shares its leading number with eHal::EDataCenterModeSettings.
#pragma once

class EArchive;

namespace eHal {

class EAggregateModeSetting {
 public:
  EAggregateModeSetting() = default;
  explicit EAggregateModeSetting(bool setting) : m_AggregateModeSetting(setting) {}
  EAggregateModeSetting(const EAggregateModeSetting& other) = default;
  EAggregateModeSetting& operator=(const EAggregateModeSetting& other) = default;

  void SetAggregateModeSetting(bool setting) { m_AggregateModeSetting = setting; }
  bool GetAggregateModeSetting() const { return m_AggregateModeSetting; }

 private:
  bool m_AggregateModeSetting = false;
};

EArchive& operator<<(EArchive& archive, const EAggregateModeSetting& setting);
EArchive& operator>>(EArchive& archive, EAggregateModeSetting& setting);

}  // namespace eHal
