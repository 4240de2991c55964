// The archive form shared by the one-flag port settings (data-centre mode, aggregate mode): one
// leading number, the same for all of them, and the flag. Nothing in the archive tells the
// settings apart; the receiver knows which one it expects.
#pragma once

#include "eArchive.h"

namespace ehal_flag_setting {

constexpr unsigned int kSignature = 0x10062911;

inline void Write(EArchive& archive, bool flag) {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << flag;
}

// Reads the flag; a wrong leading number is reported with `file` and `line` and the function
// text of the protocol-name reader, which these settings have always reported.
inline bool Read(EArchive& archive, const char* file, int line) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError(file, line, "eHal::EProtocolName::SerializeIn");
  }
  bool flag = false;
  archive >> flag;
  return flag;
}

}  // namespace ehal_flag_setting
