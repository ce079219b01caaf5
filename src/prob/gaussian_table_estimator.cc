// The estimator of Gaussian tables: lines from moments with Normal-Gamma or Normal-Wishart priors, and their scores.
#include "prob/gaussian_table_estimator.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "eval/numerical.h"
#include "prob/normal_gamma_prior.h"
#include "prob/normal_wishart_prior.h"

GaussianTableCpdEstimator_cl::GaussianTableCpdEstimator_cl(const TableCpd_sptr& table, ScoringMethod_enum scoring,
                                                           Prior_cl* prior)
    : TableCpdEstimator_cl(BnCpd_sptr(table), scoring, prior), iTable(table) {
  iQuery = new SingleSuffStatsQuery_cl(table->GetRVs());
}

Prior_cl* GaussianTableCpdEstimator_cl::GetLinePrior(int line) const {
  return iPrior ? static_cast<GaussianTableCpdPrior_cl*>(iPrior)->GetPrior(line) : nullptr;
}

// The position of a variable among the statistic's, 0 for a scope-free statistic.
static int PositionIn(const MomentsSuffStats_cl* stats, const SingleRv_sptr& rv) {
  RvVector_sptr scope = stats->GetRvs();
  return scope.IsNull() ? 0 : scope->GetFirstEntry(SingleVar_sptr(rv));
}

static void EstimateLinearGaussian(const GaussianCpd_sptr& cpd, MomentsSuffStats_cl* stats, Prior_cl* prior) {
  RvVector_sptr vars = cpd->GetRVs();
  int p = vars->GetNumberOfVars() - 1;
  RvMapping_sptr mapping = new RvMapping_cl(*vars, *stats->GetRvs(), 0);
  auto post = static_cast<NormalWishartPrior_cl*>(prior)->GetPosteriorAvg(
      mapping, stats->GetTotalWeight(), stats->GetFirst(), stats->GetSecond(), stats->GetNumVars());
  const MatrixVector_sptr& m = post.first;
  const SqrMatrix_sptr& c = post.second;
  std::vector<std::vector<double>> a(p, std::vector<double>(p)), b(p, std::vector<double>(1));
  std::vector<double*> aRows(p), bRows(p);
  for (int i = 0; i < p; i++) {
    for (int j = 0; j < p; j++) a[i][j] = c->GetElement(i, j);
    b[i][0] = c->GetElement(i, p);
    aRows[i] = a[i].data();
    bRows[i] = b[i].data();
  }
  gaussj(aRows.data(), p, bRows.data(), 1);
  double constant = m->GetElement(p, 0), variance = c->GetElement(p, p);
  for (int i = 0; i < p; i++) {
    constant -= b[i][0] * m->GetElement(i, 0);
    for (int j = 0; j < p; j++) variance -= b[i][0] * b[j][0] * c->GetElement(i, j);
    cpd->SetWeight(b[i][0], i);
  }
  cpd->SetMean(constant);
  cpd->SetVariance(variance);
}

double GaussianTableCpdEstimator_cl::EstimateGaussianCpd(const GaussianCpd_sptr& cpd, MomentsSuffStats_cl* stats,
                                                         Prior_cl* prior, ScoringMethod_enum scoring, int setParams) {
  if (cpd->GetRVs()->GetNumberOfVars() > 1) {
    EstimateLinearGaussian(cpd, stats, prior);
    return 0.0;
  }
  auto* normalGamma = static_cast<NormalGammaPrior_cl*>(prior);
  int at = PositionIn(stats, cpd->GetRv());
  double n = stats->GetTotalWeight(), sx = stats->GetFirst(at), sxx = stats->GetSecond(at, at);
  double mean = 0.0, variance = 0.0;
  if (setParams || scoring == SCORE_LL || scoring == SCORE_BIC) {
    auto avg = normalGamma->GetPosteriorAvg(n, sx, sxx);
    mean = avg.first;
    variance = avg.second;
  }
  if (setParams) {
    cpd->SetMean(mean);
    cpd->SetVariance(variance);
  }
  switch (scoring) {
    case SCORE_NONE:
      return 0.0;
    case SCORE_LL:
      return GetLogNormalProb(n, sx, sxx, mean, variance);
    case SCORE_BIC:
      // No log of n in this penalty, unlike the multinomial one.
      return GetLogNormalProb(n, sx, sxx, mean, variance) - (stats->GetNumVars() + 1) * 0.5;
    case SCORE_BGE:
      return normalGamma->GetLogMarginalLikelihood(n, sx, sxx);
    default:
      std::cerr << "GaussianTableCpdEstimator_cl::EstimateGaussianCpd: Unknown scoring method\n";
      abort();
  }
}

double GaussianTableCpdEstimator_cl::ComputeDifference(const GaussianCpd_sptr& a, const GaussianCpd_sptr& b) {
  double r = a->GetVariance() / b->GetVariance(), d = a->GetMean() - b->GetMean();
  return (1 / r + r - 2 + d * d * 0.5 / (a->GetVariance() + b->GetVariance())) / std::log(2.0);
}

// The moments of each line: the whole statistic without discrete parents, else the cell of the
// line's joint parent value in the moments table.
static std::vector<MomentsSuffStats_cl*> LineStats(const TableCpd_sptr& table, SuffStats_cl* stats,
                                                   const std::vector<int>& strides) {
  RvVector_sptr parents = table->GetDiscParents();
  int n = parents->GetNumberOfVars();
  std::vector<MomentsSuffStats_cl*> lines(table->GetNumLines());
  for (int line = 0; line < table->GetNumLines(); line++) {
    if (n == 0) {
      lines[line] = static_cast<MomentsSuffStats_cl*>(stats);
      continue;
    }
    int rest = line, cell = 0;
    for (int k = n - 1; k >= 0; k--) {
      int size = parents->GetRv(k)->GetDomain()->GetDomainSize();
      cell += rest % size * strides[k];
      rest /= size;
    }
    lines[line] = static_cast<MomentsTableSuffStats_cl*>(stats)->GetCell(cell);
  }
  return lines;
}

std::vector<MomentsSuffStats_cl*> GaussianTableCpdEstimator_cl::GetLineStats(SuffStats_cl* stats) const {
  if (iTable->GetDiscParents()->GetNumberOfVars() == 0) return LineStats(iTable, stats, {});
  return LineStats(iTable, stats, GetStatsStrides(iTable->GetDiscParents(), static_cast<TableSuffStats_cl*>(stats)));
}

double GaussianTableCpdEstimator_cl::Walk(SuffStats_cl* stats, int setParams) {
  std::vector<MomentsSuffStats_cl*> lineStats = GetLineStats(stats);
  double score = 0.0, largest = 0.0;
  for (int line = 0; line < iTable->GetNumLines(); line++) {
    MomentsSuffStats_cl* moments = lineStats[line];
    GaussianCpd_sptr fresh = new GaussianCpd_cl(iTable->GetRv(), iTable->GetRealParents());
    score += EstimateGaussianCpd(fresh, moments, GetLinePrior(line), iScoring, setParams);
    if (!setParams) continue;
    GaussianCpd_sptr old = Conv2GaussianCpd(Measure_sptr(iTable->GetLine(line)));
    iTable->SetLine(line, Cpd_sptr(fresh), 0);
    if (!iDataComplete && !old.IsNull()) largest = std::max(largest, ComputeDifference(fresh, old));
  }
  if (setParams) {
    iScore = score;
    FinishEstimation(largest);
  }
  return score;
}

void GaussianTableCpdEstimator_cl::EstimateMeasure(SuffStats_cl* stats) { Walk(stats, 1); }

double GaussianTableCpdEstimator_cl::ComputeScore(SuffStats_cl* stats) { return Walk(stats, 0); }

double GaussianTableCpdEstimator_cl::LogLikelihood(SuffStats_cl* stats) const {
  if (iTable->GetRVs()->GetNumberOfRealVars() > 1) {
    std::cerr << "GaussianTableCpdEstimator_cl::LogLikelihood not supported for linear gaussians\n";
    abort();
  }
  std::vector<MomentsSuffStats_cl*> lineStats = GetLineStats(stats);
  double sum = 0.0;
  for (int line = 0; line < iTable->GetNumLines(); line++) {
    MomentsSuffStats_cl* m = lineStats[line];
    GaussianCpd_sptr cpd = Conv2GaussianCpd(Measure_sptr(iTable->GetLine(line)));
    int at = PositionIn(m, iTable->GetRv());
    sum += GetLogNormalProb(m->GetTotalWeight(), m->GetFirst(at), m->GetSecond(at, at), cpd->GetMean(),
                            cpd->GetVariance());
  }
  return sum;
}

void GaussianTableCpdEstimator_cl::InitializeMeasure() {
  if (iTable->GetRVs()->GetNumberOfRealVars() > 1) {
    std::cerr << "InitializeMeasure not implemented for linear gaussians\n";
    return;
  }
  for (int line = 0; line < iTable->GetNumLines(); line++) {
    GaussianCpd_sptr cpd = Conv2GaussianCpd(Measure_sptr(iTable->GetLine(line)));
    if (cpd.IsNull()) {
      cpd = new GaussianCpd_cl(iTable->GetRv(), iTable->GetRealParents());
      iTable->SetLine(line, Cpd_sptr(cpd), 0);
    }
    auto draw = static_cast<NormalGammaPrior_cl*>(GetLinePrior(line))->Sample(&iTable->GetRandom());
    cpd->SetMean(draw.first);
    cpd->SetVariance(draw.second);
  }
}
