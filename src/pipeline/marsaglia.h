// The subtract-with-borrow generator with a Weyl sequence that serves the seed searcher.
#ifndef VORN_PIPELINE_MARSAGLIA_H
#define VORN_PIPELINE_MARSAGLIA_H

#include <cstdint>

#include "pipeline/vector.h"

class tMarsagliaGenerator {
 public:
  // Seeds with 1; with ask non-zero the seed is first asked for on the standard streams.
  explicit tMarsagliaGenerator(unsigned ask = 0);
  virtual ~tMarsagliaGenerator() = default;

  // Fills the table from the C library's rand after srand(seed) and discards 99999 draws.
  void Initialize(unsigned seed);
  // A draw below 2^32.
  uint32_t Next();
  // Next() scaled to [0, scale].
  double RandomDouble(double scale) { return Next() / 4294967295.0 * scale; }

 private:
  static constexpr int kTableSize = 43;
  static constexpr uint32_t kModulus = 4294967291u;

  uint32_t iTable[kTableSize + 1];  // used at indices 1 to 43
  uint32_t iWeyl;
  int iI;
  int iJ;
  uint32_t iCarry;
};

class tRandomGenerator : public tMarsagliaGenerator {
 public:
  explicit tRandomGenerator(unsigned ask = 0) : tMarsagliaGenerator(ask) {}

  double SampleUniform() { return RandomDouble(1.0); }
  double SampleNormal();
  // Gamma(alpha, 1); alpha must be positive.
  double SampleGamma(double alpha);
  // out[i] from Gamma(scale * mean[i]), normalised to sum 1.
  void SampleDirichlet(int n, const double* mean, double scale, double* out);
  void SampleDirichlet(int n, const float* mean, float scale, float* out);
  // The index at which a uniform draw, less p[0], p[1], ... in turn, is no longer positive; n - 1
  // when it stays positive.
  int SampleMultinomial(int n, const double* p);
  // As SampleMultinomial on exp(logp - max) normalised, which it leaves in logp.
  int SampleLogMultinomial(int n, double* logp);
  // groupSize distinct numbers below size, ascending.
  Vector_tmpl<int> sampleGroup(int size, int groupSize);
};

// The generator shared by the seed searcher and its weight updates.
extern tRandomGenerator _RandomProbGenerator;

#endif
