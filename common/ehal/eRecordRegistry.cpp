#include "eRecordRegistry.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <tuple>
#include <type_traits>

#include "ehal.h"

namespace {

using namespace eHal;

// A record as its class makes a fresh one.
template <typename T>
T Fresh() {
  return T();
}
// The direction of a PRBS record does not travel; a fresh one is the requesting side's.
template <>
EPRBS Fresh<EPRBS>() {
  return EPRBS(true);
}

template <typename T>
class RecordOf final : public EAnyRecord {
 public:
  void SerializeIn(EArchive& archive) override { archive >> m_Record; }
  void SerializeOut(EArchive& archive) const override { archive << m_Record; }
  void Describe(ERecordVisitor& visitor, const char* name) const override {
    m_Record.Describe(visitor, name);
  }

 private:
  T m_Record = Fresh<T>();
};

template <typename T>
std::unique_ptr<EAnyRecord> Create() {
  return std::make_unique<RecordOf<T>>();
}

template <typename T>
ERecordClass Entry(const char* name) {
  return {name, T::Layouts(), &Create<T>, &T::Description(), std::is_base_of_v<EEnvelope<T>, T>};
}

using HostTable = EAddressTable<EIPAddressRange, EIPAddressTableItem>;
using ARPTable = EAddressTable<EIPAddress, EARPAddressTableItem>;
using IPv6AddressItemList = EUniqueIDMap<EIPv6AddressItem, const EInterfaceItem*>;
using InterfaceItemList = EUniqueIDMap<EInterfaceItem, const EInterfaceTable*>;

// The one list of record classes. A new record class is added here, under the name a user
// writes for it; a template record is listed as each instantiation the library uses.
std::vector<ERecordClass> MakeClasses() {
  return {
      // values and identifiers
      Entry<EBlob>("EBlob"),
      Entry<EStringList>("EStringList"),
      Entry<Integer16Byte>("eHal::Integer16Byte"),
      Entry<EIPAddress>("EIPAddress"),
      Entry<EIPMaskedAddress>("EIPMaskedAddress"),
      Entry<EIPAddressRange>("EIPAddressRange"),
      Entry<EMACAddress>("EMACAddress"),
      Entry<EMACAddressRange>("EMACAddressRange"),
      Entry<EIPMACPair>("EIPMACPair"),
      Entry<EUID>("EUID"),
      Entry<EComponentId>("EComponentId"),
      Entry<EMultiComponentId>("EMultiComponentId"),
      Entry<EUniqueIDGenerator>("EUniqueIDGenerator"),
      Entry<ESingleCommand>("ESingleCommand"),
      Entry<ECommandLog>("ECommandLog"),
      // address tables
      Entry<EISLIPAddressTableItemProperties>("EISLIPAddressTableItemProperties"),
      Entry<EVLANIPAddressTableItemProperties>("EVLANIPAddressTableItemProperties"),
      Entry<EIPAddressTableItem>("EIPAddressTableItem"),
      Entry<EARPAddressTableItem>("EARPAddressTableItem"),
      Entry<HostTable>("EAddressTable<EIPAddressRange, EIPAddressTableItem>"),
      Entry<ARPTable>("EAddressTable<EIPAddress, EARPAddressTableItem>"),
      Entry<EIPAddressTable>("EIPAddressTable"),
      // the interface-table model
      Entry<EIPv4AddressItem>("EIPv4AddressItem"),
      Entry<EIPv6AddressItem>("EIPv6AddressItem"),
      Entry<EInterfaceItem>("EInterfaceItem"),
      Entry<IPv6AddressItemList>("EUniqueIDMap<EIPv6AddressItem, const EInterfaceItem*>"),
      Entry<InterfaceItemList>("EUniqueIDMap<EInterfaceItem, const EInterfaceTable*>"),
      // names and envelopes
      Entry<EProtocolName>("eHal::EProtocolName"),
      Entry<ETableName>("eHal::ETableName"),
      Entry<EClientID>("eHal::EClientID"),
      Entry<EMessage>("eHal::EMessage"),
      Entry<EGlobalMessage>("EGlobalMessage"),
      Entry<EOutgoingGlobalMessage>("eHal::EOutgoingGlobalMessage"),
      Entry<EOutgoingMessage>("eHal::EOutgoingMessage"),
      Entry<EOutgoingProtocolMessage>("eHal::EOutgoingProtocolMessage"),
      Entry<ETableMessage>("eHal::ETableMessage"),
      Entry<ESwitchUpdateMessage>("ESwitchUpdateMessage"),
      // port records
      Entry<EPacket>("eHal::EPacket"),
      Entry<EPRBS>("eHal::EPRBS"),
      Entry<EMacSec>("eHal::EMacSec"),
      Entry<EMacSec::ESecureAssociation>("eHal::EMacSec::ESecureAssociation"),
      Entry<EConditionalStatConfig>("eHal::EConditionalStatConfig"),
      Entry<EStreamConfig>("eHal::EStreamConfig"),
      Entry<EStreamConfig::EStreamData>("eHal::EStreamConfig::EStreamData"),
      Entry<EPOSLinkLayerSettings>("eHal::EPOSLinkLayerSettings"),
      Entry<EDataCenterModeSettings>("eHal::EDataCenterModeSettings"),
      Entry<EActivePortSetting>("eHal::EActivePortSetting"),
      Entry<EAggregateModeSetting>("eHal::EAggregateModeSetting"),
      Entry<EFCParams>("EFCParams"),
      Entry<EFCPhyMessage>("EFCPhyMessage"),
      Entry<ETLV>("eHal::ETLV"),
      Entry<EEthernetOAMConfig>("eHal::EEthernetOAMConfig"),
      Entry<EEthernetOAMStatus>("eHal::EEthernetOAMStatus"),
      Entry<EEthernetOAMSesionStatus>("eHal::EEthernetOAMSesionStatus"),
      // statistics
      Entry<EARPStats>("EARPStats"),
      Entry<EARPParameters>("EARPParameters"),
      Entry<EICMPStats>("EICMPStats"),
      Entry<EDriverStats>("EDriverStats"),
      Entry<EVLANStats>("EVLANStats"),
      Entry<ENeighborSolicitationStats>("ENeighborSolicitationStats"),
      Entry<EGreStats>("EGreStats"),
      Entry<EDHCPStats>("EDHCPStats"),
      Entry<EDHCPv6Stats>("EDHCPv6Stats"),
      Entry<EPTPStats>("EPTPStats"),
      Entry<EFCoEStats>("EFCoEStats"),
      Entry<EDCBXStats>("EDCBXStats"),
      Entry<ELLDPStats>("ELLDPStats"),
      Entry<EEthernetOAMStats>("EEthernetOAMStats"),
      // value lists
      Entry<eValueList>("eValueList"),
  };
}

// The name as compared for closeness: lower case, without the namespace prefix.
std::string Folded(std::string_view name) {
  constexpr std::string_view kPrefix = "ehal::";
  std::string folded;
  for (const char c : name)
    folded.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
  if (folded.compare(0, kPrefix.size(), kPrefix) == 0) folded.erase(0, kPrefix.size());
  return folded;
}

// Levenshtein distance, with one row of storage.
std::size_t EditDistance(const std::string& left, const std::string& right) {
  std::vector<std::size_t> row(right.size() + 1);
  for (std::size_t j = 0; j < row.size(); ++j)
    row[j] = j;
  for (std::size_t i = 1; i <= left.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t substitution = diagonal + (left[i - 1] == right[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, substitution});
    }
  }
  return row.back();
}

}  // namespace

const ERecordLayout* ERecordClass::FindLayout(unsigned int signature) const {
  for (const ERecordLayout& layout : layouts) {
    if (layout.signature == signature) return &layout;
  }
  return nullptr;
}

namespace {

// A loading archive over a copy of the bytes, terminated as a receiver stores them; false for
// bytes that an archive cannot hold with its terminator.
bool Load(EArchive& archive, std::string_view bytes) {
  if (bytes.size() >= 0xFFFFFFFFu) return false;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(EBlob(bytes.data(), static_cast<unsigned int>(bytes.size())), true);
  return true;
}

// True when the last read ended beyond the bytes.
bool RanPastEnd(const EArchive& archive, std::string_view bytes) {
  return archive.GetReadPosition() > bytes.size();
}

}  // namespace

ERecordRead ERecordClass::Read(std::string_view bytes) const {
  ERecordRead read;
  EArchive archive;
  if (!Load(archive, bytes)) {
    read.ranPastEnd = true;
    return read;
  }
  read.record = Create();
  archive >> *read.record;
  // A read that ran past the data leaves the position beyond it (on the terminating zero or
  // further); one that started over from the beginning counted a wrap.
  read.ranPastEnd = RanPastEnd(archive, bytes);
  read.wrapped = archive.GetWrapCount() > 0;
  read.consumed = std::min<std::size_t>(archive.GetReadPosition(), bytes.size());
  return read;
}

std::optional<unsigned int> ERecordRegistry::FirstNumber(std::string_view bytes) {
  EArchive archive;
  if (!Load(archive, bytes)) return std::nullopt;
  const unsigned int number = archive.ReadUnsignedInt();
  if (RanPastEnd(archive, bytes) || archive.GetWrapCount() > 0) return std::nullopt;
  return number;
}

const ERecordClass* ERecordRegistry::ClassOf(const ERecordDescription& description) {
  for (const ERecordClass& recordClass : Classes()) {
    if (recordClass.description == &description) return &recordClass;
  }
  return nullptr;
}

const std::vector<ERecordClass>& ERecordRegistry::Classes() {
  static const std::vector<ERecordClass> classes = MakeClasses();
  return classes;
}

const ERecordClass* ERecordRegistry::Find(std::string_view name) {
  for (const ERecordClass& recordClass : Classes()) {
    if (recordClass.name == name) return &recordClass;
  }
  return nullptr;
}

std::vector<ERecordMatch> ERecordRegistry::Guess(unsigned int signature) {
  std::vector<ERecordMatch> matches;
  for (const ERecordClass& recordClass : Classes()) {
    if (const ERecordLayout* layout = recordClass.FindLayout(signature))
      matches.push_back({&recordClass, layout, layout == &recordClass.layouts.front()});
  }
  return matches;
}

std::vector<std::string> ERecordRegistry::CloseNames(std::string_view name) {
  std::vector<std::string> names;
  for (const ERecordClass& recordClass : Classes())
    names.push_back(recordClass.name);
  return CloseNames(name, names);
}

std::vector<std::string> ERecordRegistry::CloseNames(std::string_view name,
                                                     const std::vector<std::string>& candidates) {
  constexpr std::size_t kFarthest = 3;
  const std::string wanted = Folded(name);
  std::vector<std::pair<std::size_t, const std::string*>> close;
  for (const std::string& candidateName : candidates) {
    const std::string candidate = Folded(candidateName);
    const bool contains = !wanted.empty() && (candidate.find(wanted) != std::string::npos ||
                                              wanted.find(candidate) != std::string::npos);
    const std::size_t distance = EditDistance(wanted, candidate);
    if (contains || distance <= kFarthest) close.emplace_back(distance, &candidateName);
  }
  std::stable_sort(close.begin(), close.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  std::vector<std::string> names;
  for (const auto& entry : close)
    names.push_back(*entry.second);
  return names;
}
