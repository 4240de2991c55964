#include "eVLANIPAddressTableItemProperties.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

#include "eRecordSchema.h"
#include "eTextDigits.h"
#include "eVLAN.h"

using eHal::detail::Field;
using eHal::detail::HexValue;
using eHal::detail::kDropped;
using eHal::detail::kShort;
using eHal::detail::kUnsigned;
using eHal::detail::Layout;
using eHal::detail::Property;
using eHal::detail::ReadCounted;
using eHal::detail::SameFields;
using eHal::detail::WriteUpperHex;

namespace {

using Tags = std::vector<unsigned int>;

// Parts of a tag word.
constexpr unsigned int kIdMask = 0x00000FFF;
constexpr unsigned int kCanonicalFormatShift = 12;
constexpr unsigned int kCanonicalFormatMask = 1u << kCanonicalFormatShift;
constexpr unsigned int kPriorityShift = 13;
constexpr unsigned int kPriorityMask = 7u << kPriorityShift;
constexpr unsigned int kTPIDShift = 16;
constexpr unsigned int kTPIDMask = 0xFFFF0000;

// The tag protocol identifiers a tag may carry, in the order in which IncrementVLANTPID cycles
// through them; 0x9300 takes part in the cycle only on request.
constexpr unsigned short kTPIDs[] = {0x8100, 0x88A8, 0x9100, 0x9200, 0x9300};
constexpr std::size_t kCycleWithout9300 = 4;

// The count clamped into 1..kMaxVLANCount; extra slots are new tags.
void ResizeTags(Tags& tags, unsigned int count) {
  const unsigned int kept = std::clamp(count, 1u, EVLANIPAddressTableItemProperties::kMaxVLANCount);
  tags.resize(kept, kVlanDefaultValue);
}

}  // namespace

// Version 2 carries the tag words whole. Version 1 carried a 16-bit tag control value per tag,
// converted by the flags read before them; the single-tag form carried the parts of one tag
// without a TPID, after a value that is no longer used.
struct EVLANIPAddressTableItemProperties::Schema {
  using R = EVLANIPAddressTableItemProperties;

  // The count (unsigned int), then the words. The reader keeps the count in 1..6 as SetVLANCount
  // does and stores the first words read into those slots; words beyond them are consumed and
  // dropped.
  struct TagWords {
    static void Write(EArchive& archive, const Tags& tags) {
      kUnsigned.Write(archive, tags.size());
      for (const unsigned int word : tags)
        kUnsigned.Write(archive, word);
    }
    static void Read(EArchive& archive, Tags& tags) {
      const unsigned int count = archive.ReadUnsignedInt();
      ResizeTags(tags, count);
      ReadCounted(archive, count, [&](unsigned int i) {
        const unsigned int word = archive.ReadUnsignedInt();
        if (i < tags.size()) tags[i] = word;
      });
    }
    static void Describe(ERecordVisitor& visitor, const char* name, const Tags& tags) {
      visitor.BeginList(name, ECountWire::kUnsigned32, tags.size());
      for (const unsigned int word : tags)
        kUnsigned.Describe(visitor, "", word);
      visitor.EndList();
    }
    static EValueType Type() { return EValueType::List(ECountWire::kUnsigned32, kUnsigned.Type()); }
  };

  // Version 1: the count, then exactly that many tags, each from a 16-bit tag control value:
  // with flags above 1 the flags select each tag's TPID, otherwise the value is a legacy tag
  // under TPID 0x8100. The list holds the tags the data holds.
  struct TagControls {
    static void Read(EArchive& archive, R& record) {
      const unsigned int count = archive.ReadUnsignedInt();
      record.m_Tags.clear();
      ReadCounted(archive, count, [&](unsigned int i) {
        const auto control = static_cast<unsigned short>(archive.ReadUnsignedInt());
        record.m_Tags.push_back(record.m_Flags > 1
                                    ? record.EVlanTagOldToNewConvert(control, record.m_Flags, i)
                                    : ConvertLegacyTCIDToNewTCID(control | kVlanDefaultValue));
      });
    }
    static EValueType Type() { return EValueType::List(ECountWire::kUnsigned32, kShort.Type()); }
  };

  // One part of the single tag: an unsigned int whose bits under `Mask` land at `Shift` in tag
  // 0. The VLAN id comes first and starts the one tag afresh, without a TPID.
  template <unsigned int Shift, unsigned int Mask, bool First>
  struct SingleTagPart {
    static void Read(EArchive& archive, Tags& tags) {
      const unsigned int bits = (archive.ReadUnsignedInt() << Shift) & Mask;
      if (First || tags.empty()) tags.assign(1, 0);
      tags[0] |= bits;
    }
    static EValueType Type() { return kUnsigned.Type(); }
  };

  static constexpr auto kFields =
      std::make_tuple(Field("Flags", &R::m_Flags), Field("Tags", &R::m_Tags, TagWords{}));
  static constexpr auto kReadOnlyFields = std::make_tuple(
      Property<R>("TagControls", TagControls{}),
      Field("VLANID", &R::m_Tags, SingleTagPart<0, kIdMask, true>{}),
      Field("UserPriority", &R::m_Tags, SingleTagPart<kPriorityShift, kPriorityMask, false>{}),
      Field("CanonicalFormat", &R::m_Tags,
            SingleTagPart<kCanonicalFormatShift, kCanonicalFormatMask, false>{}));
  // Flags, then the tag control values.
  static constexpr const char* kVersion1[] = {"Flags", "TagControls"};
  // Flags, a value no longer used, then the VLAN id, priority and canonical format of one tag.
  static constexpr const char* kSingleTag[] = {"Flags", kDropped, "VLANID", "UserPriority",
                                               "CanonicalFormat"};
  static constexpr Layout kLayouts[] = {
      {2},
      {1, kVersion1},
      {0x13156111, kSingleTag},
  };
  static constexpr ERefusalReport kRefusal = {
      "x86_64/common/ehal/eVLANIPAddressTableItemProperties", 414,
      "EVLANIPAddressTableItemProperties::SerializeIn"};
};

namespace {

// The TPID after (step > 0) or before (step < 0) `previous` in the cycle of kTPIDs, which holds
// 0x9300 only with `use9300`; step 0 keeps it, and an unknown TPID moves to 0x8100.
unsigned short NextTPID(unsigned short previous, int step, bool use9300) {
  if (step == 0) return previous;
  const unsigned short* const found = std::find(std::begin(kTPIDs), std::end(kTPIDs), previous);
  if (found == std::end(kTPIDs)) return kTPIDs[0];
  const std::size_t at = static_cast<std::size_t>(found - std::begin(kTPIDs));
  const std::size_t cycle = use9300 ? std::size(kTPIDs) : kCycleWithout9300;
  if (step > 0) return at + 1 < cycle ? kTPIDs[at + 1] : kTPIDs[0];
  return at > 0 ? kTPIDs[at - 1] : kTPIDs[cycle - 1];
}

// A number as the scan formats "%X" (base 16, "0x" accepted) and "%d" (base 10) read it:
// leading blanks, an optional sign, then the digits of the base; anything after them is
// ignored. Digits beyond 32 bits saturate; a minus sign negates modulo 2^32. False without
// digits.
bool ScanNumber(const std::string& token, int base, unsigned int& value) {
  std::size_t at = token.find_first_not_of(" \t\n\v\f\r");
  if (at == std::string::npos) return false;
  const bool negative = token[at] == '-';
  if (token[at] == '-' || token[at] == '+') ++at;
  if (base == 16 && (token.compare(at, 2, "0x") == 0 || token.compare(at, 2, "0X") == 0)) at += 2;
  std::uint64_t magnitude = 0;
  const std::size_t first = at;
  for (; at < token.size(); ++at) {
    const int digit = HexValue(token[at]);
    if (digit < 0 || digit >= base) break;
    magnitude = std::min<std::uint64_t>(magnitude * base + digit, UINT32_MAX);
  }
  value = static_cast<unsigned int>(negative ? 0 - magnitude : magnitude);
  return at != first;
}

// A TPID of a description; a token without digits or with an unknown TPID gives 0x8100.
unsigned short ParseTPID(const std::string& token) {
  unsigned int value = 0;
  const bool scanned = ScanNumber(token, 16, value);
  const bool known = std::find(std::begin(kTPIDs), std::end(kTPIDs), value) != std::end(kTPIDs);
  return scanned && known ? static_cast<unsigned short>(value) : kTPIDs[0];
}

// An id or priority of a description, kept as 16 bits; a token without digits gives 0.
unsigned short ParseDecimal(const std::string& token) {
  unsigned int value = 0;
  ScanNumber(token, 10, value);
  return static_cast<unsigned short>(value);
}

// Up to kMaxVLANCount comma-separated tokens, left to right; the list ends when the rest of the
// text is empty, so a trailing comma adds nothing and an empty token between commas counts.
std::vector<std::string> SplitDescription(const std::string& text) {
  std::vector<std::string> tokens;
  std::size_t at = 0;
  while (tokens.size() < EVLANIPAddressTableItemProperties::kMaxVLANCount && at < text.size()) {
    const std::size_t comma = std::min(text.find(',', at), text.size());
    tokens.push_back(text.substr(at, comma - at));
    at = comma + 1;
  }
  return tokens;
}

}  // namespace

EVLANIPAddressTableItemProperties::EVLANIPAddressTableItemProperties()
    : m_Tags(1, kVlanDefaultValue) {}

EVLANIPAddressTableItemProperties::EVLANIPAddressTableItemProperties(unsigned int capacity,
                                                                     bool enabled)
    : m_Flags(enabled ? kEnabledBit : 0) {
  m_Tags.reserve(std::min(capacity, kMaxVLANCount));
}

EVLANIPAddressTableItemProperties::EVLANIPAddressTableItemProperties(
    const EVLANIPAddressTableItemProperties& other) {
  Copy(other);
}

EVLANIPAddressTableItemProperties& EVLANIPAddressTableItemProperties::operator=(
    const EVLANIPAddressTableItemProperties& other) {
  Copy(other);
  return *this;
}

void EVLANIPAddressTableItemProperties::Copy(const EVLANIPAddressTableItemProperties& other) {
  if (this == &other) return;
  m_Flags = other.m_Flags;
  SetVLANCount(other.GetVLANCount());
  const std::size_t copied = std::min(m_Tags.size(), other.m_Tags.size());
  std::copy_n(other.m_Tags.begin(), copied, m_Tags.begin());
}

void EVLANIPAddressTableItemProperties::Empty() {
  m_Flags = 0;
  m_Tags.assign(1, kVlanDefaultValue);
}

void EVLANIPAddressTableItemProperties::Swap(EVLANIPAddressTableItemProperties& other) {
  std::swap(m_Flags, other.m_Flags);
  m_Tags.swap(other.m_Tags);
}

bool EVLANIPAddressTableItemProperties::operator==(
    const EVLANIPAddressTableItemProperties& other) const {
  return SameFields<Schema>(*this, other);
}

void EVLANIPAddressTableItemProperties::SetEnabled(bool enabled) {
  m_Flags = enabled ? m_Flags | kEnabledBit : m_Flags & ~kEnabledBit;
}

bool EVLANIPAddressTableItemProperties::SetVlan(unsigned int count,
                                                const std::vector<unsigned int>* source) {
  const bool inRange = SetVLANCount(count);
  if (source == nullptr) return inRange;
  std::copy_n(source->begin(), std::min(m_Tags.size(), source->size()), m_Tags.begin());
  return inRange;
}

bool EVLANIPAddressTableItemProperties::SetVLANCount(unsigned int count) {
  ResizeTags(m_Tags, count);
  return count >= 1 && count <= kMaxVLANCount;
}

unsigned int EVLANIPAddressTableItemProperties::GetVlanTag(unsigned int index) const {
  return index < m_Tags.size() ? m_Tags[index] : 0;
}

bool EVLANIPAddressTableItemProperties::SetVlanTag(unsigned int index, unsigned int word) {
  if (index >= m_Tags.size()) return false;
  m_Tags[index] = word;
  return true;
}

void EVLANIPAddressTableItemProperties::SetTagBits(unsigned int index, unsigned int mask,
                                                   unsigned int bits) {
  if (index >= m_Tags.size()) return;
  m_Tags[index] = (m_Tags[index] & ~mask) | (bits & mask);
}

unsigned short EVLANIPAddressTableItemProperties::GetVLANID(unsigned int index) const {
  return static_cast<unsigned short>(GetVlanTag(index) & kIdMask);
}

unsigned char EVLANIPAddressTableItemProperties::GetUserPriority(unsigned int index) const {
  return static_cast<unsigned char>((GetVlanTag(index) & kPriorityMask) >> kPriorityShift);
}

unsigned int EVLANIPAddressTableItemProperties::GetCanonicalFormat(unsigned int index) const {
  return (GetVlanTag(index) & kCanonicalFormatMask) >> kCanonicalFormatShift;
}

unsigned short EVLANIPAddressTableItemProperties::GetVLANTPID(unsigned int index) const {
  return static_cast<unsigned short>(GetVlanTag(index) >> kTPIDShift);
}

void EVLANIPAddressTableItemProperties::SetVLANID(unsigned short id, unsigned int index) {
  SetTagBits(index, kIdMask, std::min(id, kMaxVLANID));
}

void EVLANIPAddressTableItemProperties::SetUserPriority(unsigned char priority,
                                                        unsigned int index) {
  SetTagBits(index, kPriorityMask, static_cast<unsigned int>(priority) << kPriorityShift);
}

void EVLANIPAddressTableItemProperties::SetCanonicalFormat(unsigned int canonicalFormat,
                                                           unsigned int index) {
  SetTagBits(index, kCanonicalFormatMask, canonicalFormat << kCanonicalFormatShift);
}

void EVLANIPAddressTableItemProperties::SetVLANTPID(unsigned short tpid, unsigned int index) {
  SetTagBits(index, kTPIDMask, static_cast<unsigned int>(tpid) << kTPIDShift);
}

unsigned short EVLANIPAddressTableItemProperties::IncrementVLANID(unsigned int index, int step) {
  // The step's remainder keeps its sign; the 12-bit mask then wraps a negative sum modulo 4096.
  const unsigned int id = GetVLANID(index - 1) + static_cast<unsigned int>(step % 4096);
  SetTagBits(index, kIdMask, id);
  return static_cast<unsigned short>(id & kIdMask);
}

unsigned char EVLANIPAddressTableItemProperties::IncrementUserPriority(unsigned int index,
                                                                       int step) {
  const unsigned int priority = GetUserPriority(index - 1) + static_cast<unsigned int>(step % 8);
  SetTagBits(index, kPriorityMask, priority << kPriorityShift);
  return static_cast<unsigned char>(priority & 7);
}

unsigned short EVLANIPAddressTableItemProperties::IncrementVLANTPID(unsigned int index, int step,
                                                                    bool use9300) {
  const unsigned short next = NextTPID(GetVLANTPID(index - 1), step, use9300);
  SetVLANTPID(next, index);
  return next;
}

bool EVLANIPAddressTableItemProperties::RemoveVLANItem(const unsigned int* positions,
                                                       unsigned int n) {
  if (positions == nullptr || m_Tags.empty()) return true;
  const unsigned int count = GetVLANCount();
  const unsigned int used = n < count ? n : count - 1;
  for (unsigned int j = used; j-- > 0;) {
    const unsigned int position = positions[j];
    if (position >= 1 && position <= m_Tags.size()) m_Tags.erase(m_Tags.begin() + (position - 1));
  }
  return true;
}

unsigned int EVLANIPAddressTableItemProperties::ConvertLegacyTCIDToNewTCID(unsigned int word) {
  const unsigned int priority = (word >> 12) & 7;
  const unsigned int canonicalFormat = (word >> 15) & 1;
  return (word & ~0xF000u) | (priority << kPriorityShift) |
         (canonicalFormat << kCanonicalFormatShift);
}

unsigned int EVLANIPAddressTableItemProperties::EVlanTagOldToNewConvert(unsigned short control,
                                                                        unsigned int selectors,
                                                                        unsigned int index) const {
  if (index >= kMaxVLANCount) return 0;
  const unsigned int selector = (selectors >> (8 + 4 * index)) & 0xF;
  const unsigned int tpid = selector >= 1 && selector <= 3 ? kTPIDs[selector] : kTPIDs[0];
  return control | (tpid << kTPIDShift);
}

std::string EVLANIPAddressTableItemProperties::ConstructVLANItemDescription(eFields field) const {
  std::string text;
  if (field != eTPID && field != eVLANID && field != eUserPriority) return text;
  for (std::size_t i = 0; i < m_Tags.size(); ++i) {
    if (i > 0) text += ',';
    const auto index = static_cast<unsigned int>(i);
    if (field == eTPID) {
      char digits[8];
      text += "0x";
      text.append(digits, WriteUpperHex(digits, GetVLANTPID(index)));
    } else {
      text += std::to_string(field == eVLANID ? GetVLANID(index) : GetUserPriority(index));
    }
  }
  return text;
}

void EVLANIPAddressTableItemProperties::SetVLANFromDescription(const std::string& text,
                                                               eFields field) {
  if (field != eTPID && field != eVLANID && field != eUserPriority) return;
  const std::vector<std::string> tokens = SplitDescription(text);
  SetVLANCount(static_cast<unsigned int>(tokens.size()));
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const auto index = static_cast<unsigned int>(i);
    if (field == eTPID) {
      SetVLANTPID(ParseTPID(tokens[i]), index);
    } else if (field == eVLANID) {
      SetVLANID(ParseDecimal(tokens[i]), index);
    } else {
      const unsigned short priority =
          std::min<unsigned short>(ParseDecimal(tokens[i]), kMaxUserPriority);
      SetUserPriority(static_cast<unsigned char>(priority), index);
    }
  }
}

template class ERecord<EVLANIPAddressTableItemProperties>;
