// Dirichlet priors of multinomial tables: the uniform BDe form with one alpha, and per-cell weights.
#ifndef VORN_PROB_DIRICHLET_PRIOR_H
#define VORN_PROB_DIRICHLET_PRIOR_H

#include "pipeline/vector.h"
#include "prob/prior.h"
#include "prob/table_cpd.h"

// Cells are the joint values of the table's variables in flat order.
class DirichletTableCpdPrior_cl : public TableCpdPrior_cl {
 public:
  virtual double GetWeight(int cell) const = 0;
  virtual int GetNumCells() const = 0;
  // The Dirichlet-multinomial marginal likelihood of the counts, cell by cell.
  double GetLogMarginalLikelihood(const Vector_tmpl<int>& counts) const;
};

// One alpha for every cell, so that the size of the table costs nothing.
class BDeUniformDirichletTableCpdPrior_cl : public DirichletTableCpdPrior_cl {
 public:
  BDeUniformDirichletTableCpdPrior_cl(double alpha, int cells) : iAlpha(alpha), iNumCells(cells) {}
  double GetWeight(int) const override { return iAlpha; }
  int GetNumCells() const override { return iNumCells; }
  // Keeps the equivalent sample size: alpha scales by the old joint size over the new one.
  void Reset(const RvVector_sptr& oldVars, const RvVector_sptr& newVars) override;

 private:
  double iAlpha;
  int iNumCells;
};

class BDeDirichletTableCpdPrior_cl : public DirichletTableCpdPrior_cl {
 public:
  // Each of the s cells of the scope gets ess/s.
  BDeDirichletTableCpdPrior_cl(const RvVector_sptr& scope, double ess);
  // The ess is shared among the cells where the table is not 0.0; the others get 0.0.
  BDeDirichletTableCpdPrior_cl(const TableCpd_sptr& table, double ess);
  BDeDirichletTableCpdPrior_cl(const BDeDirichletTableCpdPrior_cl&) = delete;
  BDeDirichletTableCpdPrior_cl& operator=(const BDeDirichletTableCpdPrior_cl&) = delete;
  ~BDeDirichletTableCpdPrior_cl() override { delete[] iWeights; }

  double GetWeight(int cell) const override { return iWeights[cell]; }
  int GetNumCells() const override { return iNumCells; }
  double GetEquivSampleSize() const { return iEss; }
  // Replaces a cell; the equivalent sample size moves by the difference.
  void SetWeight(int cell, double weight);
  void SetEquivSampleSize(double ess);
  // Cells above 0.0 in [block*blockSize, (block+1)*blockSize) at positions below limit (< 0: all).
  int GetNonZeroWeightCount(int blockSize, int block, int limit) const;
  // Uniform weights over the new joint size.
  void Reset(const RvVector_sptr& oldVars, const RvVector_sptr& newVars) override;

 private:
  void SetUniform(int cells);

  double* iWeights = nullptr;
  int iNumCells = 0;
  double iEss;
};

#endif
