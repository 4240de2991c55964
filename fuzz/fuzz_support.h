// Shared by the fuzz targets: serialisation errors throw SerializeErrorRaised instead of ending
// the process, so that a refused input ends only its own run.
#pragma once

#include "eArchive.h"

struct SerializeErrorRaised {};

inline void ThrowOnSerializeError(const char*, int, const char*) {
  throw SerializeErrorRaised();
}

// Installs the throwing handler once per process.
inline void ThrowSerializeErrors() {
  static const auto previous = EArchive::SetSerializeErrorHandler(&ThrowOnSerializeError);
  (void)previous;
}
