// Loading a 6,000 genes by 2,000 attributes 0/1 annotation matrix, beside the expression load of the
// same number of rows and columns.
#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "data/microarray.h"
#include "data/species_attributes.h"
#include "data/vorn_attribute_group.h"
#include "pipeline/random.h"

namespace {
const int kGenes = 6000;
const int kAttributes = 2000;

// Both tables are made once, from a fixed seed, and kept between runs. Annotations are sparse, as
// gene sets are: one cell in twenty is 1.
std::string TablePath(const char* kind, bool annotation) {
  std::string path = std::string("/tmp/vorn_bench_") + kind + "_" + std::to_string(kGenes) + "x" +
                     std::to_string(kAttributes) + ".tab";
  struct stat info;
  if (stat(path.c_str(), &info) == 0 && info.st_size > 0) return path;
  std::string partial = path + ".part";
  FILE* out = fopen(partial.c_str(), "w");
  if (!out) abort();
  Random_cl random(20240602);
  if (!annotation) fputs("Gene\t", out);
  for (int a = 0; a < kAttributes; a++) fprintf(out, a ? "\tSet%d" : "Set%d", a);
  fputc('\n', out);
  for (int g = 0; g < kGenes; g++) {
    if (!annotation) fprintf(out, "YGene%05d\t", g);
    for (int a = 0; a < kAttributes; a++) {
      if (a) fputc('\t', out);
      double u = random.SampleUniform();
      if (annotation) fputc(u < 0.05 ? '1' : '0', out);
      else fprintf(out, "%.3f", (u - 0.1) * 110.0);
    }
    fputc('\n', out);
  }
  fclose(out);
  rename(partial.c_str(), path.c_str());
  return path;
}

void BM_AttributeLoad(benchmark::State& state) {
  Name_sptr file(TablePath("annotation", true).c_str());
  VornAttributeGroup_cl group(Name_sptr("sets"), GENE_ATTRIBUTES, CreateValueDomain(Name_sptr("0;1")));
  for (int a = 0; a < kAttributes; a++)
    group.AddAttribute(Name_sptr(("Set" + std::to_string(a)).c_str()), group.GetValueDomain());
  for (auto _ : state) {
    SpeciesAttributes_cl values;
    values.Load(file, &group);
    benchmark::DoNotOptimize(values.GetValue(kGenes - 1, kAttributes - 1));
  }
  state.counters["cells/s"] = benchmark::Counter(1.0 * kGenes * kAttributes, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_AttributeLoad)->Unit(benchmark::kMillisecond);

void BM_ExpressionLoad(benchmark::State& state) {
  Name_sptr file(TablePath("expression", false).c_str());
  for (auto _ : state) {
    Microarray_cl microarray(nullptr, Name_sptr("bench"), file, Name_sptr("Continuous"));
    microarray.Load(nullptr, nullptr, nullptr);
    benchmark::DoNotOptimize(microarray.GetMatrix()->GetRow(kGenes - 1));
  }
  state.counters["cells/s"] = benchmark::Counter(1.0 * kGenes * kAttributes, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_ExpressionLoad)->Unit(benchmark::kMillisecond);
}  // namespace
