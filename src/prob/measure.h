// The measure interface: everything that assigns a number to an assignment of variables.
#ifndef VORN_PROB_MEASURE_H
#define VORN_PROB_MEASURE_H

#include <ostream>

#include "pipeline/random.h"
#include "pipeline/ref_count.h"
#include "prob/inst_vector.h"
#include "prob/rv_mapping.h"
#include "prob/sample.h"
#include "prob/translation.h"
#include "prob/vars.h"

// Run-time class codes; DoesInheritFrom is true for a class's own code and those of its bases.
enum Measure_type {
  MEASURE = 0,
  COND_DISTRIB = 1,
  DISTRIB = 2,
  CPD = 3,
  BN_CPD = 4,
  TREE_CPD = 5,
  TABLE_CPD = 6,
  MULTI_CPD = 7,
  LAYER_CPD = 8,
  SUM_LAYER_CPD = 9,
  NOISY_OR_LAYER_CPD = 10,
  FACTOR = 13,
  SPARSE_FACTOR = 14,
  TREE_FACTOR = 15,
  GAUSSIAN = 16,
  FULL_GAUSSIAN = 17,
  INDEP_GAUSSIAN = 18,
  GAUSSIAN_MSG = 19,
  MULTINOMIAL = 37,
  GAUSSIAN_CPD = 38,
  SOFTMAX_CPD = 49,
  MOTIF_CPD = 50,
  FUNCTION_CPD = 55,
  POTENTIAL_CPD = 56
};

class Measure_cl;

class Measure_sptr : public Sptr_tmpl<Measure_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

// Measures are shared through handles; classes of the family derive from it virtually, so that a
// multinomial is one measure whether seen as a factor or as a distribution. An operation that has
// no meaning for a class stops the program with the operation's name.
class Measure_cl : public RefCount_cl {
 public:
  Measure_cl();
  Measure_cl(const Measure_cl& other);
  Measure_cl& operator=(const Measure_cl&) = delete;
  virtual ~Measure_cl() = default;

  virtual RvVector_sptr GetRVs() const;
  virtual RvVector_sptr GetDiscRVs() const { return GetRVs()->GetDiscrete(0); }
  virtual RvVector_sptr GetRealRVs() const { return GetRVs()->GetReal(0); }
  virtual Measure_sptr Copy() const;
  virtual void CopyMyValues(Measure_sptr target) const;
  virtual int GetType() const { return MEASURE; }
  virtual int DoesInheritFrom(int type) const { return type == MEASURE; }
  virtual int IsDeterministic() const { return 0; }
  virtual int IsCondDistrib() const { return 0; }

  virtual double GetValue(InstVector_sptr inst);
  // The value at the scope's part of a larger assignment; an empty mapping is built from the scopes.
  virtual double GetValueOfSuperset(InstVector_sptr inst, RvMapping_sptr mapping);
  virtual double GetValueOfSubset(InstVector_sptr inst);
  virtual double GetLogValue(InstVector_sptr inst);
  virtual double GetLogValueOfSuperset(InstVector_sptr inst, RvMapping_sptr mapping);
  // Scales so that the values sum to z; returns the reciprocal of the multiplier.
  virtual double Normalize(double z);
  virtual double GetKLDist(Measure_sptr other);

  virtual Sample_sptr NewSample();
  virtual void Sample(Sample_sptr const& sample);
  virtual void SampleIntoSuperset(Sample_sptr const& sample, RvMapping_sptr mapping);

  // Fixes the assignment's variables; the result goes into result when given, else a new measure.
  virtual Measure_sptr Instantiate(InstVector_sptr inst, Measure_sptr result);
  // The marginal on vars.
  virtual Measure_sptr ReduceTo(RvVector_sptr vars, Measure_sptr result);
  virtual Measure_sptr MinimizeTo(RvVector_sptr vars);
  virtual Measure_sptr SumOut(RvVector_sptr vars);
  virtual int IsReducibleTo(RvVector_sptr vars) const { return GetRVs()->IsSubset(vars); }

  virtual double GetMean(int i);
  virtual double GetCov(int i, int j);
  double GetMean(SingleRv_sptr rv) { return GetMean(GetRVs()->GetFirstEntry(rv)); }
  double GetCov(SingleRv_sptr a, SingleRv_sptr b) {
    return GetCov(GetRVs()->GetFirstEntry(a), GetRVs()->GetFirstEntry(b));
  }
  virtual InstVector_sptr GetInsts() const { return InstVector_sptr(); }
  virtual void LinearCombination(Measure_sptr other, double a, double b, double c, double d, int normaliseThis,
                                 int normaliseOther, int normaliseResult);
  virtual Measure_sptr GetMeasureOfInst(InstVector_sptr inst, int copy);

  // The first most probable value of a discrete variable strictly above 0.0; index -1 when none is.
  virtual void CalcMaximumMarginal(SingleRv_sptr rv, int& index, double& value);
  // The density of a real variable at 3000 steps from lower to upper, one "x density" line each.
  virtual void PrintMarginal(SingleRv_sptr rv, double lower, double upper, std::ostream& out, double scale);

  virtual void WriteFile(std::ostream& out) const;
  virtual void WriteFile(std::ostream& out, int indent) const;
  // Renames the scope's variables through the translation.
  virtual void Translate(Translation_sptr translation, int unique);

  // Whether m exists, is of this measure's kind and has exactly this scope in order.
  int IsRightMeasure(Measure_sptr m, RvVector_sptr scope) const;
  Random_cl& GetRandom() { return iRandom; }

  static void Indent(std::ostream& out, int indent);
  static long GetGlobalRandSeed() { return Random_cl::GetGlobalRandSeed(); }
  static void SetGlobalRandSeed(long seed) { Random_cl::SetGlobalRandSeed(seed); }

 protected:
  // Selects the scope's instantiations out of a larger assignment into the scratch vector.
  InstVector_sptr FillEmptyInst(InstVector_sptr inst, RvMapping_sptr mapping);
  [[noreturn]] void Unsupported(const char* operation) const;

  Random_cl iRandom;

 private:
  // The next seed of the process-wide sequence, so measures made in the same order draw alike.
  static long NextSeed();

  InstVector_sptr iScratchInst;
  Sample_sptr iScratchSample;
};

#endif
