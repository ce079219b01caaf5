// The base of every CPD of the model: a child, its discrete and real parents, and the lines.
#ifndef VORN_PROB_BN_CPD_H
#define VORN_PROB_BN_CPD_H

#include <ostream>

#include "prob/cond_distrib.h"

class BnCpd_cl;

class BnCpd_sptr : public Sptr_tmpl<BnCpd_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

BnCpd_sptr Conv2BnCpd(const Measure_sptr& m);

// The vector of all variables holds the parents first and the child last. A line is the
// distribution of the child for one joint value of the discrete parents; there is at least one,
// and only one when the joint size of the discrete parents overflows an int.
class BnCpd_cl : public Cpd_cl {
 public:
  BnCpd_cl(SingleRv_sptr child, RvVector_sptr parents);
  BnCpd_cl(const BnCpd_cl& other);

  int GetType() const override { return BN_CPD; }
  int DoesInheritFrom(int type) const override { return type == BN_CPD || Cpd_cl::DoesInheritFrom(type); }
  SingleRv_sptr GetRv() const override { return iChild; }
  RvVector_sptr GetRVs() const override { return iAllVars; }
  RvVector_sptr GetGiven() const override { return iParents; }
  RvVector_sptr GetTarget() const override { return new RvVector_cl(SingleVar_sptr(iChild)); }
  Measure_sptr GetMeasureOfInst(InstVector_sptr inst, int copy) override { return GetLine(inst, copy); }

  virtual void AddParents(RvVector_sptr parents);
  virtual void DeleteParents(RvVector_sptr parents);
  virtual BnCpd_sptr Clone() const = 0;
  // The extremes over the lines of the probability of a child value.
  virtual double GetMaxProb(int value);
  virtual double GetMinProb(int value);
  virtual int HasLineWithType(int type);
  // The line of the assignment's discrete parents; a copy when copy is set.
  virtual Cpd_sptr GetLine(InstVector_sptr inst, int copy) = 0;
  virtual Cpd_sptr GetLine(int line) = 0;
  // With copy set a copy of the distribution is stored.
  virtual void SetLine(int line, Cpd_sptr cpd, int copy) = 0;
  virtual int GetNumParams() const;
  virtual int IsEmpty() { return GetLine(0).IsNull(); }
  void DeleteParent(SingleRv_sptr parent);
  virtual void WriteTable(std::ostream& out) const = 0;

  RvVector_sptr GetParents() const { return iParents; }
  RvVector_sptr GetDiscParents() const { return iDiscParents; }
  RvVector_sptr GetRealParents() const { return iRealParents; }
  int GetNumLines() const { return iNumLines; }
  int IsFixed() const { return iFixed; }
  void SetFixed(int fixed) { iFixed = fixed; }
  // The line number of the assignment's discrete parents, found by variable.
  int GetLineIndex(InstVector_sptr inst) const;

 protected:
  // Folds pick over the probability of a child value in each line that exists.
  template <class Pick>
  double FoldLines(int value, double start, Pick pick);
  // Recomputes the parent kinds, the vector of all variables, both mappings and the line count.
  void RebuildScopes();

  SingleRv_sptr iChild;
  RvVector_sptr iParents;
  RvVector_sptr iDiscParents;
  RvVector_sptr iRealParents;
  RvVector_sptr iAllVars;
  RvMapping_sptr iDiscMapping;
  RvMapping_sptr iRealMapping;
  int iNumLines = 1;
  int iFixed = 0;
};

#endif
