// EStatsRecord: the base of the protocol statistics records, which keep their values in named
// members and state their archive form in a schema (see ERecord). It adds the operations they
// share; those only some records offer are protected here, published by using-declarations.
#pragma once

#include <list>
#include <utility>

#include "eRecord.h"

// CRTP base: `Derived` is an ERecord whose schema marks its counters (unsigned 32-bit numbers).
// The operations that walk the schema are compiled in the record's source file, which
// instantiates the base explicitly (`template class EStatsRecord<Derived>;`).
template <typename Derived>
class EStatsRecord : public ERecord<Derived> {
 public:
  // Back to the values of a fresh record.
  void Empty() { Self() = Derived(); }
  void Copy(const Derived& other) { Self() = other; }

 protected:
  EStatsRecord() = default;
  ~EStatsRecord() = default;

  // Appends the counter ids 0 to N - 1 (N counters) to `ids`, which is not cleared first.
  void FillListWithAllIds(std::list<int>& ids) const;
  // A fresh record whose counters are the sums of both records' counters, modulo 2^32.
  Derived operator+(const Derived& other) const;
  // Every archived field equal.
  bool operator==(const Derived& other) const;
  bool operator!=(const Derived& other) const;

  void Swap(Derived& other) { std::swap(Self(), other); }

 private:
  Derived& Self() { return static_cast<Derived&>(*this); }
};
