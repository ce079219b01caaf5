// Split tests of tree CPD nodes: splits on a discrete variable's values and conjunctions of conditions.
#ifndef VORN_PROB_SPLIT_TEST_H
#define VORN_PROB_SPLIT_TEST_H

#include <ostream>

#include "pipeline/bitset.h"
#include "pipeline/vector.h"
#include "prob/inst_vector.h"
#include "prob/rv_mapping.h"

// The values a variable can still take at a node.
class DomainSubset_cl {
 public:
  virtual ~DomainSubset_cl() = default;
  virtual int InDomainSubset(double x) const = 0;
  virtual DomainSubset_cl* Clone() const = 0;
  // All values of a discrete variable, or a real one at the lowest double with comparison 0.
  static DomainSubset_cl* CreateDomainSubset(const SingleRv_sptr& rv);
  static DomainSubset_cl* CreateDomainSubset(const DomainSubset_cl* other) { return other->Clone(); }
};

class DiscreteDomainSubset_cl : public DomainSubset_cl {
 public:
  explicit DiscreteDomainSubset_cl(int size) : iBits(size, 1) {}
  int InDomainSubset(double x) const override { return iBits.IsSet(static_cast<int>(x)); }
  DomainSubset_cl* Clone() const override { return new DiscreteDomainSubset_cl(*this); }
  Bitset_cl& GetBits() { return iBits; }

 private:
  Bitset_cl iBits;
};

// Comparison 0 is equality with the bound, 1 greater-or-equal.
class RealDomainSubset_cl : public DomainSubset_cl {
 public:
  RealDomainSubset_cl(double value, int comparison) : iValue(value), iComparison(comparison) {}
  int InDomainSubset(double x) const override { return iComparison == 0 ? x == iValue : x >= iValue; }
  DomainSubset_cl* Clone() const override { return new RealDomainSubset_cl(*this); }
  void SetDomainSubset(double value, int comparison) {
    iValue = value;
    iComparison = comparison;
  }
  double GetValue() const { return iValue; }
  int GetComparison() const { return iComparison; }

 private:
  double iValue;
  int iComparison;
};

// The row value that marks a missing cell on the fast road.
constexpr int kMissingRowValue = -2147483647 - 1;

enum SplitType_cl { DOMAIN_SPLIT = 0, CONDITION_SPLIT = 1 };
enum ClauseKind_cl { EQRV_CLAUSE = 0, VALUE_CLAUSE = 1 };

// Test returns the branch, or -1 when a value it needs is missing. Positions are places in the
// tree's parent vector, which is also the start of its vector of all variables. The fast road reads
// a data row of value indices, with columns translating positions (none: the position itself).
class SplitTest_cl {
 public:
  explicit SplitTest_cl(int numBranches) : iNumBranches(numBranches) {}
  virtual ~SplitTest_cl() = default;
  virtual SplitTest_cl* Clone() const = 0;
  int GetNumBranches() const { return iNumBranches; }
  virtual int GetSplitType() const = 0;
  virtual int CheckSplit(const RvVector_sptr& parents) const = 0;
  // The assignment is over the tree's variables, or placed through a mapping from them.
  virtual int Test(const InstVector_sptr& inst, const RvMapping_sptr& mapping) const = 0;
  int Test(const InstVector_sptr& inst) const { return Test(inst, RvMapping_sptr()); }
  virtual int Test(int const* row, short const* columns) const = 0;
  virtual void PrintBranch(std::ostream& out, int branch, const RvVector_sptr& parents) const = 0;
  // One branch's condition in words, for node names and viewers.
  virtual void PrintBranchCondition(std::ostream& out, const RvVector_sptr& parents, int branch) const = 0;
  virtual int GetStorageSize() const = 0;
  virtual int IsSplitInMapping(const RvMapping_sptr& mapping) const = 0;
  virtual int IsSingleRvTest() const = 0;
  // The first tested position.
  virtual int GetTestPosition() const = 0;
  // Adds the tested variables to out, each once.
  virtual void GetTestRvs(const RvVector_sptr& parents, RvVector_sptr out) const = 0;
  // Narrows the values that the variable at position can take on the branch.
  virtual void GetReducedDomain(int position, int branch, DomainSubset_cl* subset) const = 0;

  // Ints, doubles by ==, names by content; different types are unequal.
  static int ValueEqual(const Value_cl* a, const Value_cl* b);
  // Ints, doubles, and names by their index in the domain.
  static int ValueLess(const Domain_sptr& domain, const Value_cl* a, const Value_cl* b);

  // The legal, present instantiation at a position; null otherwise.
  static const SingleInst_cl* InstAt(const InstVector_sptr& inst, const RvMapping_sptr& mapping, int position);

 protected:
  static int RowAt(int const* row, short const* columns, int position) {
    return row[columns ? columns[position] : position];
  }

  int iNumBranches;
};

// Branch of each value of one discrete variable, 1-based in storage, -1 for a value without branch.
class DomainSplitTest_cl : public SplitTest_cl {
 public:
  DomainSplitTest_cl(const SingleRv_sptr& rv, int position, int numBranches);
  DomainSplitTest_cl(const DomainSplitTest_cl& other) = default;
  SplitTest_cl* Clone() const override { return new DomainSplitTest_cl(*this); }
  int GetSplitType() const override { return DOMAIN_SPLIT; }
  SingleRv_sptr GetRv() const { return iRv; }
  void SetValueBranch(int value, int branch) { iBranches[value] = branch + 1; }
  int GetValueBranch(int value) const { return iBranches[value] - 1; }
  int CheckSplit(const RvVector_sptr& parents) const override;
  int Test(const InstVector_sptr& inst, const RvMapping_sptr& mapping) const override;
  int Test(int const* row, short const* columns) const override {
    int value = RowAt(row, columns, iPosition);
    if (value < 0 || value >= iBranches.GetSize()) return -1;
    return iBranches[value] - 1;
  }
  void PrintBranch(std::ostream& out, int branch, const RvVector_sptr& parents) const override;
  void PrintBranchCondition(std::ostream& out, const RvVector_sptr& parents, int branch) const override;
  int GetStorageSize() const override { return static_cast<int>(sizeof(*this) + sizeof(int) * iBranches.GetSize()); }
  int IsSplitInMapping(const RvMapping_sptr& mapping) const override { return mapping->GetIndex(iPosition) >= 0; }
  int IsSingleRvTest() const override { return 1; }
  int GetTestPosition() const override { return iPosition; }
  void GetTestRvs(const RvVector_sptr& parents, RvVector_sptr out) const override;
  void GetReducedDomain(int position, int branch, DomainSubset_cl* subset) const override;
  void SetPosition(int position) { iPosition = position; }

 private:
  SingleRv_sptr iRv;
  int iPosition;
  Vector_tmpl<int> iBranches;
};

// One condition of a conjunction; Test gives 1 or 0, or -1 for a missing value.
class ConditionClause_cl {
 public:
  virtual ~ConditionClause_cl() = default;
  virtual ConditionClause_cl* Clone() const = 0;
  virtual int GetKind() const = 0;
  virtual int GetNumTestRvs() const = 0;
  virtual int GetPosition(int i) const = 0;
  virtual int Test(const InstVector_sptr& inst, const RvMapping_sptr& mapping) const = 0;
  virtual void Print(std::ostream& out, const RvVector_sptr& parents) const = 0;
  virtual void PrintBranchCondition(std::ostream& out, const RvVector_sptr& parents, int branch) const = 0;
  virtual void GetReducedDomain(int position, int branch, DomainSubset_cl* subset) const = 0;
  virtual int GetStorageSize() const = 0;
  virtual void SetPosition(int i, int position) = 0;
};

// True when the two variables have the same value.
class EQRVClause_cl : public ConditionClause_cl {
 public:
  EQRVClause_cl(int first, int second) : iPositions{first, second} {}
  ConditionClause_cl* Clone() const override { return new EQRVClause_cl(*this); }
  int GetKind() const override { return EQRV_CLAUSE; }
  int GetNumTestRvs() const override { return 2; }
  int GetPosition(int i) const override { return iPositions[i]; }
  int Test(const InstVector_sptr& inst, const RvMapping_sptr& mapping) const override;
  int Test(int const* row, short const* columns) const {
    int a = row[columns ? columns[iPositions[0]] : iPositions[0]];
    int b = row[columns ? columns[iPositions[1]] : iPositions[1]];
    if (a == kMissingRowValue || b == kMissingRowValue) return -1;
    return a == b;
  }
  void Print(std::ostream& out, const RvVector_sptr& parents) const override;
  void PrintBranchCondition(std::ostream& out, const RvVector_sptr& parents, int branch) const override;
  void GetReducedDomain(int, int, DomainSubset_cl*) const override {}
  int GetStorageSize() const override { return static_cast<int>(sizeof(*this)); }
  void SetPosition(int i, int position) override { iPositions[i] = position; }

 private:
  int iPositions[2];
};

// A comparison of one variable with a stored value; discrete values compare by domain index.
class ValueConditionClause_cl : public ConditionClause_cl {
 public:
  // Takes the value over.
  ValueConditionClause_cl(int position, const Domain_sptr& domain, Value_cl* value, int comparison, int direction);
  ValueConditionClause_cl(const ValueConditionClause_cl& other);
  ValueConditionClause_cl& operator=(const ValueConditionClause_cl&) = delete;
  ~ValueConditionClause_cl() override { delete iValue; }
  int GetKind() const override { return VALUE_CLAUSE; }
  int GetNumTestRvs() const override { return 1; }
  int GetPosition(int) const override { return iPosition; }
  void SetPosition(int, int position) override { iPosition = position; }
  // 0 equality, 1 an ordering.
  int GetComparisonType() const { return iComparison; }
  // The comparison on a value index, or on a real value for a real domain. Plain fields rather
  // than virtual calls, as the fast road runs this for every row.
  int TestValue(int index) const {
    if (iComparison == 0) return index == iValueIndex;
    return iDirection ? index >= iValueIndex : index <= iValueIndex;
  }
  int TestReal(double x) const {
    if (iComparison == 0) return x == iReal;
    return iDirection ? x >= iReal : x <= iReal;
  }
  int Test(const InstVector_sptr& inst, const RvMapping_sptr& mapping) const override;
  int Test(int const* row, short const* columns) const {
    int v = row[columns ? columns[iPosition] : iPosition];
    if (v == kMissingRowValue) return -1;
    return iValueIndex >= 0 ? TestValue(v) : TestReal(v);
  }
  int GetStorageSize() const override { return static_cast<int>(sizeof(*this)); }
  const Value_cl* GetValue() const { return iValue; }
  int GetValueIndex() const { return iValueIndex; }
  double GetRealValue() const { return iReal; }

 protected:
  int iPosition;
  Domain_sptr iDomain;
  Value_cl* iValue;
  int iValueIndex;  // -1 for a real domain
  double iReal;
  int iComparison;
  int iDirection;
};

class EVClause_cl : public ValueConditionClause_cl {
 public:
  EVClause_cl(int position, const Domain_sptr& domain, Value_cl* value)
      : ValueConditionClause_cl(position, domain, value, 0, 1) {}
  ConditionClause_cl* Clone() const override { return new EVClause_cl(*this); }
  void Print(std::ostream& out, const RvVector_sptr& parents) const override;
  void PrintBranchCondition(std::ostream& out, const RvVector_sptr& parents, int branch) const override;
  void GetReducedDomain(int position, int branch, DomainSubset_cl* subset) const override;
};

// Direction 1: value >= stored; direction 0: value <= stored.
class GTEClause_cl : public ValueConditionClause_cl {
 public:
  GTEClause_cl(int position, const Domain_sptr& domain, Value_cl* value, int direction)
      : ValueConditionClause_cl(position, domain, value, 1, direction) {}
  ConditionClause_cl* Clone() const override { return new GTEClause_cl(*this); }
  int GetDirection() const { return iDirection; }
  void Print(std::ostream& out, const RvVector_sptr& parents) const override;
  void PrintBranchCondition(std::ostream& out, const RvVector_sptr& parents, int branch) const override;
  void GetReducedDomain(int position, int branch, DomainSubset_cl* subset) const override;
};

// Always two branches: branch 1 when every clause holds, 0 otherwise, -1 when a tested value is missing.
class ConditionSplitTest_cl : public SplitTest_cl {
 public:
  ConditionSplitTest_cl() : SplitTest_cl(2), iClauses(4, nullptr) {}
  ConditionSplitTest_cl(const ConditionSplitTest_cl& other);
  ConditionSplitTest_cl& operator=(const ConditionSplitTest_cl&) = delete;
  ~ConditionSplitTest_cl() override { iClauses.DeleteAll(); }
  SplitTest_cl* Clone() const override { return new ConditionSplitTest_cl(*this); }
  int GetSplitType() const override { return CONDITION_SPLIT; }

  void AddEqualRVCondition(int first, int second) { iClauses.AddLast(new EQRVClause_cl(first, second)); }
  // The clauses take the value over.
  void AddEVCondition(int position, const Domain_sptr& domain, Value_cl* value) {
    iClauses.AddLast(new EVClause_cl(position, domain, value));
  }
  void AddGTECondition(int position, const Domain_sptr& domain, Value_cl* value, int direction) {
    iClauses.AddLast(new GTEClause_cl(position, domain, value, direction));
  }
  // False when an equality clause already tests that position.
  int IsLegalSplitToAdd(int position) const;
  int GetNumClauses() const { return iClauses.GetSize(); }
  ConditionClause_cl* GetClause(int i) const { return iClauses[i]; }

  int CheckSplit(const RvVector_sptr&) const override { return 1; }
  int Test(const InstVector_sptr& inst, const RvMapping_sptr& mapping) const override;
  int Test(int const* row, short const* columns) const override;
  void PrintBranch(std::ostream& out, int branch, const RvVector_sptr&) const override {
    out << (branch ? "true " : "false ");
  }
  // "( ", the clauses joined by " and\n", " )".
  void PrintCondition(std::ostream& out, const RvVector_sptr& parents) const;
  void PrintBranchCondition(std::ostream& out, const RvVector_sptr& parents, int branch) const override;
  int GetStorageSize() const override;
  int IsSplitInMapping(const RvMapping_sptr& mapping) const override;
  int IsSingleRvTest() const override;
  int GetTestPosition() const override { return iClauses.GetSize() ? iClauses[0]->GetPosition(0) : -1; }
  void GetTestRvs(const RvVector_sptr& parents, RvVector_sptr out) const override;
  void GetReducedDomain(int position, int branch, DomainSubset_cl* subset) const override;
  // Moves every tested position through the map (old position to new).
  void RemapPositions(const Vector_tmpl<int>& map);

 private:
  Vector_tmpl<ConditionClause_cl*> iClauses;
};

#endif
