#include "ePOSLinkLayerSettings.h"

#include <algorithm>
#include <sstream>

#include "eRecordSchema.h"
#include "eRecordText.h"

namespace eHal {

using detail::EnumText;
using detail::Field;
using detail::Layout;
using detail::PartCodec;
using detail::SameFields;

// The ports from 63 down to 0; the older layout carries port 0 only (the other ports keep their
// values).
struct EPOSLinkLayerSettings::Schema {
  // One port's entry, without a signature of its own.
  struct PortSchema {
    static constexpr auto kFields =
        std::make_tuple(Field("LinkType", &Port::linkType), Field("TxCRCSize", &Port::txCRCSize),
                        Field("RxCRCSize", &Port::rxCRCSize));
  };
  using PortCodec = PartCodec<PortSchema>;

  // Every port, from 63 down to 0.
  struct Ports {
    using Array = Port[kPortCount];

    static void Write(EArchive& archive, const Array& ports) {
      for (unsigned int port = kPortCount; port-- > 0;)
        PortCodec::Write(archive, ports[port]);
    }
    static void Read(EArchive& archive, Array& ports) {
      for (unsigned int port = kPortCount; port-- > 0;)
        PortCodec::Read(archive, ports[port]);
    }
    static void Describe(ERecordVisitor& visitor, const char* name, const Array& ports) {
      visitor.BeginList(name, ECountWire::kFixed, kPortCount);
      for (unsigned int port = kPortCount; port-- > 0;)
        PortCodec::Describe(visitor, "", ports[port]);
      visitor.EndList();
    }
    static EValueType Type() {
      return EValueType::List(ECountWire::kFixed, PortCodec::Type(), kPortCount);
    }
  };

  // Port 0 alone, as the older layout carries it.
  struct FirstPort {
    static void Read(EArchive& archive, Ports::Array& ports) { PortCodec::Read(archive, ports[0]); }
    static EValueType Type() { return PortCodec::Type(); }
  };

  static constexpr auto kFields =
      std::make_tuple(Field("Ports", &EPOSLinkLayerSettings::m_Ports, Ports{}));
  static constexpr auto kReadOnlyFields =
      std::make_tuple(Field("Port0", &EPOSLinkLayerSettings::m_Ports, FirstPort{}));
  static constexpr const char* kPortZeroOnly[] = {"Port0"};
  static constexpr Layout kLayouts[] = {
      {0x11334357},                 // every port
      {0x11334356, kPortZeroOnly},  // port 0 only
  };
  // The report names the protocol-name reader; receivers match on this text.
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/ePOSLinkLayerSettings", 139,
                                              "eHal::EProtocolName::SerializeIn"};
};

namespace {

const char* const kLinkTypeTexts[] = {"Cisco HDLC",       "PPP",   "FrameRelay",
                                      "Cisco FrameRelay", "Other", "SRP"};
}  // namespace

void EPOSLinkLayerSettings::Empty() {
  std::fill(std::begin(m_Ports), std::end(m_Ports), Port{kOther, kCRC32, kCRC32});
}

void EPOSLinkLayerSettings::Copy(const EPOSLinkLayerSettings& other) {
  if (this != &other) *this = other;
}

void EPOSLinkLayerSettings::Copy(const EPOSLinkLayerSettings* other) {
  if (other != nullptr) Copy(*other);
}

unsigned int EPOSLinkLayerSettings::GetCRCSizeInBits(unsigned int code) const {
  switch (code) {
    case kCRC16:
      return 16;
    case kCRC32:
      return 32;
    default:
      return 0;
  }
}

bool EPOSLinkLayerSettings::Port::operator==(const Port& other) const {
  return SameFields<Schema::PortSchema>(*this, other);
}

bool EPOSLinkLayerSettings::IsEqual(const EPOSLinkLayerSettings& other) const {
  return SameFields<Schema>(*this, other);
}

std::string EPOSLinkLayerSettings::GetLogString(unsigned int port) const {
  std::ostringstream text;
  text << "Encapsulation:" << EnumText(m_Ports[port].linkType, kLinkTypeTexts)
       << " TxCRCSize:" << GetTxCRCSizeInBits(port) << " RxCRCSize:" << GetRxCRCSizeInBits(port)
       << "\n";
  return text.str();
}

}  // namespace eHal

template class ERecord<eHal::EPOSLinkLayerSettings>;
