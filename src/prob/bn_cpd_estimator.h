// Estimators of Bayesian network CPDs, and the common base of the table estimators.
#ifndef VORN_PROB_BN_CPD_ESTIMATOR_H
#define VORN_PROB_BN_CPD_ESTIMATOR_H

#include <vector>

#include "prob/measure_estimator.h"
#include "prob/table_cpd.h"

class BnCpdEstimator_cl : public MeasureEstimator_cl {
 public:
  BnCpdEstimator_cl(const BnCpd_sptr& cpd, ScoringMethod_enum scoring, Prior_cl* prior)
      : MeasureEstimator_cl(scoring), iCpd(cpd), iPrior(prior) {}

  Measure_sptr GetMeasure() const override { return Measure_sptr(iCpd); }
  RvVector_sptr GetRVs() const override { return iCpd->GetRVs(); }
  Prior_cl* GetPrior() const override { return iPrior; }
  // Takes ownership of the query.
  virtual void SetQuery(SingleSuffStatsQuery_cl* query);
  virtual TableCpd_sptr GetTableCpd() const { return Conv2TableCpd(Measure_sptr(iCpd)); }
  virtual int GetNumParams() const;
  BnCpd_sptr GetCpd() const { return iCpd; }

 protected:
  const char* ClassName() const override { return "BnCpdEstimator_cl"; }

  BnCpd_sptr iCpd;
  Prior_cl* iPrior;
};

class TableCpdEstimator_cl : public BnCpdEstimator_cl {
 public:
  using BnCpdEstimator_cl::BnCpdEstimator_cl;

 protected:
  const char* ClassName() const override { return "TableCpdEstimator_cl"; }
  // The stride of each variable of vars in a table statistic's cells, 0 for one it lacks, so
  // that a flat index over vars reaches the statistic's cell without assignment objects.
  static std::vector<int> GetStatsStrides(const RvVector_sptr& vars, const TableSuffStats_cl* stats);
};

#endif
