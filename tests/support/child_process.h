// Runs a piece of code in a forked child with its standard output captured, so that tests can
// check the exact text a fatal report prints and the exit status it ends with.
#pragma once

#include <functional>
#include <string>

struct ChildResult {
  bool exited = false;  // ended through exit() rather than a signal
  int status = -1;      // exit status when `exited`, else the signal number
  std::string output;   // everything written to standard output
};

// Runs `body` in a child process; a body that returns ends the child with status 0.
ChildResult RunInChild(const std::function<void()>& body);

// The exact report of a serialisation error.
std::string SerializeErrorReport(const char* file, int line, const char* function);

// Checks that `body` prints exactly the serialisation report for (file, line, function) on
// standard output and exits with status 1.
void ExpectSerializeError(const std::function<void()>& body, const char* file, int line,
                          const char* function);

// Thrown by the handler that ScopedThrowingSerializeErrors installs.
struct SerializeErrorThrown {
  std::string file;
  int line;
  std::string function;
};

// While alive, serialisation errors throw SerializeErrorThrown instead of ending the process.
class ScopedThrowingSerializeErrors {
 public:
  ScopedThrowingSerializeErrors();
  ~ScopedThrowingSerializeErrors();
  ScopedThrowingSerializeErrors(const ScopedThrowingSerializeErrors&) = delete;
  ScopedThrowingSerializeErrors& operator=(const ScopedThrowingSerializeErrors&) = delete;

 private:
  void (*m_Previous)(const char*, int, const char*);
};
