// The subtract-with-borrow generator with a Weyl sequence that serves the seed searcher.
#include "pipeline/marsaglia.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "pipeline/gamma_sampler.h"

namespace {
// This generator's code checks its preconditions as assertions, kept in every build type.
void Require(bool holds, const char* what) {
  if (holds) return;
  std::cerr << "tRandomGenerator assertion failed: " << what << std::endl;
  abort();
}
}  // namespace

tRandomGenerator _RandomProbGenerator(0);

tMarsagliaGenerator::tMarsagliaGenerator(unsigned ask) {
  unsigned seed = 1;
  if (ask) {
    std::cout << "Enter random number seed, 0<seed<65000." << std::endl;
    if (!(std::cin >> seed)) seed = 1;
  }
  Initialize(seed);
}

void tMarsagliaGenerator::Initialize(unsigned seed) {
  srand(seed);
  for (int k = 1; k <= kTableSize; k++) {
    uint32_t t = static_cast<uint32_t>(rand());
    t = (t << 15) + static_cast<uint32_t>(rand());
    t = 4 * t + static_cast<uint32_t>(rand() % 4);
    if (t > kModulus) t = kModulus;
    iTable[k] = t;
  }
  iTable[0] = 0;
  iI = 44;
  iJ = 23;
  iCarry = 1;
  iWeyl = static_cast<uint32_t>(rand());
  for (int k = 0; k < 99999; k++) Next();
}

uint32_t tMarsagliaGenerator::Next() {
  if (--iI == 0) iI = kTableSize;
  if (--iJ == 0) iJ = kTableSize;
  uint32_t s = iCarry + iTable[iI];
  if (iTable[iJ] >= s) {
    iTable[iI] = iTable[iJ] - s;
    iCarry = 0;
  } else {
    iTable[iI] = iTable[iJ] - s + kModulus;
    iCarry = 1;
  }
  iWeyl -= 362436069u;
  return iTable[iI] - iWeyl;
}

double tRandomGenerator::SampleNormal() {
  double u1 = SampleUniform();
  double u2 = SampleUniform();
  // A zero would give an infinite draw; it comes once in 2^32 and is drawn again.
  while (u2 == 0.0) u2 = SampleUniform();
  return std::cos(2.0 * M_PI * u1) * std::sqrt(-2.0 * std::log(u2));
}

double tRandomGenerator::SampleGamma(double alpha) {
  Require(alpha > 0.0, "alpha > 0");
  return DrawGamma(alpha, [this] { return SampleUniform(); });
}

void tRandomGenerator::SampleDirichlet(int n, const double* mean, double scale, double* out) {
  double sum = 0.0;
  for (int i = 0; i < n; i++) sum += out[i] = SampleGamma(scale * mean[i]);
  for (int i = 0; i < n; i++) out[i] /= sum;
}

void tRandomGenerator::SampleDirichlet(int n, const float* mean, float scale, float* out) {
  float sum = 0.0f;
  for (int i = 0; i < n; i++) sum += out[i] = static_cast<float>(SampleGamma(scale * mean[i]));
  for (int i = 0; i < n; i++) out[i] /= sum;
}

int tRandomGenerator::SampleMultinomial(int n, const double* p) {
  double u = SampleUniform();
  for (int k = 0; k < n; k++) {
    u -= p[k];
    if (u <= 0.0) return k;
  }
  return n - 1;
}

int tRandomGenerator::SampleLogMultinomial(int n, double* logp) {
  if (n < 1) return n - 1;
  double max = logp[0];
  for (int k = 1; k < n; k++)
    if (logp[k] > max) max = logp[k];
  double sum = 0.0;
  for (int k = 0; k < n; k++) sum += logp[k] = std::exp(logp[k] - max);
  for (int k = 0; k < n; k++) logp[k] /= sum;
  return SampleMultinomial(n, logp);
}

Vector_tmpl<int> tRandomGenerator::sampleGroup(int size, int groupSize) {
  Require(groupSize <= size, "groupSize <= size");
  Vector_tmpl<int> group(groupSize > 0 ? groupSize : 1, -1);
  if (groupSize == size) {
    for (int i = 0; i < size; i++) group.AddLast(i);
    return group;
  }
  Vector_tmpl<int> pool(size > 0 ? size : 1, -1);
  for (int i = 0; i < size; i++) pool.AddLast(i);
  for (int g = 0; g < groupSize; g++) {
    int left = pool.GetSize();
    int k = static_cast<int>(SampleUniform() * left);
    if (k >= left) k = left - 1;  // a draw of exactly 1.0
    group.AddLast(pool[k]);
    pool.Swap(k, left - 1);
    pool.RemoveLastElement();
  }
  group.SortWithOperator();
  return group;
}
