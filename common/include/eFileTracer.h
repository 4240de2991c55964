// EFileTracer: a ready-made trace sink that writes every line, followed by a line feed, to a
// stdio stream it does not own. Lines from concurrent threads never interleave.
#pragma once

#include <cstdio>

#include "eLock.h"
#include "eTrace.h"

class EFileTracer : public ETracer {
 public:
  // `file` must stay open while the tracer is used; with `flushEachLine` every line is flushed.
  explicit EFileTracer(std::FILE* file, bool flushEachLine = false);
  ~EFileTracer() override;

  void Write(const char* line) override;

  std::FILE* GetFile() const { return m_File; }

 private:
  std::FILE* m_File;
  bool m_FlushEachLine;
  ELock m_Lock;
};
