// Hierarchical Pearson clustering of planted expression matrices, with the memory it holds.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdio>
#include <iostream>
#include <sstream>

#include "clustering/hierarchical_clustering.h"
#include "pipeline/random.h"

namespace {
// Twenty noisy groups of rows over 100 columns.
Matrix_sptr PlantedMatrix(int rows, int cols) {
  Random_cl::iGlobalRandomizer.Reset(17);
  Matrix_sptr centres(new Matrix_cl(20, cols));
  for (int g = 0; g < 20; g++)
    for (int c = 0; c < cols; c++) centres->SetElement(g, c, 2.0 * Random_cl::iGlobalRandomizer.SampleNormal());
  Matrix_sptr m(new Matrix_cl(rows, cols));
  for (int r = 0; r < rows; r++)
    for (int c = 0; c < cols; c++)
      m->SetElement(r, c, centres->GetElement(r % 20, c) + Random_cl::iGlobalRandomizer.SampleNormal());
  return m;
}

long PeakKilobytes() {
  struct rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

void BM_HierarchicalPearson(benchmark::State& state) {
  int rows = static_cast<int>(state.range(0));
  Matrix_sptr m = PlantedMatrix(rows, 100);
  long before = PeakKilobytes();
  // The engine reports each merge on the error stream; the benchmark keeps it quiet.
  std::streambuf* saved = std::cerr.rdbuf();
  std::ostringstream sink;
  for (auto _ : state) {
    std::cerr.rdbuf(sink.rdbuf());
    HierarchicalClustering_cl engine(Name_sptr("Pearson"), 5);
    engine.Load(m, nullptr);
    engine.Cluster(1);
    std::cerr.rdbuf(saved);
    sink.str("");
    benchmark::DoNotOptimize(engine.GetSolution().GetSize());
  }
  state.counters["peak_MB"] = PeakKilobytes() / 1024.0;
  state.counters["growth_MB"] = (PeakKilobytes() - before) / 1024.0;
}
BENCHMARK(BM_HierarchicalPearson)->Arg(5000)->Arg(20000)->Iterations(1)->Unit(benchmark::kSecond);
}  // namespace
