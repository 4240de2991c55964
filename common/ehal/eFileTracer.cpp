#include "eFileTracer.h"

EFileTracer::EFileTracer(std::FILE* file, bool flushEachLine)
    : m_File(file), m_FlushEachLine(flushEachLine) {}

EFileTracer::~EFileTracer() = default;

void EFileTracer::Write(const char* line) {
  if (m_File == nullptr || line == nullptr) return;
  EScopedLock guard(m_Lock);
  std::fputs(line, m_File);
  std::fputc('\n', m_File);
  if (m_FlushEachLine) std::fflush(m_File);
}
