// Loading a large expression table: the tab file reader alone and the whole microarray load, with
// the peak memory of the process against the size of the matrix in doubles.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "data/data_file.h"
#include "data/microarray.h"
#include "pipeline/random.h"

namespace {
const int kGenes = 20000;
const int kExperiments = 1000;
const double kMatrixBytes = 8.0 * kGenes * kExperiments;

// The table is made once, from a fixed seed, and kept between runs: about 150 MB of numbers with
// three decimals, one cell in a hundred left empty.
std::string TablePath() {
  std::string path = "/tmp/vorn_bench_" + std::to_string(kGenes) + "x" + std::to_string(kExperiments) + ".tab";
  struct stat info;
  if (stat(path.c_str(), &info) == 0 && info.st_size > 0) return path;
  std::string partial = path + ".part";
  FILE* out = fopen(partial.c_str(), "w");
  if (!out) abort();
  Random_cl random(20240601);
  fputs("Gene", out);
  for (int e = 0; e < kExperiments; e++) fprintf(out, "\tExp%d", e);
  fputc('\n', out);
  for (int g = 0; g < kGenes; g++) {
    fprintf(out, "YGene%05d", g);
    for (int e = 0; e < kExperiments; e++) {
      double u = random.SampleUniform();
      if (u < 0.01) fputc('\t', out);
      else fprintf(out, "\t%.3f", (u - 0.1) * 110.0);
    }
    fputc('\n', out);
  }
  fclose(out);
  rename(partial.c_str(), path.c_str());
  return path;
}

double PeakRssOverMatrix() {
  struct rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss * 1024.0 / kMatrixBytes;
}

const DataFileDescriptor_cl kMicroarray(1, 1, 0, 0, -1, 1, -999, -1, -1);

void BM_DataFileLoad(benchmark::State& state) {
  Name_sptr file(TablePath().c_str());
  for (auto _ : state) {
    DataFile_cl table(file, kMicroarray);
    benchmark::DoNotOptimize(table.GetDouble(kGenes - 1, kExperiments));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(kMatrixBytes));
  state.counters["peak_rss_over_matrix"] = PeakRssOverMatrix();
}
BENCHMARK(BM_DataFileLoad)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_MicroarrayLoad(benchmark::State& state) {
  Name_sptr file(TablePath().c_str());
  Microarray_cl microarray(nullptr, Name_sptr("bench"), file, Name_sptr("Continuous"));
  for (auto _ : state) {
    microarray.Load(nullptr, nullptr, Name_sptr());
    benchmark::DoNotOptimize(microarray.GetMatrix()->GetElement(kGenes - 1, kExperiments - 1));
  }
  state.counters["peak_rss_over_matrix"] = PeakRssOverMatrix();
}
BENCHMARK(BM_MicroarrayLoad)->Unit(benchmark::kMillisecond)->Iterations(3);
}  // namespace
