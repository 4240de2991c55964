#include "eTickCount.h"

#include <chrono>

unsigned int EGetTickCount() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<unsigned int>(
      std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}
