// Sparse tables: only touched cells are kept, keyed by long indices, so the joint size may exceed an int.
#ifndef VORN_PROB_SPARSE_FACTOR_H
#define VORN_PROB_SPARSE_FACTOR_H

#include <map>
#include <ostream>

#include "prob/measure.h"

class SparseFactor_cl;

class SparseFactor_sptr : public Sptr_tmpl<SparseFactor_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

SparseFactor_sptr Conv2SparseFactor(const Measure_sptr& m);

// Cells live in key order. Reading an absent cell creates it at 0.0, so reading enlarges the table;
// the flat int forms use the index as the first int of the key.
class SparseFactor_cl : public virtual Measure_cl {
 public:
  SparseFactor_cl(RvVector_sptr scope, int sort);
  SparseFactor_cl(const SparseFactor_cl& other) = default;

  RvVector_sptr GetRVs() const override { return iRVs; }
  Measure_sptr Copy() const override { return new SparseFactor_cl(*this); }
  int GetType() const override { return SPARSE_FACTOR; }
  int DoesInheritFrom(int type) const override { return type == SPARSE_FACTOR || Measure_cl::DoesInheritFrom(type); }
  using Measure_cl::GetValue;
  double GetValue(InstVector_sptr inst) override {
    return GetValue(FillEmptyInst(inst, RvMapping_sptr())->GetLongIndex());
  }
  // Multiplies the stored cells by z over their sum; returns the reciprocal of the multiplier.
  double Normalize(double z) override;
  // "SparseFactor_cl: " and the scope, then "line=<key> <assignment> val=<value>" per stored cell.
  void WriteFile(std::ostream& out) const override;

  int GetNumCells() const { return static_cast<int>(iCells.size()); }
  double GetValue(const LongIndex_cl& key) { return iCells[key]; }
  double GetValue(int index) { return GetValue(Key(index)); }
  void SetValue(double value, const LongIndex_cl& key) { iCells[key] = value; }
  void SetValue(double value, int index) { SetValue(value, Key(index)); }
  void AddValue(double value, const LongIndex_cl& key) { iCells[key] += value; }
  void Initialize(double value);
  // Over the stored cells; 0.0 when there are none.
  double GetMinValue() const;
  double GetMaxValue() const;
  const std::map<LongIndex_cl, double>& GetCells() const { return iCells; }

 private:
  static LongIndex_cl Key(int index) {
    LongIndex_cl key;
    key.iIndex[0] = index;
    return key;
  }

  RvVector_sptr iRVs;
  std::map<LongIndex_cl, double> iCells;
};

#endif
