// Joint assignments to a scope, with the cached flat index and the walks over all assignments.
#ifndef VORN_PROB_INST_VECTOR_H
#define VORN_PROB_INST_VECTOR_H

#include <ostream>

#include "pipeline/random.h"
#include "prob/rv_mapping.h"
#include "prob/single_inst.h"
#include "prob/vars.h"

class InstVector_cl;

class InstVector_sptr : public Sptr_tmpl<InstVector_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

InstVector_sptr Conv2InstVector(const VarsVector_sptr& vars);

// A joint index too large for one int: the variables fall into at most five runs, from the first
// on, each with a joint size that fits an int, and each run's mixed-radix value is one int.
class LongIndex_cl {
 public:
  static constexpr int kRuns = 5;
  bool operator==(const LongIndex_cl& other) const;
  // Lexicographic over the five ints.
  bool operator<(const LongIndex_cl& other) const;

  int iIndex[kRuns] = {0, 0, 0, 0, 0};
};

// "(a, b, c, d, e)".
std::ostream& operator<<(std::ostream& out, const LongIndex_cl& index);

// The cached flat index is valid while the vector's changed flag is clear. Operations here keep
// the two in step; code that sets one instantiation directly must call SetChanged.
class InstVector_cl : public VarsVector_cl, public GeneralVector_tmpl<SingleInst_sptr, InstVector_cl*> {
 public:
  explicit InstVector_cl(int capacity = 10) : GeneralVector_tmpl(capacity, SingleInst_sptr()) {}
  // One fresh instantiation, of the kind each variable asks for.
  explicit InstVector_cl(const SingleVar_sptr& var);
  explicit InstVector_cl(const RvVector_sptr& rvs);
  explicit InstVector_cl(const SingleInst_sptr& inst);
  // A deep copy: new instantiations with the same values.
  explicit InstVector_cl(const InstVector_sptr& other);

  int GetNumberOfVars() const override { return iSize; }
  int IsInst() const override { return 1; }
  SingleVar_sptr GetVar(int i) const override { return iData[i]; }
  SingleRv_sptr GetRv(int i) const override { return iData[i]->GetRv(); }
  using VarsVector_cl::IsMember;

  // --- the flat index, mixed radix with the last variable fastest
  int GetIndex();
  void RecalculateIndex();
  int IsIndexCorrect() const;
  // Sets every variable from a flat index; does nothing when the cache already holds it.
  void SetValue(int flatIndex);
  void ForceSetValue(int flatIndex);
  // The same over the discrete variables alone.
  void SetValueDisc(int flatIndex);
  int GetIndexDisc();
  void RecalculateIndexDisc();

  // --- walks. NextInst is an odometer from the last variable; past the last assignment the
  // first variable is left illegal, so callers loop while IsLegalValue holds.
  void NextInst();
  // Walks only the variables not in fixed, carrying no further than position first.
  void NextInst(const RvVector_sptr& fixed, int first);
  void PrevInst();
  // Illegal is one more state of each variable, after its last value.
  void NextPowerSetInst();
  void PrevPowerSetInst();
  void SetFirstValue();
  void SetLastValue();

  // --- values by text and by key
  // The blank-separated value names, one per variable in order; each is echoed on the output.
  void SetValue(Name_sptr names);
  void SetLongIndex(const LongIndex_cl& index);
  LongIndex_cl GetLongIndex() const;
  // "%d#" of each discrete index or "%.8f#" of each real value, from the last variable to the first.
  Name_sptr GetHashKey() const;
  void SetWithHashKey(Name_sptr key);
  // The values from first to last joined by "_".
  Name_sptr GetPrintName() const;

  // --- parts
  SingleInst_sptr GetInst(const SingleVar_sptr& var) const;
  int GetIndexOfRv(const SingleVar_sptr& var) const { return GetFirstEntry(var); }
  // Writes each real variable's value at its own position; 0 when one is not legal.
  int ExtractValues(double* values) const;
  InstVector_sptr GetLegalInst(int unique) const;
  InstVector_sptr GetRealInst(int unique) const;
  InstVector_sptr GetDiscreteInst(int unique) const;
  // The instantiations of the given variables, shared; absent ones are passed over.
  InstVector_sptr GetInsts(const VarsVector_sptr& vars) const;
  // The same when both vectors are in id order, in one pass.
  InstVector_sptr GetInstsBySortedRVs(const VarsVector_sptr& vars) const;
  static InstVector_sptr GetIndexAssignment(int flatIndex, const RvVector_sptr& scope);
  void Merge(const InstVector_sptr& other);
  int IsLegalValue() const;
  int IsEntirelyIllegalValue() const;

  // --- values between vectors
  // Walks both vectors in their own orders and copies where the target's next variable is the
  // source's current one: both must hold their common variables in the same relative order.
  void Copy(const InstVector_sptr& target) const;
  // Each own variable takes the value at its mapped position in source; without a mapping one is
  // built from the two scopes.
  void GetValuesFrom(const InstVector_sptr& source, RvMapping_sptr mapping);
  // Position by position, converting between kinds.
  void GeneralInitialize(const InstVector_sptr& source, Random_cl* random);

 private:
  // The walks forward or backward; fixed variables are passed over and no carry goes before first.
  void Odometer(const RvVector_sptr& fixed, int first, int forward);
  void PowerSetStep(int forward);
  int ComputeIndex(int discreteOnly) const;
  void SetFromFlatIndex(int flatIndex, int discreteOnly);
  InstVector_sptr Select(int (*keep)(const SingleInst_cl&), int unique) const;
  // The run of each variable for the long index.
  Vector_tmpl<int> LongIndexRuns() const;

  int iIndex = 0;
};

#endif
