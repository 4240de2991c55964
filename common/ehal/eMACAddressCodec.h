// How an EMACAddress field travels in a record schema. The address keeps its own archive
// operators (its signature written signed, then its byte blob); this codec uses them and
// describes the address as a nested record of that signature and the bytes. Internal.
#pragma once

#include "eMACAddress.h"
#include "eRecordSchema.h"

namespace eHal::detail {

struct MACAddressCodec {
  static constexpr unsigned int kSignature = 0x17111111;

  static void Write(EArchive& archive, const EMACAddress& value) { archive << value; }
  static void Read(EArchive& archive, EMACAddress& value) { archive >> value; }
  static void Describe(ERecordVisitor& visitor, const char* name, const EMACAddress& value) {
    visitor.BeginRecord(name);
    Number<EWire::kSignedOutUnsignedIn>::Describe(visitor, "Signature", kSignature);
    visitor.Bytes("MACAddress", value.GetMACAddress());
    visitor.EndRecord();
  }
};

inline constexpr MACAddressCodec kMACAddress{};

}  // namespace eHal::detail
