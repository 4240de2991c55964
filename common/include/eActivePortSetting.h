// eHal::EActivePortSetting: which card and which port of it are active. Its archive operators
// do the whole work; the class has no members of its own for it.
#pragma once

class EArchive;

namespace eHal {

class EActivePortSetting {
 public:
  EActivePortSetting() = default;
  EActivePortSetting(int card, int port) : m_ActiveCard(card), m_ActivePort(port) {}
  EActivePortSetting(const EActivePortSetting& other) = default;
  EActivePortSetting& operator=(const EActivePortSetting& other) = default;

  void SetActiveCard(int card) { m_ActiveCard = card; }
  int GetActiveCard() const { return m_ActiveCard; }
  void SetActivePort(int port) { m_ActivePort = port; }
  int GetActivePort() const { return m_ActivePort; }

 private:
  int m_ActiveCard = 0;
  int m_ActivePort = 0;
};

// Leading number, active card, active port.
EArchive& operator<<(EArchive& archive, const EActivePortSetting& setting);
EArchive& operator>>(EArchive& archive, EActivePortSetting& setting);

}  // namespace eHal
