// How long a document takes to build and to read, beside a widely used XML library that does the
// same with the same UTF-16 text.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdint>
#include <pugixml.hpp>
#include <sstream>

#include "inventory/SPXMLData.h"

namespace {

using tolvanix::SPString;
using tolvanix::SPUString;
using tolvanix::SPXMLApplication;
using tolvanix::SPXMLData;
using tolvanix::SPXMLDevice;

SPUString build(std::uint32_t count) {
  SPXMLData document(SPString("SVMInventory"), SPString("en"), 0xFFFFFFFF);
  for (std::uint32_t i = 0; i < count; ++i) {
    SPXMLDevice device(SPString("Gigabit Network Connection"), 0x1DE4, 0xABCD, i & 0xFFFF, i >> 16,
                       i >> 8, i >> 3 & 0x1F, i & 7);
    device.addApplication(SPXMLApplication(SPUString("Gigabit Network Connection Driver"),
                                           SPString("DRVR"), SPString(""), SPString("12.15.22.6")));
    document.addDevice(std::move(device));
  }
  return document.generateXML();
}

// A run of the program begins with no memory of its own; so does each measurement, or the small
// documents alone would be spared the cost of getting it.
void releaseMemory(benchmark::State& state) {
  state.PauseTiming();
  malloc_trim(0);
  state.ResumeTiming();
}

void Build(benchmark::State& state) {
  for (auto _ : state) {
    releaseMemory(state);
    benchmark::DoNotOptimize(build(static_cast<std::uint32_t>(state.range())));
  }
}
BENCHMARK(Build)->Arg(4096)->Arg(65536)->Unit(benchmark::kMillisecond);

void Read(benchmark::State& state) {
  const SPUString text = build(static_cast<std::uint32_t>(state.range()));
  for (auto _ : state) {
    releaseMemory(state);
    benchmark::DoNotOptimize(SPXMLData(text).getDevices().size());
  }
}
BENCHMARK(Read)->Arg(4096)->Arg(65536)->Unit(benchmark::kMillisecond);

void PugixmlSave(benchmark::State& state) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("SVMInventory");
  root.append_attribute("lang") = "en";
  for (unsigned i = 0; i < static_cast<unsigned>(state.range()); ++i) {
    pugi::xml_node device = root.append_child("Device");
    device.append_attribute("vendorID") = "1DE4";
    device.append_attribute("deviceID") = i & 0xFFFF;
    device.append_attribute("subDeviceID") = i >> 16;
    device.append_attribute("subVendorID") = "ABCD";
    device.append_attribute("bus") = i >> 8;
    device.append_attribute("device") = i >> 3 & 0x1F;
    device.append_attribute("function") = i & 7;
    device.append_attribute("display") = "Gigabit Network Connection";
    pugi::xml_node application = device.append_child("Application");
    application.append_attribute("componentType") = "DRVR";
    application.append_attribute("version") = "12.15.22.6";
    application.append_attribute("display") = "Gigabit Network Connection Driver";
  }
  for (auto _ : state) {
    releaseMemory(state);
    std::ostringstream text;
    document.save(text, "", pugi::format_raw, pugi::encoding_utf16_le);
    benchmark::DoNotOptimize(text.str());
  }
}
BENCHMARK(PugixmlSave)->Arg(4096)->Unit(benchmark::kMillisecond);

void PugixmlLoad(benchmark::State& state) {
  const SPUString text = build(static_cast<std::uint32_t>(state.range()));
  for (auto _ : state) {
    releaseMemory(state);
    pugi::xml_document document;
    const auto result = document.load_buffer(text.data(), text.size() * sizeof(char16_t),
                                             pugi::parse_default, pugi::encoding_utf16_le);
    if (!result) state.SkipWithError(result.description());
  }
}
BENCHMARK(PugixmlLoad)->Arg(4096)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
