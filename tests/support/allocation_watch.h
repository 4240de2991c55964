// Counts what operator new hands out while a watch lives, so that tests can bound the memory an
// operation allocates and make it run out on purpose. Linking allocation_watch.cpp replaces the
// global operator new and delete of the test program; outside a watch they only keep a count.
#pragma once

#include <cstddef>
#include <limits>

class AllocationWatch {
 public:
  // Watches from here on. A request that would leave more than `budget` bytes live beyond those
  // live now throws std::bad_alloc (the nothrow forms return null). One watch at a time.
  explicit AllocationWatch(std::size_t budget = std::numeric_limits<std::size_t>::max());
  ~AllocationWatch();
  AllocationWatch(const AllocationWatch&) = delete;
  AllocationWatch& operator=(const AllocationWatch&) = delete;

  // Ends the watch early; the counts keep their values.
  void Stop();
  // The most bytes live at once beyond those live when the watch began.
  std::size_t PeakBytes() const;
  // The number of allocations made while watching.
  std::size_t Allocations() const;
  // The number of requests refused for the budget.
  std::size_t Refusals() const;
};
