// Discrete tables over a scope: cell access, aggregates, operations through mappings, marginals.
#ifndef VORN_PROB_FACTOR_H
#define VORN_PROB_FACTOR_H

#include <ostream>

#include "prob/factor_mapping.h"
#include "prob/measure.h"
#include "prob/single_inst.h"

class Factor_cl;
class BnCpd_sptr;
class PropertyTreeIter_cl;

class Factor_sptr : public Sptr_tmpl<Factor_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

Factor_sptr Conv2Factor(const Measure_sptr& m);

// Cells are indexed by the flat index over the scope, last variable fastest. Scopes are sorted by
// variable id at construction unless the constructor is told otherwise. Operations taking a mapping
// have this factor as the target; the small and big sides are named with each operation.
class Factor_cl : public virtual Measure_cl {
 public:
  Factor_cl(RvVector_sptr scope, int sort, int initialise);
  // With copy the values are copied, otherwise the array is adopted.
  Factor_cl(RvVector_sptr scope, double* values, int copy);
  // All cells others, the cell of the assignment at.
  Factor_cl(InstVector_sptr inst, double at, double others);
  // A new variable of that name over lower..upper, all cells 0.0.
  Factor_cl(Name_sptr name, int lower, int upper);
  // The joint table of a CPD over its parents and child, sorted.
  explicit Factor_cl(BnCpd_sptr cpd);
  // Reads an XML file: "RvVec" with the variables, then an optional "JointDistribution" with a
  // "DefaultVal" and "Entry"/"Value" cells (all cells 1.0 without it); the table is then
  // normalised to 1.
  explicit Factor_cl(Name_sptr file);
  // The same from the document element of a parsed file.
  explicit Factor_cl(PropertyTreeIter_cl* root);
  Factor_cl(const Factor_cl& other);
  ~Factor_cl() override;

  // --- measure
  RvVector_sptr GetRVs() const override { return iRVs; }
  Measure_sptr Copy() const override { return CopyFactor(); }
  Factor_sptr CopyFactor() const { return new Factor_cl(*this); }
  void CopyMyValues(Measure_sptr target) const override;
  int GetType() const override { return FACTOR; }
  int DoesInheritFrom(int type) const override { return type == FACTOR || Measure_cl::DoesInheritFrom(type); }
  using Measure_cl::GetValue;
  double GetValue(InstVector_sptr inst) override { return iValues[GetIndexOf(inst)]; }
  double Normalize(double z) override;
  double GetKLDist(Measure_sptr other) override;
  Measure_sptr Instantiate(InstVector_sptr inst, Measure_sptr result) override;
  Measure_sptr ReduceTo(RvVector_sptr vars, Measure_sptr result) override;
  Measure_sptr MinimizeTo(RvVector_sptr vars) override;
  void LinearCombination(Measure_sptr other, double a, double b, double c, double d, int normaliseThis,
                         int normaliseOther, int normaliseResult) override;
  using Measure_cl::WriteFile;
  void WriteFile(std::ostream& out) const override { WriteFile(out, kMissingThreshold); }
  // The scope, then "line=<index> <assignment> val=<value>" for each cell above the threshold.
  void WriteFile(std::ostream& out, double threshold) const;
  void Translate(Translation_sptr translation, int unique) override;

  // --- cells
  int GetSize() const { return iSize; }
  double* GetValues() { return iValues; }
  // Not const, so that GetValue(0) prefers the cell over the null assignment handle.
  double GetValue(int index) { return iValues[index]; }
  // The cell of the assignment's values of this scope's variables, read by id.
  int GetIndexOf(InstVector_sptr inst) const;
  void SetValue(double value, int index) { iValues[index] = value; }
  void SetValues(const double* values, int n);
  void AddValue(double value, int index) { iValues[index] += value; }
  void Initialize(double value);
  virtual void ValueChange() {}

  // --- aggregates
  double GetEntriesSum() const;
  double GetMaxValue() const;
  double GetMinValue() const;
  int GetMaxIndex() const;
  int GetMinIndex() const;
  // In bits, of the table normalised by its sum; 0.0 for all zeros.
  double GetEntropy() const;
  // Fixes the instantiated variable and walks one other variable of the scope over its values.
  double GetEntropyOfInstantiation(SingleInst_sptr inst) const;
  // Normalises both tables in place, then sums the absolute differences.
  double GetL1Norm(Measure_sptr other);
  double MaxDifference(Factor_sptr other) const;
  int IsEqualValues(Factor_sptr other) const;

  // --- through a mapping (this small, other big)
  using Measure_cl::SumOut;
  void SumOut(Factor_sptr other, FactorMapping_cl* mapping);
  void MaxOut(Factor_sptr other, FactorMapping_cl* mapping);
  void AverageOut(Factor_sptr other, FactorMapping_cl* mapping);
  void Minimize(Factor_sptr other, FactorMapping_cl* mapping);
  void Maximize(Factor_sptr other, FactorMapping_cl* mapping);
  // --- through a mapping (this big, other small)
  void Multiply(Factor_sptr other, FactorMapping_cl* mapping);
  // Cells whose small cell is not above 0 stay.
  void Divide(Factor_sptr other, FactorMapping_cl* mapping);
  void AddUp(Factor_sptr other, FactorMapping_cl* mapping, int average, double weight);
  void CopyFromSubFactor(Factor_sptr other, FactorMapping_cl* mapping);
  void Mask(Factor_sptr other, FactorMapping_cl* mapping, double value, double replacement);
  // The big cells of small cell s take the argument's cells in order.
  void Instantiate(Factor_sptr other, FactorMapping_cl* mapping, int s);

  // --- same scope, cell by cell
  void Multiply(Factor_sptr other);
  void SameDomainMultiply(Factor_sptr other) { Multiply(other); }
  void Add(Factor_sptr other);
  void SameDomainAdd(Factor_sptr other) { Add(other); }
  void MultiplyBy(double factor);
  void DivideBy(double divisor);
  void Minimum(Factor_sptr other);
  void Maximum(Factor_sptr other);
  void Binarize(double threshold, double low, double high);
  // A zero numerator cell stays; others are divided.
  void DivideBy(Factor_sptr other);
  // this = other / this; an other cell of exactly 0 gives 0.
  void DivideByMe(Factor_sptr other);
  // Division that keeps the range of small messages: the result is scaled by the smallest divisor.
  void SameDomainDivideBy(Factor_sptr other);
  // A cell at or above 1e100 stands for infinity and stays.
  void SubstractBy(Factor_sptr other);
  void SubstractByMe(Factor_sptr other);

  // --- whole-table transforms
  // The cells as logarithms: each becomes exp(cell - log of the sum of exps).
  void NormalizeLog();
  // Divides this table by its marginal on given and returns the marginal; without alreadyGiven,
  // given is first replaced by the rest of the scope.
  Factor_sptr MakeConditional(RvVector_sptr given, int alreadyGiven);
  // Every cell from the measure's value at that assignment.
  void Approximate(Measure_sptr m);

  // New tables on the sorted union of the scopes.
  static Factor_sptr AddFactors(Factor_sptr a, Factor_sptr b);
  static Factor_sptr MultiplyFactors(Factor_sptr a, Factor_sptr b);

  static constexpr double kMissingThreshold = -1.7976931348623157e308;
  // A table read from a file may hold at most this many cells, so that a hostile file cannot
  // exhaust memory.
  static constexpr int kMaxFileCells = 1 << 26;

 protected:
  // Sorts the scope by id when asked and allocates the table.
  void SetScope(RvVector_sptr scope, int sort);
  void ReadXml(PropertyTreeIter_cl* root, const char* source);
  // Checks that a same-scope operand has this table's size.
  void CheckSameSize(const Factor_sptr& other, const char* operation) const;

  RvVector_sptr iRVs;
  double* iValues = nullptr;
  int iSize = 0;
};

// A copy of the scope sorted by variable id.
RvVector_sptr SortById(RvVector_sptr scope);

#endif
