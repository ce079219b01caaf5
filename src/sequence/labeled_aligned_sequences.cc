// A window of an alignment with a numeric label for each aligned sequence, and sampling from it.
#include "sequence/labeled_aligned_sequences.h"

#include <cmath>
#include <cstdlib>
#include <iostream>

#include "data/data_file.h"
#include "data/microarray.h"
#include "eval/math_util.h"
#include "pipeline/data_repository.h"
#include "pipeline/random.h"

namespace {
// A new name with the index behind it: the name read from the tree may be shared.
Name_sptr WithIndex(Name_sptr name, int index) {
  if (!name) return name;
  Name_sptr indexed(name.CStr() ? name.CStr() : "");
  indexed->Concat(index);
  return indexed;
}
}  // namespace

LabeledAlignedSequences_cl::LabeledAlignedSequences_cl(PropertyTreeIter_cl* iter, DataRepository_cl& repository,
                                                       int index, bool appendIndex) {
  Name_sptr alignmentName = iter->GetProperty("SequenceAlignmentGroup");
  Name_sptr labelsName = iter->GetProperty("SequencesLabelsArrayName");
  if (appendIndex && index >= 0) {
    alignmentName = WithIndex(alignmentName, index);
    labelsName = WithIndex(labelsName, index);
  }
  iAlignment = repository.iSequenceAlignments.GetEntry(alignmentName);
  if (!iAlignment) {
    std::cerr << "LabeledAlignedSequences_cl Unknown sequence alignment " << alignmentName << std::endl;
    abort();
  }
  int start, end, length;
  iter->GetIntProperty("AlignmentStart", &start, -1);
  iter->GetIntProperty("AlignmentEnd", &end, -1);
  iter->GetIntProperty("AlignmentLength", &length, -1);
  InitWindow(start, end, length);
  iLabels.AddLast(iAlignment->GetNumSequences(), 1.0);
  RecomputeLabelStats();
  if (labelsName) {
    Microarray_cl* labels = repository.iMicroarrays.GetEntry(labelsName);
    if (!labels) {
      std::cerr << "LabeledAlignedSequences_cl Unknown microarray " << labelsName << std::endl;
      abort();
    }
    InitSequencesLabels(labels);
  }
  iter->GetDoubleProperty("NumOfSequencesInTheWorld", &iNumOfSequencesInTheWorld, -1.0);
  iter->GetDoubleProperty("PositiveSeqsPriorProbability", &iPositiveSeqsPriorProbability, -1.0);
  int reweight;
  iter->GetBooleanProperty("ReweightPositiveInstancesFraction", &reweight, 0);
  if (reweight) {
    iter->GetDoubleProperty("PositiveFraction", &iPositiveFraction, 0.0);
    CalPositiveFractionCorrectionFactor();
  }
}

LabeledAlignedSequences_cl::LabeledAlignedSequences_cl(SequenceAlignment_cl* alignment, int start, int end)
    : iAlignment(alignment) {
  InitWindow(start, end, -1);
  iLabels.AddLast(alignment->GetNumSequences(), 1.0);
  RecomputeLabelStats();
}

LabeledAlignedSequences_cl::LabeledAlignedSequences_cl(Name_sptr group, int k, Name_sptr alphabet, int size,
                                                       SequenceManager_cl*& out)
    : iOwnsAlignment(true) {
  out = new SequenceManager_cl(group, alphabet, size, true);
  out->AddAllSequencesInLength(k);
  iAlignment = new GaplessSequenceAlignment_cl(group, out);
  InitWindow(0, k - 1, -1);
  iLabels.AddLast(out->GetNumSequences(), 1.0);
  RecomputeLabelStats();
}

LabeledAlignedSequences_cl::~LabeledAlignedSequences_cl() {
  if (iOwnsAlignment) delete iAlignment;
  delete iReweightCoefficients;
}

void LabeledAlignedSequences_cl::InitWindow(int start, int end, int length) {
  iStart = start >= 0 ? start : iAlignment->GetFirstFullAlignmentPosition();
  if (end >= 0)
    iEnd = end;
  else if (length > 0)
    iEnd = iStart + length - 1;
  else
    iEnd = iAlignment->GetLastFullAlignmentPosition();
}

void LabeledAlignedSequences_cl::RecomputeLabelStats() {
  iLabelsSum = 0.0;
  iMaxLabel = iLabels.GetSize() > 0 ? iLabels[0] : 0.0;
  iBinary = true;
  for (int i = 0; i < iLabels.GetSize(); i++) {
    iLabelsSum += iLabels[i];
    if (iLabels[i] > iMaxLabel) iMaxLabel = iLabels[i];
    if (iLabels[i] != 0.0 && iLabels[i] != 1.0) iBinary = false;
  }
}

void LabeledAlignedSequences_cl::InitSequencesLabels(Microarray_cl* labels) {
  NameSet_tmpl<int>* rows = labels->GetGenesHash();
  bool hasColumn = labels->GetNumExperiments() > 0;
  for (int i = 0; i < iLabels.GetSize(); i++) {
    int row = rows->GetEntry(iAlignment->GetSequence(i)->GetName());
    double value = row >= 0 && hasColumn ? labels->GetMatrix()->GetElement(row, 0) : 0.0;
    iLabels[i] = value == kMissingReal ? 0.0 : value;
  }
  RecomputeLabelStats();
  for (int i = 0; i < iLabels.GetSize(); i++) iLabels[i] = iMaxLabel == 0.0 ? 1.0 : iLabels[i] / iMaxLabel;
  RecomputeLabelStats();
}

void LabeledAlignedSequences_cl::SetLabel(int i, double value) {
  iLabelsSum += value - iLabels[i];
  iLabels[i] = value;
  if (value != 0.0 && value != 1.0) iBinary = false;
}

void LabeledAlignedSequences_cl::SetAllLabels(const Vector_tmpl<double>* values) {
  for (int i = 0; i < iLabels.GetSize() && i < values->GetSize(); i++) iLabels[i] = (*values)[i];
  RecomputeLabelStats();
}

void LabeledAlignedSequences_cl::SetAllLabelsToVal(double value) {
  for (int i = 0; i < iLabels.GetSize(); i++) iLabels[i] = value;
  RecomputeLabelStats();
}

Vector_tmpl<int>* LabeledAlignedSequences_cl::GetPositiveLabelsndices(double thresh) const {
  auto* indices = new Vector_tmpl<int>(10, -1);
  for (int i = 0; i < iLabels.GetSize(); i++)
    if (iLabels[i] >= thresh) indices->AddLast(i);
  return indices;
}

LabeledAlignedSequences_cl* LabeledAlignedSequences_cl::GetSubsetByIndices(Name_sptr name,
                                                                           const Vector_tmpl<int>* indices,
                                                                           SequenceManager_cl*& out) const {
  auto* subset = new LabeledAlignedSequences_cl(iAlignment->GetSubsetByIndices(name, indices, out), iStart, iEnd);
  subset->iOwnsAlignment = true;
  for (int k = 0; k < indices->GetSize(); k++) subset->iLabels[k] = iLabels[(*indices)[k]];
  subset->RecomputeLabelStats();
  return subset;
}

LabeledAlignedSequences_cl* LabeledAlignedSequences_cl::GetPositiveLabelsSubset(Name_sptr name, double thresh,
                                                                                SequenceManager_cl*& out) const {
  Vector_tmpl<int>* indices = GetPositiveLabelsndices(thresh);
  LabeledAlignedSequences_cl* subset = GetSubsetByIndices(name, indices, out);
  delete indices;
  return subset;
}

LabeledAlignedSequences_cl* LabeledAlignedSequences_cl::SampleSequences(
    Name_sptr name, int count, SamplingFromLabeledAlignedSequencesMethodType_cl method, SequenceManager_cl*& out,
    const Vector_tmpl<int>* excluded) const {
  Vector_tmpl<int>* indices = SampleSequencesIndecis(count, method, excluded);
  LabeledAlignedSequences_cl* sample = GetSubsetByIndices(name, indices, out);
  delete indices;
  return sample;
}

Vector_tmpl<double>* LabeledAlignedSequences_cl::CalCumulativeProbLabelsVec(
    SamplingFromLabeledAlignedSequencesMethodType_cl method) const {
  int n = iLabels.GetSize();
  auto* cumulative = new Vector_tmpl<double>(n > 0 ? n : 1, 0.0);
  double running = method == SAMPLE_BY_LOG_LABELS ? kMissingReal : 0.0;
  for (int i = 0; i < n; i++) {
    if (method == SAMPLE_UNIFORM)
      running += 1.0 / n;
    else if (method == SAMPLE_BY_LABELS)
      running += iLabels[i];
    else
      running = MathUtils::AddLog(running, iLabels[i]);
    cumulative->AddLast(running);
  }
  return cumulative;
}

// The index of a draw is the first whose running sum passes the target.
Vector_tmpl<int>* LabeledAlignedSequences_cl::SampleSequencesIndecis(
    int count, SamplingFromLabeledAlignedSequencesMethodType_cl method, const Vector_tmpl<int>* excluded) const {
  auto* indices = new Vector_tmpl<int>(10, -1);
  Vector_tmpl<double>* cumulative = CalCumulativeProbLabelsVec(method);
  int n = cumulative->GetSize();
  for (int draw = 0; draw < count && n > 0; draw++) {
    double r = Random_cl::iGlobalRandomizer.SampleUniform();
    double total = (*cumulative)[n - 1];
    double target = method == SAMPLE_BY_LOG_LABELS ? std::log(r) + total : r * total;
    int index = cumulative->BinaryRangeSearchWithOperator(target) + 1;
    if (index >= n) index = n - 1;
    if (excluded && excluded->IsMember(index)) continue;
    indices->AddLast(index);
  }
  delete cumulative;
  return indices;
}

void LabeledAlignedSequences_cl::CalPositiveFractionCorrectionFactor() {
  if (iPositiveFraction < 0) {
    iCorrectionFactor = 1.0;
    return;
  }
  double world = iNumOfSequencesInTheWorld > 0 ? iNumOfSequencesInTheWorld : iLabels.GetSize();
  iCorrectionFactor = iPositiveFraction / (iLabelsSum / world);
}

void LabeledAlignedSequences_cl::CalReweightCoefficients(double prior, double world,
                                                         Vector_tmpl<double>& coefficients) const {
  int n = iLabels.GetSize();
  if (world < 0) world = n;
  coefficients.RemoveAll();
  double a = prior * world / iLabelsSum;
  double b = (1.0 - prior) * world / (n - iLabelsSum);
  for (int i = 0; i < n; i++) coefficients.AddLast(prior < 0 ? 1.0 : a * iLabels[i] + b * (1.0 - iLabels[i]));
}

void LabeledAlignedSequences_cl::CalReweightCoefficients() {
  if (!iReweightCoefficients) iReweightCoefficients = new Vector_tmpl<double>(10, 0.0);
  CalReweightCoefficients(iPositiveSeqsPriorProbability, iNumOfSequencesInTheWorld, *iReweightCoefficients);
}

Microarray_cl* LabeledAlignedSequences_cl::GetLabelsAsMicroArray() const {
  Vector_tmpl<Name_sptr> genes, experiments;
  for (int i = 0; i < iLabels.GetSize(); i++) genes.AddLast(iAlignment->GetSequence(i)->GetName());
  experiments.AddLast(Name_sptr("Label"));
  auto* labels = new Microarray_cl(GetName(), genes, experiments, 0.0);
  for (int i = 0; i < iLabels.GetSize(); i++) labels->GetMatrix()->SetElement(i, 0, iLabels[i]);
  return labels;
}

void LabeledAlignedSequences_cl::WriteLabelsFile(std::ostream& out) const {
  Microarray_cl* labels = GetLabelsAsMicroArray();
  labels->WriteFile(out, nullptr, nullptr);
  delete labels;
}
