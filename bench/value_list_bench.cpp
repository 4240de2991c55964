// The value list's conversions at two sizes: a type-3 message with 1,000 label configs and a
// type-12 message with 100 label updates of 64 values each. Encode goes object -> binary -> element
// tree -> text; Parse goes text -> element tree (expat) -> binary -> object. The reference is the
// same conversion written with printf and sscanf directly over the text, without a binary form,
// an element tree or an XML parser: the floor of what formatting and reading the numbers costs.
// Parse also runs after 10^5, 10^6 and 10^7 empty top-level elements, whose time per element
// stays the same at every size: each element is read once, never the text after it.
#include <benchmark/benchmark.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "eValueList.h"

namespace {

constexpr unsigned int kLabelConfigs = 1000;
constexpr unsigned int kLabelUpdates = 100;
constexpr unsigned int kValuesPerUpdate = 64;

eValueList LabelConfigMessage() {
  eValueList message;
  message.SetRequestType(eValueList::kConfigurationToStateMachine);
  message.SetPayloadLength(21 * kLabelConfigs);
  for (unsigned int i = 0; i < kLabelConfigs; ++i) {
    overlay_base_address config;
    config.cookie = 0x1000000000ul * i + i;
    config.stream_num = static_cast<unsigned short>(i);
    config.udf_num = static_cast<unsigned short>(i % 7);
    config.field4 = static_cast<unsigned char>(i);
    config.item_count = i * 3;
    config.field6 = ~i;
    message.AddLabelConfigCookie(config);
  }
  return message;
}

eValueList LabelUpdateMessage() {
  eValueList message;
  message.SetRequestType(eValueList::kHalLabelUpdate);
  message.SetPayloadLength((12 + 4 * kValuesPerUpdate) * kLabelUpdates);
  for (unsigned int i = 0; i < kLabelUpdates; ++i) {
    eValueListLabelUpdateEntry update;
    update.SetStreamNum(static_cast<unsigned short>(i));
    update.SetUdfNum(1);
    update.SetOffset(i * 64);
    update.SetValueCount(kValuesPerUpdate);
    for (unsigned int v = 0; v < kValuesPerUpdate; ++v)
      update.SetValue(v, 0x01000193u * (i + v));
    message.AddLabelUpdate(update);
  }
  return message;
}

// ---------------------------------------------------------------------------------------------
// The reference: printf and sscanf over the text.

void AppendFormatted(std::string& text, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
void AppendFormatted(std::string& text, const char* format, ...) {
  char buffer[64];
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
  va_end(arguments);
  text.append(buffer, static_cast<std::size_t>(length));
}

void ReferenceHeader(std::string& text, const eValueList& message, const char* type) {
  text += "<valuelist>";
  AppendFormatted(text, "<port-id>%d</port-id><dst-id>%x</dst-id><src-id>%x</src-id>", 1,
                  message.GetDstId(), message.GetSrcId());
  AppendFormatted(text, "<request-type>%s</request-type>", type);
  const unsigned long userDefined = message.GetUserDefined();
  unsigned char bytes[8];
  std::memcpy(bytes, &userDefined, sizeof bytes);
  AppendFormatted(text, "<user-defined>%02x%02x%02x%02x%02x%02x%02x%02x</user-defined>", bytes[0],
                  bytes[1], bytes[2], bytes[3], bytes[4], bytes[5], bytes[6], bytes[7]);
  AppendFormatted(text, "<payload-length>%x</payload-length>", message.GetPayloadLength());
}

void ReferenceEncodeLabelConfigs(const eValueList& message, std::string& text) {
  text.clear();
  ReferenceHeader(text, message, "configuration-to-state-machine");
  text += "<payload-data>";
  const std::vector<overlay_base_address>& configs = message.GetLabelConfigs();
  for (auto config = configs.rbegin(); config != configs.rend(); ++config) {
    AppendFormatted(text, "<lc>%016lx %04x %04x %02x %08x %08x </lc>", config->cookie,
                    config->stream_num, config->udf_num, config->field4, config->item_count,
                    config->field6);
  }
  text += "</payload-data></valuelist>";
}

void ReferenceEncodeLabelUpdates(const eValueList& message, std::string& text) {
  text.clear();
  ReferenceHeader(text, message, "hal-label-update");
  text += "<payload-data>";
  const std::vector<eValueListLabelUpdateEntry>& updates = message.GetLabelUpdates();
  for (auto update = updates.rbegin(); update != updates.rend(); ++update) {
    AppendFormatted(text, "<hlu>%04x %04x %08x %08x ", update->GetStreamNum(), update->GetUdfNum(),
                    update->GetOffset(), update->GetValueCount());
    for (unsigned int v = 0; v < update->GetValueCount(); ++v)
      AppendFormatted(text, "%08x ", update->GetValue(v));
    text += "</hlu>";
  }
  text += "</payload-data></valuelist>";
}

// Reads the header numbers and every entry with sscanf, finding the elements with strstr.
unsigned int ReferencePayloadLength(const char* text) {
  unsigned int length = 0;
  const char* const at = std::strstr(text, "<payload-length>");
  if (at != nullptr) std::sscanf(at + 16, "%x", &length);
  return length;
}

void ReferenceParseLabelConfigs(const char* text, std::vector<overlay_base_address>& configs) {
  configs.clear();
  if (ReferencePayloadLength(text) == 0) return;
  for (const char* at = std::strstr(text, "<lc>"); at != nullptr; at = std::strstr(at, "<lc>")) {
    at += 4;
    overlay_base_address config;
    unsigned int stream = 0, udf = 0, field4 = 0;
    std::sscanf(at, "%lx %x %x %x %x %x", &config.cookie, &stream, &udf, &field4,
                &config.item_count, &config.field6);
    config.stream_num = static_cast<unsigned short>(stream);
    config.udf_num = static_cast<unsigned short>(udf);
    config.field4 = static_cast<unsigned char>(field4);
    configs.push_back(config);
  }
}

void ReferenceParseLabelUpdates(const char* text, std::vector<unsigned int>& numbers) {
  numbers.clear();
  if (ReferencePayloadLength(text) == 0) return;
  for (const char* at = std::strstr(text, "<hlu>"); at != nullptr; at = std::strstr(at, "<hlu>")) {
    at += 5;
    unsigned int value = 0;
    int used = 0;
    while (std::sscanf(at, "%x%n", &value, &used) == 1) {
      numbers.push_back(value);
      at += used;
    }
  }
}

// ---------------------------------------------------------------------------------------------

void BM_EncodeLabelConfigs(benchmark::State& state) {
  eValueList message = LabelConfigMessage();
  for (auto _ : state) {
    message.Encode(1);
    benchmark::DoNotOptimize(message.GetXmlContent().GetData());
  }
  state.SetItemsProcessed(state.iterations() * kLabelConfigs);
  state.SetBytesProcessed(state.iterations() * message.GetXmlContent().GetSize());
}
BENCHMARK(BM_EncodeLabelConfigs);

void BM_ReferenceEncodeLabelConfigs(benchmark::State& state) {
  const eValueList message = LabelConfigMessage();
  std::string text;
  for (auto _ : state) {
    ReferenceEncodeLabelConfigs(message, text);
    benchmark::DoNotOptimize(text.data());
  }
  state.SetItemsProcessed(state.iterations() * kLabelConfigs);
  state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(BM_ReferenceEncodeLabelConfigs);

void BM_ParseLabelConfigs(benchmark::State& state) {
  eValueList source = LabelConfigMessage();
  source.Encode(1);
  eValueList message;
  message.SetXmlContent(source.GetXmlContent());
  for (auto _ : state) {
    message.SetLabelConfigCount(0);
    message.Parse();
    benchmark::DoNotOptimize(message.GetLabelConfigs().data());
  }
  if (message.GetLabelConfigs().size() != kLabelConfigs) state.SkipWithError("wrong entry count");
  state.SetItemsProcessed(state.iterations() * kLabelConfigs);
  state.SetBytesProcessed(state.iterations() * source.GetXmlContent().GetSize());
}
BENCHMARK(BM_ParseLabelConfigs);

void BM_ReferenceParseLabelConfigs(benchmark::State& state) {
  std::string text;
  ReferenceEncodeLabelConfigs(LabelConfigMessage(), text);
  std::vector<overlay_base_address> configs;
  for (auto _ : state) {
    ReferenceParseLabelConfigs(text.c_str(), configs);
    benchmark::DoNotOptimize(configs.data());
  }
  if (configs.size() != kLabelConfigs) state.SkipWithError("wrong entry count");
  state.SetItemsProcessed(state.iterations() * kLabelConfigs);
  state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(BM_ReferenceParseLabelConfigs);

void BM_EncodeLabelUpdates(benchmark::State& state) {
  eValueList message = LabelUpdateMessage();
  for (auto _ : state) {
    message.Encode(1);
    benchmark::DoNotOptimize(message.GetXmlContent().GetData());
  }
  state.SetItemsProcessed(state.iterations() * kLabelUpdates * kValuesPerUpdate);
  state.SetBytesProcessed(state.iterations() * message.GetXmlContent().GetSize());
}
BENCHMARK(BM_EncodeLabelUpdates);

void BM_ReferenceEncodeLabelUpdates(benchmark::State& state) {
  const eValueList message = LabelUpdateMessage();
  std::string text;
  for (auto _ : state) {
    ReferenceEncodeLabelUpdates(message, text);
    benchmark::DoNotOptimize(text.data());
  }
  state.SetItemsProcessed(state.iterations() * kLabelUpdates * kValuesPerUpdate);
  state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(BM_ReferenceEncodeLabelUpdates);

void BM_ParseLabelUpdates(benchmark::State& state) {
  eValueList source = LabelUpdateMessage();
  source.Encode(1);
  eValueList message;
  message.SetXmlContent(source.GetXmlContent());
  for (auto _ : state) {
    message.SetLabelUpdateCount(0);
    message.Parse();
    benchmark::DoNotOptimize(message.GetLabelUpdates().data());
  }
  state.SetItemsProcessed(state.iterations() * kLabelUpdates * kValuesPerUpdate);
  state.SetBytesProcessed(state.iterations() * source.GetXmlContent().GetSize());
}
BENCHMARK(BM_ParseLabelUpdates);

void BM_ReferenceParseLabelUpdates(benchmark::State& state) {
  std::string text;
  ReferenceEncodeLabelUpdates(LabelUpdateMessage(), text);
  std::vector<unsigned int> numbers;
  for (auto _ : state) {
    ReferenceParseLabelUpdates(text.c_str(), numbers);
    benchmark::DoNotOptimize(numbers.data());
  }
  if (numbers.size() != kLabelUpdates * (4 + kValuesPerUpdate)) {
    state.SkipWithError("wrong number count");
  }
  state.SetItemsProcessed(state.iterations() * kLabelUpdates * kValuesPerUpdate);
  state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(BM_ReferenceParseLabelUpdates);

// `count` empty top-level elements, then a value list with one label config in a 21-byte payload.
std::string AfterTopLevelElements(unsigned int count) {
  std::string text;
  text.reserve(4 * std::size_t{count} + 256);
  for (unsigned int i = 0; i < count; ++i)
    text += "<a/>";
  text +=
      "<valuelist><request-type>configuration-to-state-machine</request-type>"
      "<payload-length>15</payload-length><payload-data><lc>1 2 3 4 5 6</lc></payload-data>"
      "</valuelist>";
  return text;
}

// Reports the time per top-level element, so that the sizes compare directly.
void CountElements(benchmark::State& state, unsigned int count) {
  state.counters["time_per_element"] = benchmark::Counter(
      count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BM_ParseAfterTopLevelElements(benchmark::State& state) {
  const auto count = static_cast<unsigned int>(state.range(0));
  const std::string text = AfterTopLevelElements(count);
  eValueList message;
  message.SetXmlContent(EBlob(text.data(), static_cast<unsigned int>(text.size())));
  for (auto _ : state) {
    message.SetLabelConfigCount(0);
    message.Parse();
    benchmark::DoNotOptimize(message.GetLabelConfigs().data());
  }
  if (message.GetLabelConfigs().size() != 1) state.SkipWithError("wrong entry count");
  CountElements(state, count);
}
BENCHMARK(BM_ParseAfterTopLevelElements)
    ->Arg(100000)
    ->Arg(1000000)
    ->Arg(10000000)
    ->Unit(benchmark::kMillisecond);

// The reference passes over the elements with strstr to the value list's payload length.
void BM_ReferenceParseAfterTopLevelElements(benchmark::State& state) {
  const auto count = static_cast<unsigned int>(state.range(0));
  const std::string text = AfterTopLevelElements(count);
  unsigned int length = 0;
  for (auto _ : state) {
    length = ReferencePayloadLength(std::strstr(text.c_str(), "<valuelist>"));
    benchmark::DoNotOptimize(length);
  }
  if (length != 0x15) state.SkipWithError("wrong payload length");
  CountElements(state, count);
}
BENCHMARK(BM_ReferenceParseAfterTopLevelElements)
    ->Arg(100000)
    ->Arg(1000000)
    ->Arg(10000000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
