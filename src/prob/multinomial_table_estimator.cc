// The estimator of multinomial tables: posterior lines from counts and a Dirichlet prior, and their scores.
#include "prob/multinomial_table_estimator.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <utility>
#include <vector>

#include "prob/inst_vector.h"

MultinomialTableCpdEstimator_cl::MultinomialTableCpdEstimator_cl(const TableCpd_sptr& table,
                                                                 ScoringMethod_enum scoring, Prior_cl* prior,
                                                                 int ownQuery)
    : TableCpdEstimator_cl(BnCpd_sptr(table), scoring, prior), iTable(table),
      iChildSize(table->GetRv()->GetDomain()->GetDomainSize()) {
  iSizeInBits = static_cast<double>(table->GetNumLines()) * (32 * iChildSize - 32);
  if (ownQuery) iQuery = new SingleSuffStatsQuery_cl(table->GetRVs());
}

int MultinomialTableCpdEstimator_cl::GetNumParams() const { return iTable->GetNumLines() * (iChildSize - 1); }

double MultinomialTableCpdEstimator_cl::GetAlpha(int cell) const {
  return iPrior ? static_cast<DirichletTableCpdPrior_cl*>(iPrior)->GetWeight(cell) : 0.0;
}

MultinomialTableCpdScoring_cl* MultinomialTableCpdEstimator_cl::CreateScoringMethod(double total) const {
  switch (iScoring) {
    case SCORE_LL:
      return new LLMultinomialTableCpdScoring_cl();
    case SCORE_BIC:
      return new BICMultinomialTableCpdScoring_cl(GetNumParams(), total);
    case SCORE_BDE:
      return new BDeMultinomialTableCpdScoring_cl();
    default:
      return nullptr;
  }
}

double MultinomialTableCpdEstimator_cl::ComputeDifference(const Multinomial_sptr& a, const Multinomial_sptr& b) {
  return a->GetKLDist(Measure_sptr(b)) + b->GetKLDist(Measure_sptr(a));
}

// The statistic's cell of each flat index of the table, decoded from the last variable backward.
class StatsCellIndex_cl {
 public:
  StatsCellIndex_cl(const RvVector_sptr& vars, std::vector<int> strides)
      : iSizes(vars->GetNumberOfVars()), iStrides(std::move(strides)) {
    for (size_t k = 0; k < iSizes.size(); k++) iSizes[k] = vars->GetRv(static_cast<int>(k))->GetDomain()->GetDomainSize();
  }
  int operator()(int index) const {
    int cell = 0;
    for (int k = static_cast<int>(iSizes.size()) - 1; k >= 0; k--) {
      cell += index % iSizes[k] * iStrides[k];
      index /= iSizes[k];
    }
    return cell;
  }

 private:
  std::vector<int> iSizes;
  std::vector<int> iStrides;
};

[[noreturn]] static void StopOnWeight(const char* what, const RvVector_sptr& vars, int index, double w, int withValue) {
  std::cerr << "weight is " << what << " for instantiation: \n"
            << VarsVector_sptr(InstVector_cl::GetIndexAssignment(index, vars)) << '\n';
  if (withValue) std::cerr << "weight = " << w << '\n';
  abort();
}

double MultinomialTableCpdEstimator_cl::Walk(SuffStats_cl* stats, int update) {
  auto* counts = static_cast<CountsSuffStats_cl*>(stats);
  RvVector_sptr vars = iTable->GetRVs();
  StatsCellIndex_cl cellOf(vars, GetStatsStrides(vars, counts));
  MultinomialTableCpdScoring_cl* scoring = CreateScoringMethod(counts->GetTotalWeight());
  RvVector_sptr lineScope =
      iTable->IsEmpty() ? RvVector_sptr(new RvVector_cl(SingleVar_sptr(iTable->GetRv()))) : iTable->GetLine(0)->GetRVs();
  int s = iChildSize, cells = iTable->GetNumLines() * s;
  double largest = 0.0;
  Multinomial_sptr fresh, old;
  for (int index = 0; index < cells; index++) {
    int line = index / s, value = index % s;
    if (update && value == 0) {
      old = Conv2Multinomial(Measure_sptr(iTable->GetLine(line)));
      fresh = new Multinomial_cl(lineScope, 0, 0);
      iTable->SetLine(line, Cpd_sptr(fresh), 0);
    }
    double alpha = GetAlpha(index), w = counts->GetWeight(cellOf(index)) + alpha;
    if (!update && w == 0.0) StopOnWeight("zero", vars, index, w, 0);
    if (!update && w < 0.0) StopOnWeight("negative", vars, index, w, 1);
    if (scoring) scoring->AddWeight(w, alpha);
    if (update) fresh->SetValue(w, value);
    if (value < s - 1) continue;
    if (update) fresh->Normalize(1.0);
    if (scoring) scoring->FinishedLine();
    if (update && !iDataComplete && !old.IsNull()) largest = std::max(largest, ComputeDifference(fresh, old));
  }
  double score = scoring ? scoring->GetScore() : 0.0;
  if (update) {
    if (scoring) iScore = score;
    FinishEstimation(largest);
  }
  delete scoring;
  return score;
}

void MultinomialTableCpdEstimator_cl::EstimateMeasure(SuffStats_cl* stats) { Walk(stats, 1); }

double MultinomialTableCpdEstimator_cl::ComputeScore(SuffStats_cl* stats) { return Walk(stats, 0); }

double MultinomialTableCpdEstimator_cl::LogLikelihood(SuffStats_cl* stats) const {
  auto* counts = static_cast<CountsSuffStats_cl*>(stats);
  StatsCellIndex_cl cellOf(iTable->GetRVs(), GetStatsStrides(iTable->GetRVs(), counts));
  double sum = 0.0;
  for (int index = 0; index < iTable->GetNumLines() * iChildSize; index++) {
    double c = counts->GetWeight(cellOf(index));
    sum += c * std::log(iTable->GetLine(index / iChildSize)->GetValue(index % iChildSize));
  }
  return sum;
}

void MultinomialTableCpdEstimator_cl::InitializeMeasure() {
  int s = iChildSize;
  std::vector<double> weights(s);
  RvVector_sptr childScope = new RvVector_cl(SingleVar_sptr(iTable->GetRv()));
  for (int line = 0; line < iTable->GetNumLines(); line++) {
    Multinomial_sptr m = Conv2Multinomial(Measure_sptr(iTable->GetLine(line)));
    if (m.IsNull()) {
      m = new Multinomial_cl(childScope, 0, 0);
      iTable->SetLine(line, Cpd_sptr(m), 0);
    }
    double least = 1e100;
    for (int v = 0; v < s; v++) {
      // Without a prior every line is drawn from the uniform Dirichlet.
      weights[v] = iPrior ? GetAlpha(line * s + v) : 1.0;
      least = std::min(least, weights[v]);
    }
    if (least < 1.0 && least > 0.0)
      for (double& w : weights) w /= least;
    std::vector<double> drawn(s);
    iTable->GetRandom().SampleDirichlet(weights.data(), s, drawn.data());
    m->SetValues(drawn.data(), s);
  }
  if (iQuery) iQuery->ResetStats();
}
