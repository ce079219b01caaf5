// Factors against brute-force enumeration over small random scopes, normalisation edge cases,
// sparse and tree factors, and multinomial sampling frequencies.
#include "prob/factor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "eval/math_util.h"
#include "prob/multinomial.h"
#include "prob/sparse_factor.h"
#include "prob/tree_cpd.h"
#include "prob/tree_factor.h"

namespace {

SingleRv_sptr Var(const std::string& name, int size) {
  return new SingleRv_cl(Name_sptr(name.c_str()), DomainFactory_cl::CreateIntegerDomain(0, size));
}

// A pool of variables made in a fixed order, so ids grow with the index.
struct Pool {
  std::vector<SingleRv_sptr> vars;
  explicit Pool(const std::vector<int>& sizes) {
    for (size_t i = 0; i < sizes.size(); i++) vars.push_back(Var("x" + std::to_string(i), sizes[i]));
  }
  // The chosen variables in the given (possibly unsorted) order.
  RvVector_sptr Scope(const std::vector<int>& which) const {
    RvVector_sptr scope = new RvVector_cl();
    for (int i : which) scope->AddLast(vars[i]);
    return scope;
  }
};

// The value of a factor at a full assignment given as value per pool variable, computed from the
// factor's own scope order, last variable fastest.
double At(const Factor_sptr& f, const std::vector<SingleRv_sptr>& pool, const std::map<int, int>& values) {
  RvVector_sptr scope = f->GetRVs();
  int index = 0;
  for (int i = 0; i < scope->GetNumberOfVars(); i++)
    index = index * scope->GetRv(i)->GetDomain()->GetDomainSize() + values.at(scope->GetRv(i)->GetId());
  return f->GetValue(index);
}

// Calls fn with every assignment (id to value) of the variables.
void ForAll(const std::vector<SingleRv_sptr>& vars, const std::function<void(std::map<int, int>&)>& fn) {
  std::map<int, int> values;
  std::function<void(size_t)> rec = [&](size_t k) {
    if (k == vars.size()) {
      fn(values);
      return;
    }
    for (int v = 0; v < vars[k]->GetDomain()->GetDomainSize(); v++) {
      values[vars[k]->GetId()] = v;
      rec(k + 1);
    }
  };
  rec(0);
}

std::vector<int> RandomSubset(Random_cl& random, int n, int atLeast) {
  std::vector<int> chosen;
  while (static_cast<int>(chosen.size()) < atLeast) {
    chosen.clear();
    for (int i = 0; i < n; i++)
      if (random.SampleUniform() < 0.5) chosen.push_back(i);
  }
  // Shuffle so that scopes arrive in many orders.
  for (int i = static_cast<int>(chosen.size()) - 1; i > 0; i--)
    std::swap(chosen[i], chosen[static_cast<int>(random.SampleUniform() * (i + 1))]);
  return chosen;
}

Factor_sptr RandomFactor(Random_cl& random, RvVector_sptr scope) {
  Factor_sptr f = new Factor_cl(scope, 1, 0);
  for (int i = 0; i < f->GetSize(); i++) f->SetValue(0.1 + random.SampleUniform(), i);
  return f;
}

std::vector<SingleRv_sptr> VarsOf(const RvVector_sptr& scope) {
  std::vector<SingleRv_sptr> out;
  for (int i = 0; i < scope->GetNumberOfVars(); i++) out.push_back(scope->GetRv(i));
  return out;
}

}  // namespace

TEST(Factor, ProductAndMarginalMatchBruteForceOverRandomScopes) {
  Random_cl random(7);
  Pool pool({2, 3, 2, 4, 3});
  for (int trial = 0; trial < 60; trial++) {
    Factor_sptr a = RandomFactor(random, pool.Scope(RandomSubset(random, 5, 1)));
    Factor_sptr b = RandomFactor(random, pool.Scope(RandomSubset(random, 5, 1)));
    Factor_sptr product = Factor_cl::MultiplyFactors(a, b);
    Factor_sptr sum = Factor_cl::AddFactors(a, b);
    // The union scope comes out sorted by id.
    for (int i = 1; i < product->GetRVs()->GetNumberOfVars(); i++)
      ASSERT_LT(product->GetRVs()->GetRv(i - 1)->GetId(), product->GetRVs()->GetRv(i)->GetId());
    ForAll(VarsOf(product->GetRVs()), [&](std::map<int, int>& v) {
      ASSERT_NEAR(At(product, pool.vars, v), At(a, pool.vars, v) * At(b, pool.vars, v), 1e-12);
      ASSERT_NEAR(At(sum, pool.vars, v), At(a, pool.vars, v) + At(b, pool.vars, v), 1e-12);
    });

    // The marginal on a random sub-scope, given in a shuffled order, against a brute-force sum.
    std::vector<int> keepIdx = RandomSubset(random, product->GetRVs()->GetNumberOfVars(), 0);
    RvVector_sptr keep = new RvVector_cl();
    for (int i : keepIdx) keep->AddLast(product->GetRVs()->GetRv(i));
    Factor_sptr marginal = Conv2Factor(product->ReduceTo(keep, Measure_sptr()));
    std::map<std::vector<int>, double> expected;
    ForAll(VarsOf(product->GetRVs()), [&](std::map<int, int>& v) {
      std::vector<int> key;
      for (int i = 0; i < marginal->GetRVs()->GetNumberOfVars(); i++)
        key.push_back(v[marginal->GetRVs()->GetRv(i)->GetId()]);
      expected[key] += At(product, pool.vars, v);
    });
    ForAll(VarsOf(marginal->GetRVs()), [&](std::map<int, int>& v) {
      std::vector<int> key;
      for (int i = 0; i < marginal->GetRVs()->GetNumberOfVars(); i++)
        key.push_back(v[marginal->GetRVs()->GetRv(i)->GetId()]);
      ASSERT_NEAR(At(marginal, pool.vars, v), expected[key], 1e-9);
    });
    EXPECT_NEAR(marginal->GetEntriesSum(), product->GetEntriesSum(), 1e-9);
  }
}

TEST(Factor, MappingOperationsFollowTheirCellRules) {
  Random_cl random(11);
  Pool pool({3, 2, 3, 2});
  for (int trial = 0; trial < 30; trial++) {
    RvVector_sptr bigScope = pool.Scope(RandomSubset(random, 4, 2));
    // Unsorted big scope: the mapping must not rely on id order.
    Factor_sptr big = new Factor_cl(bigScope, 0, 0);
    for (int i = 0; i < big->GetSize(); i++)
      big->SetValue(random.SampleUniform() < 0.2 ? 0.0 : random.SampleUniform(), i);
    std::vector<int> smallIdx = RandomSubset(random, bigScope->GetNumberOfVars(), 1);
    RvVector_sptr smallScope = new RvVector_cl();
    for (int i : smallIdx) smallScope->AddLast(bigScope->GetRv(i));
    Factor_sptr small = new Factor_cl(smallScope, 0, 0);
    for (int i = 0; i < small->GetSize(); i++)
      small->SetValue(random.SampleUniform() < 0.3 ? 0.0 : random.SampleUniform(), i);
    FactorMapping_cl mapping(smallScope, bigScope);
    ASSERT_EQ(mapping.GetNumSmall() * mapping.GetNumPerSmall(), big->GetSize());

    Factor_sptr sum = new Factor_cl(smallScope, 0, 0), most = new Factor_cl(smallScope, 0, 0);
    Factor_sptr least = new Factor_cl(smallScope, 0, 0), average = new Factor_cl(smallScope, 0, 0);
    sum->SumOut(big, &mapping);
    most->Maximize(big, &mapping);
    least->Minimize(big, &mapping);
    average->AverageOut(big, &mapping);
    Factor_sptr times = big->CopyFactor(), divided = big->CopyFactor(), added = big->CopyFactor();
    times->Multiply(small, &mapping);
    divided->Divide(small, &mapping);
    added->AddUp(small, &mapping, 1, 2.0);

    std::map<std::vector<int>, std::vector<double>> cells;
    ForAll(VarsOf(bigScope), [&](std::map<int, int>& v) {
      std::vector<int> key;
      for (int i : smallIdx) key.push_back(v[bigScope->GetRv(i)->GetId()]);
      double b = At(big, pool.vars, v), s = At(small, pool.vars, v);
      cells[key].push_back(b);
      ASSERT_DOUBLE_EQ(At(times, pool.vars, v), b * s);
      ASSERT_DOUBLE_EQ(At(divided, pool.vars, v), s > 0 ? b / s : b);
      ASSERT_DOUBLE_EQ(At(added, pool.vars, v), b + 2.0 * s / mapping.GetNumPerSmall());
    });
    ForAll(VarsOf(smallScope), [&](std::map<int, int>& v) {
      std::vector<int> key;
      for (int i = 0; i < smallScope->GetNumberOfVars(); i++) key.push_back(v[smallScope->GetRv(i)->GetId()]);
      const std::vector<double>& c = cells[key];
      double s = 0, hi = c[0], lo = c[0];
      for (double x : c) {
        s += x;
        hi = std::max(hi, x);
        lo = std::min(lo, x);
      }
      ASSERT_NEAR(At(sum, pool.vars, v), s, 1e-12);
      ASSERT_NEAR(At(average, pool.vars, v), s / c.size(), 1e-12);
      ASSERT_EQ(At(most, pool.vars, v), hi);
      ASSERT_EQ(At(least, pool.vars, v), lo);
    });
  }
}

TEST(Factor, InstantiateFixesVariablesAndKeepsTheRestInOrder) {
  Random_cl random(3);
  Pool pool({2, 3, 4});
  Factor_sptr f = RandomFactor(random, pool.Scope({2, 0, 1}));
  InstVector_sptr fix = new InstVector_cl(SingleVar_sptr(pool.vars[1]));
  (*fix)[0]->SetValue(2);
  fix->SetChanged();
  Factor_sptr reduced = Conv2Factor(f->Instantiate(fix, Measure_sptr()));
  ASSERT_EQ(reduced->GetRVs()->GetNumberOfVars(), 2);
  ForAll(VarsOf(reduced->GetRVs()), [&](std::map<int, int>& v) {
    v[pool.vars[1]->GetId()] = 2;
    ASSERT_EQ(At(reduced, pool.vars, v), At(f, pool.vars, v));
  });
  // The joint of a conditional and its marginal gives the factor back.
  Factor_sptr joint = f->CopyFactor();
  Factor_sptr marginal = joint->MakeConditional(pool.Scope({0}), 1);
  Factor_sptr back = Factor_cl::MultiplyFactors(joint, marginal);
  EXPECT_LT(back->MaxDifference(f), 1e-12);
}

TEST(Factor, NormalisationWithZerosAndMissingLogs) {
  Pool pool({4});
  Factor_sptr f = new Factor_cl(pool.Scope({0}), 1, 0);
  double cells[] = {0.0, 2.0, 0.0, 6.0};
  f->SetValues(cells, 4);
  EXPECT_DOUBLE_EQ(f->Normalize(1.0), 8.0);
  EXPECT_DOUBLE_EQ(f->GetValue(1), 0.25);
  EXPECT_DOUBLE_EQ(f->GetValue(2), 0.0);

  // An all-zero table stays all zeros whatever z is, and a non-positive z is questioned.
  f->Initialize(0.0);
  testing::internal::CaptureStderr();
  f->Normalize(0.0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Are you sure ? (abort, fail, or quit ?)\n");
  for (int i = 0; i < 4; i++) EXPECT_EQ(f->GetValue(i), 0.0);
  EXPECT_EQ(f->GetEntropy(), 0.0);

  // Log cells: the missing real is log 0 and becomes exactly 0; all missing gives all zeros, not NaN.
  double logs[] = {MathUtils::kMissingReal, std::log(1.0), MathUtils::kMissingReal, std::log(3.0)};
  f->SetValues(logs, 4);
  f->NormalizeLog();
  EXPECT_EQ(f->GetValue(0), 0.0);
  EXPECT_NEAR(f->GetValue(1), 0.25, 1e-15);
  EXPECT_NEAR(f->GetValue(3), 0.75, 1e-15);
  f->Initialize(MathUtils::kMissingReal);
  f->NormalizeLog();
  for (int i = 0; i < 4; i++) EXPECT_EQ(f->GetValue(i), 0.0);
}

TEST(Factor, EntropyKlAndDivisionRules) {
  Pool pool({2, 2});
  Factor_sptr p = new Factor_cl(pool.Scope({0, 1}), 1, 0), q = new Factor_cl(pool.Scope({0, 1}), 1, 0);
  double pc[] = {1, 1, 2, 0}, qc[] = {2, 2, 2, 2};
  p->SetValues(pc, 4);
  q->SetValues(qc, 4);
  // Unnormalised: (H/S + ln S)/ln 2 is the entropy of (1/4, 1/4, 1/2) in bits.
  EXPECT_NEAR(p->GetEntropy(), 1.5, 1e-12);
  EXPECT_NEAR(p->GetKLDist(q), 0.5, 1e-12);
  EXPECT_EQ(q->GetKLDist(p), 1.7976931348623157e308);
  // x0 = 1 fixes cells 2 and 3.
  SingleInst_sptr fixed = SingleInst_cl::Create(pool.vars[0]);
  fixed->SetValue(1);
  EXPECT_EQ(p->GetEntropyOfInstantiation(fixed), 0.0);
  fixed->SetValue(0);
  EXPECT_NEAR(p->GetEntropyOfInstantiation(fixed), 1.0, 1e-12);

  Factor_sptr d = p->CopyFactor();
  double zc[] = {0, 2, 4, 8};
  Factor_sptr z = new Factor_cl(pool.Scope({0, 1}), 1, 0);
  z->SetValues(zc, 4);
  d->DivideByMe(z);
  EXPECT_EQ(d->GetValue(0), 0.0);
  EXPECT_EQ(d->GetValue(2), 2.0);
  Factor_sptr s = p->CopyFactor();
  s->SetValue(1e100, 0);
  s->SubstractBy(q);
  EXPECT_EQ(s->GetValue(0), 1e100);
  EXPECT_EQ(s->GetValue(1), -1.0);
  // Small-message division keeps the range: scaled by the smallest shared divisor.
  Factor_sptr m = p->CopyFactor();
  double tiny[] = {1e-90, 2e-90, 1e-90, 1e-90};
  Factor_sptr t = new Factor_cl(pool.Scope({0, 1}), 1, 0);
  t->SetValues(tiny, 4);
  m->SameDomainDivideBy(t);
  EXPECT_NEAR(m->GetValue(0), 1.0, 1e-12);
  EXPECT_NEAR(m->GetValue(1), 0.5, 1e-12);
  EXPECT_EQ(m->GetValue(3), 0.0);

  // Smoothing with a uniform distribution.
  Factor_sptr smooth = p->CopyFactor();
  smooth->LinearCombination(q, 0.5, 0.0, 0.5, 0.0, 1, 0, 0);
  EXPECT_NEAR(smooth->GetValue(2), 0.5 * 0.5 + 0.125, 1e-12);
  EXPECT_NEAR(smooth->GetEntriesSum(), 1.0, 1e-12);
}

TEST(Factor, MaximumMarginalAndText) {
  Pool pool({3, 2});
  Factor_sptr f = new Factor_cl(pool.Scope({0, 1}), 1, 0);
  f->Initialize(0.0);
  int index = 7;
  double value = 1.0;
  f->CalcMaximumMarginal(pool.vars[0], index, value);
  EXPECT_EQ(index, -1);
  EXPECT_EQ(value, 0.0);
  f->SetValue(0.5, 3);
  f->SetValue(0.5, 4);
  f->CalcMaximumMarginal(pool.vars[0], index, value);
  EXPECT_EQ(index, 1);
  EXPECT_EQ(value, 0.5);
  std::ostringstream out;
  f->WriteFile(out, 0.1);
  EXPECT_EQ(out.str(), "Factor_cl: x0 x1\nline=3 x0=1 x1=1 val=0.5\nline=4 x0=2 x1=0 val=0.5\n");
  EXPECT_DEATH(f->GetMean(0), "^Measure_cl::GetMean is not supported by measure type 13\n$");
}

TEST(SparseFactor, ReadingCreatesCellsAndNormalisingTouchesOnlyThem) {
  Pool pool({3, 3});
  SparseFactor_sptr f = new SparseFactor_cl(pool.Scope({1, 0}), 1);
  EXPECT_EQ(f->GetValue(5), 0.0);
  EXPECT_EQ(f->GetNumCells(), 1);
  f->SetValue(3.0, 2);
  LongIndex_cl key;
  key.iIndex[0] = 2;
  f->AddValue(1.0, key);
  EXPECT_EQ(f->GetValue(2), 4.0);
  EXPECT_EQ(f->GetMaxValue(), 4.0);
  EXPECT_EQ(f->GetMinValue(), 0.0);
  EXPECT_DOUBLE_EQ(f->Normalize(2.0), 2.0);
  EXPECT_EQ(f->GetValue(2), 2.0);
  EXPECT_EQ(f->GetNumCells(), 2);
}

TEST(TreeFactor, MomentsOfARealTargetAndCellsOfADiscreteOne) {
  Pool pool({2});
  SingleRv_sptr real = new SingleRv_cl(Name_sptr("expr"), new RealDomain_cl());
  TreeFactor_cl moments(new TreeCpd_cl(real, pool.Scope({0})));
  moments.Add(1, 2.0, 0.5);
  moments.Add(1, -1.0, 1.5);
  EXPECT_DOUBLE_EQ(moments.GetSumX(1), 1.0 - 1.5);
  EXPECT_DOUBLE_EQ(moments.GetSumXX(1), 2.0 + 1.5);
  EXPECT_DOUBLE_EQ(moments.GetMomentsWeight(1), 2.0);
  EXPECT_EQ(moments.GetLeafFactor(1)->GetRVs()->GetRv(0)->GetName(), Name_sptr("expr.tree_factor"));
  EXPECT_DOUBLE_EQ(moments.Normalize(4.0), 0.25);
  EXPECT_DOUBLE_EQ(moments.GetMomentsWeight(1), 0.5);
  moments.Reset();
  EXPECT_EQ(moments.GetSumXX(1), 0.0);

  TreeFactor_cl counts(new TreeCpd_cl(pool.vars[0], new RvVector_cl()));
  counts.Add(0, 1, 3.0);
  EXPECT_EQ(counts.GetLeafFactorSize(), 2);
  EXPECT_EQ(counts.GetLeafFactor(0)->GetValue(1), 3.0);
  std::ostringstream out;
  counts.WriteFile(out);
  EXPECT_EQ(out.str(), "TreeFactor_cl: Factor_cl: x0\nline=0 x0=0 val=0\nline=1 x0=1 val=3\n");
}

// Frequencies of 40000 draws stay within five binomial standard deviations of the table.
TEST(Multinomial, SamplingFrequenciesFollowTheTable) {
  Measure_cl::SetGlobalRandSeed(12345);
  Pool pool({4});
  Multinomial_sptr m = new Multinomial_cl(pool.Scope({0}), 0, 0);
  double cells[] = {0.1, 0.2, 0.0, 0.7};
  m->SetValues(cells, 4);
  const int n = 40000;
  std::vector<int> counts(4, 0);
  for (int k = 0; k < n; k++) {
    Sample_sptr s = m->NewSample();
    counts[(*s)[0]->GetIndex()]++;
    ASSERT_DOUBLE_EQ(s->GetProb(), cells[(*s)[0]->GetIndex()]);
  }
  EXPECT_EQ(counts[2], 0);
  for (int i = 0; i < 4; i++)
    EXPECT_NEAR(counts[i], n * cells[i], 5.0 * std::sqrt(n * cells[i] * (1 - cells[i])) + 1e-9);

  // The same seed gives the same generator and the same draws.
  Measure_cl::SetGlobalRandSeed(12345);
  Multinomial_sptr again = new Multinomial_cl(pool.Scope({0}), 0, 0);
  again->SetValues(cells, 4);
  Measure_cl::SetGlobalRandSeed(12345);
  Multinomial_sptr third = new Multinomial_cl(pool.Scope({0}), 0, 0);
  third->SetValues(cells, 4);
  for (int k = 0; k < 50; k++) EXPECT_EQ((*again->NewSample())[0]->GetIndex(), (*third->NewSample())[0]->GetIndex());
  EXPECT_TRUE(m->DoesInheritFrom(FACTOR) && m->DoesInheritFrom(CPD) && m->DoesInheritFrom(DISTRIB));
  EXPECT_FALSE(m->DoesInheritFrom(BN_CPD));
}

TEST(Factor, ReadsTablesFromXmlFilesAndNormalisesThem) {
  std::string path = testing::TempDir() + "factor_test.xml";
  auto write = [&](const std::string& body) {
    std::ofstream out(path);
    out << "<Factor><RvVec>"
           "<Rv Name=\"g\"><domain type=\"name\"><val name=\"lo\"/><val name=\"hi\"/></domain></Rv>"
           "<Rv Name=\"h\"><domain type=\"name\"><val name=\"a\"/><val name=\"b\"/><val name=\"c\"/></domain></Rv>"
           "</RvVec>"
        << body << "</Factor>";
  };
  write(
      "<JointDistribution DefaultVal=\"1\"><Cell Entry=\"5\" Value=\"5\"/><Cell Entry=\"0\" Value=\"0\"/>"
      "</JointDistribution>");
  Factor_sptr f = new Factor_cl(Name_sptr(path.c_str()));
  ASSERT_EQ(f->GetSize(), 6);
  EXPECT_EQ(f->GetRVs()->GetRv(1)->GetName(), Name_sptr("h"));
  EXPECT_DOUBLE_EQ(f->GetValue(0), 0.0);
  EXPECT_DOUBLE_EQ(f->GetValue(1), 1.0 / 9);
  EXPECT_DOUBLE_EQ(f->GetValue(5), 5.0 / 9);
  write("");
  Factor_sptr uniform = new Factor_cl(Name_sptr(path.c_str()));
  EXPECT_DOUBLE_EQ(uniform->GetValue(3), 1.0 / 6);
  write("<JointDistribution><Cell Entry=\"6\" Value=\"1\"/></JointDistribution>");
  EXPECT_DEATH(Factor_cl(Name_sptr(path.c_str())),
               "^Factor_cl: " + path + ": entry 6 is outside the table of 6 cells\n$");
  std::ofstream(path) << "<Factor><Cells/></Factor>";
  EXPECT_DEATH(Factor_cl(Name_sptr(path.c_str())), "^Factor_cl: " + path + ": the first element is not RvVec\n$");
  std::remove(path.c_str());
}
