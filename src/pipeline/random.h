// The 48-bit generator behind every random draw outside the seed searcher.
#ifndef VORN_PIPELINE_RANDOM_H
#define VORN_PIPELINE_RANDOM_H

#include <cstdint>

class Random_cl {
 public:
  // A seed below 1 is replaced by a process-wide counter, so unseeded generators differ.
  explicit Random_cl(long seed = 0);

  void Reset(long seed);
  // Uniform on [0, 1), straight from erand48.
  double SampleUniform() { return erand48(iWords); }
  double SampleNormal();
  double SampleBeta(double a, double b);
  double SampleGamma(double shape, double rate);
  void SampleDirichlet(const double* alpha, int n, double* out);
  long GetSeed() const { return iSeed; }

  // The generator shared by all code that has no private one.
  static Random_cl iGlobalRandomizer;
  // Seeds the shared generator from the clock, as the program does at start.
  static void SeedGlobalFromClock();
  // The process-wide seed that shuffling objects set from the clock and measures seed themselves from.
  static void SetGlobalRandSeed(long seed) { iGlobalRandSeed = seed; }
  static long GetGlobalRandSeed() { return iGlobalRandSeed; }

 private:
  struct Fixed {};
  Random_cl(Fixed, long seed) { Reset(seed); }
  static double erand48(unsigned short words[3]);

  static inline long iGlobalRandSeed = 1;

  long iSeed = 1;
  unsigned short iWords[3] = {0, 0, 0};
};

// Current time in nanoseconds at microsecond resolution.
int64_t GetLinuxTime();

#endif
