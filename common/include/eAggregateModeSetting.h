// eHal::EAggregateModeSetting: the aggregate mode flag of a port. Its archive shares the leading
// number of eHal::EDataCenterModeSettings: the receiver knows which it expects.
#pragma once

#include "eRecord.h"

namespace eHal {

class EAggregateModeSetting : public ERecord<EAggregateModeSetting> {
 public:
  EAggregateModeSetting() = default;
  explicit EAggregateModeSetting(bool setting) : m_AggregateModeSetting(setting) {}

  void SetAggregateModeSetting(bool setting) { m_AggregateModeSetting = setting; }
  bool GetAggregateModeSetting() const { return m_AggregateModeSetting; }

  struct Schema;  // the archive form, in eAggregateModeSetting.cpp

 private:
  bool m_AggregateModeSetting = false;
};

}  // namespace eHal

extern template class ERecord<eHal::EAggregateModeSetting>;
