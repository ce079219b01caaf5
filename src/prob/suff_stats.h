// Sufficient statistics: weighted counts over discrete scopes, moments over real ones, moments per discrete cell.
#ifndef VORN_PROB_SUFF_STATS_H
#define VORN_PROB_SUFF_STATS_H

#include <ostream>

#include "pipeline/hash_set.h"
#include "prob/vars.h"

// Marks of a missing value in the row form of a record (the matrices use other marks).
inline constexpr int kRowMissingInt = -2147483647 - 1;
inline constexpr double kRowMissingReal = 2.2250738585072014e-308;

// Each variable reads one column of a record's row; a variable without a column is hidden.
// Operations a kind does not have stop the program with the class and operation.
class SuffStats_cl {
 public:
  static constexpr unsigned short kHiddenColumn = 65535;

  explicit SuffStats_cl(int numVars);
  SuffStats_cl(const SuffStats_cl& other);
  SuffStats_cl& operator=(const SuffStats_cl&) = delete;
  virtual ~SuffStats_cl();

  virtual SuffStats_cl* Copy() const;
  virtual void CopyMyValues(SuffStats_cl* target) const;
  virtual int GetType() const { return 0; }
  virtual RvVector_sptr GetRvs() const;
  // Looks each variable's id up in the table (id to column); an absent id makes it hidden.
  virtual void MapRvsToIndices(const IntSet_tmpl<int>& columns);
  virtual void Add(const SuffStats_cl* other);
  virtual void AddRecord(const int* discrete, const double* real, double weight);
  virtual int IsRecordComplete(const int* discrete, const double* real) const;
  virtual void Reset();
  virtual void WriteFile(std::ostream& out) const;

  int GetNumVars() const { return iNumVars; }
  int GetNumHidden() const { return iNumHidden; }
  int GetColumn(int var) const { return iColumns[var]; }
  // Columns in scope order; the identity until MapRvsToIndices runs.
  void SetColumns(const int* columns);

 protected:
  [[noreturn]] void Fail(const char* operation) const;
  virtual const char* ClassName() const { return "SuffStats_cl"; }

  unsigned short iNumVars;
  unsigned short iNumHidden;
  unsigned short* iColumns;
};

// Statistics indexed by the joint value of the discrete part of a scope, mixed radix with the
// last discrete variable running fastest.
class TableSuffStats_cl : public SuffStats_cl {
 public:
  // Without keepOrder the scope is sorted by id; the handle is copied either way, so copy only
  // says whether the caller's vector may be shared.
  TableSuffStats_cl(const RvVector_sptr& scope, int copy, int keepOrder);
  // A scope-free table of cells.
  explicit TableSuffStats_cl(int cells);
  TableSuffStats_cl(const TableSuffStats_cl& other);
  ~TableSuffStats_cl() override;

  RvVector_sptr GetRvs() const override { return iScope; }
  RvVector_sptr GetDiscreteRvs() const { return iDiscrete; }
  int IsRecordComplete(const int* discrete, const double* real) const override;
  // The flat cell of a row's discrete values.
  int ComputeIndex(const int* discrete);
  void MapRvsToIndices(const IntSet_tmpl<int>& columns) override;

 protected:
  const char* ClassName() const override { return "TableSuffStats_cl"; }
  void BuildDiscreteColumns();

  RvVector_sptr iScope;
  RvVector_sptr iDiscrete;
  int iNumDiscrete;
  unsigned short* iDiscColumns;  // built on first use
  int* iStrides;                 // numDiscrete - 1 entries; the last variable has stride 1
};

class CountsSuffStats_cl : public TableSuffStats_cl {
 public:
  CountsSuffStats_cl(const RvVector_sptr& scope, int copy, int keepOrder);
  explicit CountsSuffStats_cl(int cells);
  CountsSuffStats_cl(const CountsSuffStats_cl& other);
  ~CountsSuffStats_cl() override;

  SuffStats_cl* Copy() const override { return new CountsSuffStats_cl(*this); }
  void CopyMyValues(SuffStats_cl* target) const override;
  int GetType() const override { return 3; }
  void Add(const SuffStats_cl* other) override;
  // A weight of exactly 0.0 and an incomplete record add nothing.
  void AddRecord(const int* discrete, const double* real, double weight) override;
  void Reset() override;
  // The cells separated by blanks, then a line end.
  void WriteFile(std::ostream& out) const override;

  int GetNumCells() const { return iNumCells; }
  double GetWeight(int cell) const { return iWeights[cell]; }
  const double* GetWeights() const { return iWeights; }
  double GetTotalWeight() const { return iTotal; }
  void AddToWeight(int cell, double weight);
  void SetWeight(int cell, double weight);
  // The array forms recompute the total as the sum of the cells.
  void SetWeights(const double* weights);
  void SetWeights(const int* weights);
  void AddWeights(const double* weights);
  void AddWeights(const int* weights);
  void SetAllWeights(double weight);
  void DivideBy(double divisor);

 protected:
  const char* ClassName() const override { return "CountsSuffStats_cl"; }

 private:
  void SumTotal();

  int iNumCells;
  double* iWeights;
  double iTotal;
};

// Weighted first and second moments of real variables; the second moments fill the upper
// triangle only, entry (i, j) with j >= i at i * n + j.
class MomentsSuffStats_cl : public SuffStats_cl {
 public:
  explicit MomentsSuffStats_cl(const RvVector_sptr& scope);
  // A scope-free statistic of n real values.
  explicit MomentsSuffStats_cl(int n);
  MomentsSuffStats_cl(const MomentsSuffStats_cl& other);
  ~MomentsSuffStats_cl() override;

  SuffStats_cl* Copy() const override { return new MomentsSuffStats_cl(*this); }
  void CopyMyValues(SuffStats_cl* target) const override;
  int GetType() const override { return 2; }
  RvVector_sptr GetRvs() const override { return iScope; }
  void Add(const SuffStats_cl* other) override;
  // Incomplete records add nothing.
  void AddRecord(const int* discrete, const double* real, double weight) override;
  int IsRecordComplete(const int* discrete, const double* real) const override;
  void Reset() override;
  void WriteFile(std::ostream& out) const override;

  void SetMoments(double weight, const double* first, const double* second);
  void AddMoments(double weight, const double* first, const double* second);
  double GetTotalWeight() const { return iWeight; }
  const double* GetFirst() const { return iFirst; }
  const double* GetSecond() const { return iSecond; }
  double GetFirst(int i) const { return iFirst[i]; }
  // Either order of the two positions.
  double GetSecond(int i, int j) const { return i <= j ? iSecond[i * iNumVars + j] : iSecond[j * iNumVars + i]; }

 protected:
  const char* ClassName() const override { return "MomentsSuffStats_cl"; }

 private:
  RvVector_sptr iScope;
  double* iFirst;
  double* iSecond;
  double iWeight;
};

// One moments statistic over the real part of the scope for each joint value of the discrete part.
class MomentsTableSuffStats_cl : public TableSuffStats_cl {
 public:
  explicit MomentsTableSuffStats_cl(const RvVector_sptr& scope);
  // A scope-free table of one real value per cell.
  explicit MomentsTableSuffStats_cl(int cells);
  MomentsTableSuffStats_cl(const MomentsTableSuffStats_cl& other);
  ~MomentsTableSuffStats_cl() override;

  SuffStats_cl* Copy() const override { return new MomentsTableSuffStats_cl(*this); }
  void CopyMyValues(SuffStats_cl* target) const override;
  int GetType() const override { return 5; }
  void Add(const SuffStats_cl* other) override;
  void AddRecord(const int* discrete, const double* real, double weight) override;
  int IsRecordComplete(const int* discrete, const double* real) const override;
  void MapRvsToIndices(const IntSet_tmpl<int>& columns) override;
  void Reset() override;
  void WriteFile(std::ostream& out) const override;

  int GetNumCells() const { return iNumCells; }
  MomentsSuffStats_cl* GetCell(int cell) const { return iCells[cell]; }
  RvVector_sptr GetRealRvs() const { return iReal; }
  void SetMoments(int cell, double weight, const double* first, const double* second);
  // The array forms walk the cells with the weights of the first array and skip cells whose
  // weight is not above 0.0, which keep their former moments.
  void SetMoments(const double* weights, const double* first, const double* second);
  void SetMoments(const int* weights, const double* first, const double* second);
  void AddMoments(const double* weights, const double* first, const double* second);
  void AddMoments(const int* weights, const double* first, const double* second);

 protected:
  const char* ClassName() const override { return "MomentsTableSuffStats_cl"; }

 private:
  template <class W>
  void WalkMoments(const W* weights, const double* first, const double* second, int add);
  // The columns of the real variables, for the cells' statistics.
  void PassRealColumns();

  RvVector_sptr iReal;
  int iNumCells;
  MomentsSuffStats_cl** iCells;
};

// A list of statistics, one per member of a compound family; it owns them.
class MultiSuffStats_cl : public SuffStats_cl {
 public:
  MultiSuffStats_cl(int numVars, int capacity) : SuffStats_cl(numVars), iStats(capacity > 0 ? capacity : 1, nullptr) {}
  ~MultiSuffStats_cl() override;

  int GetType() const override { return 6; }
  void Reset() override;
  void WriteFile(std::ostream& out) const override;
  void AddStats(SuffStats_cl* stats) { iStats.AddLast(stats); }
  int GetNumStats() const { return iStats.GetSize(); }
  SuffStats_cl* GetStats(int i) const { return iStats[i]; }

 protected:
  const char* ClassName() const override { return "MultiSuffStats_cl"; }

 private:
  Vector_tmpl<SuffStats_cl*> iStats;
};

#endif
