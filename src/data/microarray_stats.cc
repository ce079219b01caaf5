// Statistics over the rows or columns of a microarray: scores of object pairs under a clustering metric.
#include "data/microarray_stats.h"

#include <iostream>

#include "data/data_file.h"
#include "data/microarray.h"

const char* STATS_ATTRIBUTES_TYPE_STR[STATS_ATTRIBUTES_NUM] = {"ExperimentAttributes", "GeneAttributes"};

int ScoredPair_cl::IHaveHigherPriority(const HeapEntry_cl* other) const {
  const ScoredPair_cl* theirs = static_cast<const ScoredPair_cl*>(other);
  if (!iMetric) return 0;
  if (!theirs->iMetric) return 1;
  return iMetric->IHaveHigherPriority(theirs->iMetric);
}

void ScoredPair_cl::Write(std::ostream& out) const {
  out << iFirst << "\t" << iSecond << "\t" << iMetric->GetCost() << "\t" << iMetric->GetValidDimensions() << "\n";
}

namespace {
// Scores one pair and sends it on if it passes: to the output, or into the heap of the best k.
class PairScorer_cl {
 public:
  PairScorer_cl(Name_sptr metric, Matrix_sptr matrix, const Vector_tmpl<Name_sptr>& names, const PairFilter_cl& filter,
                std::ostream& out)
      : iMatrix(matrix), iNames(names), iFilter(filter), iOut(out), iKeep(filter.iTopK > 0 ? filter.iTopK : 1) {
    iFirst = ClusteringMetricFactory_cl::CreateMetric(metric);
    iSecond = ClusteringMetricFactory_cl::CreateMetric(metric);
    iScore = ClusteringMetricFactory_cl::CreateMetric(metric);
  }
  ~PairScorer_cl() {
    delete iFirst;
    delete iSecond;
    delete iScore;
  }

  void SetFirst(int i) { iFirst->Init(iMatrix, i); }
  void Score(int i, int j) {
    iSecond->Init(iMatrix, j);
    iScore->ComputeCost(iFirst, iSecond);
    double cost = iScore->GetCost();
    if (iFilter.iCutoff != kMissingReal) {
      int passes = cost >= iFilter.iCutoff || (iFilter.iAbsolute && cost <= -iFilter.iCutoff);
      if (!passes) return;
    }
    if (iScore->GetValidDimensions() < iFilter.iMinDimensions) return;
    if (iFilter.iTopK == kMissingInt) {
      ScoredPair_cl(iNames[i], iNames[j], iScore->Clone()).Write(iOut);
      return;
    }
    if (iFilter.iTopK <= 0) return;
    ScoredPair_cl* pair = new ScoredPair_cl(iNames[i], iNames[j], iScore->Clone());
    if (iBest.GetSize() < iKeep) {
      iBest.Insert(new ScoredPairHeapEntry_cl(pair));
      return;
    }
    ScoredPairHeapEntry_cl* worst = static_cast<ScoredPairHeapEntry_cl*>(iBest.Maximum());
    if (!pair->IHaveHigherPriority(worst->iPair)) {
      delete pair;
      return;
    }
    delete worst->iPair;
    worst->iPair = pair;
    iBest.UpdateKey(worst);
  }
  // The kept pairs, best first.
  void Flush() {
    Vector_tmpl<HeapEntry_cl*> kept(iBest.GetSize() + 1, nullptr);
    while (HeapEntry_cl* entry = iBest.ExtractMax()) kept.AddLast(entry);
    for (int i = kept.GetSize() - 1; i >= 0; i--) static_cast<ScoredPairHeapEntry_cl*>(kept[i])->iPair->Write(iOut);
    kept.DeleteAll();
  }

 private:
  Matrix_sptr iMatrix;
  const Vector_tmpl<Name_sptr>& iNames;
  const PairFilter_cl& iFilter;
  std::ostream& iOut;
  int iKeep;
  ClusteringMetric_cl* iFirst;
  ClusteringMetric_cl* iSecond;
  ClusteringMetric_cl* iScore;
  Heap_cl iBest;
};
}  // namespace

void MicroarrayStats_cl::ComputePairwiseScores(Name_sptr metric, StatsAttributesType_cl type, Name_sptr pairsFile,
                                               const PairFilter_cl& filter, std::ostream& out) {
  int genes = type == STATS_GENE_ATTRIBUTES;
  // An object is always a row of the matrix compared.
  Matrix_sptr matrix = genes ? iMicroarray->GetMatrix() : iMicroarray->GetMatrix()->Transpose();
  const Vector_tmpl<Name_sptr>& names = genes ? iMicroarray->GetGeneNames() : iMicroarray->GetExperimentNames();
  PairScorer_cl scorer(metric, matrix, names, filter, out);
  int n = matrix->GetNumRows();
  if (pairsFile.IsNull()) {
    long long total = static_cast<long long>(n) * (n - 1) / 2, done = 0, shown = 0;
    for (int i = 0; i < n; i++) {
      scorer.SetFirst(i);
      for (int j = i + 1; j < n; j++) {
        scorer.Score(i, j);
        long long percent = 100 * ++done / total;
        if (percent <= shown) continue;
        shown = percent;
        std::cerr << done << " pairs calculated (" << percent << "% done)." << std::endl;
      }
    }
  } else {
    DataFile_cl::StopUnlessReadable(pairsFile, "MicroarrayStats_cl::ComputePairwiseScores");
    DataFileDescriptor_cl table(0, 0, -1, 0, -1, 0, -1, -1, -1);
    DataFile_cl pairs(pairsFile, table);
    NameSet_tmpl<int>* index = genes ? iMicroarray->GetGenesHash() : iMicroarray->GetExperimentsHash();
    for (int record = 0; record < pairs.GetNumRecords(); record++) {
      const char* first = pairs.GetString(record, 0);
      const char* second = pairs.GetString(record, 1);
      if (!first || !second) continue;
      int i = index->GetEntry(first), j = index->GetEntry(second);
      if (i < 0 || j < 0) continue;
      scorer.SetFirst(i);
      scorer.Score(i, j);
    }
  }
  scorer.Flush();
}
