// Matrix hot paths beside Eigen doing the same work: row moments with missing cells, inverses, determinants.
#include <benchmark/benchmark.h>

#include <cfloat>
#include <eigen3/Eigen/Dense>

#include "pipeline/random.h"
#include "prob/matrix.h"
#include "prob/sqr_matrix.h"

namespace {

constexpr double kMissing = -DBL_MAX;
constexpr int kRows = 20000;
constexpr int kCols = 1000;
constexpr int kSquare = 300;

using RowMajor = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

// Expression-like data: normal cells, 5% of them missing.
const Matrix_sptr& Expression() {
  static Matrix_sptr m = [] {
    Random_cl random(1);
    Matrix_sptr data = new Matrix_cl(kRows, kCols);
    for (int r = 0; r < kRows; r++)
      for (int c = 0; c < kCols; c++) data->GetRow(r)[c] = random.SampleUniform() < 0.05 ? kMissing : random.SampleNormal();
    return data;
  }();
  return m;
}

const RowMajor& ExpressionEigen() {
  static RowMajor e = [] {
    RowMajor data(kRows, kCols);
    for (int r = 0; r < kRows; r++)
      for (int c = 0; c < kCols; c++) data(r, c) = Expression()->GetElement(r, c);
    return data;
  }();
  return e;
}

// Well conditioned and symmetric positive definite, so that every inverse applies.
const Eigen::MatrixXd& Square() {
  static Eigen::MatrixXd a = [] {
    Random_cl random(2);
    Eigen::MatrixXd b(kSquare, kSquare);
    for (int i = 0; i < kSquare; i++)
      for (int j = 0; j < kSquare; j++) b(i, j) = random.SampleNormal();
    return Eigen::MatrixXd(b * b.transpose() + kSquare * Eigen::MatrixXd::Identity(kSquare, kSquare));
  }();
  return a;
}

SqrMatrix_sptr SquareMatrix() {
  SqrMatrix_sptr m = new SqrMatrix_cl(kSquare);
  for (int i = 0; i < kSquare; i++)
    for (int j = 0; j < kSquare; j++) m->GetRow(i)[j] = Square()(i, j);
  return m;
}

void BM_RowMoments(benchmark::State& state) {
  const Matrix_sptr& m = Expression();
  Vector_tmpl<int>* row = new Vector_tmpl<int>(1);
  row->AddLast(0);
  MatrixFilter_cl filter(row, 1, nullptr, 0);
  for (auto _ : state) {
    double total = 0.0;
    for (int r = 0; r < kRows; r++) {
      (*row)[0] = r;
      double n, sum, sumSquares;
      m->ComputeMoments(&filter, kMissing, n, sum, sumSquares);
      double mean = sum / n;
      total += mean + (sumSquares / n - mean * mean);
    }
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(state.iterations() * kRows * kCols);
}
BENCHMARK(BM_RowMoments)->Unit(benchmark::kMillisecond);

void BM_RowMomentsEigen(benchmark::State& state) {
  const RowMajor& e = ExpressionEigen();
  for (auto _ : state) {
    double total = 0.0;
    for (int r = 0; r < kRows; r++) {
      auto row = e.row(r).array();
      auto present = row != kMissing;
      double n = present.count();
      double mean = present.select(row, 0.0).sum() / n;
      total += mean + (present.select(row.square(), 0.0).sum() / n - mean * mean);
    }
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(state.iterations() * kRows * kCols);
}
BENCHMARK(BM_RowMomentsEigen)->Unit(benchmark::kMillisecond);

// The z-transform of every row: moments, then each present cell rewritten. Repeating it on the
// same matrix keeps the values finite.
void BM_ZeroTransformRows(benchmark::State& state) {
  Matrix_sptr m = Expression()->Copy();
  for (auto _ : state) {
    for (int r = 0; r < kRows; r++) m->ZeroTransformRow(r, kMissing);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kRows * kCols);
}
BENCHMARK(BM_ZeroTransformRows)->Unit(benchmark::kMillisecond);

void BM_InverseGaussJordan(benchmark::State& state) {
  SqrMatrix_sptr m = SquareMatrix();
  for (auto _ : state) benchmark::DoNotOptimize(m->GetInverse().Get());
}
BENCHMARK(BM_InverseGaussJordan)->Unit(benchmark::kMillisecond);

void BM_InverseLU(benchmark::State& state) {
  SqrMatrix_sptr m = SquareMatrix();
  for (auto _ : state) benchmark::DoNotOptimize(m->GetInverseLU().Get());
}
BENCHMARK(BM_InverseLU)->Unit(benchmark::kMillisecond);

void BM_InverseCholesky(benchmark::State& state) {
  SqrMatrix_sptr m = SquareMatrix();
  for (auto _ : state) benchmark::DoNotOptimize(m->GetInverseCholesky().Get());
}
BENCHMARK(BM_InverseCholesky)->Unit(benchmark::kMillisecond);

void BM_InverseEigen(benchmark::State& state) {
  const Eigen::MatrixXd& a = Square();
  for (auto _ : state) {
    Eigen::MatrixXd inverse = a.partialPivLu().inverse();
    benchmark::DoNotOptimize(inverse.data());
  }
}
BENCHMARK(BM_InverseEigen)->Unit(benchmark::kMillisecond);

void BM_InverseCholeskyEigen(benchmark::State& state) {
  const Eigen::MatrixXd& a = Square();
  for (auto _ : state) {
    Eigen::MatrixXd inverse = a.llt().solve(Eigen::MatrixXd::Identity(kSquare, kSquare));
    benchmark::DoNotOptimize(inverse.data());
  }
}
BENCHMARK(BM_InverseCholeskyEigen)->Unit(benchmark::kMillisecond);

// A write through the setter drops the cached value, so every round eliminates afresh.
void BM_Determinant(benchmark::State& state) {
  SqrMatrix_sptr m = SquareMatrix();
  for (auto _ : state) {
    m->SetElement(0, 0, m->GetElement(0, 0));
    benchmark::DoNotOptimize(m->GetDeterminant());
  }
}
BENCHMARK(BM_Determinant)->Unit(benchmark::kMillisecond);

void BM_DeterminantEigen(benchmark::State& state) {
  const Eigen::MatrixXd& a = Square();
  for (auto _ : state) benchmark::DoNotOptimize(a.partialPivLu().determinant());
}
BENCHMARK(BM_DeterminantEigen)->Unit(benchmark::kMillisecond);

void BM_EigenValuesSym(benchmark::State& state) {
  SqrMatrix_sptr m = SquareMatrix();
  for (auto _ : state) benchmark::DoNotOptimize(m->GetEigenValuesSym().Get());
}
BENCHMARK(BM_EigenValuesSym)->Unit(benchmark::kMillisecond);

void BM_EigenValuesSymEigen(benchmark::State& state) {
  const Eigen::MatrixXd& a = Square();
  for (auto _ : state) {
    Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver(a, Eigen::EigenvaluesOnly);
    benchmark::DoNotOptimize(solver.eigenvalues().data());
  }
}
BENCHMARK(BM_EigenValuesSymEigen)->Unit(benchmark::kMillisecond);

}  // namespace
