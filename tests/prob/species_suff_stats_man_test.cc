// The species manager against direct sums: matrix queries, the split sweep beside a plain cell-by-cell road, stats ownership.
#include "prob/species_suff_stats_man.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

#include "pipeline/missing.h"
#include "pipeline/random.h"

namespace {

struct World {
  int genes, experiments;
  std::unique_ptr<Microarray_cl> microarray;
  std::unique_ptr<SpeciesVorn_cl> species;
  VornAttributeGroup_cl geneGroup{Name_sptr("g"), GENE_ATTRIBUTES, Domain_sptr()};
  VornAttributeGroup_cl experimentGroup{Name_sptr("e"), EXPERIMENT_ATTRIBUTES, Domain_sptr()};

  // Attribute values 0..values-1, with a few missing and a few out of range.
  static Matrix_sptr Attributes(int rows, int columns, int values) {
    Matrix_sptr m = new Matrix_cl(rows, columns);
    for (int r = 0; r < rows; r++)
      for (int c = 0; c < columns; c++) {
        double u = Random_cl::iGlobalRandomizer.SampleUniform();
        m->GetRow(r)[c] = u < 0.05 ? kMissingReal : u < 0.08 ? values + 0.5 : std::floor(u * values) + 0.25;
      }
    return m;
  }

  World(int g, int e, int seed) : genes(g), experiments(e) {
    Random_cl::iGlobalRandomizer.Reset(seed);
    Vector_tmpl<Name_sptr> geneNames, experimentNames, attributeNames;
    for (int i = 0; i < g; i++) geneNames.AddLast(Name_sptr(("g" + std::to_string(i)).c_str()));
    for (int i = 0; i < e; i++) experimentNames.AddLast(Name_sptr(("e" + std::to_string(i)).c_str()));
    for (int i = 0; i < 4; i++) attributeNames.AddLast(Name_sptr(("a" + std::to_string(i)).c_str()));
    microarray = std::make_unique<Microarray_cl>(Name_sptr("m"), geneNames, experimentNames, 0.0);
    Matrix_sptr x = microarray->GetMatrix();
    for (int r = 0; r < g; r++)
      for (int c = 0; c < e; c++)
        x->GetRow(r)[c] = Random_cl::iGlobalRandomizer.SampleUniform() < 0.1 ? kMissingReal
                                                                              : Random_cl::iGlobalRandomizer.SampleNormal() * 3;
    species = std::make_unique<SpeciesVorn_cl>(Name_sptr("m"));
    species->SetMicroarray(microarray.get());
    species->GetGeneAttributes()->Load(Attributes(g, 4, 3), attributeNames, &geneGroup);
    species->GetExperimentAttributes()->Load(Attributes(e, 4, 2), attributeNames, &experimentGroup);
  }
};

// A random subset of 0..n-1 in random order.
Vector_tmpl<int>* Subset(int n) {
  auto* v = new Vector_tmpl<int>();
  for (int i = 0; i < n; i++)
    if (Random_cl::iGlobalRandomizer.SampleUniform() < 0.7) v->AddLast(i);
  v->Randomize();
  return v;
}

struct Split {
  std::vector<double> weight, sum, sumSquares;
  std::vector<int> counts;
  std::vector<std::vector<int>> objects;
};

// Cell by cell over the matrix, in filter order.
Split PlainSplit(const World& w, const MatrixFilter_cl* filter, int attribute, int values, int splitRows) {
  Split s{std::vector<double>(values), std::vector<double>(values), std::vector<double>(values),
          std::vector<int>(values), std::vector<std::vector<int>>(values)};
  Matrix_sptr x = w.microarray->GetMatrix();
  SpeciesAttributes_cl* a = splitRows ? w.species->GetGeneAttributes() : w.species->GetExperimentAttributes();
  int nSplit = splitRows ? filter->GetNumRows(w.genes) : filter->GetNumColumns(w.experiments);
  int nOther = splitRows ? filter->GetNumColumns(w.experiments) : filter->GetNumRows(w.genes);
  for (int i = 0; i < nSplit; i++) {
    int object = splitRows ? filter->GetRow(i) : filter->GetColumn(i);
    double value = a->GetValue(object, attribute);
    if (!(value > -1.0 && value < values)) continue;
    int b = static_cast<int>(value);
    s.objects[b].push_back(object);
    s.counts[b]++;
    for (int j = 0; j < nOther; j++) {
      double cell = splitRows ? x->GetElement(object, filter->GetColumn(j)) : x->GetElement(filter->GetRow(j), object);
      if (cell == kMissingReal) continue;
      s.sum[b] += cell;
      s.sumSquares[b] += cell * cell;
      s.weight[b] += 1.0;
    }
  }
  return s;
}

void ExpectSameSplit(SpeciesSuffStatsMan_cl& man, const World& w, const MatrixFilter_cl* filter, int attribute,
                     int values, AttributeGroupType_cl type) {
  Vector_tmpl<int> counts;
  Vector_tmpl<Vector_tmpl<int>*> objects;
  for (int b = 0; b < values; b++) objects.AddLast(new Vector_tmpl<int>());
  MomentsTableSuffStats_cl* table = man.ComputeStatsSplit(filter, attribute, values, type, &counts, objects);
  Split plain = PlainSplit(w, filter, attribute, values, type == GENE_ATTRIBUTES);
  for (int b = 0; b < values; b++) {
    // Bit for bit, not merely close.
    EXPECT_EQ(table->GetCell(b)->GetTotalWeight(), plain.weight[b]) << b;
    EXPECT_EQ(table->GetCell(b)->GetFirst(0), plain.sum[b]) << b;
    EXPECT_EQ(table->GetCell(b)->GetSecond(0, 0), plain.sumSquares[b]) << b;
    EXPECT_EQ(counts[b], plain.counts[b]);
    ASSERT_EQ(objects[b]->GetSize(), static_cast<int>(plain.objects[b].size()));
    for (int k = 0; k < objects[b]->GetSize(); k++) EXPECT_EQ((*objects[b])[k], plain.objects[b][k]);
    delete objects[b];
  }
}

TEST(SpeciesSuffStatsMan, SplitSweepMatchesThePlainRoadBitForBit) {
  World w(70, 45, 41);
  SpeciesSuffStatsMan_cl man(w.species.get());
  MatrixFilter_cl leaf(Subset(70), 1, Subset(45), 1);
  for (int a = 0; a < 4; a++) ExpectSameSplit(man, w, &leaf, a, 2, EXPERIMENT_ATTRIBUTES);
  for (int a = 0; a < 4; a++) ExpectSameSplit(man, w, &leaf, a, 3, GENE_ATTRIBUTES);
  // Another leaf of the same shape, the whole matrix, and back to the first side.
  MatrixFilter_cl other(Subset(70), 1, Subset(45), 1);
  ExpectSameSplit(man, w, &other, 1, 2, EXPERIMENT_ATTRIBUTES);
  MatrixFilter_cl all(nullptr, 0, nullptr, 0);
  ExpectSameSplit(man, w, &all, 2, 2, EXPERIMENT_ATTRIBUTES);
  ExpectSameSplit(man, w, &all, 2, 3, GENE_ATTRIBUTES);
  // More buckets than values leave empty buckets with zero moments.
  ExpectSameSplit(man, w, &leaf, 0, 5, EXPERIMENT_ATTRIBUTES);
}

TEST(SpeciesSuffStatsMan, SplitBySetOfValues) {
  World w(50, 40, 45);
  SpeciesSuffStatsMan_cl man(w.species.get());
  MatrixFilter_cl leaf(Subset(50), 1, Subset(40), 1);
  // Experiment values 0.25 and 1.25 go to buckets 1 and 0; the rest to none.
  DoubleSet_tmpl<int> values(8, -1);
  values.Insert(0.25, 1);
  values.Insert(1.25, 0);
  std::vector<double> flipped = {1.25, 0.25};
  Vector_tmpl<Vector_tmpl<int>*> objects;
  objects.AddLast(new Vector_tmpl<int>());
  objects.AddLast(new Vector_tmpl<int>());
  SingleRv_sptr real = new SingleRv_cl(Name_sptr("x"), new RealDomain_cl());
  auto* table = static_cast<MomentsTableSuffStats_cl*>(
      man.ComputeStatsSplit(&leaf, 3, EXPERIMENT_ATTRIBUTES, &values, objects, real));
  Split plain = PlainSplit(w, &leaf, 3, 2, 0);
  for (int b = 0; b < 2; b++) {
    EXPECT_EQ(table->GetCell(b)->GetFirst(0), plain.sum[1 - b]);
    EXPECT_EQ(table->GetCell(b)->GetSecond(0, 0), plain.sumSquares[1 - b]);
    EXPECT_EQ(objects[b]->GetSize(), static_cast<int>(plain.objects[1 - b].size()));
  }

  // A discrete child: cells truncated to -1, 0, 1 counted per bucket by the numbers of the names.
  Matrix_sptr x = w.microarray->GetMatrix();
  for (int r = 0; r < 50; r++)
    for (int c = 0; c < 40; c++)
      if (x->GetRow(r)[c] != kMissingReal) x->GetRow(r)[c] = (r * 7 + c) % 4 - 1.5;  // -1.5 truncates to -1
  man.ClearSplitCache();
  SingleRv_sptr d = new SingleRv_cl(Name_sptr("d"), DomainFactory_cl::CreateIntegerDomain(-1, 3));
  for (int b = 0; b < 2; b++) objects[b]->RemoveAll();
  auto* multi = static_cast<MultiSuffStats_cl*>(man.ComputeStatsSplit(&leaf, 3, EXPERIMENT_ATTRIBUTES, &values, objects, d));
  ASSERT_EQ(multi->GetNumStats(), 2);
  std::vector<std::vector<double>> expect(2, std::vector<double>(3, 0.0));
  SpeciesAttributes_cl* a = w.species->GetExperimentAttributes();
  for (int j = 0; j < leaf.GetColumns()->GetSize(); j++) {
    int c = leaf.GetColumn(j), b = values.GetEntry(a->GetValue(c, 3));
    if (b < 0) continue;
    for (int i = 0; i < leaf.GetRows()->GetSize(); i++) {
      double v = x->GetRow(leaf.GetRow(i))[c];
      int t = static_cast<int>(v);
      if (v != kMissingReal && t >= -1 && t <= 1) expect[b][t + 1] += 1.0;
    }
  }
  for (int b = 0; b < 2; b++)
    for (int v = 0; v < 3; v++)
      EXPECT_EQ(static_cast<CountsSuffStats_cl*>(multi->GetStats(b))->GetWeight(v), expect[b][v]) << b << v;
  delete objects[0];
  delete objects[1];
}

TEST(SpeciesSuffStatsMan, MatrixQueriesAreDirectSums) {
  World w(20, 12, 42);
  SpeciesSuffStatsMan_cl man(w.species.get());
  MatrixFilter_cl leaf(Subset(20), 1, Subset(12), 1);
  RvVector_sptr real = new RvVector_cl();
  real->AddLast(SingleRv_sptr(new SingleRv_cl(Name_sptr("x"), new RealDomain_cl())));
  MatrixFilterSuffStatsQuery_cl query(real, &leaf);
  auto* moments = static_cast<MomentsSuffStats_cl*>(man.ComputeStats(&query));
  double n = 0, s = 0, ss = 0;
  for (int i = 0; i < leaf.GetRows()->GetSize(); i++)
    for (int j = 0; j < leaf.GetColumns()->GetSize(); j++) {
      double x = w.microarray->GetMatrix()->GetElement(leaf.GetRow(i), leaf.GetColumn(j));
      if (x == kMissingReal) continue;
      n++;
      s += x;
      ss += x * x;
    }
  EXPECT_EQ(moments->GetTotalWeight(), n);
  EXPECT_DOUBLE_EQ(moments->GetFirst(0), s);
  EXPECT_DOUBLE_EQ(moments->GetSecond(0, 0), ss);
  EXPECT_EQ(query.GetStats(), moments);

  // A discrete child counts truncated cells by the numbers its value names stand for.
  Matrix_sptr x = w.microarray->GetMatrix();
  for (int r = 0; r < 20; r++)
    for (int c = 0; c < 12; c++)
      if (x->GetRow(r)[c] != kMissingReal) x->GetRow(r)[c] = (r + c) % 3 - 1 + 0.5;
  RvVector_sptr discrete = new RvVector_cl();
  discrete->AddLast(SingleRv_sptr(new SingleRv_cl(Name_sptr("d"), DomainFactory_cl::CreateIntegerDomain(-1, 3))));
  MatrixFilterSuffStatsQuery_cl countQuery(discrete, &leaf);
  auto* counts = static_cast<CountsSuffStats_cl*>(man.ComputeStats(&countQuery));
  std::vector<double> expect(3, 0.0);
  for (int i = 0; i < leaf.GetRows()->GetSize(); i++)
    for (int j = 0; j < leaf.GetColumns()->GetSize(); j++) {
      int r = leaf.GetRow(i), c = leaf.GetColumn(j);
      if (x->GetRow(r)[c] != kMissingReal) expect[static_cast<int>(x->GetRow(r)[c]) + 1]++;
    }
  for (int v = 0; v < 3; v++) EXPECT_EQ(counts->GetWeight(v), expect[v]) << v;
}

TEST(SpeciesSuffStatsMan, StoredStatisticsAreFreedPastAThousand) {
  World w(3, 3, 43);
  SpeciesSuffStatsMan_cl man(w.species.get());
  for (int i = 0; i < 1000; i++) man.AddStats(new CountsSuffStats_cl(1));
  EXPECT_EQ(man.GetNumStats(), 1000);
  man.AddStats(new CountsSuffStats_cl(1));
  EXPECT_EQ(man.GetNumStats(), 1);
  man.RemoveStats();
  EXPECT_EQ(man.GetNumStats(), 0);
}

TEST(SpeciesSuffStatsManDeathTest, UnknownQueryTypeStops) {
  World w(3, 3, 44);
  SpeciesSuffStatsMan_cl man(w.species.get());
  RvVector_sptr real = new RvVector_cl();
  real->AddLast(SingleRv_sptr(new SingleRv_cl(Name_sptr("x"), new RealDomain_cl())));
  VornSuffStatsQuery_cl layer(real, VornSuffStatsQuery_cl::LAYER);
  EXPECT_DEATH(man.ComputeStats(&layer), "SpeciesCompSuffStatsMan_cl::ComputeStats unrecognized query type 1\n");
}

}  // namespace
