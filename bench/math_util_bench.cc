// Speed of the hypergeometric tail over an evaluation-sized grid and of the FDR correction of a million p-values.
#include <benchmark/benchmark.h>

#include "eval/math_util.h"
#include "pipeline/random.h"

namespace {

const int kGenes = 6000;
const int kAttributeSizes[] = {5, 10, 20, 50, 100, 200, 300, 500};
const int kClusterSizes[] = {5, 10, 20, 50, 100, 200, 300};

// Every (K, n) of the grid with k running over [first, min(n, K)], first given by the caller.
template <class FirstK>
void RunGrid(benchmark::State& state, FirstK firstK) {
  long calls = 0;
  for (auto _ : state) {
    for (int K : kAttributeSizes)
      for (int n : kClusterSizes) {
        int top = n < K ? n : K;
        for (int k = firstK(n, K); k <= top; k++) {
          benchmark::DoNotOptimize(MathUtils::ComputeLogHyperPValue(k, n, K, kGenes));
          calls++;
        }
      }
  }
  state.SetItemsProcessed(calls);
}

// The evaluation steps only ask about enrichment: more hits than the n K / N expected.
void BM_LogHyperPValueEnrichment(benchmark::State& state) {
  RunGrid(state, [](int n, int K) { return static_cast<int>(static_cast<double>(n) * K / kGenes) + 1; });
}
BENCHMARK(BM_LogHyperPValueEnrichment);

// Every count from 0: below the mean the terms rise before they fall, so the sums are long.
void BM_LogHyperPValueAllCounts(benchmark::State& state) {
  RunGrid(state, [](int, int) { return 0; });
}
BENCHMARK(BM_LogHyperPValueAllCounts);

// p-values uniform on (0, 1), or with state.range(1) > 0 rounded to that many levels, as discrete
// tests give many equal values.
void BM_FdrCorrection(benchmark::State& state) {
  int count = static_cast<int>(state.range(0));
  int levels = static_cast<int>(state.range(1));
  Random_cl random(17);
  DoubleComparator_cl* items = new DoubleComparator_cl[count];
  for (int i = 0; i < count; i++) {
    double p = random.SampleUniform();
    items[i].iValue = levels > 0 ? static_cast<int>(p * levels) / static_cast<double>(levels) : p;
  }
  Vector_tmpl<DoubleComparator_cl*> holders(count);
  for (auto _ : state) {
    state.PauseTiming();
    holders.RemoveAll();
    for (int i = 0; i < count; i++) holders.AddLast(items + i);
    state.ResumeTiming();
    benchmark::DoNotOptimize(MathUtils::ComputeCorrectedPvalue(holders, MHC_FDR, 0.05, count));
  }
  state.SetItemsProcessed(state.iterations() * count);
  delete[] items;
}
BENCHMARK(BM_FdrCorrection)->Args({1000000, 0})->Args({1000000, 1000})->Unit(benchmark::kMillisecond);

}  // namespace
