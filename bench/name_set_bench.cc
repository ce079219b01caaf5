// NameSet_tmpl<int> against std::unordered_map<std::string, int>: insert and look-up of a million names.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "pipeline/hash_set.h"

namespace {

constexpr int kNames = 1000000;

// Three shapes of name: numbered probes, systematic gene names and random identifiers. The
// first two give the name hash very few distinct values, which is the hard case for the set.
std::vector<std::string> MakeNames(int family) {
  std::vector<std::string> names;
  names.reserve(kNames);
  std::mt19937 rng(7);
  char text[32];
  for (int i = 0; i < kNames; i++) {
    if (family == 0) {
      snprintf(text, sizeof text, "probe_%d", i);
    } else if (family == 1) {
      snprintf(text, sizeof text, "Y%c%c%03d%c", 'A' + i % 26, 'A' + i / 26 % 26, i / 676 % 1000, "CW"[i / 676000]);
    } else {
      for (int k = 0; k < 12; k++) text[k] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"[rng() % 36];
      text[12] = '\0';
    }
    names.emplace_back(text);
  }
  return names;
}

struct Data {
  std::vector<std::string> texts;
  std::vector<Name_sptr> names;
  std::vector<int> probeOrder;
};

const Data& GetData(int family) {
  static Data data[3];
  Data& d = data[family];
  if (d.texts.empty()) {
    d.texts = MakeNames(family);
    for (const std::string& t : d.texts) d.names.emplace_back(t.c_str());
    for (int i = 0; i < kNames; i++) d.probeOrder.push_back(i);
    std::shuffle(d.probeOrder.begin(), d.probeOrder.end(), std::mt19937(11));
  }
  return d;
}

void FillSet(const Data& d, NameSet_tmpl<int>& set) {
  for (int i = 0; i < kNames; i++) set.Insert(d.names[i], i);
}

void FillMap(const Data& d, std::unordered_map<std::string, int>& map) {
  for (int i = 0; i < kNames; i++) map.emplace(d.texts[i], i);
}

void BM_NameSetInsert(benchmark::State& state) {
  const Data& d = GetData(state.range(0));
  for (auto _ : state) {
    auto* set = new NameSet_tmpl<int>(32, -1);
    FillSet(d, *set);
    state.PauseTiming();
    delete set;
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kNames);
}

void BM_StdMapInsert(benchmark::State& state) {
  const Data& d = GetData(state.range(0));
  for (auto _ : state) {
    auto* map = new std::unordered_map<std::string, int>();
    FillMap(d, *map);
    state.PauseTiming();
    delete map;
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kNames);
}

// Second argument: 0 looks up with the inserted names themselves, 1 with new names of the same
// texts, as read from another file, made anew for each pass so that no hash is cached yet.
void BM_NameSetLookup(benchmark::State& state) {
  const Data& d = GetData(state.range(0));
  NameSet_tmpl<int> set(32, -1);
  FillSet(d, set);
  std::vector<Name_sptr> fresh;
  for (auto _ : state) {
    if (state.range(1)) {
      state.PauseTiming();
      fresh.clear();
      for (const std::string& t : d.texts) fresh.emplace_back(t.c_str());
      state.ResumeTiming();
    }
    const std::vector<Name_sptr>& probes = state.range(1) ? fresh : d.names;
    long sum = 0;
    for (int i : d.probeOrder) sum += set.GetEntry(probes[i]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kNames);
}

void BM_StdMapLookup(benchmark::State& state) {
  const Data& d = GetData(state.range(0));
  std::unordered_map<std::string, int> map;
  FillMap(d, map);
  for (auto _ : state) {
    long sum = 0;
    for (int i : d.probeOrder) sum += map.find(d.texts[i])->second;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kNames);
}

}  // namespace

// Argument: 0 numbered probes, 1 systematic gene names, 2 random identifiers.
BENCHMARK(BM_NameSetInsert)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StdMapInsert)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_NameSetLookup)->ArgsProduct({{0, 1, 2}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StdMapLookup)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
