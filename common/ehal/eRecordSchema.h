// The record schema: how a record's source file states its archive form, and the one machinery
// that writes, reads and describes every record from that statement. Internal to the library.
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
//         {0x33224456, Lacking(1)},                      // an older one: without the first field
//     };
//     static constexpr ESerializeErrorSite kError = {file, line, function};
//   };
//   template class ERecord<X>;
//
// A layout either lacks some leading fields of the newest one (newer layouts put their added
// fields first) or lists the fields it carries, which may include fields that only older layouts
// carry (`kReadOnlyFields`, numbered after kFields). A schema without kLayouts describes a record
// that travels without a signature of its own; `kSignatureWire` may say the signature is written
// unsigned. A step that a field list cannot say is a codec of its own (Write, Read, Describe) or
// a hand-written SerializeIn beside the schema.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "detail/eContainerRead.h"
#include "eArchive.h"
#include "eBlob.h"
#include "eRecord.h"

namespace eHal::detail {

// ---------------------------------------------------------------------------------------------
// Codecs: how one member travels. Each has Write, Read and Describe for its member type.

template <EWire W>
struct Number {
  template <typename Member>
  static void Write(EArchive& archive, const Member& value) {
    if constexpr (W == EWire::kSigned32 || W == EWire::kSignedOutUnsignedIn) {
      archive.WriteSignedInt(static_cast<int>(value));
    } else if constexpr (W == EWire::kUnsigned64) {
      archive.WriteUnsigned64Int(static_cast<unsigned long>(value));
    } else {
      archive.WriteUnsignedInt(Narrow(static_cast<unsigned int>(value)));
    }
  }

  template <typename Member>
  static void Read(EArchive& archive, Member& value) {
    if constexpr (W == EWire::kSigned32) {
      value = static_cast<Member>(archive.ReadSignedInt());
    } else if constexpr (W == EWire::kUnsigned64) {
      value = static_cast<Member>(archive.ReadUnsigned64Int());
    } else if constexpr (W == EWire::kBool) {
      value = archive.ReadUnsignedInt() != 0;
    } else {
      value = static_cast<Member>(Narrow(archive.ReadUnsignedInt()));
    }
  }

  template <typename Member>
  static void Describe(ERecordVisitor& visitor, const char* name, const Member& value) {
    if constexpr (W == EWire::kSigned32 || W == EWire::kSignedOutUnsignedIn) {
      visitor.Number(name, W, static_cast<std::uint64_t>(std::int64_t{static_cast<int>(value)}));
    } else if constexpr (W == EWire::kUnsigned64) {
      visitor.Number(name, W, static_cast<unsigned long>(value));
    } else {
      visitor.Number(name, W, Narrow(static_cast<unsigned int>(value)));
    }
  }

  // The bits of a 32-bit value that this form keeps.
  static unsigned int Narrow(unsigned int value) {
    if constexpr (W == EWire::kUnsigned8) return static_cast<unsigned char>(value);
    if constexpr (W == EWire::kUnsigned16) return static_cast<unsigned short>(value);
    if constexpr (W == EWire::kBool) return value != 0 ? 1u : 0u;
    return value;
  }
};

// Explicit wire forms for a field whose member type would choose another.
inline constexpr Number<EWire::kUnsigned8> kByte{};
inline constexpr Number<EWire::kUnsigned16> kShort{};
inline constexpr Number<EWire::kUnsigned32> kUnsigned{};
inline constexpr Number<EWire::kSigned32> kSigned{};
inline constexpr Number<EWire::kSignedOutUnsignedIn> kWrittenSigned{};

// A string: 64-bit length and raw bytes, read back with a 32-bit length clamped to what remains.
struct Text {
  static void Write(EArchive& archive, const std::string& value) { archive << value; }
  static void Read(EArchive& archive, std::string& value) { archive >> value; }
  static void Describe(ERecordVisitor& visitor, const char* name, const std::string& value) {
    visitor.Text(name, value);
  }
};

// A byte blob in its own archive form.
struct Bytes {
  static void Write(EArchive& archive, const EBlob& value) { archive << value; }
  static void Read(EArchive& archive, EBlob& value) { archive >> value; }
  static void Describe(ERecordVisitor& visitor, const char* name, const EBlob& value) {
    visitor.Bytes(name, value);
  }
};

// A nested record in its own archive form.
struct Nested {
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
};

// The part of a record that its base class `Base` writes, in the base's own archive form.
template <typename Base>
struct BasePart {
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
};

// A byte blob in its own archive form that no member holds as it travels: `Get(record)` makes it
// from the record and `Set(record, blob)` puts the blob read back. For use with Property.
template <auto Get, auto Set>
struct BlobOf {
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
};

template <typename Member, typename = void>
struct DefaultCodec {
  using Type = Nested;
};

template <typename Member>
using CodecOf = typename DefaultCodec<Member>::Type;

// A vector: its count (written as unsigned 64-bit, read as unsigned 32-bit), then the items.
struct Vector {
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
    visitor.BeginList(name, EWire::kUnsigned64, items.size());
    for (const Item& item : items)
      CodecOf<Item>::Describe(visitor, "", item);
    visitor.EndList();
  }
};

// A map: its count, then key and item for each entry in key order. The reader clears the map,
// refuses a storing archive, and stores each pair read, a later pair replacing the value of an
// equal key; it stops where the data runs out (see ReadCounted).
struct Map {
  template <typename Key, typename Item>
  static void Write(EArchive& archive, const std::map<Key, Item>& items) {
    ::SerializeOut(archive, items);
  }
  template <typename Key, typename Item>
  static void Read(EArchive& archive, std::map<Key, Item>& items) {
    StartMapRead(archive, items);
    ReadCounted(archive, archive.ReadUnsignedInt(),
                [&](unsigned int) { ReadMapEntry(archive, items); });
  }
  template <typename Key, typename Item>
  static void Describe(ERecordVisitor& visitor, const char* name,
                       const std::map<Key, Item>& items) {
    visitor.BeginList(name, EWire::kUnsigned64, items.size());
    for (const auto& entry : items) {
      visitor.BeginRecord("");
      CodecOf<Key>::Describe(visitor, "Key", entry.first);
      CodecOf<Item>::Describe(visitor, "Value", entry.second);
      visitor.EndRecord();
    }
    visitor.EndList();
  }
};

// A fixed number of items with no count on the wire, each in the form `Item` gives.
template <typename Item>
struct FixedArray {
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
    visitor.BeginList(name, EWire::kNone, N);
    for (const T& item : items)
      Item::Describe(visitor, "", item);
    visitor.EndList();
  }
};

// A list without a count, ended by a 0 where the next item would begin; no item begins with 0.
// `Item` says how one element travels: Write and Describe as a codec's, and
// ReadRest(archive, lead, items), which reads the rest of an item whose leading number `lead` is
// read already and adds it to `items` (or drops it). The reader replaces the list and stops at
// the 0, or where the data runs out, since the archive would then start over from its beginning.
template <typename Item>
struct ZeroEnded {
  template <typename Items>
  static void Write(EArchive& archive, const Items& items) {
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
    visitor.BeginList(name, EWire::kZeroEnded, items.size());
    for (const auto& item : items)
      Item::Describe(visitor, "", item);
    visitor.EndList();
  }
};

template <>
struct DefaultCodec<bool> {
  using Type = Number<EWire::kBool>;
};
template <>
struct DefaultCodec<unsigned char> {
  using Type = Number<EWire::kUnsigned8>;
};
template <>
struct DefaultCodec<unsigned short> {
  using Type = Number<EWire::kUnsigned16>;
};
template <>
struct DefaultCodec<unsigned int> {
  using Type = Number<EWire::kUnsigned32>;
};
template <>
struct DefaultCodec<int> {
  using Type = Number<EWire::kSigned32>;
};
template <>
struct DefaultCodec<unsigned long> {
  using Type = Number<EWire::kUnsigned64>;
};
template <>
struct DefaultCodec<std::string> {
  using Type = Text;
};
template <>
struct DefaultCodec<EBlob> {
  using Type = Bytes;
};
// An enumeration travels as its underlying 32-bit number.
template <typename Enum>
struct DefaultCodec<Enum, std::enable_if_t<std::is_enum_v<Enum>>> {
  using Type = Number<std::is_signed_v<std::underlying_type_t<Enum>> ? EWire::kSigned32
                                                                     : EWire::kUnsigned32>;
};
template <typename Item>
struct DefaultCodec<std::vector<Item>> {
  using Type = Vector;
};
template <typename Key, typename Item>
struct DefaultCodec<std::map<Key, Item>> {
  using Type = Map;
};
template <typename Item, std::size_t N>
struct DefaultCodec<Item[N]> {
  using Type = FixedArray<CodecOf<Item>>;
};

// ---------------------------------------------------------------------------------------------
// Fields and layouts.

// Member equality; arrays compare item by item.
template <typename T>
bool SameValue(const T& left, const T& right) {
  return left == right;
}
template <typename T, std::size_t N>
bool SameValue(const T (&left)[N], const T (&right)[N]) {
  return std::equal(left, left + N, right);
}

// One field: its name as a user prints it, the member it lives in and how it travels. A counter
// field takes part in the sums of the statistics records.
template <typename Record, typename Member, typename Codec, bool IsCounter = false>
struct FieldOf {
  static constexpr bool kCounter = IsCounter;

  const char* name;
  Member Record::*member;

  void Write(EArchive& archive, const Record& record) const {
    Codec::Write(archive, record.*member);
  }
  void Read(EArchive& archive, Record& record) const { Codec::Read(archive, record.*member); }
  void Describe(ERecordVisitor& visitor, const Record& record) const {
    Codec::Describe(visitor, name, record.*member);
  }
  bool Equal(const Record& left, const Record& right) const {
    return SameValue(left.*member, right.*member);
  }
};

// A field that no single member holds (bytes computed from several members, a part written by a
// base class): its codec's Write, Read and Describe take the whole record.
template <typename Record, typename Codec>
struct PropertyOf {
  static constexpr bool kCounter = false;

  const char* name;

  void Write(EArchive& archive, const Record& record) const { Codec::Write(archive, record); }
  void Read(EArchive& archive, Record& record) const { Codec::Read(archive, record); }
  void Describe(ERecordVisitor& visitor, const Record& record) const {
    Codec::Describe(visitor, name, record);
  }
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

// A field that a layout carries and the record no longer keeps: read as an unsigned int and
// dropped. Only a listed layout (see Layout) names it.
inline constexpr int kDropped = -1;

// How many leading fields of the newest layout an older layout lacks.
struct Lacking {
  constexpr explicit Lacking(unsigned int count) : count(count) {}
  unsigned int count;
};

// One accepted layout: its signature and the fields it carries, either the newest layout's
// without some leading ones, or the schema positions listed in `order` (kDropped for a value the
// record no longer keeps).
struct Layout {
  constexpr Layout(unsigned int signature) : signature(signature) {}
  constexpr Layout(unsigned int signature, Lacking lacking)
      : signature(signature), lacking(lacking.count) {}
  template <std::size_t N>
  constexpr Layout(unsigned int signature, const int (&order)[N])
      : signature(signature), order(order), orderLength(N) {}

  unsigned int signature;
  unsigned int lacking = 0;
  const int* order = nullptr;
  std::size_t orderLength = 0;
};

// ---------------------------------------------------------------------------------------------
// The machinery over a schema.

template <typename Schema, typename = void>
struct HasSignature : std::false_type {};
template <typename Schema>
struct HasSignature<Schema, std::void_t<decltype(Schema::kLayouts)>> : std::true_type {};

template <typename Schema, typename = void>
struct SignatureWireOf {
  static constexpr EWire kValue = EWire::kSignedOutUnsignedIn;
};
template <typename Schema>
struct SignatureWireOf<Schema, std::void_t<decltype(Schema::kSignatureWire)>> {
  static constexpr EWire kValue = Schema::kSignatureWire;
};

template <typename Schema>
constexpr std::size_t kFieldCount = std::tuple_size_v<std::decay_t<decltype(Schema::kFields)>>;

// Calls `visit(field)` on every field of the schema in archive order, from position `first`.
template <typename Schema, typename Visit, std::size_t... I>
void ForEachFieldFrom(std::size_t first, Visit&& visit, std::index_sequence<I...>) {
  ((I >= first ? visit(std::get<I>(Schema::kFields)) : void()), ...);
}
template <typename Schema, typename Visit>
void ForEachField(Visit&& visit, std::size_t first = 0) {
  ForEachFieldFrom<Schema>(first, visit, std::make_index_sequence<kFieldCount<Schema>>{});
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

// A schema may add `kReadOnlyFields`: fields that only older layouts carry, in a form the record
// no longer writes (a value to convert, a part of a member). A listed layout names them by
// position after kFields (the first is position kFieldCount); they are read, never written or
// described.
template <typename Schema, typename = void>
struct HasReadOnlyFields : std::false_type {};
template <typename Schema>
struct HasReadOnlyFields<Schema, std::void_t<decltype(Schema::kReadOnlyFields)>> : std::true_type {
};

// Reads the field at `position`: one of kFields, or after them one of kReadOnlyFields.
template <typename Schema, typename Record>
void ReadFieldAt(EArchive& archive, Record& record, std::size_t position) {
  const auto read = [&](const auto& field) { field.Read(archive, record); };
  if (position < kFieldCount<Schema>) {
    VisitFieldAt(Schema::kFields, position, read);
  } else if constexpr (HasReadOnlyFields<Schema>::value) {
    VisitFieldAt(Schema::kReadOnlyFields, position - kFieldCount<Schema>, read);
  }
}

// Writes the signature the newest layout carries (if the record has one).
template <typename Schema>
void WriteSignature(EArchive& archive) {
  if constexpr (HasSignature<Schema>::value) {
    Number<SignatureWireOf<Schema>::kValue>::Write(archive, Schema::kLayouts[0].signature);
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

// Reads the fields that `layout` carries, after the first `alreadyRead` of them (which a reader
// took before it checked the signature).
template <typename Schema, typename Record>
void ReadFields(EArchive& archive, Record& record, const Layout& layout,
                std::size_t alreadyRead = 0) {
  if (layout.order == nullptr) {
    ForEachField<Schema>([&](const auto& field) { field.Read(archive, record); },
                         layout.lacking + alreadyRead);
    return;
  }
  for (std::size_t i = alreadyRead; i < layout.orderLength; ++i) {
    const int position = layout.order[i];
    if (position == kDropped) {
      archive.ReadUnsignedInt();
      continue;
    }
    ReadFieldAt<Schema>(archive, record, static_cast<std::size_t>(position));
  }
}

// The layout with this signature; a signature the schema does not accept is its serialisation
// error.
template <typename Schema>
const Layout& FindLayout(unsigned int signature) {
  for (const Layout& layout : Schema::kLayouts) {
    if (layout.signature == signature) return layout;
  }
  Schema::kError.Raise();
}

// Reads the signature and the fields of the layout it names; returns that layout.
template <typename Schema, typename Record>
const Layout& Read(EArchive& archive, Record& record) {
  const Layout& layout = FindLayout<Schema>(archive.ReadUnsignedInt());
  ReadFields<Schema>(archive, record, layout);
  return layout;
}

// Reads a record without a signature of its own.
template <typename Schema, typename Record>
void ReadWithoutSignature(EArchive& archive, Record& record) {
  ForEachField<Schema>([&](const auto& field) { field.Read(archive, record); });
}

template <typename Schema, typename Record>
void DescribeFields(ERecordVisitor& visitor, const Record& record) {
  ForEachField<Schema>([&](const auto& field) { field.Describe(visitor, record); });
}

template <typename Schema, typename Record>
void Describe(ERecordVisitor& visitor, const char* name, const Record& record) {
  visitor.BeginRecord(name);
  if constexpr (HasSignature<Schema>::value) {
    Number<SignatureWireOf<Schema>::kValue>::Describe(visitor, "Signature",
                                                      Schema::kLayouts[0].signature);
  }
  DescribeFields<Schema>(visitor, record);
  visitor.EndRecord();
}

// The name of the field at `position`: one of kFields, or after them one of kReadOnlyFields.
template <typename Schema>
std::string FieldNameAt(std::size_t position) {
  std::string name;
  const auto take = [&](const auto& field) { name = field.name; };
  if (position < kFieldCount<Schema>) {
    VisitFieldAt(Schema::kFields, position, take);
  } else if constexpr (HasReadOnlyFields<Schema>::value) {
    VisitFieldAt(Schema::kReadOnlyFields, position - kFieldCount<Schema>, take);
  }
  return name;
}

// The names of the fields `layout` carries, in archive order.
template <typename Schema>
std::vector<std::string> FieldNames(const Layout& layout) {
  std::vector<std::string> names;
  if (layout.order == nullptr) {
    for (std::size_t i = layout.lacking; i < kFieldCount<Schema>; ++i)
      names.push_back(FieldNameAt<Schema>(i));
    return names;
  }
  for (std::size_t i = 0; i < layout.orderLength; ++i) {
    const int position = layout.order[i];
    names.push_back(position == kDropped ? std::string("(dropped)")
                                         : FieldNameAt<Schema>(static_cast<std::size_t>(position)));
  }
  return names;
}

// Every layout of the schema, newest first, with the fields each carries; none without a
// signature.
template <typename Schema>
std::vector<ERecordLayout> LayoutsOf() {
  std::vector<ERecordLayout> layouts;
  if constexpr (HasSignature<Schema>::value) {
    for (const Layout& layout : Schema::kLayouts)
      layouts.push_back({layout.signature, FieldNames<Schema>(layout)});
  }
  return layouts;
}

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
  using Schema = typename Derived::Schema;
  if constexpr (eHal::detail::HasSignature<Schema>::value) {
    eHal::detail::Read<Schema>(archive, static_cast<Derived&>(*this));
  } else {
    eHal::detail::ReadWithoutSignature<Schema>(archive, static_cast<Derived&>(*this));
  }
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
