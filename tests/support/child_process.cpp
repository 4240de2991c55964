#include "child_process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

#include "eArchive.h"

ChildResult RunInChild(const std::function<void()>& body) {
  ChildResult result;
  int pipeEnds[2];
  if (pipe(pipeEnds) != 0) return result;
  std::fflush(stdout);
  const pid_t child = fork();
  if (child < 0) return result;
  if (child == 0) {
    close(pipeEnds[0]);
    dup2(pipeEnds[1], STDOUT_FILENO);
    close(pipeEnds[1]);
    body();
    std::fflush(stdout);
    _exit(0);
  }
  close(pipeEnds[1]);
  char chunk[4096];
  ssize_t count = 0;
  while ((count = read(pipeEnds[0], chunk, sizeof chunk)) > 0) {
    result.output.append(chunk, static_cast<std::size_t>(count));
  }
  close(pipeEnds[0]);
  int status = 0;
  waitpid(child, &status, 0);
  result.exited = WIFEXITED(status);
  result.status = result.exited ? WEXITSTATUS(status) : WTERMSIG(status);
  return result;
}

std::string SerializeErrorReport(const char* file, int line, const char* function) {
  return EArchive::SerializeErrorReport(file, line, function);
}

void ExpectSerializeError(const std::function<void()>& body, const char* file, int line,
                          const char* function) {
  const ChildResult result = RunInChild(body);
  EXPECT_TRUE(result.exited);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, SerializeErrorReport(file, line, function));
}

namespace {
void ThrowSerializeError(const char* file, int line, const char* function) {
  throw SerializeErrorThrown{file, line, function};
}
}  // namespace

ScopedThrowingSerializeErrors::ScopedThrowingSerializeErrors()
    : m_Previous(EArchive::SetSerializeErrorHandler(&ThrowSerializeError)) {}

ScopedThrowingSerializeErrors::~ScopedThrowingSerializeErrors() {
  EArchive::SetSerializeErrorHandler(m_Previous);
}
