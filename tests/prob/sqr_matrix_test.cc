// Square matrices against Eigen: determinants, inverses, roots and eigenvalues, and the determinant cache.
#include "prob/sqr_matrix.h"

#include <eigen3/Eigen/Dense>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "pipeline/random.h"

namespace {

SqrMatrix_sptr FromEigen(const Eigen::MatrixXd& e) {
  SqrMatrix_sptr m = new SqrMatrix_cl(e.rows());
  for (int i = 0; i < e.rows(); i++)
    for (int j = 0; j < e.cols(); j++) m->GetRow(i)[j] = e(i, j);
  return m;
}

Eigen::MatrixXd ToEigen(const Matrix_sptr& m) {
  Eigen::MatrixXd e(m->GetNumRows(), m->GetNumCols());
  for (int i = 0; i < m->GetNumRows(); i++)
    for (int j = 0; j < m->GetNumCols(); j++) e(i, j) = m->GetElement(i, j);
  return e;
}

Eigen::MatrixXd RandomMatrix(Random_cl& random, int n) {
  Eigen::MatrixXd e(n, n);
  for (int i = 0; i < n; i++)
    for (int j = 0; j < n; j++) e(i, j) = random.SampleNormal();
  return e;
}

// Well conditioned and symmetric positive definite: B BT plus n on the diagonal.
Eigen::MatrixXd RandomSpd(Random_cl& random, int n) {
  Eigen::MatrixXd b = RandomMatrix(random, n);
  return b * b.transpose() + n * Eigen::MatrixXd::Identity(n, n);
}

Eigen::MatrixXd Hilbert(int n) {
  Eigen::MatrixXd h(n, n);
  for (int i = 0; i < n; i++)
    for (int j = 0; j < n; j++) h(i, j) = 1.0 / (i + j + 1);
  return h;
}

double Condition(const Eigen::MatrixXd& a) {
  Eigen::JacobiSVD<Eigen::MatrixXd> svd(a);
  return svd.singularValues()(0) / svd.singularValues()(a.rows() - 1);
}

double RelativeError(const Eigen::MatrixXd& got, const Eigen::MatrixXd& want) {
  return (got - want).norm() / want.norm();
}

// The test matrices: random ones of several sizes and Hilbert matrices up to condition 1e10.
std::vector<Eigen::MatrixXd> TestMatrices() {
  Random_cl random(5);
  std::vector<Eigen::MatrixXd> all;
  for (int n : {1, 2, 3, 5, 8, 13, 30}) all.push_back(RandomMatrix(random, n));
  for (int n : {4, 6, 8}) all.push_back(Hilbert(n));
  return all;
}

}  // namespace

TEST(SqrMatrix, NewMatrixIsTheUnitWithoutADeterminant) {
  SqrMatrix_cl m(3);
  EXPECT_EQ(m.GetElement(1, 1), 1.0);
  EXPECT_EQ(m.GetElement(1, 2), 0.0);
  EXPECT_FALSE(m.IsDeterminantValid());
}

TEST(SqrMatrix, DeterminantAndInversesMatchTheOracle) {
  for (const Eigen::MatrixXd& a : TestMatrices()) {
    SCOPED_TRACE(a.rows());
    double tolerance = Condition(a) * 1e-13;
    Eigen::MatrixXd inverse = a.inverse();
    SqrMatrix_sptr m = FromEigen(a);
    EXPECT_NEAR(m->GetDeterminant() / a.determinant(), 1.0, tolerance);
    EXPECT_LT(RelativeError(ToEigen(m->GetInverse()), inverse), tolerance);
    EXPECT_LT(RelativeError(ToEigen(m->GetInverseLU()), inverse), tolerance);
    // The cached determinant of the inverse is the reciprocal of the original's.
    SqrMatrix_sptr self = FromEigen(a);
    self->InvertMyself();
    EXPECT_TRUE(self->IsDeterminantValid());
    EXPECT_NEAR(self->GetDeterminant() * a.determinant(), 1.0, tolerance);
    EXPECT_LT(RelativeError(ToEigen(self), inverse), tolerance);

    Eigen::MatrixXd b = a.leftCols(std::min<int>(2, a.cols())) + Eigen::MatrixXd::Ones(a.rows(), std::min<int>(2, a.cols()));
    Matrix_sptr bm = FromEigen(Eigen::MatrixXd::Identity(a.rows(), a.rows()))->GetBlock(0, a.rows() - 1, 0, b.cols() - 1);
    for (int i = 0; i < b.rows(); i++)
      for (int j = 0; j < b.cols(); j++) bm->SetElement(i, j, b(i, j));
    EXPECT_LT(RelativeError(ToEigen(m->ComputeInvAB(bm)), a.partialPivLu().solve(b)), tolerance);
  }
}

TEST(SqrMatrix, SymmetricRoutinesMatchTheOracle) {
  Random_cl random(11);
  std::vector<Eigen::MatrixXd> spd;
  for (int n : {1, 2, 4, 9, 25}) spd.push_back(RandomSpd(random, n));
  spd.push_back(Hilbert(7));
  for (const Eigen::MatrixXd& a : spd) {
    SCOPED_TRACE(a.rows());
    double tolerance = Condition(a) * 1e-13;
    SqrMatrix_sptr m = FromEigen(a);
    EXPECT_TRUE(m->IsSymmetric());
    EXPECT_EQ(m->IsPositiveDefinite(1), 1);
    EXPECT_LT(RelativeError(ToEigen(m->GetInverseCholesky()), a.inverse()), tolerance);

    Eigen::MatrixXd l = a.llt().matrixL();
    SqrMatrix_sptr root = m->SquareRootMethod();
    EXPECT_LT(RelativeError(ToEigen(root), l), 1e-10);
    EXPECT_TRUE(m->IsDeterminantValid());
    EXPECT_NEAR(m->GetDeterminant() / a.determinant(), 1.0, 1e-9);

    Eigen::VectorXd b = Eigen::VectorXd::LinSpaced(a.rows(), -1.0, 2.0);
    MatrixVector_sptr bv = new MatrixVector_cl(a.rows());
    for (int i = 0; i < a.rows(); i++) bv->SetEntry(i, b(i));
    EXPECT_LT(RelativeError(ToEigen(m->SquareRootSolve(bv)), a.llt().solve(b)), tolerance);

    std::vector<double> ours, theirs;
    MatrixVector_sptr values = m->GetEigenValuesSym();
    Eigen::VectorXd expected = Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd>(a).eigenvalues();
    for (int i = 0; i < a.rows(); i++) {
      ours.push_back(values->GetEntry(i));
      theirs.push_back(expected(i));
    }
    std::sort(ours.begin(), ours.end());
    for (int i = 0; i < a.rows(); i++) EXPECT_NEAR(ours[i], theirs[i], 1e-10 * std::fabs(theirs.back()));
  }
}

TEST(SqrMatrix, EigenvaluesOfIndefiniteAndTinyMatrices) {
  Random_cl random(3);
  Eigen::MatrixXd b = RandomMatrix(random, 12);
  Eigen::MatrixXd a = b + b.transpose();
  MatrixVector_sptr values = FromEigen(a)->GetEigenValuesSym();
  std::vector<double> ours;
  for (int i = 0; i < 12; i++) ours.push_back(values->GetEntry(i));
  std::sort(ours.begin(), ours.end());
  Eigen::VectorXd expected = Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd>(a).eigenvalues();
  for (int i = 0; i < 12; i++) EXPECT_NEAR(ours[i], expected(i), 1e-10);
  EXPECT_EQ(FromEigen(Eigen::MatrixXd::Constant(1, 1, -4.0))->GetEigenValuesSym()->GetEntry(0), -4.0);
  EXPECT_EQ(SqrMatrix_sptr(new SqrMatrix_cl(0))->GetEigenValuesSym()->GetNumRows(), 0);
}

TEST(SqrMatrix, SingularMatrices) {
  Eigen::MatrixXd a(3, 3);
  a << 1, 2, 3, 2, 4, 6, 1, 0, 1;
  SqrMatrix_sptr m = FromEigen(a);
  EXPECT_EQ(m->GetDeterminant(), 0.0);
  EXPECT_EQ(m->GetRank(0), 2);
  SqrMatrix_sptr g = FromEigen(a);
  g->InvertMyself();
  EXPECT_FALSE(std::isfinite(g->GetElement(0, 0)) && std::isfinite(g->GetElement(2, 2)) &&
               std::isfinite(g->GetDeterminant()));
  a.row(1).setZero();
  EXPECT_DEATH(FromEigen(a)->InvertMyselfLU(), "Singular matrix in routine ludcmp");
}

TEST(SqrMatrix, DefinitenessTestOfSemiDefiniteMatricesReturnsTheArgument) {
  Eigen::VectorXd v(3);
  v << 1, -2, 0.5;
  SqrMatrix_sptr semi = FromEigen(v * v.transpose());
  EXPECT_EQ(semi->IsPositiveDefinite(1), 1);
  EXPECT_EQ(semi->IsPositiveDefinite(0), 0);
  Eigen::MatrixXd indefinite(2, 2);
  indefinite << 1, 2, 2, 1;
  EXPECT_EQ(FromEigen(indefinite)->IsPositiveDefinite(1), 0);
  EXPECT_EQ(SqrMatrix_cl(0).IsPositiveDefinite(0), 1);
}

TEST(SqrMatrix, EveryVirtualSetterDropsTheCachedDeterminantAndSwapsKeepIt) {
  Eigen::MatrixXd a(2, 2);
  a << 2, 1, 1, 3;
  auto fresh = [&]() {
    SqrMatrix_sptr m = FromEigen(a);
    m->GetDeterminant();
    EXPECT_TRUE(m->IsDeterminantValid());
    return m;
  };
  MatrixVector_sptr v = new MatrixVector_cl(2);
  double row[] = {1, 1};
  std::vector<std::pair<const char*, std::function<void(SqrMatrix_sptr)>>> setters = {
      {"SetElement", [](SqrMatrix_sptr m) { m->SetElement(0, 0, 5); }},
      {"SetRow array", [&](SqrMatrix_sptr m) { m->SetRow(0, row); }},
      {"SetRow vector", [&](SqrMatrix_sptr m) { m->SetRow(0, v); }},
      {"Multiply in place", [](SqrMatrix_sptr m) { m->Multiply(2.0, 1); }},
      {"Multiply on a copy", [](SqrMatrix_sptr m) { m->Multiply(2.0, 0); }},
      {"Add", [](SqrMatrix_sptr m) { m->Add(m->Copy(), 1, 1.0); }},
      {"Sub", [](SqrMatrix_sptr m) { m->Sub(m->Copy(), 1); }},
      {"SubMe", [](SqrMatrix_sptr m) { m->SubMe(m->Copy(), 1); }},
      {"SetEntries", [](SqrMatrix_sptr m) { m->SetEntries(1.0); }},
      {"ZeroTransformRow", [](SqrMatrix_sptr m) { m->ZeroTransformRow(0, -1e300); }},
      {"RankTransformCol", [](SqrMatrix_sptr m) { m->RankTransformCol(0, -1e300); }},
      {"MakeSymmetric", [](SqrMatrix_sptr m) { m->MakeSymmetric(); }},
  };
  for (auto& [name, set] : setters) {
    SCOPED_TRACE(name);
    SqrMatrix_sptr m = fresh();
    set(m);
    EXPECT_FALSE(m->IsDeterminantValid());
  }
  SqrMatrix_sptr m = fresh();
  Matrix_sptr copy = m->Copy();
  EXPECT_TRUE(static_cast<SqrMatrix_cl*>(copy.Get())->IsDeterminantValid());
  m->SwapRows(0, 1);
  m->SwapElements(0, 0, 1, 1);
  m->GetRow(0)[0] = 100.0;
  EXPECT_TRUE(m->IsDeterminantValid());
  EXPECT_EQ(m->GetDeterminant(), 5.0);
  m = fresh();
  m->GetInverseLU();
  m->InvertMyselfCholesky();
  EXPECT_TRUE(m->IsDeterminantValid());
  EXPECT_EQ(m->GetDeterminant(), 5.0);
}

TEST(SqrMatrix, ReorderingSubMatricesAndTraces) {
  Random_cl random(23);
  Eigen::MatrixXd a = RandomMatrix(random, 5), b = RandomMatrix(random, 5);
  SqrMatrix_sptr m = FromEigen(a);
  EXPECT_NEAR(m->GetProductTrace(FromEigen(b)), (a * b).trace(), 1e-12);

  Vector_tmpl<int> pick;
  pick.AddLast(4);
  pick.AddLast(1);
  SqrMatrix_sptr sub = m->GetSubMatrix(&pick);
  EXPECT_EQ(sub->GetElement(0, 1), a(4, 1));
  EXPECT_EQ(sub->GetElement(1, 0), a(1, 4));

  int order[] = {3, 0, 4, 2, 1};
  double determinant = m->GetDeterminant();
  m->ReorderMatrix(order);
  for (int i = 0; i < 5; i++)
    for (int j = 0; j < 5; j++) EXPECT_EQ(m->GetElement(i, j), a(order[i], order[j]));
  // A symmetric permutation keeps the determinant, and the cache stays valid.
  EXPECT_TRUE(m->IsDeterminantValid());
  EXPECT_EQ(m->GetDeterminant(), determinant);

  m->MakeSymmetric();
  EXPECT_TRUE(m->IsSymmetric());
  EXPECT_EQ(m->GetElement(0, 1), (a(3, 0) + a(0, 3)) / 2);
  m->SetElement(0, 1, m->GetElement(0, 1) + 1e-15);
  EXPECT_FALSE(m->IsSymmetric());
}

TEST(SqrMatrixDeathTest, EigenvaluesOfANonNumberStopAfterThirtyIterations) {
  Eigen::MatrixXd a = Eigen::MatrixXd::Identity(3, 3);
  a(0, 1) = a(1, 0) = std::nan("");
  EXPECT_DEATH(FromEigen(a)->GetEigenValuesSym(), "^Too many iterations in tqli\n$");
}
