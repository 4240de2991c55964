#include "eValueList.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "eRecordSchema.h"
#include "eRecordText.h"
#include "eTextDigits.h"
#include "vqml.h"

using eHal::detail::EnumText;
using eHal::detail::Field;
using eHal::detail::HexValue;
using eHal::detail::JoinLowerHexPairs;
using eHal::detail::Layout;
using eHal::detail::WriteLowerHex;

namespace {
// The names of the return codes, as the text form prints them.
const char* const kReturnCodeTexts[] = {"kSuccess", "kFail", "kNotOwner", "kNotValueListMode",
                                        "kInvalidArgs"};
}  // namespace

// The client message id is also read ahead of the signature check (see SerializeIn).
struct eValueList::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("ClientMessageId", &eValueList::m_ClientMessageId),
                      Field("ReturnCode", &eValueList::m_ReturnCode).Named(kReturnCodeTexts),
                      Field("XmlContent", &eValueList::m_XmlContent));
  static constexpr Layout kLayouts[] = {{0x11334356}};
  static constexpr ENumberWire kSignatureWire = ENumberWire::kUnsigned32;
  // The client message id is read before the signature is checked, as the message always was.
  static constexpr const char* kReadBeforeCheck = "ClientMessageId";
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eValueList", 326,
                                              "eValueList::SerializeIn"};
};

namespace {

const char* const kRequestTypeNames[eValueList::kRequestTypeCount] = {
    "invalid-command",
    "register-from-state-machine",
    "deregister-from-state-machine",
    "configuration-to-state-machine",
    "config-update-request",
    "ack-config-update-request",
    "ack-hal-label-update",
    "ack-hal-label-enable-disable",
    "arb-request",
    "arb-release",
    "arb-grant",
    "label-update",
    "hal-label-update",
    "label-enable-disable",
    "hal-label-enable-disable",
    "cookie-request",
    "ack-configuration-to-state-machine",
    "label-dirty",
    "background-update",
    "background-cookie-request",
    "label-with-mask-update",
    "background-configuration-to-state-machine",
    "background-dirty",
    "ack-background-configuration-to-state-machine"};

// The request types that an XML "request-type" text is matched against, in the order tried; the
// first name that the text begins with wins. "invalid-command", "label-update" and
// "label-enable-disable" are deliberately not among them.
const unsigned int kParsedRequestTypes[] = {3, 16, 1, 2,  8,  10, 9,  4,  5,  15, 12,
                                            6, 14, 7, 17, 18, 19, 20, 21, 22, 23};

// A declared payload length beyond this many bytes per character of XML is not allocated by
// Parse: no XML could fill more (the shortest entry element, "<lc/>", stands for 21 bytes).
constexpr std::uint64_t kPayloadPerXmlCharacter = 5;

// The interned element names of the XML form.
struct XmlNames {
  const char* valuelist = vqml_intern("valuelist");
  const char* portId = vqml_intern("port-id");
  const char* dstId = vqml_intern("dst-id");
  const char* srcId = vqml_intern("src-id");
  const char* requestType = vqml_intern("request-type");
  const char* userDefined = vqml_intern("user-defined");
  const char* payloadLength = vqml_intern("payload-length");
  const char* payloadData = vqml_intern("payload-data");
  const char* labelConfig = vqml_intern("lc");
  const char* labelUpdate = vqml_intern("hlu");
  const char* backgroundConfig = vqml_intern("bc");
};

const XmlNames& Names() {
  static const XmlNames names;
  return names;
}

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};
struct FreeElement {
  void operator()(vqml_content* element) const { vqml_free_element(element); }
};
using MessagePtr = std::unique_ptr<vqvaluelist_msg, FreeMemory>;
using ElementPtr = std::unique_ptr<vqml_content, FreeElement>;

unsigned char* PayloadOf(vqvaluelist_msg* message) {
  return reinterpret_cast<unsigned char*>(message + 1);
}

// A payload seen through its bounds: bytes outside it read as 0 and are never written. Numbers
// are `width` bytes in host byte order.
class PayloadBytes {
 public:
  PayloadBytes(unsigned char* data, std::uint64_t size) : m_Data(data), m_Size(size) {}

  std::uint64_t Size() const { return m_Size; }

  std::uint64_t Load(std::uint64_t offset, unsigned int width) const {
    unsigned char bytes[8] = {};
    for (unsigned int i = 0; i < width && offset + i < m_Size; ++i)
      bytes[i] = m_Data[offset + i];
    return FromHostBytes(bytes, width);
  }

  void Store(std::uint64_t offset, unsigned int width, std::uint64_t value) {
    unsigned char bytes[8];
    ToHostBytes(value, width, bytes);
    for (unsigned int i = 0; i < width && offset + i < m_Size; ++i)
      m_Data[offset + i] = bytes[i];
  }

 private:
  template <typename T>
  static std::uint64_t FromBytes(const unsigned char* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }
  static std::uint64_t FromHostBytes(const unsigned char* bytes, unsigned int width) {
    switch (width) {
      case 1:
        return bytes[0];
      case 2:
        return FromBytes<std::uint16_t>(bytes);
      case 4:
        return FromBytes<std::uint32_t>(bytes);
      default:
        return FromBytes<std::uint64_t>(bytes);
    }
  }
  template <typename T>
  static void ToBytes(std::uint64_t value, unsigned char* bytes) {
    const T narrow = static_cast<T>(value);
    std::memcpy(bytes, &narrow, sizeof narrow);
  }
  static void ToHostBytes(std::uint64_t value, unsigned int width, unsigned char* bytes) {
    switch (width) {
      case 1:
        return ToBytes<std::uint8_t>(value, bytes);
      case 2:
        return ToBytes<std::uint16_t>(value, bytes);
      case 4:
        return ToBytes<std::uint32_t>(value, bytes);
      default:
        return ToBytes<std::uint64_t>(value, bytes);
    }
  }

  unsigned char* m_Data;
  std::uint64_t m_Size;
};

// One number of an entry in the binary form: its offset in the entry and its width in bytes.
// In the XML form it is written as 2 x width hexadecimal digits.
struct EntryField {
  unsigned int offset;
  unsigned int width;
};

// A number of an entry together with how the entry holds it, so that one table states both the
// binary layout and the entry's fields.
template <typename Entry>
struct MemberField : EntryField {
  std::uint64_t (*get)(const Entry&);
  void (*set)(Entry&, std::uint64_t);
};

template <auto Member>
struct MemberAccess;

template <typename Entry, typename T, T Entry::*Member>
struct MemberAccess<Member> {
  static std::uint64_t Get(const Entry& entry) { return entry.*Member; }
  static void Set(Entry& entry, std::uint64_t value) { entry.*Member = static_cast<T>(value); }
  using Owner = Entry;
};

// The field held by data member `Member`, at `offset` with `width` bytes.
template <auto Member>
constexpr MemberField<typename MemberAccess<Member>::Owner> EntryBytes(unsigned int offset,
                                                                       unsigned int width) {
  return {{offset, width}, &MemberAccess<Member>::Get, &MemberAccess<Member>::Set};
}

// The numbers of `entry`, in the order of `fields`.
template <typename Entry, std::size_t N>
std::array<std::uint64_t, N> EntryValues(const MemberField<Entry> (&fields)[N],
                                         const Entry& entry) {
  std::array<std::uint64_t, N> values{};
  for (std::size_t i = 0; i < N; ++i)
    values[i] = fields[i].get(entry);
  return values;
}

// An entry made from its numbers, in the order of `fields`; each is cut to its member's type.
template <typename Entry, std::size_t N>
Entry MakeEntry(const MemberField<Entry> (&fields)[N], const std::array<std::uint64_t, N>& values) {
  Entry entry;
  for (std::size_t i = 0; i < N; ++i)
    fields[i].set(entry, values[i]);
  return entry;
}

// How each kind of entry lies in the binary form and reads in the XML form. `kFields` are its
// numbers in order (for a label update, those before its values); `kTrailingBlank` says whether
// the XML text puts a blank after the last number too.
template <typename Entry>
struct EntryForm;

template <>
struct EntryForm<overlay_base_address> {
  using E = overlay_base_address;
  static constexpr unsigned int kSize = 21;
  static constexpr MemberField<E> kFields[] = {
      EntryBytes<&E::cookie>(0, 8),      EntryBytes<&E::stream_num>(8, 2),
      EntryBytes<&E::udf_num>(10, 2),    EntryBytes<&E::field4>(12, 1),
      EntryBytes<&E::item_count>(13, 4), EntryBytes<&E::field6>(17, 4)};
  static constexpr bool kTrailingBlank = true;
};

template <>
struct EntryForm<background_base_address> {
  using E = background_base_address;
  static constexpr unsigned int kSize = 20;
  static constexpr MemberField<E> kFields[] = {
      EntryBytes<&E::field1>(0, 8), EntryBytes<&E::field2>(8, 4), EntryBytes<&E::field3>(12, 2),
      EntryBytes<&E::field4>(14, 2), EntryBytes<&E::field5>(16, 4)};
  static constexpr bool kTrailingBlank = false;
};

template <>
struct EntryForm<valuelist_label_enable_disable_entry> {
  using E = valuelist_label_enable_disable_entry;
  static constexpr unsigned int kSize = 12;
  static constexpr MemberField<E> kFields[] = {
      EntryBytes<&E::field1>(0, 2), EntryBytes<&E::field2>(2, 2), EntryBytes<&E::field3>(4, 4),
      EntryBytes<&E::field4>(8, 4)};
};

// A label update: stream num, udf num, offset and value count, then 4 bytes per value. Its
// members are private, so its fields go through the accessors.
template <>
struct EntryForm<eValueListLabelUpdateEntry> {
  using E = eValueListLabelUpdateEntry;
  static constexpr unsigned int kHeadSize = 12;
  static constexpr unsigned int kValueWidth = 4;
  static constexpr std::size_t kCountIndex = 3;
  static constexpr MemberField<E> kFields[] = {
      {{0, 2},
       [](const E& e) -> std::uint64_t { return e.GetStreamNum(); },
       [](E& e, std::uint64_t v) { e.SetStreamNum(static_cast<unsigned short>(v)); }},
      {{2, 2},
       [](const E& e) -> std::uint64_t { return e.GetUdfNum(); },
       [](E& e, std::uint64_t v) { e.SetUdfNum(static_cast<unsigned short>(v)); }},
      {{4, 4},
       [](const E& e) -> std::uint64_t { return e.GetOffset(); },
       [](E& e, std::uint64_t v) { e.SetOffset(static_cast<unsigned int>(v)); }},
      {{8, 4},
       [](const E& e) -> std::uint64_t { return e.GetValueCount(); },
       [](E& e, std::uint64_t v) { e.SetValueCount(static_cast<unsigned int>(v)); }}};
  static constexpr bool kTrailingBlank = true;
};

// The numbers of `values` at the offsets of `fields`, from `at`.
template <typename Field, std::size_t N, typename Values>
void StoreFields(PayloadBytes& payload, std::uint64_t at, const Field (&fields)[N],
                 const Values& values) {
  for (std::size_t i = 0; i < N; ++i)
    payload.Store(at + fields[i].offset, fields[i].width, values[i]);
}

template <typename Field, std::size_t N>
std::array<std::uint64_t, N> LoadFields(const PayloadBytes& payload, std::uint64_t at,
                                        const Field (&fields)[N]) {
  std::array<std::uint64_t, N> values{};
  for (std::size_t i = 0; i < N; ++i)
    values[i] = payload.Load(at + fields[i].offset, fields[i].width);
  return values;
}

// The size of an entry in the binary form.
template <typename Entry>
std::uint64_t EntrySize(const Entry&) {
  return EntryForm<Entry>::kSize;
}

std::uint64_t EntrySize(const eValueListLabelUpdateEntry& entry) {
  using Form = EntryForm<eValueListLabelUpdateEntry>;
  return Form::kHeadSize + std::uint64_t{Form::kValueWidth} * entry.GetValueCount();
}

// The bytes that `entries` fill in the binary form, back to back.
template <typename Entry>
std::uint64_t EntriesSize(const std::vector<Entry>& entries) {
  std::uint64_t size = 0;
  for (const Entry& entry : entries)
    size += EntrySize(entry);
  return size;
}

// Writes one entry at `at`; returns its size in the binary form.
template <typename Entry>
std::uint64_t StoreEntry(PayloadBytes& payload, std::uint64_t at, const Entry& entry) {
  StoreFields(payload, at, EntryForm<Entry>::kFields,
              EntryValues(EntryForm<Entry>::kFields, entry));
  return EntrySize(entry);
}

std::uint64_t StoreEntry(PayloadBytes& payload, std::uint64_t at,
                         const eValueListLabelUpdateEntry& entry) {
  using Form = EntryForm<eValueListLabelUpdateEntry>;
  StoreFields(payload, at, Form::kFields, EntryValues(Form::kFields, entry));
  for (unsigned int i = 0; i < entry.GetValueCount(); ++i)
    payload.Store(at + Form::kHeadSize + Form::kValueWidth * i, Form::kValueWidth,
                  entry.GetValue(i));
  return EntrySize(entry);
}

template <typename Entry>
void StoreEntries(PayloadBytes& payload, const std::vector<Entry>& entries) {
  std::uint64_t at = 0;
  for (const Entry& entry : entries)
    at += StoreEntry(payload, at, entry);
}

// Calls `use(entries)` with the list that the message's request type carries in the binary form;
// not at all for a type that carries none.
template <typename Use>
void ForEntriesOf(const eValueList& message, Use&& use) {
  switch (message.GetRequestType()) {
    case eValueList::kConfigurationToStateMachine:
      use(message.GetLabelConfigs());
      break;
    case eValueList::kLabelUpdate:
    case eValueList::kHalLabelUpdate:
      use(message.GetLabelUpdates());
      break;
    case eValueList::kLabelEnableDisable:
    case eValueList::kHalLabelEnableDisable:
      use(message.GetLabelDisablers());
      break;
    case eValueList::kBackgroundConfigurationToStateMachine:
      use(message.GetBackgroundConfigs());
      break;
    default:
      break;
  }
}

// Writes the entries of the message's request type back to back from the payload's start, as
// far as the payload reaches.
void StorePayload(const eValueList& message, PayloadBytes& payload) {
  ForEntriesOf(message, [&payload](const auto& entries) { StoreEntries(payload, entries); });
}

// The bytes that the entries of the message's request type fill in the binary form.
std::uint64_t FilledPayload(const eValueList& message) {
  std::uint64_t size = 0;
  ForEntriesOf(message, [&size](const auto& entries) { size = EntriesSize(entries); });
  return size;
}

// True for the request types whose XML carries the entries ("payload-data").
bool HasPayloadData(unsigned int requestType) {
  return requestType == eValueList::kConfigurationToStateMachine ||
         requestType == eValueList::kHalLabelUpdate ||
         requestType == eValueList::kBackgroundConfigurationToStateMachine;
}

// Appends an entry for every whole entry size that the payload holds.
template <typename Entry>
void LoadEntries(const PayloadBytes& payload, std::vector<Entry>& entries) {
  using Form = EntryForm<Entry>;
  for (std::uint64_t at = 0; payload.Size() - at >= Form::kSize; at += Form::kSize)
    entries.push_back(MakeEntry(Form::kFields, LoadFields(payload, at, Form::kFields)));
}

// Appends the label updates of a payload. The walk is kept as the message format has it: each
// value count is cut to what remains of the payload, only the values at indices that are
// multiples of 4 are taken (SetValue ignores the indices at and above the value count, so the
// others stay 0), and the next entry starts after the count read from the message.
void LoadLabelUpdates(const PayloadBytes& payload,
                      std::vector<eValueListLabelUpdateEntry>& entries) {
  using Form = EntryForm<eValueListLabelUpdateEntry>;
  std::uint64_t remaining = payload.Size();
  for (std::uint64_t at = 0; remaining >= Form::kHeadSize;) {
    std::array<std::uint64_t, 4> head = LoadFields(payload, at, Form::kFields);
    const std::uint64_t count = head[Form::kCountIndex];
    remaining -= Form::kHeadSize;
    const bool truncated = remaining < Form::kValueWidth * count;
    const std::uint64_t valueCount = truncated ? remaining / Form::kValueWidth : count;
    // The index bound of the walk over the values: 4 x count, or remaining / 4 when cut.
    const std::uint64_t bound =
        truncated ? remaining / Form::kValueWidth : Form::kValueWidth * count;
    head[Form::kCountIndex] = valueCount;
    eValueListLabelUpdateEntry entry = MakeEntry(Form::kFields, head);
    // Indices from valueCount on change nothing; only their share of `remaining` is counted.
    for (std::uint64_t i = 0; i < valueCount; i += 4) {
      const std::uint64_t value =
          payload.Load(at + Form::kHeadSize + Form::kValueWidth * i, Form::kValueWidth);
      entry.SetValue(static_cast<unsigned int>(i), static_cast<unsigned int>(value));
    }
    remaining -= Form::kValueWidth * ((bound + 3) / 4);
    entries.push_back(std::move(entry));
    at += Form::kHeadSize + Form::kValueWidth * count;
  }
}

// ---------------------------------------------------------------------------------------------
// XML text.

void AppendHex(std::string& text, std::uint64_t value, unsigned int digits) {
  char buffer[16];
  text.append(buffer, WriteLowerHex(buffer, value, digits));
}

// The numbers of an entry as its XML text: 2 x width digits each, blank-separated.
template <typename Field, std::size_t N, typename Values>
void AppendFieldsText(std::string& text, const Field (&fields)[N], const Values& values,
                      bool trailingBlank) {
  for (std::size_t i = 0; i < N; ++i) {
    if (i > 0) text += ' ';
    AppendHex(text, values[i], 2 * fields[i].width);
  }
  if (trailingBlank) text += ' ';
}

// An element of `contents` in front of `next`, taking both over; nothing leaks when memory runs
// out.
ElementPtr NewElement(const char* name, ElementPtr contents, ElementPtr next) {
  ElementPtr element(vqml_new_element(name, nullptr, contents.get(), next.get()));
  contents.release();
  next.release();
  return element;
}

// An element holding one text, in front of `next`.
ElementPtr TextElement(const char* name, const std::string& text, ElementPtr next) {
  return NewElement(name, ElementPtr(vqml_new_text_pool(text.c_str(), text.size())),
                    std::move(next));
}

std::string HexText(std::uint64_t value) {
  std::string text;
  AppendHex(text, value, 1);
  return text;
}

// The entry elements of a payload of fixed-size entries, one per started entry size within the
// payload length, each linked in front of the one before: the last entry comes first.
template <typename Entry>
ElementPtr FixedEntryElements(const PayloadBytes& payload, const char* name) {
  using Form = EntryForm<Entry>;
  ElementPtr elements;
  std::string text;
  for (std::uint64_t at = 0; at < payload.Size(); at += Form::kSize) {
    text.clear();
    AppendFieldsText(text, Form::kFields, LoadFields(payload, at, Form::kFields),
                     Form::kTrailingBlank);
    elements = TextElement(name, text, std::move(elements));
  }
  return elements;
}

// The "hlu" elements of a label-update payload, linked in front of each other like the above.
ElementPtr LabelUpdateElements(const PayloadBytes& payload, const char* name) {
  using Form = EntryForm<eValueListLabelUpdateEntry>;
  ElementPtr elements;
  std::string text;
  std::uint64_t at = 0;
  for (std::int64_t remaining = static_cast<std::int64_t>(payload.Size()); remaining >= 1;) {
    const std::array<std::uint64_t, 4> head = LoadFields(payload, at, Form::kFields);
    text.clear();
    AppendFieldsText(text, Form::kFields, head, Form::kTrailingBlank);
    const std::uint64_t count = head[Form::kCountIndex];
    for (std::uint64_t i = 0; i < count; ++i) {
      AppendHex(text, payload.Load(at + Form::kHeadSize + Form::kValueWidth * i, Form::kValueWidth),
                2 * Form::kValueWidth);
      text += ' ';
    }
    elements = TextElement(name, text, std::move(elements));
    const std::uint64_t size = Form::kHeadSize + Form::kValueWidth * count;
    at += size;
    remaining -= static_cast<std::int64_t>(size);
  }
  return elements;
}

// Reads a hexadecimal number as "%x" and "%lx" do (strtoul's rules) from [begin, end): blanks
// first, a sign, a "0x", then digits; too large a number gives the largest value. Sets
// `converted` when any digit was read.
std::uint64_t ScanHex(const char* begin, const char* end, bool* converted = nullptr) {
  const char* at = begin;
  while (at < end && (*at == ' ' || (*at >= '\t' && *at <= '\r')))
    ++at;
  const bool negative = at < end && *at == '-';
  if (at < end && (*at == '-' || *at == '+')) ++at;
  if (end - at >= 3 && at[0] == '0' && (at[1] == 'x' || at[1] == 'X') && HexValue(at[2]) >= 0) {
    at += 2;
  }
  std::uint64_t value = 0;
  bool any = false;
  bool overflow = false;
  for (; at < end && HexValue(*at) >= 0; ++at) {
    overflow = overflow || (value >> 60) != 0;
    value = (value << 4) | static_cast<unsigned int>(HexValue(*at));
    any = true;
  }
  if (converted != nullptr) *converted = any;
  if (!any) return 0;
  if (overflow) return UINT64_MAX;
  return negative ? 0 - value : value;
}

std::uint64_t ScanHex(const char* text) {
  return ScanHex(text, text + std::strlen(text));
}

// Calls `take(index, begin, end)` for each token of `text` split at blanks, skipping the empty
// ones.
template <typename Take>
void ForEachToken(const char* text, Take&& take) {
  unsigned int index = 0;
  while (*text != '\0') {
    const char* const end = std::strchr(text, ' ');
    const char* const tokenEnd = end != nullptr ? end : text + std::strlen(text);
    if (tokenEnd != text) take(index++, text, tokenEnd);
    if (end == nullptr) return;
    text = end + 1;
  }
}

// A token as the number of a field: an 8-byte field reads all 64 bits ("%lx"), a narrower one
// the low 32 ("%x"), then keeps its width.
std::uint64_t FieldToken(const EntryField& field, const char* begin, const char* end) {
  const std::uint64_t value = ScanHex(begin, end);
  return field.width == 8 ? value : static_cast<std::uint32_t>(value);
}

// The text of an element's first content, or null when that is not a text.
const char* FirstText(vqml_content* element) {
  vqml_content* const first = vqml_elem_contents(element);
  return vqml_cont_type(first) == kVqmlText ? vqml_text(first) : nullptr;
}

// Writes the tokens of one fixed-size entry text at `at`; returns the entry size.
template <typename Entry>
std::uint64_t StoreEntryText(PayloadBytes& payload, std::uint64_t at, const char* text) {
  using Form = EntryForm<Entry>;
  constexpr std::size_t kCount = std::size(Form::kFields);
  ForEachToken(text, [&](unsigned int index, const char* begin, const char* end) {
    if (index >= kCount) return;
    const EntryField& field = Form::kFields[index];
    payload.Store(at + field.offset, field.width, FieldToken(field, begin, end));
  });
  return Form::kSize;
}

// Writes the tokens of one "hlu" text at `at`: the four head numbers, then every further token as
// a value. Returns 4 bytes per token, which lays the entries 4 bytes further apart than their
// binary size; the message format keeps this spacing.
std::uint64_t StoreLabelUpdateText(PayloadBytes& payload, std::uint64_t at, const char* text) {
  using Form = EntryForm<eValueListLabelUpdateEntry>;
  constexpr unsigned int kHeadCount = std::size(Form::kFields);
  std::uint64_t tokens = 0;
  ForEachToken(text, [&](unsigned int index, const char* begin, const char* end) {
    const EntryField value = {Form::kHeadSize + Form::kValueWidth * (index - kHeadCount),
                              Form::kValueWidth};
    const EntryField& field = index < kHeadCount ? Form::kFields[index] : value;
    payload.Store(at + field.offset, field.width, FieldToken(field, begin, end));
    ++tokens;
  });
  return Form::kValueWidth * tokens;
}

// Writes the entries of a "payload-data" element into the payload, in document order, from its
// start. The request type chooses which child elements are entries; others are skipped.
void StorePayloadData(vqml_content* payloadData, unsigned int requestType, PayloadBytes& payload) {
  const XmlNames& names = Names();
  using StoreText = std::uint64_t (*)(PayloadBytes&, std::uint64_t, const char*);
  const char* name = nullptr;
  StoreText store = nullptr;
  switch (requestType) {
    case eValueList::kConfigurationToStateMachine:
      name = names.labelConfig;
      store = &StoreEntryText<overlay_base_address>;
      break;
    case eValueList::kHalLabelUpdate:
      name = names.labelUpdate;
      store = &StoreLabelUpdateText;
      break;
    case eValueList::kBackgroundConfigurationToStateMachine:
      name = names.backgroundConfig;
      store = &StoreEntryText<background_base_address>;
      break;
    default:
      return;
  }
  std::uint64_t at = 0;
  for (vqml_content* child = vqml_elem_contents(payloadData); child != nullptr;
       child = vqml_cont_next(child)) {
    if (vqml_elem_name(child) != name) continue;
    const char* const text = FirstText(child);
    at += store(payload, at, text != nullptr ? text : "");
  }
}

// The XML tree of a message whose binary payload is `payload`: the header fields in a fixed
// order, then the entries of the request types that carry them, the last entry first.
ElementPtr MessageElement(const eValueList& message, const PayloadBytes& payload, int portId) {
  const XmlNames& names = Names();
  ElementPtr chain;
  switch (message.GetRequestType()) {
    case eValueList::kConfigurationToStateMachine:
      chain = FixedEntryElements<overlay_base_address>(payload, names.labelConfig);
      break;
    case eValueList::kHalLabelUpdate:
      chain = LabelUpdateElements(payload, names.labelUpdate);
      break;
    case eValueList::kBackgroundConfigurationToStateMachine:
      chain = FixedEntryElements<background_base_address>(payload, names.backgroundConfig);
      break;
    default:
      break;
  }
  if (HasPayloadData(message.GetRequestType()))
    chain = NewElement(names.payloadData, std::move(chain), nullptr);
  chain = TextElement(names.payloadLength, HexText(message.GetPayloadLength()), std::move(chain));
  const unsigned long userDefined = message.GetUserDefined();
  unsigned char bytes[sizeof userDefined];
  std::memcpy(bytes, &userDefined, sizeof bytes);
  chain =
      TextElement(names.userDefined, JoinLowerHexPairs(bytes, sizeof bytes, ""), std::move(chain));
  chain = TextElement(names.requestType, EnumText(message.GetRequestType(), kRequestTypeNames),
                      std::move(chain));
  chain = TextElement(names.srcId, HexText(message.GetSrcId()), std::move(chain));
  chain = TextElement(names.dstId, HexText(message.GetDstId()), std::move(chain));
  chain = TextElement(names.portId, std::to_string(portId), std::move(chain));
  return NewElement(names.valuelist, std::move(chain), nullptr);
}

// The request type whose name `text` begins with, tried in the fixed order; `current` when none.
unsigned int MatchRequestType(const char* text, unsigned int current) {
  for (const unsigned int type : kParsedRequestTypes) {
    const char* const name = kRequestTypeNames[type];
    if (std::strncmp(text, name, std::strlen(name)) == 0) return type;
  }
  return current;
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// Entries.

bool overlay_base_address::operator==(const overlay_base_address& other) const {
  return EntryValues(EntryForm<overlay_base_address>::kFields, *this) ==
         EntryValues(EntryForm<overlay_base_address>::kFields, other);
}

bool valuelist_label_enable_disable_entry::operator==(
    const valuelist_label_enable_disable_entry& other) const {
  return EntryValues(EntryForm<valuelist_label_enable_disable_entry>::kFields, *this) ==
         EntryValues(EntryForm<valuelist_label_enable_disable_entry>::kFields, other);
}

bool background_base_address::operator==(const background_base_address& other) const {
  return EntryValues(EntryForm<background_base_address>::kFields, *this) ==
         EntryValues(EntryForm<background_base_address>::kFields, other);
}

unsigned int eValueListLabelUpdateEntry::GetValue(unsigned int index) const {
  return index < m_Values.size() ? m_Values[index] : 0;
}

void eValueListLabelUpdateEntry::SetValue(unsigned int index, unsigned int value) {
  if (index < m_Values.size()) m_Values[index] = value;
}

bool eValueListLabelUpdateEntry::IsEqual(const eValueListLabelUpdateEntry& other) const {
  return m_StreamNum == other.m_StreamNum && m_UdfNum == other.m_UdfNum &&
         m_Offset == other.m_Offset && m_Values == other.m_Values;
}

// ---------------------------------------------------------------------------------------------
// The message.

template <typename Self>
auto eValueList::ValuesOf(Self& self) {
  return std::tie(self.m_DstId, self.m_SrcId, self.m_RequestType, self.m_PayloadLength,
                  self.m_UserDefined, self.m_ClientMessageId, self.m_ReturnCode, self.m_XmlContent,
                  self.m_LabelConfigs, self.m_LabelUpdates, self.m_LabelDisablers,
                  self.m_BackgroundConfigs);
}

eValueList::eValueList()
    : m_DstId(0),
      m_SrcId(0),
      m_RequestType(0),
      m_PayloadLength(0),
      m_UserDefined(0),
      m_Printer(vqml_new_printer(&eValueList::xmlprinter, this)),
      m_Parser(vqml_new_parser()),
      m_ClientMessageId(0),
      m_ReturnCode(0) {}

eValueList::eValueList(const eValueList& other) : eValueList() {
  Copy(other);
}

eValueList& eValueList::operator=(const eValueList& other) {
  Copy(other);
  return *this;
}

eValueList::~eValueList() {
  // The parser handle owns nothing (see vqml_new_parser) and is not released.
  vqml_free_printer(m_Printer);
}

void eValueList::Copy(const eValueList& other) {
  if (this != &other) ValuesOf(*this) = ValuesOf(other);
}

void eValueList::Swap(eValueList& other) {
  auto mine = ValuesOf(*this);
  auto theirs = ValuesOf(other);
  mine.swap(theirs);
}

void eValueList::Empty() {
  eValueList fresh;
  Swap(fresh);
}

void eValueList::SwapDstSrcId() {
  std::swap(m_DstId, m_SrcId);
}

unsigned int eValueList::GetLabelConfigCookie(unsigned int index) const {
  return index < m_LabelConfigs.size() ? static_cast<unsigned int>(m_LabelConfigs[index].cookie)
                                       : 0;
}

unsigned int eValueList::GetLabelConfigStreamNum(unsigned int index) const {
  return index < m_LabelConfigs.size() ? m_LabelConfigs[index].stream_num : 0;
}

unsigned int eValueList::GetLabelConfigUdfNum(unsigned int index) const {
  return index < m_LabelConfigs.size() ? m_LabelConfigs[index].udf_num : 0;
}

unsigned int eValueList::GetLabelConfigItemCount(unsigned int index) const {
  return index < m_LabelConfigs.size() ? m_LabelConfigs[index].item_count : 0;
}

bool eValueList::IsEqual(const eValueList& other) const {
  return ValuesOf(*this) == ValuesOf(other);
}

std::string eValueList::ToString() const {
  std::ostringstream text;
  text << "Client Message Id: " << m_ClientMessageId << ", Return Code: " << m_ReturnCode;
  if (m_XmlContent.GetSize() > 0) text << ", XmlContent: " << m_XmlContent.GetHexString();
  return text.str();
}

const char* eValueList::ReturnCodeToString() const {
  return EnumText(m_ReturnCode, kReturnCodeTexts);
}

const char* const* eValueList::value_list_msg_type_ascii() {
  return kRequestTypeNames;
}

unsigned int eValueList::str2hex(const char* text) {
  return text != nullptr ? static_cast<std::uint32_t>(ScanHex(text)) : 0;
}

unsigned long eValueList::xmlprinter(const char* text, unsigned long length, const void* context) {
  EBlob& content = static_cast<eValueList*>(const_cast<void*>(context))->m_XmlContent;
  const unsigned int piece = static_cast<unsigned int>(std::min<unsigned long>(length, UINT32_MAX));
  if (content.GetSize() == 0) {
    content.SetData(text, piece);  // reuses the allocation that earlier content left
    return length;
  }
  EBlob joined(content.GetData(), content.GetSize(), text, piece);
  content.Swap(joined);
  return length;
}

vqvaluelist_msg* eValueList::class2struct() const {
  MessagePtr message(
      static_cast<vqvaluelist_msg*>(std::calloc(sizeof(vqvaluelist_msg) + m_PayloadLength, 1)));
  if (message == nullptr) return nullptr;
  message->dst_id = m_DstId;
  message->src_id = m_SrcId;
  message->request_type = m_RequestType;
  message->user_defined = m_UserDefined;
  message->payload_length = m_PayloadLength;
  PayloadBytes payload(PayloadOf(message.get()), m_PayloadLength);
  StorePayload(*this, payload);
  return message.release();
}

bool eValueList::struct2class(vqvaluelist_msg* message) {
  TakeMessage(*message, PayloadOf(message), message->payload_length);
  return true;
}

void eValueList::TakeMessage(const vqvaluelist_msg& header, unsigned char* payloadBytes,
                             std::uint64_t available) {
  m_DstId = header.dst_id;
  m_SrcId = header.src_id;
  m_PayloadLength = header.payload_length;
  m_RequestType = header.request_type;
  m_UserDefined = header.user_defined;
  const PayloadBytes payload(payloadBytes, std::min<std::uint64_t>(available, m_PayloadLength));
  switch (m_RequestType) {
    case kConfigurationToStateMachine:
      LoadEntries(payload, m_LabelConfigs);
      break;
    case kBackgroundConfigurationToStateMachine:
      LoadEntries(payload, m_BackgroundConfigs);
      break;
    case kLabelEnableDisable:
    case kHalLabelEnableDisable:
      LoadEntries(payload, m_LabelDisablers);
      break;
    case kLabelUpdate:
    case kHalLabelUpdate:
      LoadLabelUpdates(payload, m_LabelUpdates);
      break;
    default:
      break;
  }
}

bool eValueList::Encode(int portId) {
  const bool hasPayloadData = HasPayloadData(m_RequestType);
  // The payload is allocated only as far as the entries fill it, and a bounded margin of zeros.
  if (hasPayloadData && m_PayloadLength > FilledPayload(*this) + kMaxPayloadBeyondEntries) {
    return false;
  }
  // Memory that runs out ends in a refusal as well: no exception leaves the library.
  try {
    std::vector<unsigned char> bytes(hasPayloadData ? m_PayloadLength : 0);
    PayloadBytes payload(bytes.data(), bytes.size());
    StorePayload(*this, payload);
    return SetXML(MessageElement(*this, payload, portId).get());
  } catch (const std::exception&) {
    m_XmlContent.Empty();
    return false;
  }
}

vqml_content* eValueList::GetXML() const {
  const char* cursor = reinterpret_cast<const char*>(m_XmlContent.GetData());
  unsigned long remaining = m_XmlContent.GetSize();
  vqml_content* root = nullptr;
  vqml_content* element = nullptr;
  while (remaining > 0 && vqml_parse_element_bounded(m_Parser, &cursor, &remaining, &element)) {
    vqml_free_element(root);
    root = element;
  }
  return root;
}

bool eValueList::SetXML(const vqml_content* element) {
  m_XmlContent.Empty();
  return vqml_cont_type(element) == kVqmlElement && vqml_print_element(m_Printer, element) != 0;
}

void eValueList::Parse() {
  const ElementPtr root(GetXML());
  if (root == nullptr) return;
  const XmlNames& names = Names();
  // A wrong root name is only a warning: the children are read all the same.
  if (vqml_elem_name(root.get()) != names.valuelist)
    std::printf("valuelist_xml2bin: BAD WRAPPER\n");
  vqvaluelist_msg header{};
  MessagePtr message;
  std::uint64_t available = 0;  // payload bytes allocated behind the message's header
  for (vqml_content* child = vqml_elem_contents(root.get()); child != nullptr;
       child = vqml_cont_next(child)) {
    const char* const name = vqml_elem_name(child);
    if (name == nullptr) continue;
    if (name == names.payloadData) {
      // Entries need the message, which the payload length creates.
      if (message == nullptr) continue;
      PayloadBytes payload(PayloadOf(message.get()), available);
      StorePayloadData(child, message->request_type, payload);
      continue;
    }
    const char* const text = FirstText(child);
    if (text == nullptr) continue;
    if (name == names.dstId) {
      header.dst_id = static_cast<unsigned char>(str2hex(text));
    } else if (name == names.srcId) {
      header.src_id = static_cast<unsigned char>(str2hex(text));
    } else if (name == names.requestType) {
      header.request_type =
          static_cast<unsigned short>(MatchRequestType(text, header.request_type));
    } else if (name == names.userDefined) {
      // Read into 32 bits: only a 0 survives the sixteen digits that Encode writes.
      header.user_defined = str2hex(text);
    } else if (name == names.payloadLength) {
      header.payload_length = str2hex(text);
      // The message holds the header as assembled so far; later header fields do not reach it.
      // A length beyond what the XML could fill is allocated only as far as it could.
      available = std::min<std::uint64_t>(header.payload_length,
                                          kPayloadPerXmlCharacter * m_XmlContent.GetSize());
      message.reset(static_cast<vqvaluelist_msg*>(std::calloc(sizeof header + available, 1)));
      if (message == nullptr) return;
      std::memcpy(message.get(), &header, sizeof header);
    }
    // "port-id" is read by nobody; any other element is ignored.
  }
  if (message != nullptr) TakeMessage(*message, PayloadOf(message.get()), available);
}

template class ERecord<eValueList>;
