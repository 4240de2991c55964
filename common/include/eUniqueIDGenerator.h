// EUniqueIDGenerator: hands out 32-bit identifiers that are unique among the live objects of one
// owner, reuses released ones, and can reserve a particular identifier (so that a table read back
// from an archive keeps its identifiers). 0 is never handed out: it means "no identifier".
#pragma once

#include <map>

#include "eRecord.h"

class EUniqueIDGenerator : public ERecord<EUniqueIDGenerator> {
 public:
  // The identifier that is never handed out and means "none".
  static constexpr unsigned int ReservedIDValue = 0;
  // The largest identifier.
  static constexpr unsigned int MaxIDValue = 0xFFFFFFFF;

  // An inclusive range of free identifiers; by default every identifier but 0.
  struct IDRange {
    IDRange() = default;
    IDRange(unsigned int first, unsigned int last) : first(first), last(last) {}

    unsigned int first = 1;
    unsigned int last = MaxIDValue;
  };

  // One free range [1, MaxIDValue]; last identifier 0.
  EUniqueIDGenerator();
  EUniqueIDGenerator(const EUniqueIDGenerator& other) = default;
  EUniqueIDGenerator& operator=(const EUniqueIDGenerator& other) = default;

  // The next free identifier at or after the one after the last reserved (wrapping around to
  // the lowest free one past the top), or 0 when none is free.
  unsigned int ReserveNewID();
  // Takes `id` out of the free ranges; false when it is in use (or 0).
  bool ReserveID(unsigned int id);
  // Returns `id` to the free ranges, merging it with its neighbours. Ignores 0 and free
  // identifiers, and deliberately does nothing while no identifier at all is free.
  void UnReserveID(unsigned int id);
  // The last reserved identifier plus one: a hint only, no range is consulted.
  unsigned int GetNextID() const { return m_LastId + 1; }

  // Back to the state of a fresh generator.
  void Empty();
  void Swap(EUniqueIDGenerator& other);
  void Copy(const EUniqueIDGenerator& other) { *this = other; }

  struct Schema;  // the archive form, in eUniqueIDGenerator.cpp

 private:
  // The free ranges, disjoint and ascending: each range's last identifier maps to its first.
  // Keyed by the last, "the first range whose last is at least n" is one lower_bound.
  using Ranges = std::map<unsigned int, unsigned int>;

  // Makes [1, MaxIDValue] the only free range.
  void FreeEverything();
  // FreeEverything, when no range is free (as after reading a stream that names none).
  void FreeEverythingWhenNoneFree();
  // Takes `id` out of the range at `range`, which holds it.
  void Take(Ranges::iterator range, unsigned int id);

  Ranges m_FreeRanges;
  unsigned int m_LastId = ReservedIDValue;
};

extern template class ERecord<EUniqueIDGenerator>;
