// Variables and scopes for the statistics, prior and estimator tests.
#ifndef VORN_TESTS_PROB_STATS_TEST_HELPERS_H
#define VORN_TESTS_PROB_STATS_TEST_HELPERS_H

#include <initializer_list>

#include "prob/vars.h"

inline SingleRv_sptr DiscVar(const char* name, int size) {
  return new SingleRv_cl(Name_sptr(name), DomainFactory_cl::CreateIntegerDomain(0, size));
}
inline SingleRv_sptr RealVar(const char* name) { return new SingleRv_cl(Name_sptr(name), new RealDomain_cl()); }

inline RvVector_sptr Scope(std::initializer_list<SingleRv_sptr> vars) {
  RvVector_sptr scope = new RvVector_cl();
  for (const SingleRv_sptr& v : vars) scope->AddLast(v);
  return scope;
}

#endif
