// Gaussians against closed forms, Eigen and GSL: densities, conditioning, marginals, the canonical
// form both ways, learning, KL distances, bounded domains, sampling and Gaussian messages.
#include "prob/gaussian.h"

#include <gsl/gsl_linalg.h>
#include <gsl/gsl_randist.h>
#include <gtest/gtest.h>

#include <cmath>
#include <eigen3/Eigen/Dense>
#include <vector>

namespace {

SingleRv_sptr Real(const char* name) { return new SingleRv_cl(Name_sptr(name), new RealDomain_cl()); }

struct Fixture {
  SingleRv_sptr x = Real("x"), y = Real("y"), z = Real("z");
  RvVector_sptr all;
  Eigen::Vector3d mean{0.5, -1.0, 2.0};
  Eigen::Matrix3d cov;
  Fixture() {
    all = new RvVector_cl();
    all->AddLast(x);
    all->AddLast(y);
    all->AddLast(z);
    cov << 2.0, 0.6, -0.4, 0.6, 1.5, 0.3, -0.4, 0.3, 1.0;
  }
  FullGaussian_sptr Make() const {
    FullGaussian_sptr g = new FullGaussian_cl(all);
    for (int i = 0; i < 3; i++) {
      g->SetMean(i, mean[i]);
      for (int j = 0; j < 3; j++) g->SetCov(i, j, cov(i, j));
    }
    return g;
  }
};

InstVector_sptr Assign(std::initializer_list<std::pair<SingleRv_sptr, double>> values) {
  InstVector_sptr inst = new InstVector_cl();
  for (const auto& v : values) {
    SingleInst_sptr one = SingleInst_cl::Create(v.first);
    one->SetValue(v.second);
    inst->AddLast(one);
  }
  return inst;
}

double GslLogPdf(const Eigen::VectorXd& x, const Eigen::VectorXd& mean, const Eigen::MatrixXd& cov) {
  int n = static_cast<int>(x.size());
  gsl_vector* gx = gsl_vector_alloc(n);
  gsl_vector* gm = gsl_vector_alloc(n);
  gsl_vector* work = gsl_vector_alloc(n);
  gsl_matrix* l = gsl_matrix_alloc(n, n);
  for (int i = 0; i < n; i++) {
    gsl_vector_set(gx, i, x[i]);
    gsl_vector_set(gm, i, mean[i]);
    for (int j = 0; j < n; j++) gsl_matrix_set(l, i, j, cov(i, j));
  }
  gsl_linalg_cholesky_decomp1(l);
  double result = 0.0;
  gsl_ran_multivariate_gaussian_log_pdf(gx, gm, l, &result, work);
  gsl_vector_free(gx);
  gsl_vector_free(gm);
  gsl_vector_free(work);
  gsl_matrix_free(l);
  return result;
}

}  // namespace

TEST(FullGaussian, LogDensityMatchesGslAndCachesFollowChanges) {
  Fixture f;
  FullGaussian_sptr g = f.Make();
  Random_cl random(3);
  for (int k = 0; k < 20; k++) {
    Eigen::Vector3d point(random.SampleNormal(), random.SampleNormal(), random.SampleNormal());
    EXPECT_NEAR(g->GetLogValue(point.data()), GslLogPdf(point, f.mean, f.cov), 1e-10);
    InstVector_sptr inst = Assign({{f.z, point[2]}, {f.x, point[0]}, {f.y, point[1]}});
    EXPECT_NEAR(g->GetValue(inst), std::exp(GslLogPdf(point, f.mean, f.cov)), 1e-12);
  }
  // A new variance is seen by the next density, through the cleared caches.
  g->SetVariance(2, 4.0);
  Eigen::Matrix3d changed = f.cov;
  changed(2, 2) = 4.0;
  Eigen::Vector3d point(0.1, 0.2, 0.3);
  EXPECT_NEAR(g->GetLogValue(point.data()), GslLogPdf(point, f.mean, changed), 1e-10);
  EXPECT_NEAR(g->GetEntropy(), 0.5 * (std::log(changed.determinant()) + 3 * std::log(2 * M_PI) + 3), 1e-12);
  EXPECT_EQ(g->GetNormalizingConstant(), 1.0);
  EXPECT_TRUE(g->IsLegalCov());
}

TEST(FullGaussian, ConditioningAndMarginalsMatchClosedForms) {
  Fixture f;
  FullGaussian_sptr g = f.Make();
  double zValue = 1.25, yValue = -0.5;
  FullGaussian_sptr cond = Conv2FullGaussian(g->Instantiate(Assign({{f.z, zValue}, {f.y, yValue}}), Measure_sptr()));
  // x | y, z: mean m1 + S12 S22^-1 (x2 - m2), variance S11 - S12 S22^-1 S21.
  Eigen::RowVector2d s12(f.cov(0, 1), f.cov(0, 2));
  Eigen::Matrix2d s22 = f.cov.block<2, 2>(1, 1);
  Eigen::Vector2d d(yValue - f.mean[1], zValue - f.mean[2]);
  ASSERT_EQ(cond->GetNumVars(), 1);
  EXPECT_NEAR(cond->GetMean(0), f.mean[0] + (s12 * s22.inverse() * d)(0), 1e-12);
  EXPECT_NEAR(cond->GetCov(0, 0), f.cov(0, 0) - (s12 * s22.inverse() * s12.transpose())(0), 1e-12);

  // p(x, y, z) = p(y, z) p(x | y, z) at a point.
  RvVector_sptr yz = new RvVector_cl();
  yz->AddLast(f.y);
  yz->AddLast(f.z);
  FullGaussian_sptr marginal = Conv2FullGaussian(g->ReduceTo(yz, Measure_sptr()));
  EXPECT_EQ(marginal->GetCov(0, 1), f.cov(1, 2));
  double xValue = 0.3;
  double joint[] = {xValue, yValue, zValue}, pair[] = {yValue, zValue}, single[] = {xValue};
  EXPECT_NEAR(g->GetLogValue(joint), marginal->GetLogValue(pair) + cond->GetLogValue(single), 1e-12);

  // Instantiating nothing returns the measure; everything gives the density.
  EXPECT_EQ(g->Instantiate(new InstVector_cl(), Measure_sptr()).Get(), static_cast<Measure_cl*>(g.Get()));
  Factor_sptr value =
      Conv2Factor(g->Instantiate(Assign({{f.x, xValue}, {f.y, yValue}, {f.z, zValue}}), Measure_sptr()));
  EXPECT_NEAR(value->GetValue(0), std::exp(g->GetLogValue(joint)), 1e-15);
}

TEST(CanonicalGaussian, ConversionsBothWaysAndOperationsAgreeWithMoments) {
  Fixture f;
  FullGaussian_sptr g = f.Make();
  CanonicalGaussian_cl canonical(f.all);
  canonical.ConvertFromMoments(g);
  double point[] = {0.2, -0.7, 1.1};
  EXPECT_NEAR(canonical.GetLogValue(point), g->GetLogValue(point), 1e-12);
  EXPECT_NEAR(canonical.GetWeight(), 1.0, 1e-12);
  canonical.MultiplyWeight(2.5);
  EXPECT_NEAR(canonical.GetWeight(), 2.5, 1e-12);
  canonical.MultiplyWeight(0.4);

  FullGaussian_sptr back = new FullGaussian_cl(f.all);
  back->ConvertFromCanonical(&canonical);
  for (int i = 0; i < 3; i++) {
    EXPECT_NEAR(back->GetMean(i), f.mean[i], 1e-12);
    for (int j = 0; j < 3; j++) EXPECT_NEAR(back->GetCov(i, j), f.cov(i, j), 1e-12);
  }

  // Marginal in canonical form against the moment marginal.
  RvVector_sptr zx = new RvVector_cl();
  zx->AddLast(f.z);
  zx->AddLast(f.x);
  CanonicalGaussian_cl* reduced = canonical.ReduceTo(zx);
  FullGaussian_sptr viaMoments = Conv2FullGaussian(g->ReduceTo(zx, Measure_sptr()));
  double pair[] = {1.5, -0.25};
  EXPECT_NEAR(reduced->GetLogValue(pair), viaMoments->GetLogValue(pair), 1e-12);
  EXPECT_NEAR(reduced->GetWeight(), 1.0, 1e-12);
  delete reduced;

  // Conditioning in canonical form: the weight left is the density of the fixed values.
  InstVector_sptr yz = Assign({{f.y, 0.4}, {f.z, 1.9}});
  CanonicalGaussian_cl* fixed = canonical.Instantiate(yz);
  FullGaussian_sptr condMoments = Conv2FullGaussian(g->Instantiate(yz, Measure_sptr()));
  FullGaussian_sptr condBack = new FullGaussian_cl(fixed->GetRVs());
  condBack->ConvertFromCanonical(fixed);
  EXPECT_NEAR(condBack->GetMean(0), condMoments->GetMean(0), 1e-12);
  EXPECT_NEAR(condBack->GetCov(0, 0), condMoments->GetCov(0, 0), 1e-12);
  RvVector_sptr yzVars = new RvVector_cl();
  yzVars->AddLast(f.y);
  yzVars->AddLast(f.z);
  double yzPoint[] = {0.4, 1.9};
  EXPECT_NEAR(fixed->GetWeight(),
              std::exp(Conv2FullGaussian(g->ReduceTo(yzVars, Measure_sptr()))->GetLogValue(yzPoint)), 1e-12);
  delete fixed;
}

TEST(CanonicalGaussian, ProductOfOneDimensionalFormsAndLinearCpd) {
  SingleRv_sptr x = Real("x"), p = Real("p");
  RvVector_sptr xs = new RvVector_cl();
  xs->AddLast(x);
  auto normal = [&](double m, double v) {
    FullGaussian_sptr g = new FullGaussian_cl(xs);
    g->SetMean(0, m);
    g->SetVariance(0, v);
    CanonicalGaussian_cl* c = new CanonicalGaussian_cl(xs);
    c->ConvertFromMoments(g);
    return c;
  };
  CanonicalGaussian_cl* a = normal(1.0, 2.0);
  CanonicalGaussian_cl* b = normal(-2.0, 0.5);
  a->Multiply(b, OPERATOR_MULTIPLY);
  // Precisions add; the integral of the product is N(m1 - m2; 0, v1 + v2).
  FullGaussian_sptr product = new FullGaussian_cl(xs);
  product->ConvertFromCanonical(a);
  EXPECT_NEAR(product->GetVariance(0), 1.0 / (0.5 + 2.0), 1e-12);
  EXPECT_NEAR(product->GetMean(0), (1.0 / 2.0 - 2.0 / 0.5) / 2.5, 1e-12);
  EXPECT_NEAR(a->GetWeight(), std::exp(-0.5 * 9.0 / 2.5) / std::sqrt(2 * M_PI * 2.5), 1e-12);
  a->Multiply(b, OPERATOR_DIVIDE);
  EXPECT_NEAR(a->GetWeight(), 1.0, 1e-12);
  delete a;
  delete b;

  RvVector_sptr ps = new RvVector_cl();
  ps->AddLast(p);
  GaussianCpd_sptr cpd = new GaussianCpd_cl(x, ps);
  cpd->SetMean(0.5);
  cpd->SetVariance(0.8);
  cpd->SetWeight(-1.5, 0);
  CanonicalGaussian_cl linear(cpd);
  for (double pv : {-1.0, 0.0, 2.0}) {
    for (double xv : {-0.5, 1.0}) {
      double point[] = {pv, xv};
      EXPECT_NEAR(linear.GetLogValue(point), cpd->GetLogValue(Assign({{p, pv}, {x, xv}})), 1e-12);
    }
  }
}

TEST(Gaussian, WeightedLearningKlAndMixtures) {
  SingleRv_sptr x = Real("x"), y = Real("y");
  RvVector_sptr xy = new RvVector_cl();
  xy->AddLast(x);
  xy->AddLast(y);
  double r0[] = {1.0, 2.0}, r1[] = {3.0, -2.0}, r2[] = {5.0, 0.0};
  double* rows[] = {r0, r1, r2};
  double weights[] = {1.0, 2.0, 1.0};
  FullGaussian_sptr full = new FullGaussian_cl(xy);
  full->Learn(rows, weights, 3);
  EXPECT_DOUBLE_EQ(full->GetMean(0), 3.0);
  EXPECT_DOUBLE_EQ(full->GetMean(1), -0.5);
  EXPECT_DOUBLE_EQ(full->GetCov(0, 1), (1 * (-2) * 2.5 + 0 + 1 * 2 * 0.5) / 4.0);
  IndepGaussian_sptr indep = new IndepGaussian_cl(xy);
  indep->Learn(rows, weights, 3);
  EXPECT_DOUBLE_EQ(indep->GetVariance(0), full->GetVariance(0));
  EXPECT_EQ(indep->GetCov(0, 1), 0.0);
  double none[] = {1e-101, 0.0, 0.0};
  full->Learn(rows, none, 3);
  EXPECT_DOUBLE_EQ(full->GetMean(0), 3.0);

  EXPECT_NEAR(full->GetKLDist(full), 0.0, 1e-12);
  EXPECT_NEAR(full->GetSumKLDists(full), 0.0, 1e-12);
  RvVector_sptr xs = new RvVector_cl();
  xs->AddLast(x);
  IndepGaussian_sptr p = new IndepGaussian_cl(xs), q = new IndepGaussian_cl(xs);
  p->SetMean(0, 1.0);
  p->SetVariance(0, 0.5);
  q->SetMean(0, -1.0);
  q->SetVariance(0, 2.0);
  double kl = std::log(std::sqrt(2.0 / 0.5)) + (0.5 + 4.0) / (2 * 2.0) - 0.5;
  EXPECT_NEAR(p->GetKLDist(q), kl, 1e-12);
  double back = std::log(std::sqrt(0.5 / 2.0)) + (2.0 + 4.0) / (2 * 0.5) - 0.5;
  EXPECT_NEAR(p->GetSumKLDists(q), kl + back, 1e-12);

  FullGaussian_sptr a = new FullGaussian_cl(xs), b = new FullGaussian_cl(xs);
  a->SetMean(0, -1.0);
  b->SetMean(0, 2.0);
  b->SetVariance(0, 3.0);
  FullGaussian_sptr parts[] = {a, b};
  double mix[] = {1.0, 3.0};
  FullGaussian_cl matched(parts, mix, 2);
  EXPECT_DOUBLE_EQ(matched.GetMean(0), 1.25);
  EXPECT_DOUBLE_EQ(matched.GetVariance(0), 0.25 * (1 + 1) + 0.75 * (3 + 4) - 1.25 * 1.25);
}

TEST(Gaussian, BoundedDomainsIntegrateOnAGrid) {
  SingleRv_sptr positive = new SingleRv_cl(Name_sptr("p"), new RealDomain_cl());
  Conv2RealDomain(positive->GetDomain())->SetLower(0.0);
  RvVector_sptr ps = new RvVector_cl();
  ps->AddLast(positive);
  IndepGaussian_sptr half = new IndepGaussian_cl(ps);
  EXPECT_NEAR(half->GetNormalizingConstant(), 0.5, 1e-3);
  double at[] = {0.5};
  EXPECT_NEAR(half->GetValue(at), 2.0 * std::exp(-0.125) / std::sqrt(2 * M_PI), 1e-2);
  // Far from the bound the constant is 1.0 without a grid.
  half->SetMean(0, 10.0);
  EXPECT_EQ(half->GetNormalizingConstant(), 1.0);
}

TEST(FullGaussian, SamplesHaveTheMomentsOfTheLaw) {
  Fixture f;
  Measure_cl::SetGlobalRandSeed(4242);
  FullGaussian_sptr g = f.Make();
  const int n = 40000;
  Eigen::Vector3d sum = Eigen::Vector3d::Zero();
  Eigen::Matrix3d outer = Eigen::Matrix3d::Zero();
  for (int k = 0; k < n; k++) {
    Sample_sptr s = g->NewSample();
    Eigen::Vector3d v((*s)[0]->GetRealValue(), (*s)[1]->GetRealValue(), (*s)[2]->GetRealValue());
    sum += v;
    outer += v * v.transpose();
  }
  Eigen::Vector3d m = sum / n;
  Eigen::Matrix3d c = outer / n - m * m.transpose();
  for (int i = 0; i < 3; i++) {
    EXPECT_NEAR(m[i], f.mean[i], 5.0 * std::sqrt(f.cov(i, i) / n));
    for (int j = 0; j < 3; j++) EXPECT_NEAR(c(i, j), f.cov(i, j), 0.05);
  }
}

TEST(GaussianMsg, WeightsComeFromFactorsAndCellsFromMessages) {
  SingleRv_sptr d = new SingleRv_cl(Name_sptr("d"), DomainFactory_cl::CreateIntegerDomain(0, 2));
  SingleRv_sptr e = new SingleRv_cl(Name_sptr("e"), DomainFactory_cl::CreateIntegerDomain(0, 3));
  SingleRv_sptr x = Real("x");
  RvVector_sptr de = new RvVector_cl(), xs = new RvVector_cl(), ds = new RvVector_cl();
  de->AddLast(d);
  de->AddLast(e);
  xs->AddLast(x);
  ds->AddLast(d);
  GaussianMsg_sptr msg = new GaussianMsg_cl(de, xs);
  ASSERT_EQ(msg->GetNumCells(), 6);
  FullGaussian_sptr unit = new FullGaussian_cl(xs);
  for (int i = 0; i < 6; i++) {
    unit->SetMean(0, i);
    msg->GetGaussian(i)->ConvertFromMoments(unit);
  }
  Factor_sptr prior = new Factor_cl(ds, 1, 0);
  prior->SetValue(0.25, 0);
  prior->SetValue(0.75, 1);
  FactorMapping_cl mapping(ds, de);
  msg->EnterFactor(prior, OPERATOR_MULTIPLY, &mapping);
  Factor_sptr weights = msg->GetAsFactor(ds);
  EXPECT_NEAR(weights->GetValue(0), 0.75, 1e-12);
  EXPECT_NEAR(weights->GetValue(1), 2.25, 1e-12);
  EXPECT_NEAR(msg->GetFullGaussian(4)->GetMean(0), 4.0, 1e-12);
  msg->EnterFactor(prior, OPERATOR_DIVIDE, &mapping);
  EXPECT_NEAR(msg->GetAsFactor(de)->GetValue(5), 1.0, 1e-12);
  GaussianMsg_sptr fixed = Conv2GaussianMsg(msg->Instantiate(Assign({{x, 1.0}}), Measure_sptr()));
  EXPECT_NEAR(fixed->GetGaussian(1)->GetWeight(), std::exp(-0.5 * 0.0) / std::sqrt(2 * M_PI), 1e-12);
  EXPECT_NEAR(fixed->GetGaussian(0)->GetWeight(), std::exp(-0.5) / std::sqrt(2 * M_PI), 1e-12);
}
