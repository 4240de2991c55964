// A schema whose layouts name their fields, compiled by the compile-fail test three times: as
// written (it compiles), with a misspelt field name and with a listed layout out of schema
// order (neither compiles). LAYOUT_CASE picks the case.
#include <tuple>

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::From;
using eHal::detail::kDropped;
using eHal::detail::Layout;

struct Sample {
  unsigned int first = 0;
  unsigned int second = 0;
  unsigned int third = 0;
};

struct SampleSchema {
  static constexpr auto kFields =
      std::make_tuple(Field("First", &Sample::first), Field("Second", &Sample::second),
                      Field("Third", &Sample::third));
#if LAYOUT_CASE == 1
  static constexpr const char* kOld[] = {"Frist", kDropped, "Third"};
#elif LAYOUT_CASE == 2
  static constexpr const char* kOld[] = {"Third", kDropped, "First"};
#else
  static constexpr const char* kOld[] = {"First", kDropped, "Third"};
#endif
  static constexpr Layout kLayouts[] = {{3}, {2, From("Second")}, {1, kOld}};
  static constexpr ERefusalReport kRefusal = {"sample", 1, "Sample::SerializeIn"};
};

int main() {
  return static_cast<int>(eHal::detail::Layouts<SampleSchema>::kValue.size()) - 3;
}
