#include "eTLV.h"

#include <utility>

#include "eArchive.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x45536509;
}  // namespace

void ETLV::Swap(ETLV& other) {
  std::swap(m_Type, other.m_Type);
  m_Value.Swap(other.m_Value);
}

bool ETLV::operator==(const ETLV& other) const {
  return m_Type == other.m_Type && m_Value == other.m_Value;
}

std::string ETLV::GetAsString() const {
  return "Type: " + std::to_string(m_Type) + ", Value: " + m_Value.GetHexString();
}

void ETLV::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << m_Type << m_Value;
}

void ETLV::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eTLV", 91, "eHal::ETLV::SerializeIn");
  }
  archive >> m_Type >> m_Value;
}

EArchive& operator<<(EArchive& archive, const ETLV& tlv) {
  tlv.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, ETLV& tlv) {
  tlv.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
