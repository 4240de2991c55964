// A tracer that keeps the text of the lines its channel writes, for tests of dumps.
#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "eTrace.h"

// Keeps the text of every line after the channel name.
class CapturingTracer : public ETracer {
 public:
  explicit CapturingTracer(std::string channel) : m_Channel(std::move(channel)) {}
  void Write(const char* line) override {
    const std::string text(line);
    const std::size_t at = text.find(m_Channel + " ");
    lines.push_back(at == std::string::npos ? text : text.substr(at + m_Channel.size() + 1));
  }
  std::vector<std::string> lines;

 private:
  std::string m_Channel;
};

// A channel of its own name and tracer at `level`. The registry keeps channels until process
// exit, so the tracers live as long. Each test takes a name of its own.
inline ETrace* Channel(const std::string& name, int level, CapturingTracer*& tracer) {
  static std::deque<CapturingTracer> tracers;
  tracer = &tracers.emplace_back(name);
  ETrace* trace = ETrace::GetTrace(name, tracer);
  ETrace::SetLevel(name, level, tracer);
  return trace;
}
