// Table CPDs: one child distribution for each joint value of the discrete parents.
#ifndef VORN_PROB_TABLE_CPD_H
#define VORN_PROB_TABLE_CPD_H

#include <ostream>

#include "prob/bn_cpd.h"

class TableCpd_cl;

class TableCpd_sptr : public Sptr_tmpl<TableCpd_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

TableCpd_sptr Conv2TableCpd(const Measure_sptr& m);

// Lines are empty at construction; a line's distribution is over the child and the real parents.
class TableCpd_cl : public BnCpd_cl {
 public:
  TableCpd_cl(SingleRv_sptr child, RvVector_sptr parents);
  TableCpd_cl(const TableCpd_cl& other);

  int GetType() const override { return TABLE_CPD; }
  int DoesInheritFrom(int type) const override { return type == TABLE_CPD || BnCpd_cl::DoesInheritFrom(type); }
  Measure_sptr Copy() const override { return new TableCpd_cl(*this); }
  BnCpd_sptr Clone() const override { return new TableCpd_cl(*this); }
  using BnCpd_cl::GetValue;
  double GetValue(InstVector_sptr inst) override;
  // Draws the child from the line of the sample's parents.
  void Sample(Sample_sptr const& sample) override;
  int IsDeterministic() const override;
  void AddParents(RvVector_sptr parents) override;
  void DeleteParents(RvVector_sptr parents) override;
  Cpd_sptr GetLine(InstVector_sptr inst, int copy) override;
  Cpd_sptr GetLine(int line) override { return iLines[line]; }
  void SetLine(int line, Cpd_sptr cpd, int copy) override;
  // Fills every line from another CPD's values for each child value; an all-zero line becomes
  // uniform, and each line sums to 1.
  void InitializeDiscrete(BnCpd_sptr cpd);

  // "probability (child | parents)" and the table.
  void WriteFile(std::ostream& out) const override;
  void WriteTable(std::ostream& out) const override;
  int GetStorageSize(int recursive) const override;

 private:
  // Empties every line; the program stops when the lines cannot be counted in an int.
  void ResetLines();

  Vector_tmpl<Cpd_sptr> iLines;
};

#endif
