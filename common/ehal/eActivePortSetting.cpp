#include "eActivePortSetting.h"

#include "eArchive.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x78911141;
}  // namespace

EArchive& operator<<(EArchive& archive, const EActivePortSetting& setting) {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive.WriteSignedInt(setting.GetActiveCard());
  archive.WriteSignedInt(setting.GetActivePort());
  return archive;
}

EArchive& operator>>(EArchive& archive, EActivePortSetting& setting) {
  if (archive.ReadUnsignedInt() != kSignature) {
    // The report names the writing operator although the reader failed; receivers match on it.
    EArchive::SerializeError("x86_64/common/ehal/eActivePortSetting", 66,
                             "eHal::EActivePortSetting::operator<<");
  }
  const int card = archive.ReadSignedInt();
  const int port = archive.ReadSignedInt();
  setting.SetActiveCard(card);
  setting.SetActivePort(port);
  return archive;
}

}  // namespace eHal
