// ERecordLayout: how records describe their archive form. A record lists its fields once, in
// archive order, each with the type it travels as; the same list writes the record and reads
// every layout it accepts. Newer layouts put their added fields first, so an older layout is the
// current one without some leading fields, which the reader passes over (they keep their values).
#pragma once

#include <cstddef>
#include <type_traits>
#include <vector>

#include "eArchive.h"

// One accepted signature (or version number) and how many leading fields of the current layout
// the layout it names lacks.
struct ELayoutVersion {
  unsigned int signature;
  unsigned int missingFields;
};

namespace erecordlayout_detail {
template <typename T>
void Put(EArchive& archive, const T& value) {
  archive << value;
}
template <typename T>
void Put(EArchive& archive, const std::vector<T>& values) {
  SerializeOut(archive, values);
}
template <typename T>
void Get(EArchive& archive, T& value) {
  archive >> value;
}
template <typename T>
void Get(EArchive& archive, std::vector<T>& values) {
  SerializeIn(archive, values);
}
}  // namespace erecordlayout_detail

// Writes each field as its wire type: a field whose wire type is its own type (a nested record,
// a string, a vector) is written in its own archive form, any other is converted first (so an
// unsigned int written as unsigned char keeps only its low eight bits).
class EFieldWriter {
 public:
  explicit EFieldWriter(EArchive& archive) : m_Archive(archive) {}

  template <typename Wire, typename Member>
  void Field(const Member& member) {
    if constexpr (std::is_same_v<Wire, Member>) {
      erecordlayout_detail::Put(m_Archive, member);
    } else {
      erecordlayout_detail::Put(m_Archive, static_cast<Wire>(member));
    }
  }

 private:
  EArchive& m_Archive;
};

// Reads each field as its wire type and converts it to the member's type, after passing over the
// leading fields that the layout being read lacks.
class EFieldReader {
 public:
  EFieldReader(EArchive& archive, unsigned int missingFields)
      : m_Archive(archive), m_Missing(missingFields) {}

  template <typename Wire, typename Member>
  void Field(Member& member) {
    if (m_Missing > 0) {
      --m_Missing;
      return;
    }
    if constexpr (std::is_same_v<Wire, Member>) {
      erecordlayout_detail::Get(m_Archive, member);
    } else {
      Wire wire{};
      erecordlayout_detail::Get(m_Archive, wire);
      member = static_cast<Member>(wire);
    }
  }

 private:
  EArchive& m_Archive;
  unsigned int m_Missing;
};

// Writes `signature` as a signed int, then the fields that `fields(writer)` lists.
template <typename Fields>
void WriteRecord(EArchive& archive, unsigned int signature, Fields&& fields) {
  archive.WriteSignedInt(static_cast<int>(signature));
  EFieldWriter writer(archive);
  fields(writer);
}

// Reads the signature as an unsigned int and, when `versions` accepts it, the fields of that
// layout through `fields(reader)`; returns how many leading fields the layout lacked. Any other
// signature is the serialisation error reported at `site`.
template <std::size_t N, typename Fields>
unsigned int ReadRecord(EArchive& archive, const ELayoutVersion (&versions)[N],
                        const ESerializeErrorSite& site, Fields&& fields) {
  const unsigned int signature = archive.ReadUnsignedInt();
  for (const ELayoutVersion& version : versions) {
    if (version.signature == signature) {
      EFieldReader reader(archive, version.missingFields);
      fields(reader);
      return version.missingFields;
    }
  }
  site.Raise();
}
