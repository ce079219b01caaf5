// Sparse tables keyed by long indices.
#include "prob/sparse_factor.h"

#include <algorithm>
#include <iostream>

#include "prob/factor.h"

SparseFactor_sptr Conv2SparseFactor(const Measure_sptr& m) { return Conv2X<SparseFactor_sptr>(m, "SparseFactor_cl"); }

SparseFactor_cl::SparseFactor_cl(RvVector_sptr scope, int sort) : iRVs(sort ? SortById(scope) : scope) {}

double SparseFactor_cl::Normalize(double z) {
  if (z <= 0.0) std::cerr << "Are you sure ? (abort, fail, or quit ?)" << std::endl;
  double sum = 0.0;
  for (const auto& cell : iCells) sum += cell.second;
  if (sum == 0.0) return 0.0;
  double multiplier = z / sum;
  for (auto& cell : iCells) cell.second *= multiplier;
  return 1.0 / multiplier;
}

void SparseFactor_cl::Initialize(double value) {
  for (auto& cell : iCells) cell.second = value;
}

double SparseFactor_cl::GetMinValue() const {
  if (iCells.empty()) return 0.0;
  double least = iCells.begin()->second;
  for (const auto& cell : iCells) least = std::min(least, cell.second);
  return least;
}

double SparseFactor_cl::GetMaxValue() const {
  if (iCells.empty()) return 0.0;
  double most = iCells.begin()->second;
  for (const auto& cell : iCells) most = std::max(most, cell.second);
  return most;
}

void SparseFactor_cl::WriteFile(std::ostream& out) const {
  out << "SparseFactor_cl: " << VarsVector_sptr(iRVs) << std::endl;
  InstVector_sptr inst = new InstVector_cl(iRVs);
  for (const auto& cell : iCells) {
    inst->SetLongIndex(cell.first);
    out << "line=" << cell.first << " " << VarsVector_sptr(inst) << " val=" << cell.second << std::endl;
  }
}
