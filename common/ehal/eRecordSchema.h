// The record schema: how a record's source file states its archive form, and the one machinery
// that writes, reads, describes and statically describes every record from that statement.
// Internal to the library.
//
// A record `X : ERecord<X>` defines, in its source file:
//
//   struct X::Schema {
//     static constexpr auto kFields = std::make_tuple(   // archive order
//         Field("PortId", &X::m_PortId),                  // wire form from the member's type
//         Field("Destination", &X::m_Destination, kByte),  // or given explicitly
//         ...);
//     static constexpr Layout kLayouts[] = {             // every accepted layout, newest first
//         {0x33224457},                                  // the one written: every field
//         {0x33224456, From("Destination")},             // an older one: from that field on
//     };
//     static constexpr ERefusalReport kRefusal = {file, line, function};
//   };
//   template class ERecord<X>;
//
// A layout either carries the newest layout's fields from a named one on (newer layouts put their
// added fields first), or lists the names of the fields it carries in archive order, which may
// include fields that only older layouts carry (`kReadOnlyFields`) and kDropped for a value the
// record no longer keeps. Names are resolved when the record is compiled: a misspelt name, a
// listed layout out of schema order or a repeated signature does not compile.
//
// A schema may also declare, each optional:
//   kSignatureWire      the form the signature is written in (default kSignedOutUnsignedIn);
//   kReadOnlyFields     fields that only older layouts carry, read and never written;
//   kBeforeRead         a member function the reader calls before anything is read (Empty);
//   kOnSignature        Set(&X::m_Member, value): a value stored as soon as the signature is
//                       read, before it is checked (so a refused record keeps it too);
//   kReadBeforeCheck    the name of the last field read before the signature is checked;
//   kAfterRead          a member function the reader calls after the fields;
// and a field may say `.OrWhenAbsent(value)`: the value it takes from a layout that lacks it
// (otherwise it keeps its value). A schema without kLayouts describes a record that travels
// without a signature of its own.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "detail/eContainerRead.h"
#include "eArchive.h"
#include "eBlob.h"
#include "eRecord.h"
#include "eRecordDescription.h"

namespace eHal::detail {

// ---------------------------------------------------------------------------------------------
// Codecs: how one value travels. A codec is a stateless struct with static functions, in one of
// four roles, each checked at compile time where it is used:
//   - member codec (Field): Write(archive, const M&), Read(archive, M&),
//     Describe(visitor, name, const M&) for the member's type M;
//   - record codec (Property): the same three taking the whole record, for a value that no
//     single member holds;
//   - read-only codec (a field of kReadOnlyFields): Read only;
//   - item codec of a zero-ended list: Write(archive, const Item&),
//     ReadRest(archive, lead, items) and Describe(visitor, name, const Item&).
// Every codec also states its type for the static description: a static Type(), or
// TypeFor<M>() when the type depends on the member's type.

template <typename Codec, typename T, typename = void>
struct HasWrite : std::false_type {};
template <typename Codec, typename T>
struct HasWrite<
    Codec, T,
    std::void_t<decltype(Codec::Write(std::declval<EArchive&>(), std::declval<const T&>()))>>
    : std::true_type {};

template <typename Codec, typename T, typename = void>
struct HasRead : std::false_type {};
template <typename Codec, typename T>
struct HasRead<Codec, T,
               std::void_t<decltype(Codec::Read(std::declval<EArchive&>(), std::declval<T&>()))>>
    : std::true_type {};

template <typename Codec, typename T, typename = void>
struct HasDescribe : std::false_type {};
template <typename Codec, typename T>
struct HasDescribe<
    Codec, T,
    std::void_t<decltype(Codec::Describe(std::declval<ERecordVisitor&>(),
                                         std::declval<const char*>(), std::declval<const T&>()))>>
    : std::true_type {};

template <typename Codec, typename = void>
struct HasPlainType : std::false_type {};
template <typename Codec>
struct HasPlainType<Codec, std::void_t<decltype(Codec::Type())>> : std::true_type {};

template <typename Codec, typename T, typename = void>
struct HasTypeFor : std::false_type {};
template <typename Codec, typename T>
struct HasTypeFor<Codec, T, std::void_t<decltype(Codec::template TypeFor<T>())>> : std::true_type {
};

template <typename Codec, typename T, typename Items, typename = void>
struct HasReadRest : std::false_type {};
template <typename Codec, typename T, typename Items>
struct HasReadRest<
    Codec, T, Items,
    std::void_t<decltype(Codec::ReadRest(std::declval<EArchive&>(), std::declval<unsigned int>(),
                                         std::declval<Items&>()))>> : std::true_type {};

// The roles, as compile-time tests.
template <typename Codec, typename T>
inline constexpr bool kStatesType = HasPlainType<Codec>::value || HasTypeFor<Codec, T>::value;
template <typename Codec, typename T>
inline constexpr bool kIsValueCodec = HasWrite<Codec, T>::value&& HasRead<Codec, T>::value&&
    HasDescribe<Codec, T>::value&& kStatesType<Codec, T>;
template <typename Codec, typename T>
inline constexpr bool kIsReadOnlyCodec = HasRead<Codec, T>::value&& kStatesType<Codec, T>;
template <typename Codec, typename Item, typename Items>
inline constexpr bool kIsItemCodec =
    HasWrite<Codec, Item>::value&& HasReadRest<Codec, Item, Items>::value&&
        HasDescribe<Codec, Item>::value&& kStatesType<Codec, Item>;

// The type a codec states for values of type T.
template <typename Codec, typename T>
EValueType TypeOf() {
  static_assert(kStatesType<Codec, T>, "a codec states its type: Type() or TypeFor<T>()");
  if constexpr (HasPlainType<Codec>::value) {
    return Codec::Type();
  } else {
    return Codec::template TypeFor<T>();
  }
}

template <ENumberWire W>
struct NumberCodec {
  static constexpr ENumberWire kWire = W;

  template <typename Member>
  static void Write(EArchive& archive, const Member& value) {
    if constexpr (IsSignedWire(W)) {
      archive.WriteSignedInt(static_cast<int>(value));
    } else if constexpr (W == ENumberWire::kUnsigned64) {
      archive.WriteUnsigned64Int(static_cast<unsigned long>(value));
    } else {
      archive.WriteUnsignedInt(Narrow(static_cast<unsigned int>(value)));
    }
  }

  template <typename Member>
  static void Read(EArchive& archive, Member& value) {
    if constexpr (W == ENumberWire::kSigned32) {
      value = static_cast<Member>(archive.ReadSignedInt());
    } else if constexpr (W == ENumberWire::kUnsigned64) {
      value = static_cast<Member>(archive.ReadUnsigned64Int());
    } else if constexpr (W == ENumberWire::kBool) {
      value = archive.ReadUnsignedInt() != 0;
    } else {
      value = static_cast<Member>(Narrow(archive.ReadUnsignedInt()));
    }
  }

  template <typename Member>
  static void Describe(ERecordVisitor& visitor, const char* name, const Member& value) {
    visitor.Number(name, W, Described(value));
  }

  // The value as a description carries it: sign-extended to 64 bits for the signed forms,
  // narrowed to what the form keeps for the others.
  template <typename Member>
  static std::uint64_t Described(const Member& value) {
    if constexpr (IsSignedWire(W)) {
      return static_cast<std::uint64_t>(std::int64_t{static_cast<int>(value)});
    } else if constexpr (W == ENumberWire::kUnsigned64) {
      return static_cast<unsigned long>(value);
    } else {
      return Narrow(static_cast<unsigned int>(value));
    }
  }

  static EValueType Type() { return EValueType::Number(W); }

  // The bits of a 32-bit value that this form keeps.
  static unsigned int Narrow(unsigned int value) {
    if constexpr (W == ENumberWire::kUnsigned8) return static_cast<unsigned char>(value);
    if constexpr (W == ENumberWire::kUnsigned16) return static_cast<unsigned short>(value);
    if constexpr (W == ENumberWire::kBool) return value != 0 ? 1u : 0u;
    return value;
  }
};

// Explicit wire forms for a field whose member type would choose another.
inline constexpr NumberCodec<ENumberWire::kUnsigned8> kByte{};
inline constexpr NumberCodec<ENumberWire::kUnsigned16> kShort{};
inline constexpr NumberCodec<ENumberWire::kUnsigned32> kUnsigned{};
inline constexpr NumberCodec<ENumberWire::kSigned32> kSigned{};
inline constexpr NumberCodec<ENumberWire::kSignedOutUnsignedIn> kSignedOutUnsignedIn{};

// A string: 64-bit length and raw bytes, read back with a 32-bit length clamped to what remains.
struct TextCodec {
  static void Write(EArchive& archive, const std::string& value) { archive << value; }
  static void Read(EArchive& archive, std::string& value) { archive >> value; }
  static void Describe(ERecordVisitor& visitor, const char* name, const std::string& value) {
    visitor.Text(name, value);
  }
  static EValueType Type() { return EValueType::Text(); }
};

// A byte blob in its own archive form.
struct BlobCodec {
  static void Write(EArchive& archive, const EBlob& value) { archive << value; }
  static void Read(EArchive& archive, EBlob& value) { archive >> value; }
  static void Describe(ERecordVisitor& visitor, const char* name, const EBlob& value) {
    visitor.Bytes(name, value);
  }
  static EValueType Type() { return EValueType::Blob(); }
};

// A nested record in its own archive form.
struct NestedCodec {
  template <typename Record>
  static void Write(EArchive& archive, const Record& value) {
    archive << value;
  }
  template <typename Record>
  static void Read(EArchive& archive, Record& value) {
    archive >> value;
  }
  template <typename Record>
  static void Describe(ERecordVisitor& visitor, const char* name, const Record& value) {
    value.Describe(visitor, name);
  }
  template <typename Record>
  static EValueType TypeFor() {
    return EValueType::Record(&Record::Description);
  }
};

// The part of a record that its base class `Base` writes, in the base's own archive form.
template <typename Base>
struct BasePartCodec {
  template <typename Record>
  static void Write(EArchive& archive, const Record& record) {
    record.Base::SerializeOut(archive);
  }
  template <typename Record>
  static void Read(EArchive& archive, Record& record) {
    record.Base::SerializeIn(archive);
  }
  template <typename Record>
  static void Describe(ERecordVisitor& visitor, const char* name, const Record& record) {
    record.Base::Describe(visitor, name);
  }
  static EValueType Type() { return EValueType::Record(&Base::Description); }
};

// A byte blob in its own archive form that no member holds as it travels: `Get(record)` makes it
// from the record and `Set(record, blob)` puts the blob read back. For use with Property.
template <auto Get, auto Set>
struct BlobOfCodec {
  template <typename Record>
  static void Write(EArchive& archive, const Record& record) {
    archive << std::invoke(Get, record);
  }
  template <typename Record>
  static void Read(EArchive& archive, Record& record) {
    EBlob bytes;
    archive >> bytes;
    std::invoke(Set, record, bytes);
  }
  template <typename Record>
  static void Describe(ERecordVisitor& visitor, const char* name, const Record& record) {
    visitor.Bytes(name, std::invoke(Get, record));
  }
  static EValueType Type() { return EValueType::Blob(); }
};

template <typename Member, typename = void>
struct DefaultCodec {
  using Type = NestedCodec;
};

template <typename Member>
using CodecOf = typename DefaultCodec<Member>::Type;

// A description made once per `Make` and kept for the process.
template <typename Make>
const ERecordDescription& Kept() {
  static const ERecordDescription description = Make::Description();
  return description;
}

// A vector: its count (written as unsigned 64-bit, read as unsigned 32-bit), then the items.
struct VectorCodec {
  template <typename Item>
  static void Write(EArchive& archive, const std::vector<Item>& items) {
    ::SerializeOut(archive, items);
  }
  template <typename Item>
  static void Read(EArchive& archive, std::vector<Item>& items) {
    ::SerializeIn(archive, items);
  }
  template <typename Item>
  static void Describe(ERecordVisitor& visitor, const char* name, const std::vector<Item>& items) {
    visitor.BeginList(name, ECountWire::kUnsigned64, items.size());
    for (const Item& item : items)
      CodecOf<Item>::Describe(visitor, "", item);
    visitor.EndList();
  }
  template <typename Items>
  static EValueType TypeFor() {
    using Item = typename Items::value_type;
    return EValueType::List(ECountWire::kUnsigned64, TypeOf<CodecOf<Item>, Item>());
  }
};

// A map: its count, then key and item for each entry in key order. The reader (the free map
// reader) clears the map, refuses a storing archive, and stores each pair read, a later pair
// replacing the value of an equal key; it stops where the data runs out (see ReadCounted).
struct MapCodec {
  template <typename Key, typename Item>
  static void Write(EArchive& archive, const std::map<Key, Item>& items) {
    ::SerializeOut(archive, items);
  }
  template <typename Key, typename Item>
  static void Read(EArchive& archive, std::map<Key, Item>& items) {
    ::SerializeIn(archive, items);
  }
  template <typename Key, typename Item>
  static void Describe(ERecordVisitor& visitor, const char* name,
                       const std::map<Key, Item>& items) {
    visitor.BeginList(name, ECountWire::kUnsigned64, items.size());
    for (const auto& entry : items) {
      visitor.BeginRecord("");
      CodecOf<Key>::Describe(visitor, "Key", entry.first);
      CodecOf<Item>::Describe(visitor, "Value", entry.second);
      visitor.EndRecord();
    }
    visitor.EndList();
  }

  // One entry, described as a record of its key and value.
  template <typename Key, typename Item>
  struct Entry {
    static ERecordDescription Description() {
      ERecordDescription entry;
      entry.fields = {{"Key", TypeOf<CodecOf<Key>, Key>()},
                      {"Value", TypeOf<CodecOf<Item>, Item>()}};
      return entry;
    }
  };
  template <typename Items>
  static EValueType TypeFor() {
    using Entry = Entry<typename Items::key_type, typename Items::mapped_type>;
    return EValueType::List(ECountWire::kUnsigned64, EValueType::Record(&Kept<Entry>));
  }
};

// A fixed number of items with no count on the wire, each in the form `Item` gives.
template <typename Item>
struct FixedArrayCodec {
  template <typename T, std::size_t N>
  static void Write(EArchive& archive, const T (&items)[N]) {
    for (const T& item : items)
      Item::Write(archive, item);
  }
  template <typename T, std::size_t N>
  static void Read(EArchive& archive, T (&items)[N]) {
    for (T& item : items)
      Item::Read(archive, item);
  }
  template <typename T, std::size_t N>
  static void Describe(ERecordVisitor& visitor, const char* name, const T (&items)[N]) {
    visitor.BeginList(name, ECountWire::kFixed, N);
    for (const T& item : items)
      Item::Describe(visitor, "", item);
    visitor.EndList();
  }
  template <typename Array>
  static EValueType TypeFor() {
    using T = std::remove_extent_t<Array>;
    return EValueType::List(ECountWire::kFixed, TypeOf<Item, T>(), std::extent_v<Array>);
  }
};

// A list without a count, ended by a 0 where the next item would begin; no item begins with 0.
// `Item` is an item codec (see above): ReadRest(archive, lead, items) reads the rest of an item
// whose leading number `lead` is read already and adds it to `items` (or drops it). The reader
// replaces the list and stops at the 0, or where the data runs out, since the archive would then
// start over from its beginning.
template <typename Item>
struct ZeroEndedCodec {
  template <typename Items>
  static void Write(EArchive& archive, const Items& items) {
    static_assert(kIsItemCodec<Item, typename Items::value_type, Items>,
                  "a zero-ended list's item codec has Write, ReadRest, Describe and Type");
    for (const auto& item : items)
      Item::Write(archive, item);
    archive.WriteUnsignedInt(0);
  }
  template <typename Items>
  static void Read(EArchive& archive, Items& items) {
    items.clear();
    while (!ReadPastEnd(archive)) {
      const unsigned int lead = archive.ReadUnsignedInt();
      if (lead == 0) return;
      Item::ReadRest(archive, lead, items);
    }
  }
  template <typename Items>
  static void Describe(ERecordVisitor& visitor, const char* name, const Items& items) {
    visitor.BeginList(name, ECountWire::kZeroEnded, items.size());
    for (const auto& item : items)
      Item::Describe(visitor, "", item);
    visitor.EndList();
  }
  static EValueType Type() { return EValueType::List(ECountWire::kZeroEnded, Item::Type()); }
};

template <>
struct DefaultCodec<bool> {
  using Type = NumberCodec<ENumberWire::kBool>;
};
template <>
struct DefaultCodec<unsigned char> {
  using Type = NumberCodec<ENumberWire::kUnsigned8>;
};
template <>
struct DefaultCodec<unsigned short> {
  using Type = NumberCodec<ENumberWire::kUnsigned16>;
};
template <>
struct DefaultCodec<unsigned int> {
  using Type = NumberCodec<ENumberWire::kUnsigned32>;
};
template <>
struct DefaultCodec<int> {
  using Type = NumberCodec<ENumberWire::kSigned32>;
};
template <>
struct DefaultCodec<unsigned long> {
  using Type = NumberCodec<ENumberWire::kUnsigned64>;
};
template <>
struct DefaultCodec<std::string> {
  using Type = TextCodec;
};
template <>
struct DefaultCodec<EBlob> {
  using Type = BlobCodec;
};
// An enumeration travels as its underlying 32-bit number.
template <typename Enum>
struct DefaultCodec<Enum, std::enable_if_t<std::is_enum_v<Enum>>> {
  using Type =
      NumberCodec<std::is_signed_v<std::underlying_type_t<Enum>> ? ENumberWire::kSigned32
                                                                 : ENumberWire::kUnsigned32>;
};
template <typename Item>
struct DefaultCodec<std::vector<Item>> {
  using Type = VectorCodec;
};
template <typename Key, typename Item>
struct DefaultCodec<std::map<Key, Item>> {
  using Type = MapCodec;
};
template <typename Item, std::size_t N>
struct DefaultCodec<Item[N]> {
  using Type = FixedArrayCodec<CodecOf<Item>>;
};

template <typename Schema>
struct PartCodec;

// True when a member of type `Member` holds every number of the wire form `W`, so that a number
// read into it is written back unchanged. A bool holds only the 0 or 1 of kBool, which any
// integer holds too; an enumeration holds what its underlying type holds. No member keeps a
// negative kSignedOutUnsignedIn: it is written with its '-' and read back unsigned, which takes
// the '-' for a digit.
template <ENumberWire W, typename Member>
constexpr bool HoldsWire() {
  if constexpr (W == ENumberWire::kSignedOutUnsignedIn) {
    return false;
  } else if constexpr (std::is_enum_v<Member>) {
    return HoldsWire<W, std::underlying_type_t<Member>>();
  } else if constexpr (std::is_same_v<Member, bool>) {
    return W == ENumberWire::kBool;
  } else if constexpr (std::is_integral_v<Member>) {
    return sizeof(Member) * 8 >= WireBits(W);
  } else {
    return false;
  }
}

// Whether reading back in `Codec` into a `Member` stores every value that writing it carries:
// numbers the member holds whole, texts, blobs, lists of such items, and nested records, which
// answer for themselves through their descriptions (see ERecordDescription::KeepsEveryValue).
// Any other codec (a map, which orders and merges its entries; a zero-ended list, which a 0 item
// would end; a value computed from several members) is taken not to.
template <typename Codec, typename Member>
struct KeepsWhole : std::false_type {};
template <ENumberWire W, typename Member>
struct KeepsWhole<NumberCodec<W>, Member> : std::bool_constant<HoldsWire<W, Member>()> {};
template <>
struct KeepsWhole<TextCodec, std::string> : std::true_type {};
template <>
struct KeepsWhole<BlobCodec, EBlob> : std::true_type {};
template <typename Member>
struct KeepsWhole<NestedCodec, Member> : std::true_type {};
template <typename Base, typename Record>
struct KeepsWhole<BasePartCodec<Base>, Record> : std::true_type {};
template <typename Schema, typename T>
struct KeepsWhole<PartCodec<Schema>, T> : std::true_type {};
template <typename Item>
struct KeepsWhole<VectorCodec, std::vector<Item>> : KeepsWhole<CodecOf<Item>, Item> {};
template <typename Item, typename T, std::size_t N>
struct KeepsWhole<FixedArrayCodec<Item>, T[N]> : KeepsWhole<Item, T> {};

// ---------------------------------------------------------------------------------------------
// Fields.

// Member equality; arrays compare item by item.
template <typename T>
bool SameValue(const T& left, const T& right) {
  return left == right;
}
template <typename T, std::size_t N>
bool SameValue(const T (&left)[N], const T (&right)[N]) {
  return std::equal(left, left + N, right);
}

template <typename Field, typename Member>
struct AbsentOr;
template <typename Field>
struct NamedOf;

// The names of a number field's values: the text of value v is `texts[v]`, for v below `count`.
struct ValueNames {
  const char* const* texts = nullptr;
  std::size_t count = 0;

  // The name of `value`, or null for a value the table does not name.
  constexpr const char* Find(std::uint64_t value) const {
    return value < count ? texts[value] : nullptr;
  }
};

// One field: its name as a user prints it, the member it lives in and how it travels. A counter
// field takes part in the sums of the statistics records.
template <typename Record, typename Member, typename Codec, bool IsCounter = false>
struct FieldOf {
  static_assert(kIsReadOnlyCodec<Codec, Member>, "a field's codec reads the member's type");
  using CodecType = Codec;
  static constexpr bool kCounter = IsCounter;
  static constexpr bool kHasAbsentValue = false;
  static constexpr bool kKeepsWhole = KeepsWhole<Codec, Member>::value;

  const char* name;
  Member Record::*member;

  void Write(EArchive& archive, const Record& record) const {
    static_assert(kIsValueCodec<Codec, Member>, "a written field's codec is a member codec");
    Codec::Write(archive, record.*member);
  }
  void Read(EArchive& archive, Record& record) const { Codec::Read(archive, record.*member); }
  void Describe(ERecordVisitor& visitor, const Record& record) const {
    Codec::Describe(visitor, name, record.*member);
  }
  bool Equal(const Record& left, const Record& right) const {
    return SameValue(left.*member, right.*member);
  }
  static EValueType Type() { return TypeOf<Codec, Member>(); }

  // The same field, taking `value` from a layout that does not carry it.
  constexpr AbsentOr<FieldOf, Member> OrWhenAbsent(Member value) const { return {*this, value}; }
  // The same number field, its values named by `texts` (indexed from 0): the one table the
  // record's text form prints and its description states.
  template <std::size_t N>
  constexpr NamedOf<FieldOf> Named(const char* const (&texts)[N]) const {
    return {*this, ValueNames{texts, N}};
  }
};

// A number field whose values have names; a description hands the name beside the number.
template <typename Field>
struct NamedOf : Field {
  constexpr NamedOf(Field field, ValueNames names) : Field(field), names(names) {}

  template <typename Record>
  void Describe(ERecordVisitor& visitor, const Record& record) const {
    using Codec = typename Field::CodecType;
    const std::uint64_t value = Codec::Described(record.*(this->member));
    const char* const valueName = names.Find(value);
    if (valueName == nullptr) return visitor.Number(this->name, Codec::kWire, value);
    visitor.NamedNumber(this->name, Codec::kWire, value, valueName);
  }

  ValueNames names;
};

// A field that takes a given value from a layout that does not carry it.
template <typename Field, typename Member>
struct AbsentOr : Field {
  static constexpr bool kHasAbsentValue = true;

  constexpr AbsentOr(Field field, Member value) : Field(field), absent(value) {}
  template <typename Record>
  void SetAbsent(Record& record) const {
    record.*(this->member) = absent;
  }

  Member absent;
};

// A field that no single member holds (bytes computed from several members, a part written by a
// base class): its codec's Write, Read and Describe take the whole record.
template <typename Record, typename Codec>
struct PropertyOf {
  static_assert(kIsReadOnlyCodec<Codec, Record>, "a property's codec reads the whole record");
  static constexpr bool kCounter = false;
  static constexpr bool kHasAbsentValue = false;
  static constexpr bool kKeepsWhole = KeepsWhole<Codec, Record>::value;

  const char* name;

  void Write(EArchive& archive, const Record& record) const {
    static_assert(kIsValueCodec<Codec, Record>, "a written property's codec is a record codec");
    Codec::Write(archive, record);
  }
  void Read(EArchive& archive, Record& record) const { Codec::Read(archive, record); }
  void Describe(ERecordVisitor& visitor, const Record& record) const {
    Codec::Describe(visitor, name, record);
  }
  static EValueType Type() { return TypeOf<Codec, Record>(); }
};

template <typename Record, typename Codec>
constexpr PropertyOf<Record, Codec> Property(const char* name, Codec) {
  return {name};
}

template <typename Record, typename Member>
constexpr FieldOf<Record, Member, CodecOf<Member>> Field(const char* name, Member Record::*member) {
  return {name, member};
}

template <typename Record, typename Member, typename Codec>
constexpr FieldOf<Record, Member, Codec> Field(const char* name, Member Record::*member, Codec) {
  return {name, member};
}

template <typename Record, typename Member>
constexpr FieldOf<Record, Member, CodecOf<Member>, true> Counter(const char* name,
                                                                 Member Record::*member) {
  return {name, member};
}

// A member and the value a reader stores in it (see kOnSignature).
template <typename Record, typename Member>
struct MemberValue {
  Member Record::*member;
  Member value;
};

template <typename T>
struct Same {
  using Type = T;
};

template <typename Record, typename Member>
constexpr MemberValue<Record, Member> Set(Member Record::*member,
                                          typename Same<Member>::Type value) {
  return {member, value};
}

// ---------------------------------------------------------------------------------------------
// Layouts, by field name.

// In a listed layout: a value the layout carries and the record no longer keeps, read as an
// unsigned int and dropped.
inline constexpr const char kDropped[] = "(dropped)";

// An older layout that carries the newest layout's fields from the named one on.
struct From {
  constexpr explicit From(const char* field) : field(field) {}
  const char* field;
};

// One accepted layout: its signature and the fields it carries: every field (the first layout),
// the fields from a named one on, or the names listed (a static array of the schema, which may
// name kReadOnlyFields and kDropped).
struct Layout {
  // Which of the three a layout is. (Stated, rather than read off null pointers, because a
  // pointer comparison is not a constant expression under every sanitizer.)
  enum class Carries : unsigned char { kEvery, kFrom, kListed };

  constexpr Layout(unsigned int signature) : signature(signature) {}
  constexpr Layout(unsigned int signature, From from)
      : signature(signature), carries(Carries::kFrom), from(from.field) {}
  template <std::size_t N>
  constexpr Layout(unsigned int signature, const char* const (&fields)[N])
      : signature(signature), carries(Carries::kListed), fields(fields), fieldCount(N) {}

  unsigned int signature;
  Carries carries = Carries::kEvery;
  const char* from = nullptr;
  const char* const* fields = nullptr;
  std::size_t fieldCount = 0;
};

// True when Op<T> is well formed: the test behind a schema's optional declarations.
template <template <typename> class Op, typename T, typename = void>
struct Detected : std::false_type {};
template <template <typename> class Op, typename T>
struct Detected<Op, T, std::void_t<Op<T>>> : std::true_type {};

template <typename S>
using LayoutsDeclared = decltype(S::kLayouts);
template <typename Schema>
using HasSignature = Detected<LayoutsDeclared, Schema>;

template <typename Schema, typename = void>
struct SignatureWireOf {
  static constexpr ENumberWire kValue = ENumberWire::kSignedOutUnsignedIn;
};
template <typename Schema>
struct SignatureWireOf<Schema, std::void_t<decltype(Schema::kSignatureWire)>> {
  static constexpr ENumberWire kValue = Schema::kSignatureWire;
};

template <typename Schema, typename = void>
struct ReadOnlyFieldsOf {
  static constexpr auto kValue = std::tuple<>();
};
template <typename Schema>
struct ReadOnlyFieldsOf<Schema, std::void_t<decltype(Schema::kReadOnlyFields)>> {
  static constexpr const auto& kValue = Schema::kReadOnlyFields;
};

template <typename Schema>
constexpr std::size_t kFieldCount = std::tuple_size_v<std::decay_t<decltype(Schema::kFields)>>;
template <typename Schema>
constexpr std::size_t kReadOnlyCount =
    std::tuple_size_v<std::decay_t<decltype(ReadOnlyFieldsOf<Schema>::kValue)>>;

template <typename Fields, std::size_t... I>
constexpr std::array<const char*, sizeof...(I)> NamesOf(const Fields& fields,
                                                        std::index_sequence<I...>) {
  return {std::get<I>(fields).name...};
}

// The names of kFields, then those of kReadOnlyFields: a field's position is its index here.
template <typename Schema>
constexpr std::array<const char*, kFieldCount<Schema> + kReadOnlyCount<Schema>> FieldNamesOf() {
  const auto fields = NamesOf(Schema::kFields, std::make_index_sequence<kFieldCount<Schema>>{});
  const auto readOnly =
      NamesOf(ReadOnlyFieldsOf<Schema>::kValue, std::make_index_sequence<kReadOnlyCount<Schema>>{});
  std::array<const char*, kFieldCount<Schema> + kReadOnlyCount<Schema>> names{};
  for (std::size_t i = 0; i < fields.size(); ++i)
    names[i] = fields[i];
  for (std::size_t i = 0; i < readOnly.size(); ++i)
    names[fields.size() + i] = readOnly[i];
  return names;
}

constexpr bool SameText(const char* left, const char* right) {
  while (*left != '\0' && *left == *right) {
    ++left;
    ++right;
  }
  return *left == *right;
}

// Not constexpr: a layout that reaches one of these does not compile, and the compiler's message
// names the function, which says what is wrong.
void LayoutNamesAFieldNotInTheSchema();
void LayoutFromNamesAReadOnlyField();
void ListedLayoutIsOutOfSchemaOrder();
void ListedLayoutIsTooLong();
void SignatureRepeatedInLayouts();
void FirstLayoutMustCarryEveryField();
void ReadBeforeCheckIsNotALeadingFieldOfEveryLayout();

// The position of the field of that name.
template <typename Schema>
constexpr std::size_t PositionOf(const char* name) {
  constexpr auto names = FieldNamesOf<Schema>();
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (SameText(names[i], name)) return i;
  }
  LayoutNamesAFieldNotInTheSchema();
  return 0;
}

inline constexpr std::size_t kMaxListedFields = 16;
inline constexpr int kDroppedPosition = -1;

// A layout with its names resolved to positions: either the kFields from `first` on, or the
// `count` positions listed (kDroppedPosition for kDropped). `carried` has bit p set when the
// layout carries the field at position p.
struct ResolvedLayout {
  unsigned int signature = 0;
  bool listed = false;
  std::size_t first = 0;
  std::size_t count = 0;
  int positions[kMaxListedFields] = {};
  std::uint64_t carried = 0;

  constexpr bool Carries(std::size_t position) const { return ((carried >> position) & 1u) != 0; }
};

template <typename Schema>
constexpr ResolvedLayout Resolve(const Layout& layout) {
  ResolvedLayout resolved;
  resolved.signature = layout.signature;
  if (layout.carries != Layout::Carries::kListed) {
    resolved.first = layout.carries == Layout::Carries::kFrom ? PositionOf<Schema>(layout.from) : 0;
    if (resolved.first >= kFieldCount<Schema>) LayoutFromNamesAReadOnlyField();
    for (std::size_t p = resolved.first; p < kFieldCount<Schema>; ++p)
      resolved.carried |= std::uint64_t{1} << p;
    return resolved;
  }
  if (layout.fieldCount > kMaxListedFields) ListedLayoutIsTooLong();
  resolved.listed = true;
  resolved.count = layout.fieldCount;
  int previous = kDroppedPosition;
  for (std::size_t i = 0; i < layout.fieldCount; ++i) {
    if (SameText(layout.fields[i], kDropped)) {
      resolved.positions[i] = kDroppedPosition;
      continue;
    }
    const int position = static_cast<int>(PositionOf<Schema>(layout.fields[i]));
    if (position <= previous) ListedLayoutIsOutOfSchemaOrder();
    previous = position;
    resolved.positions[i] = position;
    resolved.carried |= std::uint64_t{1} << position;
  }
  return resolved;
}

template <typename Schema>
constexpr std::size_t kLayoutCount = std::extent_v<decltype(Schema::kLayouts)>;

// Every layout of the schema, resolved and checked.
template <typename Schema>
constexpr std::array<ResolvedLayout, kLayoutCount<Schema>> ResolveLayouts() {
  static_assert(kFieldCount<Schema> + kReadOnlyCount<Schema> <= 64, "at most 64 fields");
  std::array<ResolvedLayout, kLayoutCount<Schema>> layouts{};
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    const Layout& layout = Schema::kLayouts[i];
    if (i == 0 && layout.carries != Layout::Carries::kEvery) FirstLayoutMustCarryEveryField();
    for (std::size_t j = 0; j < i; ++j) {
      if (Schema::kLayouts[j].signature == layout.signature) SignatureRepeatedInLayouts();
    }
    layouts[i] = Resolve<Schema>(layout);
  }
  return layouts;
}

template <typename Schema>
struct Layouts {
  static constexpr std::array<ResolvedLayout, kLayoutCount<Schema>> kValue =
      ResolveLayouts<Schema>();
};

// ---------------------------------------------------------------------------------------------
// The machinery over a schema.

// Calls `visit(field)` on every field of a tuple in order, from position `first`.
template <typename Fields, typename Visit, std::size_t... I>
void ForEachIn(const Fields& fields, std::size_t first, Visit&& visit, std::index_sequence<I...>) {
  ((I >= first ? visit(std::get<I>(fields)) : void()), ...);
}
template <typename Fields, typename Visit>
void ForEachIn(const Fields& fields, Visit&& visit, std::size_t first = 0) {
  ForEachIn(fields, first, visit,
            std::make_index_sequence<std::tuple_size_v<std::decay_t<Fields>>>{});
}

// Calls `visit(field)` on every field of the schema in archive order, from position `first`.
template <typename Schema, typename Visit>
void ForEachField(Visit&& visit, std::size_t first = 0) {
  ForEachIn(Schema::kFields, visit, first);
}

// Calls `visit(field)` on the field at `position` of a tuple of fields.
template <typename Fields, typename Visit, std::size_t... I>
void VisitFieldAt(const Fields& fields, std::size_t position, Visit&& visit,
                  std::index_sequence<I...>) {
  ((I == position ? visit(std::get<I>(fields)) : void()), ...);
}
template <typename Fields, typename Visit>
void VisitFieldAt(const Fields& fields, std::size_t position, Visit&& visit) {
  VisitFieldAt(fields, position, visit,
               std::make_index_sequence<std::tuple_size_v<std::decay_t<Fields>>>{});
}

// Reads the field at `position`: one of kFields, or after them one of kReadOnlyFields.
template <typename Schema, typename Record>
void ReadFieldAt(EArchive& archive, Record& record, std::size_t position) {
  const auto read = [&](const auto& field) { field.Read(archive, record); };
  if (position < kFieldCount<Schema>) {
    VisitFieldAt(Schema::kFields, position, read);
  } else {
    VisitFieldAt(ReadOnlyFieldsOf<Schema>::kValue, position - kFieldCount<Schema>, read);
  }
}

// Writes the signature the newest layout carries (if the record has one).
template <typename Schema>
void WriteSignature(EArchive& archive) {
  if constexpr (HasSignature<Schema>::value) {
    NumberCodec<SignatureWireOf<Schema>::kValue>::Write(archive, Schema::kLayouts[0].signature);
  }
}

template <typename Schema, typename Record>
void WriteFields(EArchive& archive, const Record& record) {
  ForEachField<Schema>([&](const auto& field) { field.Write(archive, record); });
}

template <typename Schema, typename Record>
void Write(EArchive& archive, const Record& record) {
  WriteSignature<Schema>(archive);
  WriteFields<Schema>(archive, record);
}

// Gives every field with an absent value that `layout` does not carry that value.
template <typename Schema, typename Record>
void SetAbsentValues(Record& record, const ResolvedLayout& layout) {
  std::size_t position = 0;
  ForEachField<Schema>([&](const auto& field) {
    if constexpr (std::decay_t<decltype(field)>::kHasAbsentValue) {
      if (!layout.Carries(position)) field.SetAbsent(record);
    }
    ++position;
  });
}

// Reads the fields that `layout` carries, after the first `alreadyRead` of them (which the
// reader took before it checked the signature).
template <typename Schema, typename Record>
void ReadFields(EArchive& archive, Record& record, const ResolvedLayout& layout,
                std::size_t alreadyRead = 0) {
  SetAbsentValues<Schema>(record, layout);
  if (!layout.listed) {
    ForEachField<Schema>([&](const auto& field) { field.Read(archive, record); },
                         layout.first + alreadyRead);
    return;
  }
  for (std::size_t i = alreadyRead; i < layout.count; ++i) {
    const int position = layout.positions[i];
    if (position == kDroppedPosition) {
      archive.ReadUnsignedInt();
      continue;
    }
    ReadFieldAt<Schema>(archive, record, static_cast<std::size_t>(position));
  }
}

// The layout with this signature; a signature the schema does not accept is refused with its
// report.
template <typename Schema>
const ResolvedLayout& FindLayout(unsigned int signature) {
  for (const ResolvedLayout& layout : Layouts<Schema>::kValue) {
    if (layout.signature == signature) return layout;
  }
  Schema::kRefusal.Raise();
}

// The optional declarations of a schema (see the top of this file).
template <typename S>
using BeforeReadOf = decltype(S::kBeforeRead);
template <typename S>
using AfterReadOf = decltype(S::kAfterRead);
template <typename S>
using OnSignatureOf = decltype(S::kOnSignature);
template <typename S>
using ReadBeforeCheckOf = decltype(S::kReadBeforeCheck);
template <typename Schema>
constexpr bool kHasBeforeRead = Detected<BeforeReadOf, Schema>::value;
template <typename Schema>
constexpr bool kHasAfterRead = Detected<AfterReadOf, Schema>::value;
template <typename Schema>
constexpr bool kHasOnSignature = Detected<OnSignatureOf, Schema>::value;
template <typename Schema>
constexpr bool kHasReadBeforeCheck = Detected<ReadBeforeCheckOf, Schema>::value;

// How many leading fields the reader takes before it checks the signature; every layout must
// carry them first.
template <typename Schema>
constexpr std::size_t ReadBeforeCheckCount() {
  if constexpr (kHasReadBeforeCheck<Schema>) {
    const std::size_t count = PositionOf<Schema>(Schema::kReadBeforeCheck) + 1;
    for (const Layout& layout : Schema::kLayouts) {
      const ResolvedLayout resolved = Resolve<Schema>(layout);
      for (std::size_t i = 0; i < count; ++i) {
        const bool leads = resolved.listed
                               ? i < resolved.count && resolved.positions[i] == static_cast<int>(i)
                               : resolved.first == 0;
        if (!leads) ReadBeforeCheckIsNotALeadingFieldOfEveryLayout();
      }
    }
    return count;
  } else {
    return 0;
  }
}

// Reads the signature and the fields of the layout it names, with the declared steps around
// them; returns that layout.
template <typename Schema, typename Record>
const ResolvedLayout& Read(EArchive& archive, Record& record) {
  if constexpr (kHasBeforeRead<Schema>) (record.*Schema::kBeforeRead)();
  const unsigned int signature = archive.ReadUnsignedInt();
  if constexpr (kHasOnSignature<Schema>) {
    record.*(Schema::kOnSignature.member) = Schema::kOnSignature.value;
  }
  constexpr std::size_t early = ReadBeforeCheckCount<Schema>();
  for (std::size_t i = 0; i < early; ++i)
    ReadFieldAt<Schema>(archive, record, i);
  const ResolvedLayout& layout = FindLayout<Schema>(signature);
  ReadFields<Schema>(archive, record, layout, early);
  if constexpr (kHasAfterRead<Schema>) (record.*Schema::kAfterRead)();
  return layout;
}

// Reads a record without a signature of its own.
template <typename Schema, typename Record>
void ReadWithoutSignature(EArchive& archive, Record& record) {
  if constexpr (kHasBeforeRead<Schema>) (record.*Schema::kBeforeRead)();
  ForEachField<Schema>([&](const auto& field) { field.Read(archive, record); });
  if constexpr (kHasAfterRead<Schema>) (record.*Schema::kAfterRead)();
}

// Reads a record in the way its schema says: with or without a signature.
template <typename Schema, typename Record>
void ReadRecord(EArchive& archive, Record& record) {
  if constexpr (HasSignature<Schema>::value) {
    Read<Schema>(archive, record);
  } else {
    ReadWithoutSignature<Schema>(archive, record);
  }
}

template <typename Schema, typename Record>
void DescribeFields(ERecordVisitor& visitor, const Record& record) {
  ForEachField<Schema>([&](const auto& field) { field.Describe(visitor, record); });
}

template <typename Schema, typename Record>
void Describe(ERecordVisitor& visitor, const char* name, const Record& record) {
  visitor.BeginRecord(name);
  if constexpr (HasSignature<Schema>::value) {
    NumberCodec<SignatureWireOf<Schema>::kValue>::Describe(visitor, "Signature",
                                                           Schema::kLayouts[0].signature);
  }
  DescribeFields<Schema>(visitor, record);
  visitor.EndRecord();
}

// The names of the fields `layout` carries, in archive order.
template <typename Schema>
std::vector<std::string> FieldNames(const ResolvedLayout& layout) {
  constexpr auto names = FieldNamesOf<Schema>();
  std::vector<std::string> carried;
  if (!layout.listed) {
    for (std::size_t i = layout.first; i < kFieldCount<Schema>; ++i)
      carried.emplace_back(names[i]);
    return carried;
  }
  for (std::size_t i = 0; i < layout.count; ++i) {
    const int position = layout.positions[i];
    carried.emplace_back(position == kDroppedPosition ? kDropped
                                                      : names[static_cast<std::size_t>(position)]);
  }
  return carried;
}

// Every layout of the schema, newest first, with the fields each carries; none without a
// signature.
template <typename Schema>
std::vector<ERecordLayout> LayoutsOf() {
  std::vector<ERecordLayout> layouts;
  if constexpr (HasSignature<Schema>::value) {
    for (const ResolvedLayout& layout : Layouts<Schema>::kValue)
      layouts.push_back({layout.signature, FieldNames<Schema>(layout)});
  }
  return layouts;
}

template <typename Field>
using NamesOp = decltype(std::declval<const Field&>().names);

template <typename Fields>
std::vector<EFieldDescription> FieldDescriptions(const Fields& fields) {
  std::vector<EFieldDescription> described;
  ForEachIn(fields, [&](const auto& field) {
    EFieldDescription& added = described.emplace_back();
    added.name = field.name;
    added.type = std::decay_t<decltype(field)>::Type();
    if constexpr (Detected<NamesOp, std::decay_t<decltype(field)>>::value) {
      added.valueNames.assign(field.names.texts, field.names.texts + field.names.count);
    }
  });
  return described;
}

// True when reading the written layout back stores every field's value as written, as far as the
// schema's own fields go: each keeps its value whole and no step of the record's own follows the
// signature (kBeforeRead only empties the record before every field is read again).
template <typename Schema>
constexpr bool ReadKeepsFields() {
  if constexpr (kHasAfterRead<Schema> || kHasOnSignature<Schema>) {
    return false;
  } else {
    return std::apply(
        [](const auto&... fields) { return (std::decay_t<decltype(fields)>::kKeepsWhole && ...); },
        Schema::kFields);
  }
}

// The static description of the schema's record.
template <typename Schema>
ERecordDescription DescriptionOf() {
  ERecordDescription description;
  description.fields = FieldDescriptions(Schema::kFields);
  description.readKeepsFields = ReadKeepsFields<Schema>();
  description.readOnlyFields = FieldDescriptions(ReadOnlyFieldsOf<Schema>::kValue);
  if constexpr (HasSignature<Schema>::value) {
    description.hasSignature = true;
    description.signatureWire = SignatureWireOf<Schema>::kValue;
    description.layouts = LayoutsOf<Schema>();
    description.refusal = Schema::kRefusal;
  }
  return description;
}

// The description of a record without a signature of its own that `Schema` states (a part of a
// record, such as one port's entry), as a nested value's type.
template <typename Schema>
struct PartDescription {
  static ERecordDescription Description() { return DescriptionOf<Schema>(); }
};
template <typename Schema>
const ERecordDescription& KeptDescription() {
  return Kept<PartDescription<Schema>>();
}
template <typename Schema>
EValueType PartType() {
  return EValueType::Record(&KeptDescription<Schema>);
}

// A part of a record that `Schema` states, with or without a signature of its own: a member codec
// for a member of the part's type, or a record codec when the schema's fields take the record.
template <typename Schema>
struct PartCodec {
  template <typename T>
  static void Write(EArchive& archive, const T& part) {
    detail::Write<Schema>(archive, part);
  }
  template <typename T>
  static void Read(EArchive& archive, T& part) {
    ReadRecord<Schema>(archive, part);
  }
  template <typename T>
  static void Describe(ERecordVisitor& visitor, const char* name, const T& part) {
    detail::Describe<Schema>(visitor, name, part);
  }
  static EValueType Type() { return PartType<Schema>(); }
};

// Every field of the schema equal.
template <typename Schema, typename Record>
bool SameFields(const Record& left, const Record& right) {
  bool same = true;
  ForEachField<Schema>([&](const auto& field) { same = same && field.Equal(left, right); });
  return same;
}

}  // namespace eHal::detail

// ERecord's operations, compiled in each record's source file.
template <typename Derived>
void ERecord<Derived>::SerializeOut(EArchive& archive) const {
  eHal::detail::Write<typename Derived::Schema>(archive, static_cast<const Derived&>(*this));
}

template <typename Derived>
void ERecord<Derived>::SerializeIn(EArchive& archive) {
  eHal::detail::ReadRecord<typename Derived::Schema>(archive, static_cast<Derived&>(*this));
}

template <typename Derived>
void ERecord<Derived>::Describe(ERecordVisitor& visitor, const char* name) const {
  eHal::detail::Describe<typename Derived::Schema>(visitor, name,
                                                   static_cast<const Derived&>(*this));
}

template <typename Derived>
std::vector<ERecordLayout> ERecord<Derived>::Layouts() {
  return eHal::detail::LayoutsOf<typename Derived::Schema>();
}

template <typename Derived>
const ERecordDescription& ERecord<Derived>::Description() {
  return eHal::detail::KeptDescription<typename Derived::Schema>();
}
