// EStatsRecord: the shape shared by the protocol statistics records. A record is a fixed set of
// fields (mostly unsigned 32-bit counters) and an archive form made of one or more layouts, each
// a signature and the order in which that layout carries the fields. A record class derives from
// EStatsRecord, names its fields through accessors and describes its layouts in one table.
#pragma once

#include <array>
#include <cstddef>
#include <list>
#include <string>
#include <utility>

#include "eArchive.h"

namespace estats {

// The storage of a record: `Counters` unsigned 32-bit counters (positions 0 to Counters - 1),
// then `Values32` further unsigned 32-bit values (the positions after the counters), and the
// unsigned 64-bit, text and unsigned 16-bit fields, each kind numbered from 0. Counters take
// part in sums and identifier lists; the other fields do not.
template <std::size_t Counters, std::size_t Values32 = 0, std::size_t Values64 = 0,
          std::size_t Texts = 0, std::size_t Values16 = 0>
struct Fields {
  static constexpr std::size_t kCounters = Counters;

  std::array<unsigned int, Counters + Values32> words{};
  std::array<unsigned long, Values64> longs{};
  std::array<std::string, Texts> texts{};
  std::array<unsigned short, Values16> shorts{};

  bool operator==(const Fields& other) const {
    return words == other.words && longs == other.longs && texts == other.texts &&
           shorts == other.shorts;
  }
};

// The kind of the fields in a run of a layout.
enum class Kind : unsigned char { kNone, kWord, kLong, kText, kShort, kDropped };

// `count` consecutive fields of one kind from position `first`.
struct Run {
  Kind kind;
  unsigned char first;
  unsigned char count;
};

// Run builders for the layout tables, by field kind; the two-argument forms span first..last.
constexpr Run Span(Kind kind, unsigned first, unsigned last) {
  return {kind, static_cast<unsigned char>(first), static_cast<unsigned char>(last - first + 1)};
}
constexpr Run C(unsigned first, unsigned last) {
  return Span(Kind::kWord, first, last);
}
constexpr Run C(unsigned position) {
  return Span(Kind::kWord, position, position);
}
constexpr Run U64(unsigned first, unsigned last) {
  return Span(Kind::kLong, first, last);
}
constexpr Run Text(unsigned first, unsigned last) {
  return Span(Kind::kText, first, last);
}
constexpr Run U16(unsigned first, unsigned last) {
  return Span(Kind::kShort, first, last);
}
// One unsigned int that an old layout still carries and the record no longer keeps: read and
// dropped (written as 0 should a layout that carries it ever be written).
constexpr Run kDropped{Kind::kDropped, 0, 1};

// One archive layout: its signature and its runs in stream order (unused runs stay empty).
struct Layout {
  static constexpr std::size_t kMaxRuns = 6;
  unsigned int signature;
  Run runs[kMaxRuns];
};

// Where a reader that meets a foreign signature says it stopped.
using ErrorSite = ESerializeErrorSite;

// How the signature is written: as a signed int, or as an unsigned int for the one signature
// above 2^31 whose text must never be negative.
enum class SignatureText { kSigned, kUnsigned };

// The archive form of a record: the layouts it reads (oldest first; the last one is the one it
// writes), the report for a signature it does not accept, and how it writes its signature.
class ArchiveForm {
 public:
  template <std::size_t LayoutCount>
  constexpr ArchiveForm(const Layout (&layouts)[LayoutCount], ErrorSite error,
                        SignatureText signatureText = SignatureText::kSigned)
      : m_Layouts(layouts), m_Count(LayoutCount), m_Error(error), m_SignatureText(signatureText) {}

  const Layout& Newest() const { return m_Layouts[m_Count - 1]; }
  // The layout with this signature, or null when the record does not accept it.
  const Layout* Find(unsigned int signature) const {
    for (std::size_t i = 0; i < m_Count; ++i) {
      if (m_Layouts[i].signature == signature) return &m_Layouts[i];
    }
    return nullptr;
  }
  const ErrorSite& Error() const { return m_Error; }
  SignatureText GetSignatureText() const { return m_SignatureText; }

 private:
  const Layout* m_Layouts;
  std::size_t m_Count;
  ErrorSite m_Error;
  SignatureText m_SignatureText;
};

// Calls `visit` on each field that `layout` carries, in stream order, with a reference of the
// field's own type; a dropped value is visited as a scratch unsigned int.
template <typename FieldSet, typename Visit>
void ForEachField(FieldSet& fields, const Layout& layout, Visit&& visit) {
  for (const Run& run : layout.runs) {
    for (std::size_t i = run.first; i < std::size_t{run.first} + run.count; ++i) {
      switch (run.kind) {
        case Kind::kWord:
          visit(fields.words[i]);
          break;
        case Kind::kLong:
          visit(fields.longs[i]);
          break;
        case Kind::kText:
          visit(fields.texts[i]);
          break;
        case Kind::kShort:
          visit(fields.shorts[i]);
          break;
        case Kind::kDropped: {
          unsigned int dropped = 0;
          visit(dropped);
          break;
        }
        case Kind::kNone:
          break;
      }
    }
  }
}

// Writes the newest layout: the signature, then each field with the archive writer of its type.
template <typename FieldSet>
void Write(EArchive& archive, const FieldSet& fields, const ArchiveForm& form) {
  const Layout& layout = form.Newest();
  if (form.GetSignatureText() == SignatureText::kUnsigned) {
    archive.WriteUnsignedInt(layout.signature);
  } else {
    archive.WriteSignedInt(static_cast<int>(layout.signature));
  }
  ForEachField(fields, layout, [&archive](const auto& value) { archive << value; });
}

// Reads the signature and the fields of the layout it names; fields the layout lacks keep their
// values. A signature the form does not accept ends the process with the form's report.
template <typename FieldSet>
void Read(EArchive& archive, FieldSet& fields, const ArchiveForm& form) {
  const Layout* const layout = form.Find(archive.ReadUnsignedInt());
  if (layout == nullptr) {
    form.Error().Raise();
  }
  ForEachField(fields, *layout, [&archive](auto& value) { archive >> value; });
}

}  // namespace estats

// Base of every statistics record (CRTP). `Derived` supplies its accessors and
// `static const estats::ArchiveForm kArchiveForm`; it may supply `static FieldSet InitialFields()`
// when a fresh record is not all zeros. The operations only some records offer are protected
// here and published by those records with a using-declaration.
template <typename Derived, typename FieldSet>
class EStatsRecord {
 protected:
  using Fields = FieldSet;

 public:
  EStatsRecord() : m_Fields(Derived::InitialFields()) {}

  // Back to the values of a fresh record.
  void Empty() { m_Fields = Derived::InitialFields(); }
  void Copy(const Derived& other) { m_Fields = other.m_Fields; }

  void SerializeOut(EArchive& archive) const {
    estats::Write(archive, m_Fields, Derived::kArchiveForm);
  }
  void SerializeIn(EArchive& archive) { estats::Read(archive, m_Fields, Derived::kArchiveForm); }

  friend EArchive& operator<<(EArchive& archive, const Derived& record) {
    record.SerializeOut(archive);
    return archive;
  }
  friend EArchive& operator>>(EArchive& archive, Derived& record) {
    record.SerializeIn(archive);
    return archive;
  }

 protected:
  static FieldSet InitialFields() { return FieldSet{}; }

  unsigned int Word(std::size_t position) const { return m_Fields.words[position]; }
  void SetWord(std::size_t position, unsigned int value) { m_Fields.words[position] = value; }
  unsigned short Short(std::size_t position) const { return m_Fields.shorts[position]; }
  void SetShort(std::size_t position, unsigned short value) { m_Fields.shorts[position] = value; }

  // Appends the counter ids 0 to N - 1 (N counters) to `ids`, which is not cleared first.
  void FillListWithAllIds(std::list<int>& ids) const {
    for (std::size_t id = 0; id < FieldSet::kCounters; ++id)
      ids.push_back(static_cast<int>(id));
  }

  // A fresh record whose counters are the sums of both records' counters, modulo 2^32.
  Derived operator+(const Derived& other) const {
    Derived sum;
    for (std::size_t i = 0; i < FieldSet::kCounters; ++i)
      sum.m_Fields.words[i] = m_Fields.words[i] + other.m_Fields.words[i];
    return sum;
  }

  // Compare every field.
  bool operator==(const Derived& other) const { return m_Fields == other.m_Fields; }
  bool operator!=(const Derived& other) const { return !(m_Fields == other.m_Fields); }

  void Swap(Derived& other) { std::swap(m_Fields, other.m_Fields); }

 private:
  FieldSet m_Fields;
};
