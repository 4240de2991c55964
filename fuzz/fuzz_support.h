// Shared by the fuzz targets and their entry functions: while a ThrowingSerializeErrors lives,
// serialisation errors throw SerializeErrorRaised instead of ending the process, so that a
// refused input ends only its own run.
#pragma once

#include "eArchive.h"

struct SerializeErrorRaised {};

inline void ThrowOnSerializeError(const char*, int, const char*) {
  throw SerializeErrorRaised();
}

// Installs the throwing handler for its lifetime and restores the previous one after.
class ThrowingSerializeErrors {
 public:
  ThrowingSerializeErrors()
      : m_Previous(EArchive::SetSerializeErrorHandler(&ThrowOnSerializeError)) {}
  ~ThrowingSerializeErrors() { EArchive::SetSerializeErrorHandler(m_Previous); }
  ThrowingSerializeErrors(const ThrowingSerializeErrors&) = delete;
  ThrowingSerializeErrors& operator=(const ThrowingSerializeErrors&) = delete;

 private:
  EArchive::SerializeErrorHandler m_Previous;
};
