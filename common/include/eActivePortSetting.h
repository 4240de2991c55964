// eHal::EActivePortSetting: which card and which port of it are active. Both travel as signed
// numbers.
#pragma once

#include "eRecord.h"

namespace eHal {

class EActivePortSetting : public ERecord<EActivePortSetting> {
 public:
  EActivePortSetting() = default;
  EActivePortSetting(int card, int port) : m_ActiveCard(card), m_ActivePort(port) {}

  void SetActiveCard(int card) { m_ActiveCard = card; }
  int GetActiveCard() const { return m_ActiveCard; }
  void SetActivePort(int port) { m_ActivePort = port; }
  int GetActivePort() const { return m_ActivePort; }

  struct Schema;  // the archive form, in eActivePortSetting.cpp

 private:
  int m_ActiveCard = 0;
  int m_ActivePort = 0;
};

}  // namespace eHal

extern template class ERecord<eHal::EActivePortSetting>;
