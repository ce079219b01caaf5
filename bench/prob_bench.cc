// Factor products through cached mappings, and the fast road of split tests and tree leaf look-up over data rows.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "pipeline/random.h"
#include "prob/factor.h"
#include "prob/multinomial.h"
#include "prob/tree_cpd.h"

namespace {

std::vector<SingleRv_sptr> Vars(int n, int size) {
  std::vector<SingleRv_sptr> vars;
  for (int i = 0; i < n; i++)
    vars.push_back(
        new SingleRv_cl(Name_sptr(("v" + std::to_string(i)).c_str()), DomainFactory_cl::CreateIntegerDomain(0, size)));
  return vars;
}

Factor_sptr RandomFactor(const std::vector<SingleRv_sptr>& vars, int from, int to, Random_cl& random) {
  RvVector_sptr scope = new RvVector_cl();
  for (int i = from; i < to; i++) scope->AddLast(vars[i]);
  Factor_sptr f = new Factor_cl(scope, 1, 0);
  for (int i = 0; i < f->GetSize(); i++) f->SetValue(random.SampleUniform(), i);
  return f;
}

// Two 6-variable tables of domain size 3 sharing three variables: a 9-variable product of 19683 cells.
void BM_FactorProductCachedMapping(benchmark::State& state) {
  Random_cl random(5);
  std::vector<SingleRv_sptr> vars = Vars(9, 3);
  Factor_sptr a = RandomFactor(vars, 0, 6, random), b = RandomFactor(vars, 3, 9, random);
  Factor_sptr product = Factor_cl::MultiplyFactors(a, b);
  FactorMapping_cl fromA(a->GetRVs(), product->GetRVs()), fromB(b->GetRVs(), product->GetRVs());
  for (auto _ : state) {
    product->CopyFromSubFactor(a, &fromA);
    product->Multiply(b, &fromB);
    benchmark::DoNotOptimize(product->GetValues());
  }
  state.SetItemsProcessed(state.iterations() * product->GetSize());
}
BENCHMARK(BM_FactorProductCachedMapping);

// The same product with the union scope and both mappings made anew each time.
void BM_FactorProductFresh(benchmark::State& state) {
  Random_cl random(5);
  std::vector<SingleRv_sptr> vars = Vars(9, 3);
  Factor_sptr a = RandomFactor(vars, 0, 6, random), b = RandomFactor(vars, 3, 9, random);
  int cells = 0;
  for (auto _ : state) {
    Factor_sptr product = Factor_cl::MultiplyFactors(a, b);
    cells = product->GetSize();
    benchmark::DoNotOptimize(product->GetValues());
  }
  state.SetItemsProcessed(state.iterations() * cells);
}
BENCHMARK(BM_FactorProductFresh);

// Summing the product back down to one of its factors' scopes.
void BM_FactorMarginalCachedMapping(benchmark::State& state) {
  Random_cl random(5);
  std::vector<SingleRv_sptr> vars = Vars(9, 3);
  Factor_sptr a = RandomFactor(vars, 0, 6, random), b = RandomFactor(vars, 3, 9, random);
  Factor_sptr product = Factor_cl::MultiplyFactors(a, b);
  FactorMapping_cl toA(a->GetRVs(), product->GetRVs());
  for (auto _ : state) {
    a->SumOut(product, &toA);
    benchmark::DoNotOptimize(a->GetValues());
  }
  state.SetItemsProcessed(state.iterations() * product->GetSize());
}
BENCHMARK(BM_FactorMarginalCachedMapping);

constexpr int kRows = 1000000;
constexpr int kPasses = 10;  // 1e7 rows per iteration
constexpr int kColumns = 8;

// Rows of value indices over eight columns of domain size 4, with about 1% missing cells.
std::vector<int> Rows() {
  Random_cl random(11);
  std::vector<int> rows(static_cast<size_t>(kRows) * kColumns);
  for (int& cell : rows)
    cell = random.SampleUniform() < 0.01 ? kMissingRowValue : static_cast<int>(random.SampleUniform() * 4);
  return rows;
}

// One condition split of two clauses, tested on 1e7 rows.
void BM_ConditionTestFastRoad(benchmark::State& state) {
  std::vector<int> rows = Rows();
  std::vector<SingleRv_sptr> vars = Vars(kColumns, 4);
  ConditionSplitTest_cl test;
  test.AddGTECondition(2, vars[2]->GetDomain(), vars[2]->GetDomain()->IndexToValue(2), 1);
  test.AddEVCondition(5, vars[5]->GetDomain(), vars[5]->GetDomain()->IndexToValue(1));
  short columns[kColumns] = {7, 6, 5, 4, 3, 2, 1, 0};
  for (auto _ : state) {
    long branches = 0;
    for (int pass = 0; pass < kPasses; pass++)
      for (int r = 0; r < kRows; r++) branches += test.Test(&rows[static_cast<size_t>(r) * kColumns], columns);
    benchmark::DoNotOptimize(branches);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<long>(kRows) * kPasses);
}
BENCHMARK(BM_ConditionTestFastRoad)->Unit(benchmark::kMillisecond);

// Leaf look-up in a tree of depth 4 with 16 leaves, each split a GTE clause, over 1e7 rows.
void BM_TreeLeafIdFastRoad(benchmark::State& state) {
  std::vector<int> rows = Rows();
  std::vector<SingleRv_sptr> vars = Vars(kColumns + 1, 4);
  RvVector_sptr parents = new RvVector_cl(), wide = new RvVector_cl();
  for (int i = 0; i < kColumns; i++) parents->AddLast(vars[i]);
  for (int i = kColumns - 1; i >= 0; i--) wide->AddLast(vars[i]);
  TreeCpd_sptr tree = new TreeCpd_cl(vars[kColumns], parents);
  std::vector<TreeCpdNode_cl*> level = {tree->GetRoot()};
  for (int depth = 0; depth < 4; depth++) {
    std::vector<TreeCpdNode_cl*> next;
    for (TreeCpdNode_cl* node : level) {
      SingleRv_sptr rv = vars[depth * 2 % kColumns];
      tree->AddGTESplit(node, rv, rv->GetDomain()->IndexToValue(1 + depth % 3), 1, 0);
      next.push_back(node->GetBranch(0));
      next.push_back(node->GetBranch(1));
    }
    level = next;
  }
  for (TreeCpdNode_cl* leaf : level) leaf->SetCpd(new Multinomial_cl(vars[kColumns]));
  tree->SetRowScope(wide);
  for (auto _ : state) {
    long leaves = 0;
    for (int pass = 0; pass < kPasses; pass++)
      for (int r = 0; r < kRows; r++) leaves += tree->GetLeafId(&rows[static_cast<size_t>(r) * kColumns]);
    benchmark::DoNotOptimize(leaves);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<long>(kRows) * kPasses);
}
BENCHMARK(BM_TreeLeafIdFastRoad)->Unit(benchmark::kMillisecond);

}  // namespace
