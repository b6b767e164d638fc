// Reading reflection text files of 100,000 lines: HKL, PHS and XPLOR with the library, and a plain
// sscanf of the HKL lines beside it.
#include <benchmark/benchmark.h>

#include <cstdint>  // for int64_t
#include <cstdio>   // for sscanf
#include <cstdlib>  // for abort
#include <sstream>  // for istringstream
#include <string>   // for string, getline
#include <vector>   // for vector

#include "vxgrid/reflection/phs.h"
#include "vxgrid/reflection/reflection.h"
#include "vxgrid/reflection/xplor.h"
#include "vxgrid/toolkit/names.h"

namespace {

constexpr unsigned int count = 100000;

VXCore::VXReflection made_set() {
  std::vector<int> h(count), k(count), l(count), rfree(count);
  std::vector<float> amplitude(count), phase(count), fraction(count);
  for (unsigned int i = 0; i < count; ++i) {
    const int place = static_cast<int>(i);
    h[i] = place % 97 - 48;
    k[i] = place / 97 % 89;
    l[i] = place % 61;
    rfree[i] = place % 20 == 0 ? 0 : 1;
    amplitude[i] = 0.37F * static_cast<float>(place % 9001);
    phase[i] = 0.125F * static_cast<float>(place % 2880);
    fraction[i] = static_cast<float>(place % 1000) / 1000;
  }
  VXCore::VXReflection set;
  set.SetCount(count);
  set.SetHKL(h.data(), k.data(), l.data(), count);
  set.SetFobs(amplitude.data(), count);
  set.SetFcalc(amplitude.data(), count);
  set.SetPhase(phase.data(), count);
  set.SetPhaseCalc(phase.data(), count);
  set.SetSigma(fraction.data(), count);
  set.SetFOM(fraction.data(), count);
  set.SetRFree(rfree.data(), count);
  return set;
}

std::string hkl_text() {
  const VXCore::VXReflection set = made_set();
  std::string text;
  for (unsigned int i = 0; i < count; ++i) {
    int h = 0, k = 0, l = 0;
    float fobs = 0, sigma = 0, phase = 0, fom = 0;
    set.GetHKLElement(h, k, l, i);
    set.GetFobsElement(fobs, i);
    set.GetSigmaElement(sigma, i);
    set.GetPhaseElement(phase, i);
    set.GetFOMElement(fom, i);
    text += VXCore::format_text("HKL %5d%5d%5d %10.3f %10.3f %10.3f %10.3f\n", h, k, l, fobs, sigma,
                                phase, fom);
  }
  return text;
}

template <class Writer>
std::string written(Writer write) {
  VXCore::VXReflection set = made_set();
  VXCore::vxosstream out;
  if (!write(out, set)) std::abort();
  return out.str();
}

template <class Reader>
void read(benchmark::State& state, Reader reader, const std::string& text) {
  for (auto _ : state) {
    VXCore::vxisstream in(text.data(), text.size());
    VXCore::VXReflection set;
    float fobs = 0;
    if (!reader(in, set) || set.GetCount() != count || !set.GetFobsElement(fobs, 9000) ||
        fobs != 3330.0F)
      std::abort();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void hkl(benchmark::State& state) {
  read(state, VXCore::VXReadReflectionHKL, hkl_text());
}
void phs(benchmark::State& state) {
  read(state, VXCore::VXReadReflectionPHS, written(VXCore::VXWriteReflectionPHS));
}
void xplor(benchmark::State& state) {
  read(state, VXCore::VXReadReflectionXPLOR, written(VXCore::VXWriteReflectionXPLOR));
}

// The lines of an HKL file through sscanf, into plain vectors.
void hkl_sscanf(benchmark::State& state) {
  const std::string text = hkl_text();
  for (auto _ : state) {
    std::vector<int> indices;
    std::vector<float> values;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
      int h = 0, k = 0, l = 0;
      float fobs = 0, sigma = 0, phase = 0, fom = 0;
      if (std::sscanf(line.c_str(), "%*s%d%d%d%f%f%f%f", &h, &k, &l, &fobs, &sigma, &phase, &fom) !=
          7)
        std::abort();
      indices.insert(indices.end(), {h, k, l});
      values.insert(values.end(), {fobs, sigma, phase, fom});
    }
    if (indices.size() != 3 * count || values[4 * 9000] != 3330.0F) std::abort();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

BENCHMARK(hkl)->Unit(benchmark::kMillisecond)->MinTime(1);
BENCHMARK(phs)->Unit(benchmark::kMillisecond)->MinTime(1);
BENCHMARK(xplor)->Unit(benchmark::kMillisecond)->MinTime(1);
BENCHMARK(hkl_sscanf)->Unit(benchmark::kMillisecond)->MinTime(1);

}  // namespace

BENCHMARK_MAIN();
