#include "ePOSLinkLayerSettings.h"

#include <algorithm>
#include <sstream>

#include "eRecordSchema.h"
#include "eRecordText.h"

namespace eHal {

using namespace detail;

// One field, the ports. SerializeIn reads the older layout by hand: it carries port 0 only.
struct EPOSLinkLayerSettings::Schema {
  // One port's entry, without a signature of its own.
  struct PortSchema {
    static constexpr auto kFields =
        std::make_tuple(Field("LinkType", &Port::linkType), Field("TxCRCSize", &Port::txCRCSize),
                        Field("RxCRCSize", &Port::rxCRCSize));
  };

  // The ports from 63 down to 0.
  struct Ports {
    using Array = Port[kPortCount];

    static void Write(EArchive& archive, const Array& ports) {
      for (unsigned int port = kPortCount; port-- > 0;)
        WriteFields<PortSchema>(archive, ports[port]);
    }
    static void Read(EArchive& archive, Array& ports) { ReadFirst(archive, ports, kPortCount); }
    // Reads ports `count` - 1 down to 0.
    static void ReadFirst(EArchive& archive, Array& ports, unsigned int count) {
      for (unsigned int port = count; port-- > 0;)
        ReadWithoutSignature<PortSchema>(archive, ports[port]);
    }
    static void Describe(ERecordVisitor& visitor, const char* name, const Array& ports) {
      visitor.BeginList(name, EWire::kNone, kPortCount);
      for (unsigned int port = kPortCount; port-- > 0;)
        detail::Describe<PortSchema>(visitor, "", ports[port]);
      visitor.EndList();
    }
  };

  static constexpr auto kFields =
      std::make_tuple(Field("Ports", &EPOSLinkLayerSettings::m_Ports, Ports{}));
  static constexpr Layout kLayouts[] = {
      {0x11334357},  // every port
      {0x11334356},  // port 0 only
  };
  // The report names the protocol-name reader; receivers match on this text.
  static constexpr ESerializeErrorSite kError = {"x86_64/common/ehal/ePOSLinkLayerSettings", 139,
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

void EPOSLinkLayerSettings::SerializeIn(EArchive& archive) {
  const Layout& layout = FindLayout<Schema>(archive.ReadUnsignedInt());
  // Every older layout carries port 0 only.
  const bool current = &layout == &Schema::kLayouts[0];
  Schema::Ports::ReadFirst(archive, m_Ports, current ? kPortCount : 1);
}

}  // namespace eHal

template class ERecord<eHal::EPOSLinkLayerSettings>;
