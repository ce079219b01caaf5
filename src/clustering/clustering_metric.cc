// How alike two rows or merged groups of rows are, and how to merge them: the clustering metrics.
#include "clustering/clustering_metric.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "data/data_file.h"
#include "pipeline/not_built.h"

Vector_tmpl<double>* ClusteringMetric_cl::iDimensionWeights = nullptr;
PropertyTreeIter_cl* ClusteringMetric_cl::iProperties = nullptr;
VornRun_cl* ClusteringMetric_cl::iRun = nullptr;

namespace {
// The sum of a[i] * b[i] in four interleaved partial sums: the loop vectorises and its rounding
// does not depend on the compiler's choices.
double Dot(const double* a, const double* b, int n) {
  double s0 = 0.0, s1 = 0.0, s2 = 0.0, s3 = 0.0;
  int i = 0;
  for (; i + 4 <= n; i += 4) {
    s0 += a[i] * b[i];
    s1 += a[i + 1] * b[i + 1];
    s2 += a[i + 2] * b[i + 2];
    s3 += a[i + 3] * b[i + 3];
  }
  for (; i < n; i++) s0 += a[i] * b[i];
  return (s0 + s1) + (s2 + s3);
}

const ClusteringMetricProfile_cl* AsProfile(const ClusteringMetric_cl* metric) {
  return static_cast<const ClusteringMetricProfile_cl*>(metric);
}
}  // namespace

ClusteringMetric_cl::ClusteringMetric_cl() : iCost(kMissingReal) {}

int ClusteringMetric_cl::IHaveHigherPriority(const HeapEntry_cl* other) const {
  double theirs = static_cast<const ClusteringMetric_cl*>(other)->iCost;
  if (iCost == kMissingReal) return 0;
  if (theirs == kMissingReal) return 1;
  return iCost < theirs;
}

void ClusteringMetric_cl::ComputeCosts(ClusteringMetric_cl* a, ClusteringMetric_cl* const* others, int n,
                                       double* costs) {
  for (int i = 0; i < n; i++) {
    ComputeCost(a, others[i]);
    costs[i] = iCost;
  }
}

void ClusteringMetric_cl::Init(Matrix_sptr matrix, Vector_tmpl<int>* rows) {
  if (rows->GetSize() == 1) {
    Init(matrix, (*rows)[0]);
    return;
  }
  Vector_tmpl<ClusteringMetric_cl*> metrics(rows->GetSize(), nullptr);
  for (int i = 0; i < rows->GetSize(); i++) {
    ClusteringMetric_cl* metric = GetEmpty();
    metric->Init(matrix, (*rows)[i]);
    metrics.AddLast(metric);
  }
  Combine(&metrics);
  metrics.DeleteAll();
}

void ClusteringMetric_cl::Set(const ClusteringMetric_cl* other) {
  iCost = other->iCost;
  iValidDimensions = other->iValidDimensions;
}

void ClusteringMetric_cl::Combine(Vector_tmpl<ClusteringMetric_cl*>* metrics) {
  if (metrics->GetSize() == 0) return;
  Set((*metrics)[0]);
  ClusteringMetric_cl* tmp = ClusteringMetricFactory_cl::GetTmpMetric(GetName());
  for (int i = 1; i < metrics->GetSize(); i++) {
    tmp->Set(this);
    Combine(tmp, (*metrics)[i]);
  }
}

void ClusteringMetric_cl::ComputeCost(Vector_tmpl<ClusteringMetric_cl*>* metrics) {
  int n = metrics->GetSize();
  if (n == 0) return;
  if (n == 1) {
    iCost = (*metrics)[0]->iCost;
    iValidDimensions = (*metrics)[0]->iValidDimensions;
    return;
  }
  if (n == 2) {
    ComputeCost((*metrics)[0], (*metrics)[1]);
    return;
  }
  // The scratch metric of the factory serves Combine, so the head of the list gets its own.
  ClusteringMetric_cl* head = GetEmpty();
  Vector_tmpl<ClusteringMetric_cl*> first(n, nullptr);
  for (int i = 0; i + 1 < n; i++) first.AddLast((*metrics)[i]);
  head->Combine(&first);
  ComputeCost(head, (*metrics)[n - 1]);
  delete head;
}

void ClusteringMetric_cl::Print(std::ostream& out) const { out << iCost; }

void ClusteringMetric_cl::SetDimensionWeights(Vector_tmpl<double>* weights) { iDimensionWeights = weights; }

double ClusteringMetric_cl::GetDimensionWeight(int i) {
  return iDimensionWeights ? (*iDimensionWeights)[i] : kMissingReal;
}

void ClusteringMetric_cl::SetProperties(PropertyTreeIter_cl* properties) {
  delete iProperties;
  iProperties = properties;
}

double ClusteringMetric_cl::TotalWeight(int d) {
  if (!iDimensionWeights) return d;
  double total = 0.0;
  for (int i = 0; i < d; i++) total += (*iDimensionWeights)[i];
  return total;
}

// ---------------------------------------------------------------- profiles

void ClusteringMetricProfile_cl::Allocate(int d) {
  if (!iProfile || iDims != d) {
    delete[] iProfile;
    iProfile = new double[d > 0 ? d : 1];
  }
  iDims = d;
}

void ClusteringMetricProfile_cl::Summarise() {
  iNumPresent = 0;
  iSum = 0.0;
  iSumSquares = 0.0;
  for (int i = 0; i < iDims; i++) {
    double x = iProfile[i];
    if (x == kMissingReal) continue;
    double w = Weight(i);
    iNumPresent++;
    iSum += w * x;
    iSumSquares += w * x * x;
  }
}

void ClusteringMetricProfile_cl::Init(Matrix_sptr matrix, int row) {
  Allocate(matrix->GetNumCols());
  memcpy(iProfile, matrix->GetRow(row), sizeof(double) * iDims);
  iCount = 1.0;
  iCost = kMissingReal;
  iValidDimensions = 0;
  Summarise();
}

void ClusteringMetricProfile_cl::Set(const ClusteringMetric_cl* other) {
  ClusteringMetric_cl::Set(other);
  const ClusteringMetricProfile_cl* from = AsProfile(other);
  if (from == this) return;
  if (!from->iProfile) {
    CleanUp();
  } else {
    Allocate(from->iDims);
    memcpy(iProfile, from->iProfile, sizeof(double) * iDims);
  }
  iCount = from->iCount;
  iNumPresent = from->iNumPresent;
  iSum = from->iSum;
  iSumSquares = from->iSumSquares;
}

void ClusteringMetricProfile_cl::Combine(ClusteringMetric_cl* a, ClusteringMetric_cl* b) {
  const ClusteringMetricProfile_cl* x = AsProfile(a);
  const ClusteringMetricProfile_cl* y = AsProfile(b);
  int d = x->iDims;
  // a or b may be this metric itself, so the result is formed apart and copied in.
  double* merged = new double[d > 0 ? d : 1];
  int valid = 0;
  for (int i = 0; i < d; i++) {
    double u = x->iProfile[i], v = y->iProfile[i];
    if (u != kMissingReal && v != kMissingReal) {
      merged[i] = (u * x->iCount + v * y->iCount) / (x->iCount + y->iCount);
      valid++;
    } else {
      merged[i] = u != kMissingReal ? u : v;
    }
  }
  double count = x->iCount + y->iCount;
  delete[] iProfile;
  iProfile = merged;
  iDims = d;
  iCount = count;
  iValidDimensions = valid;
  Summarise();
}

void ClusteringMetricProfile_cl::CleanUp() {
  delete[] iProfile;
  iProfile = nullptr;
  iDims = 0;
  iCount = 0.0;
  iNumPresent = 0;
  iSum = iSumSquares = 0.0;
}

// ---------------------------------------------------------------- Euclidean

ClusteringMetric_cl* ClusteringMetricEuclidean_cl::Clone() const {
  ClusteringMetricEuclidean_cl* copy = new ClusteringMetricEuclidean_cl;
  copy->Set(this);
  return copy;
}

namespace {
// The distance of one pair over the dimensions both observed, scaled up for the absent ones;
// *common counts those dimensions, which are marked in observed when it is given.
double PairDistance(const ClusteringMetricProfile_cl* x, const ClusteringMetricProfile_cl* y, const double* weights,
                    char* observed, int* common) {
  int d = x->GetNumDimensions();
  const double* a = x->GetProfile();
  const double* b = y->GetProfile();
  double s = 0.0;
  int c = 0;
  for (int k = 0; k < d; k++) {
    if (a[k] == kMissingReal || b[k] == kMissingReal) continue;
    double diff = a[k] - b[k];
    s += (weights ? weights[k] : 1.0) * diff * diff;
    c++;
    if (observed) observed[k] = 1;
  }
  *common = c;
  return c >= 1 ? sqrt(static_cast<double>(d) / (d - c + 1) * s) : 0.0;
}
}  // namespace

void ClusteringMetricEuclidean_cl::SetPairCost(double total, int contributing, int m, double count, int valid) {
  iCount = count;
  iValidDimensions = valid;
  // Objects that share no dimension at all are not comparable, whatever their number.
  if (m > 1 && contributing > 0) iCost = 2.0 * total / (static_cast<double>(m) * (m - 1));
  else if (m == 1) iCost = total;
  else iCost = kMissingReal;
}

void ClusteringMetricEuclidean_cl::ComputeCost(ClusteringMetric_cl* a, ClusteringMetric_cl* b) {
  const ClusteringMetricProfile_cl* x = AsProfile(a);
  const ClusteringMetricProfile_cl* y = AsProfile(b);
  const double* weights = iDimensionWeights ? iDimensionWeights->GetData() : nullptr;
  int common;
  double distance = PairDistance(x, y, weights, nullptr, &common);
  int m = (x->GetNumPresent() > 0) + (y->GetNumPresent() > 0);
  double count = (x->GetNumPresent() > 0 ? x->GetCount() : 0.0) + (y->GetNumPresent() > 0 ? y->GetCount() : 0.0);
  SetPairCost(distance, common > 0, m, count, common);
}

void ClusteringMetricEuclidean_cl::ComputeCost(Vector_tmpl<ClusteringMetric_cl*>* metrics) {
  int n = metrics->GetSize();
  if (n == 0) return;
  if (n == 1) {
    Set((*metrics)[0]);
    return;
  }
  int d = AsProfile((*metrics)[0])->GetNumDimensions();
  const double* weights = iDimensionWeights ? iDimensionWeights->GetData() : nullptr;
  // Which dimensions some pair observed; scratch of the call only.
  char* observed = new char[d > 0 ? d : 1]();
  double total = 0.0;
  int contributing = 0;
  for (int i = 0; i < n; i++)
    for (int j = i + 1; j < n; j++) {
      int common;
      total += PairDistance(AsProfile((*metrics)[i]), AsProfile((*metrics)[j]), weights, observed, &common);
      if (common > 0) contributing++;
    }
  int m = 0;
  double count = 0.0;
  for (int i = 0; i < n; i++) {
    const ClusteringMetricProfile_cl* x = AsProfile((*metrics)[i]);
    if (x->GetNumPresent() == 0) continue;
    m++;
    count += x->GetCount();
  }
  int valid = 0;
  for (int k = 0; k < d; k++) valid += observed[k];
  delete[] observed;
  SetPairCost(total, contributing, m, count, valid);
}

void ClusteringMetricEuclidean_cl::Combine(Vector_tmpl<ClusteringMetric_cl*>* metrics) {
  int n = metrics->GetSize();
  if (n == 0) return;
  int d = AsProfile((*metrics)[0])->GetNumDimensions();
  double* merged = new double[d > 0 ? d : 1];
  for (int k = 0; k < d; k++) {
    double sum = 0.0, weight = 0.0;
    for (int i = 0; i < n; i++) {
      const ClusteringMetricProfile_cl* x = AsProfile((*metrics)[i]);
      if (x->GetProfile()[k] == kMissingReal) continue;
      sum += x->GetProfile()[k] * x->GetCount();
      weight += x->GetCount();
    }
    merged[k] = weight > 0.0 ? sum / weight : kMissingReal;
  }
  double count = 0.0;
  for (int i = 0; i < n; i++) {
    const ClusteringMetricProfile_cl* x = AsProfile((*metrics)[i]);
    if (x->GetNumPresent() > 0) count += x->GetCount();
  }
  delete[] iProfile;
  iProfile = merged;
  iDims = d;
  iCount = count;
  Summarise();
}

// ---------------------------------------------------------------- Pearson

int ClusteringMetricPearson_cl::IHaveHigherPriority(const HeapEntry_cl* other) const {
  double theirs = static_cast<const ClusteringMetric_cl*>(other)->GetCost();
  if (iCost == kMissingReal) return 0;
  if (theirs == kMissingReal) return 1;
  return iCost > theirs;
}

ClusteringMetric_cl* ClusteringMetricPearson_cl::Clone() const {
  ClusteringMetricPearson_cl* copy = new ClusteringMetricPearson_cl(iIsCentered);
  copy->Set(this);
  copy->iMean = iMean;
  copy->iStdDev = iStdDev;
  return copy;
}

void ClusteringMetricPearson_cl::ComputeCost(ClusteringMetric_cl* a, ClusteringMetric_cl* b) {
  const ClusteringMetricPearson_cl* x = static_cast<const ClusteringMetricPearson_cl*>(a);
  const ClusteringMetricPearson_cl* y = static_cast<const ClusteringMetricPearson_cl*>(b);
  int d = x->iDims;
  double sx, sy, sxx, syy, sxy, sw;
  int valid;
  if (x->iNumPresent == d && y->iNumPresent == d && !iDimensionWeights) {
    // Both complete: the single sums are cached, only the cross term is left.
    sx = x->iSum;
    sy = y->iSum;
    sxx = x->iSumSquares;
    syy = y->iSumSquares;
    sxy = Dot(x->iProfile, y->iProfile, d);
    sw = d;
    valid = d;
  } else {
    sx = sy = sxx = syy = sxy = sw = 0.0;
    valid = 0;
    for (int i = 0; i < d; i++) {
      double u = x->iProfile[i], v = y->iProfile[i];
      if (u == kMissingReal || v == kMissingReal) continue;
      double w = Weight(i);
      sx += w * u;
      sy += w * v;
      sxx += w * u * u;
      syy += w * v * v;
      sxy += w * u * v;
      sw += w;
      valid++;
    }
  }
  SetCostFromSums(d, sx, sy, sxx, syy, sxy, sw, valid);
}

void ClusteringMetricPearson_cl::SetCostFromSums(int d, double sx, double sy, double sxx, double syy, double sxy,
                                                 double sw, int valid) {
  iValidDimensions = valid;
  if (!iIsCentered) {
    iCost = sw > 0.0 ? sxy / sw : kMissingReal;
    return;
  }
  // W is the weight of all dimensions, not only of those both sides observed.
  double total = TotalWeight(d);
  double spread = (total * sxx - sx * sx) * (total * syy - sy * sy);
  if (total <= 0.0 || !(spread > 0.0)) {
    iCost = kMissingReal;
    return;
  }
  iCost = (total * sxy - sx * sy) / sqrt(spread);
}

void ClusteringMetricPearson_cl::ComputeCosts(ClusteringMetric_cl* a, ClusteringMetric_cl* const* others, int n,
                                              double* costs) {
  const ClusteringMetricPearson_cl* x = static_cast<const ClusteringMetricPearson_cl*>(a);
  int d = x->iDims;
  int i = 0;
  if (x->iNumPresent == d && !iDimensionWeights) {
    const double* u = x->iProfile;
    for (; i + 4 <= n; i += 4) {
      const ClusteringMetricPearson_cl* y[4];
      int complete = 1;
      for (int k = 0; k < 4; k++) {
        y[k] = static_cast<const ClusteringMetricPearson_cl*>(others[i + k]);
        complete &= y[k]->iNumPresent == d && y[k]->iDims == d;
      }
      if (!complete) {
        for (int k = 0; k < 4; k++) {
          ComputeCost(a, others[i + k]);
          costs[i + k] = iCost;
        }
        continue;
      }
      // Each pair keeps the four partial sums of Dot, so its rounding is that of ComputeCost;
      // sixteen independent chains keep the adder busy where one pair alone would wait on it.
      double s[4][4] = {};
      const double* v0 = y[0]->iProfile;
      const double* v1 = y[1]->iProfile;
      const double* v2 = y[2]->iProfile;
      const double* v3 = y[3]->iProfile;
      int j = 0;
      for (; j + 4 <= d; j += 4)
        for (int t = 0; t < 4; t++) {
          s[0][t] += u[j + t] * v0[j + t];
          s[1][t] += u[j + t] * v1[j + t];
          s[2][t] += u[j + t] * v2[j + t];
          s[3][t] += u[j + t] * v3[j + t];
        }
      for (; j < d; j++) {
        s[0][0] += u[j] * v0[j];
        s[1][0] += u[j] * v1[j];
        s[2][0] += u[j] * v2[j];
        s[3][0] += u[j] * v3[j];
      }
      for (int k = 0; k < 4; k++) {
        double sxy = (s[k][0] + s[k][1]) + (s[k][2] + s[k][3]);
        SetCostFromSums(d, x->iSum, y[k]->iSum, x->iSumSquares, y[k]->iSumSquares, sxy, d, d);
        costs[i + k] = iCost;
      }
    }
  }
  for (; i < n; i++) {
    ComputeCost(a, others[i]);
    costs[i] = iCost;
  }
}

void ClusteringMetricPearson_cl::ComputeStats() {
  double sw = 0.0;
  for (int i = 0; i < iDims; i++)
    if (iProfile[i] != kMissingReal) sw += Weight(i);
  iMean = iStdDev = kMissingReal;
  if (sw <= 0.0) return;
  double mean = iSum / sw;
  double variance = iSumSquares / sw - mean * mean;
  if (!(variance > 0.0)) return;
  iMean = mean;
  iStdDev = sqrt(variance);
}

void ClusteringMetricPearson_cl::Print(std::ostream& out) const {
  if (iCost == kMissingReal) out << "$NaN$";
  else out << iCost;
  out << "," << iCount << "," << iMean << "," << iStdDev;
}

// ---------------------------------------------------------------- factory

ClusteringMetric_cl* ClusteringMetricFactory_cl::CreateMetric(Name_sptr name) {
  const char* text = name.IsNull() ? "" : name->GetText();
  if (strcmp(text, "Euclidean") == 0) return new ClusteringMetricEuclidean_cl;
  if (strcmp(text, "Pearson") == 0) return new ClusteringMetricPearson_cl(1);
  if (strcmp(text, "UncenteredPearson") == 0) return new ClusteringMetricPearson_cl(0);
  // Both need the learners and priors of the module network.
  if (strcmp(text, "PCluster") == 0 || strcmp(text, "Structure") == 0)
    StopNotBuilt((std::string("Clustering metric ") + text + " is not built yet").c_str());
  std::cerr << "Unrecognized metric " << text << std::endl;
  abort();
}

ClusteringMetric_cl* ClusteringMetricFactory_cl::CreateMetric(Name_sptr name, Matrix_sptr matrix, int row) {
  ClusteringMetric_cl* metric = CreateMetric(name);
  metric->Init(matrix, row);
  return metric;
}

ClusteringMetric_cl* ClusteringMetricFactory_cl::GetTmpMetric(const char* name) {
  // Lives for the process, like the other statics of the metrics.
  static ClusteringMetric_cl* tmp = nullptr;
  if (!tmp || strcmp(tmp->GetName(), name) != 0) {
    delete tmp;
    tmp = CreateMetric(Name_sptr(name));
  }
  return tmp;
}
