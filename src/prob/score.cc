// Scoring methods of multinomial tables: log likelihood, BIC and BDe, fed one cell at a time.
#include "prob/score.h"

#include <cmath>

void LLMultinomialTableCpdScoring_cl::AddWeight(double weight, double) {
  if (weight > 0.0) {
    iLineSum += weight;
    iScore += weight * std::log(weight);
  }
}

void LLMultinomialTableCpdScoring_cl::FinishedLine() {
  if (iLineSum > 0.0) {
    iScore -= iLineSum * std::log(iLineSum);
    iLineSum = 0.0;
  }
}

BICMultinomialTableCpdScoring_cl::BICMultinomialTableCpdScoring_cl(int params, double total)
    : iPenalty(std::log(total) * 0.5 * params) {}

BICMultinomialTableCpdScoring_cl::BICMultinomialTableCpdScoring_cl(int params, double total, double constant)
    : iPenalty(std::log(total) * 0.5 * params + constant) {}

void BDeMultinomialTableCpdScoring_cl::AddWeight(double weight, double alpha) {
  iWeightSum += weight;
  iAlphaSum += alpha;
  iScore += std::lgamma(weight) - std::lgamma(alpha);
}

void BDeMultinomialTableCpdScoring_cl::FinishedLine() {
  iScore += std::lgamma(iAlphaSum) - std::lgamma(iWeightSum);
  iWeightSum = iAlphaSum = 0.0;
}
