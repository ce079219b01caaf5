// Tree factors: one small factor per leaf of a tree CPD, the statistics of regression-tree learning.
#ifndef VORN_PROB_TREE_FACTOR_H
#define VORN_PROB_TREE_FACTOR_H

#include <ostream>

#include "pipeline/hash_set.h"
#include "prob/bn_cpd.h"
#include "prob/factor.h"

class TreeFactor_cl;

class TreeFactor_sptr : public Sptr_tmpl<TreeFactor_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

TreeFactor_sptr Conv2TreeFactor(const Measure_sptr& m);

// A discrete target gets a leaf factor over the target. A real one gets a factor over a name
// domain "SumX", "SumXX", "Weight" (variable "<target>.tree_factor"): the weighted sum of the
// target, of its squares, and the total weight. Leaf factors are made when a leaf is first touched.
class TreeFactor_cl : public virtual Measure_cl {
 public:
  enum { kSumX = 0, kSumXX = 1, kWeight = 2 };

  explicit TreeFactor_cl(BnCpd_sptr tree);
  TreeFactor_cl(const TreeFactor_cl& other);

  RvVector_sptr GetRVs() const override { return iRVs; }
  Measure_sptr Copy() const override { return new TreeFactor_cl(*this); }
  int GetType() const override { return TREE_FACTOR; }
  int DoesInheritFrom(int type) const override { return type == TREE_FACTOR || Measure_cl::DoesInheritFrom(type); }
  // Multiplies every cell by 1/z and returns 1/z.
  double Normalize(double z) override;
  // "TreeFactor_cl: " and each leaf factor.
  void WriteFile(std::ostream& out) const override;

  Factor_sptr GetLeafFactor(int leaf);
  int GetLeafFactorSize() const { return iLeafSize; }
  int IsDiscreteTarget() const { return iDiscrete; }
  // Adds an observation of the target with a weight: a cell of a discrete target, the moments of a real one.
  void Add(int leaf, double x, double weight);
  void Reset();

  double GetFirstMoments(int leaf) { return GetLeafFactor(leaf)->GetValue(kSumX); }
  double GetSecondMoments(int leaf) { return GetLeafFactor(leaf)->GetValue(kSumXX); }
  double GetMomentsWeight(int leaf) { return GetLeafFactor(leaf)->GetValue(kWeight); }
  void SetMomentsWeight(int leaf, double w) { GetLeafFactor(leaf)->SetValue(w, kWeight); }
  double GetSumX(int leaf) { return GetFirstMoments(leaf); }
  void SetSumX(int leaf, double x) { GetLeafFactor(leaf)->SetValue(x, kSumX); }
  double GetSumXX(int leaf) { return GetSecondMoments(leaf); }
  void SetSumXX(int leaf, double x) { GetLeafFactor(leaf)->SetValue(x, kSumXX); }

 private:
  BnCpd_sptr iTree;
  RvVector_sptr iRVs;
  RvVector_sptr iLeafScope;
  IntSet_tmpl<Measure_sptr> iLeaves;
  int iNumLeaves = 0;  // one past the largest leaf touched
  int iLeafSize;
  int iDiscrete;
};

#endif
