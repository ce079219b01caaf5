// Dirichlet priors of multinomial tables: the uniform BDe form with one alpha, and per-cell weights.
#include "prob/dirichlet_prior.h"

#include <cmath>

#include "prob/inst_vector.h"

double DirichletTableCpdPrior_cl::GetLogMarginalLikelihood(const Vector_tmpl<int>& counts) const {
  double score = 0.0, sumAlpha = 0.0, sumAll = 0.0;
  for (int i = 0; i < counts.GetSize(); i++) {
    double a = GetWeight(i);
    // An empty cell of weight 0.0 contributes its limit, 0, rather than inf - inf.
    if (a == 0.0 && counts[i] == 0) continue;
    score += std::lgamma(counts[i] + a) - std::lgamma(a);
    sumAlpha += a;
    sumAll += counts[i] + a;
  }
  return score + std::lgamma(sumAlpha) - std::lgamma(sumAll);
}

void BDeUniformDirichletTableCpdPrior_cl::Reset(const RvVector_sptr& oldVars, const RvVector_sptr& newVars) {
  iAlpha *= oldVars->GetJointDomainSize();
  iNumCells = newVars->GetJointDomainSize();
  iAlpha /= iNumCells;
}

void BDeDirichletTableCpdPrior_cl::SetUniform(int cells) {
  delete[] iWeights;
  iNumCells = cells;
  iWeights = new double[cells > 0 ? cells : 1];
  for (int i = 0; i < cells; i++) iWeights[i] = iEss / cells;
}

BDeDirichletTableCpdPrior_cl::BDeDirichletTableCpdPrior_cl(const RvVector_sptr& scope, double ess) : iEss(ess) {
  SetUniform(scope->GetJointDomainSize());
}

BDeDirichletTableCpdPrior_cl::BDeDirichletTableCpdPrior_cl(const TableCpd_sptr& table, double ess) : iEss(ess) {
  RvVector_sptr scope = table->GetRVs();
  iNumCells = scope->GetJointDomainSize();
  iWeights = new double[iNumCells > 0 ? iNumCells : 1];
  int marked = 0;
  for (int i = 0; i < iNumCells; i++) {
    iWeights[i] = table->GetValue(InstVector_cl::GetIndexAssignment(i, scope)) != 0.0 ? 1.0 : 0.0;
    marked += iWeights[i] != 0.0;
  }
  for (int i = 0; i < iNumCells; i++)
    if (iWeights[i] != 0.0) iWeights[i] = ess / marked;
}

void BDeDirichletTableCpdPrior_cl::SetWeight(int cell, double weight) {
  iEss += weight - iWeights[cell];
  iWeights[cell] = weight;
}

void BDeDirichletTableCpdPrior_cl::SetEquivSampleSize(double ess) {
  for (int i = 0; i < iNumCells; i++) iWeights[i] *= ess / iEss;
  iEss = ess;
}

int BDeDirichletTableCpdPrior_cl::GetNonZeroWeightCount(int blockSize, int block, int limit) const {
  int count = 0;
  for (int i = 0; i < blockSize && (limit < 0 || i < limit); i++) count += iWeights[block * blockSize + i] > 0.0;
  return count;
}

void BDeDirichletTableCpdPrior_cl::Reset(const RvVector_sptr&, const RvVector_sptr& newVars) {
  SetUniform(newVars->GetJointDomainSize());
}
