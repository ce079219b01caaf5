// The split sweep of tree learning: one leaf of 6,000 genes x 300 arrays over 500 two-valued regulators, beside a plain sum.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "pipeline/missing.h"
#include "pipeline/random.h"
#include "prob/species_suff_stats_man.h"

namespace {

constexpr int kGenes = 6000, kArrays = 300, kRegulators = 500;

// The expression matrix with 2% of cells missing, and a 0/1 value of each regulator in each array.
struct Leaf {
  std::unique_ptr<Microarray_cl> microarray;
  std::unique_ptr<SpeciesVorn_cl> species;
  VornAttributeGroup_cl group{Name_sptr("r"), EXPERIMENT_ATTRIBUTES, Domain_sptr()};
  MatrixFilter_cl all{nullptr, 0, nullptr, 0};

  Leaf() {
    Random_cl random(17);
    Vector_tmpl<Name_sptr> genes, arrays, regulators;
    for (int i = 0; i < kGenes; i++) genes.AddLast(Name_sptr(("g" + std::to_string(i)).c_str()));
    for (int i = 0; i < kArrays; i++) arrays.AddLast(Name_sptr(("e" + std::to_string(i)).c_str()));
    for (int i = 0; i < kRegulators; i++) regulators.AddLast(Name_sptr(("r" + std::to_string(i)).c_str()));
    microarray = std::make_unique<Microarray_cl>(Name_sptr("m"), genes, arrays, 0.0);
    Matrix_sptr x = microarray->GetMatrix();
    for (int r = 0; r < kGenes; r++)
      for (int c = 0; c < kArrays; c++) x->GetRow(r)[c] = random.SampleUniform() < 0.02 ? kMissingReal : random.SampleNormal();
    Matrix_sptr values = new Matrix_cl(kArrays, kRegulators);
    for (int r = 0; r < kArrays; r++)
      for (int c = 0; c < kRegulators; c++) values->GetRow(r)[c] = random.SampleUniform() < 0.5 ? 0.0 : 1.0;
    species = std::make_unique<SpeciesVorn_cl>(Name_sptr("m"));
    species->SetMicroarray(microarray.get());
    species->GetExperimentAttributes()->Load(values, regulators, &group);
  }
};

Leaf& TheLeaf() {
  static Leaf leaf;
  return leaf;
}

// The two buckets' object lists that a split fills, emptied before each split.
struct Buckets {
  Vector_tmpl<int> counts;
  Vector_tmpl<Vector_tmpl<int>*> objects;
  Buckets() {
    objects.AddLast(new Vector_tmpl<int>(kArrays));
    objects.AddLast(new Vector_tmpl<int>(kArrays));
  }
  ~Buckets() {
    delete objects[0];
    delete objects[1];
  }
  MomentsTableSuffStats_cl* Split(SpeciesSuffStatsMan_cl& man, const MatrixFilter_cl* leaf, int attribute) {
    objects[0]->RemoveAll();
    objects[1]->RemoveAll();
    return man.ComputeStatsSplit(leaf, attribute, 2, EXPERIMENT_ATTRIBUTES, &counts, objects);
  }
};

// Every regulator split once over the leaf; the leaf's copy is made by the first and reused.
void BM_SplitSweep(benchmark::State& state) {
  Leaf& leaf = TheLeaf();
  SpeciesSuffStatsMan_cl man(leaf.species.get());
  Buckets buckets;
  for (auto _ : state) {
    for (int a = 0; a < kRegulators; a++) benchmark::DoNotOptimize(buckets.Split(man, &leaf.all, a));
    man.RemoveStats();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kRegulators) * kGenes * kArrays);
}
BENCHMARK(BM_SplitSweep)->Unit(benchmark::kMillisecond);

// The yardstick: one plain pass summing every cell of the same matrix, once per regulator.
void BM_PlainSumOfTheCells(benchmark::State& state) {
  Matrix_sptr x = TheLeaf().microarray->GetMatrix();
  for (auto _ : state) {
    double sum = 0.0;
    for (int r = 0; r < kGenes; r++) {
      const double* row = x->GetRow(r);
      for (int c = 0; c < kArrays; c++) sum += row[c];
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kGenes) * kArrays);
}
BENCHMARK(BM_PlainSumOfTheCells)->Unit(benchmark::kMillisecond);

// Making the leaf's copy, paid once per leaf.
void BM_SplitLeafCopy(benchmark::State& state) {
  Leaf& leaf = TheLeaf();
  SpeciesSuffStatsMan_cl man(leaf.species.get());
  Buckets buckets;
  for (auto _ : state) {
    man.ClearSplitCache();
    benchmark::DoNotOptimize(buckets.Split(man, &leaf.all, 0));
    man.RemoveStats();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kGenes) * kArrays);
}
BENCHMARK(BM_SplitLeafCopy)->Unit(benchmark::kMillisecond);

// Cell by cell down each array's column of the row-major matrix, as the sweep reads without its copy.
void BM_ColumnWalkOneRegulator(benchmark::State& state) {
  Leaf& leaf = TheLeaf();
  Matrix_sptr x = leaf.microarray->GetMatrix();
  const Matrix_cl* values = leaf.species->GetExperimentAttributes()->GetMatrix().Get();
  for (auto _ : state) {
    double sum[2] = {0, 0}, squares[2] = {0, 0}, weight[2] = {0, 0};
    for (int c = 0; c < kArrays; c++) {
      int b = static_cast<int>(values->GetRow(c)[0]);
      for (int r = 0; r < kGenes; r++) {
        double v = x->GetRow(r)[c];
        if (v == kMissingReal) continue;
        sum[b] += v;
        squares[b] += v * v;
        weight[b] += 1.0;
      }
    }
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(squares);
    benchmark::DoNotOptimize(weight);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kGenes) * kArrays);
}
BENCHMARK(BM_ColumnWalkOneRegulator)->Unit(benchmark::kMillisecond);

}  // namespace
