// Scoring methods of multinomial tables: log likelihood, BIC and BDe, fed one cell at a time.
#ifndef VORN_PROB_SCORE_H
#define VORN_PROB_SCORE_H

class ScoringMethod_cl {
 public:
  virtual ~ScoringMethod_cl() = default;
};

// Cells arrive line by line with their posterior weight w (count plus alpha) and their alpha.
class MultinomialTableCpdScoring_cl : public ScoringMethod_cl {
 public:
  virtual void AddWeight(double weight, double alpha) = 0;
  virtual void FinishedLine() = 0;
  virtual double GetScore() const = 0;
  virtual void Reset() = 0;
};

// The sum over lines and cells of w*ln(w/W), W the weight of the line.
class LLMultinomialTableCpdScoring_cl : public MultinomialTableCpdScoring_cl {
 public:
  void AddWeight(double weight, double alpha) override;
  void FinishedLine() override;
  double GetScore() const override { return iScore; }
  void Reset() override { iLineSum = iScore = 0.0; }

 private:
  double iLineSum = 0.0;
  double iScore = 0.0;
};

// The log likelihood less ln(total)*params/2, plus a constant in the three-argument form.
class BICMultinomialTableCpdScoring_cl : public LLMultinomialTableCpdScoring_cl {
 public:
  BICMultinomialTableCpdScoring_cl(int params, double total);
  BICMultinomialTableCpdScoring_cl(int params, double total, double constant);
  double GetScore() const override { return LLMultinomialTableCpdScoring_cl::GetScore() - iPenalty; }

 private:
  double iPenalty;
};

// The Dirichlet-multinomial marginal likelihood, line by line.
class BDeMultinomialTableCpdScoring_cl : public MultinomialTableCpdScoring_cl {
 public:
  void AddWeight(double weight, double alpha) override;
  void FinishedLine() override;
  double GetScore() const override { return iScore; }
  void Reset() override { iScore = iBase; }

 private:
  double iWeightSum = 0.0;
  double iAlphaSum = 0.0;
  double iScore = 0.0;
  double iBase = 0.0;
};

#endif
