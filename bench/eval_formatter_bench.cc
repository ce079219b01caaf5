// The enrichment report at genome scale: filling, FDR correction and printing of tens of thousands of results.
#include <benchmark/benchmark.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "eval/eval_formatter.h"

namespace {

// 1000 clusters by 30 gene sets out of 6000 genes, each result with its real hypergeometric tail.
EvalFormatter_cl* FillReport(const std::vector<Name_sptr>& clusters, const std::vector<Name_sptr>& sets) {
  EvalFormatter_cl* report = new EvalFormatter_cl(6000, 6000);
  for (size_t c = 0; c < clusters.size(); c++)
    for (size_t a = 0; a < sets.size(); a++) {
      int n = 20 + static_cast<int>(c % 80), K = 30 + static_cast<int>(a * 13 % 400);
      int k = static_cast<int>((c * 7 + a * 11) % 9) + n * K / 6000 + 1;
      if (k > n || k > K) continue;
      double p = std::exp(MathUtils::ComputeLogHyperPValue(k, n, K, 6000));
      report->Add(clusters[c], n, K, K, new AttributeFormatter_cl(sets[a], p, p, k, n, K, 6000, nullptr));
    }
  return report;
}

void BM_FillCorrectPrint(benchmark::State& state) {
  std::vector<Name_sptr> clusters, sets;
  for (int c = 0; c < 1000; c++) clusters.push_back(Name_sptr(("module_" + std::to_string(c)).c_str()));
  for (int a = 0; a < 30; a++) sets.push_back(Name_sptr(("GO:00" + std::to_string(1000 + a)).c_str()));
  for (auto _ : state) {
    EvalFormatter_cl* report = FillReport(clusters, sets);
    report->MultipleHypothesisCorrection(MHC_FDR, 0.05, 30000);
    std::ostringstream out;
    report->Print(out, static_cast<FormatType_cl>(state.range(0)));
    benchmark::DoNotOptimize(out.str().size());
    delete report;
  }
}
BENCHMARK(BM_FillCorrectPrint)->Arg(FORMAT_OBJECT_MAJOR)->Arg(FORMAT_OBJECT_MAJOR_ROWS)->Arg(FORMAT_MATRIX)
    ->Unit(benchmark::kMillisecond);

}  // namespace
