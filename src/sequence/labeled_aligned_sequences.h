// A window of an alignment with a numeric label for each aligned sequence, and sampling from it.
#ifndef VORN_SEQUENCE_LABELED_ALIGNED_SEQUENCES_H
#define VORN_SEQUENCE_LABELED_ALIGNED_SEQUENCES_H

#include <ostream>

#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "sequence/sequence_alignment.h"

class DataRepository_cl;
class Microarray_cl;

// How SampleSequences weighs the sequences: equally, by label, or by label read as a logarithm.
enum SamplingFromLabeledAlignedSequencesMethodType_cl {
  SAMPLE_UNIFORM = 0,
  SAMPLE_BY_LABELS = 1,
  SAMPLE_BY_LOG_LABELS = 2
};

class LabeledAlignedSequences_cl {
 public:
  static constexpr double iLABEL_EPSILON = 1e-6;

  // The keys of a labelled set; with appendIndex and index >= 0 the index is appended to the
  // alignment's and the microarray's names, so that one element serves a series of sets.
  LabeledAlignedSequences_cl(PropertyTreeIter_cl* iter, DataRepository_cl& repository, int index, bool appendIndex);
  // Labels 1.0 over the window start to end (-1: the first and last full column) of an alignment
  // that stays its caller's.
  LabeledAlignedSequences_cl(SequenceAlignment_cl* alignment, int start, int end);
  // Every k-mer of the alphabet, labelled 1.0; out receives the group of k-mers, which the caller owns.
  LabeledAlignedSequences_cl(Name_sptr group, int k, Name_sptr alphabet, int size, SequenceManager_cl*& out);
  virtual ~LabeledAlignedSequences_cl();
  LabeledAlignedSequences_cl(const LabeledAlignedSequences_cl&) = delete;
  LabeledAlignedSequences_cl& operator=(const LabeledAlignedSequences_cl&) = delete;

  virtual Vector_tmpl<Vector_tmpl<int>*>* GetSequenceCharsCounts() const {
    return iAlignment->GetSequenceCharsCounts();
  }

  Name_sptr GetName() const { return iAlignment->GetName(); }
  SequenceAlignment_cl* GetAlignment() const { return iAlignment; }
  int GetNumSequences() const { return iLabels.GetSize(); }
  int GetAlignmentStart() const { return iStart; }
  int GetAlignmentEnd() const { return iEnd; }
  double GetLabel(int i) const { return iLabels[i]; }
  const Vector_tmpl<double>& GetLabels() const { return iLabels; }
  double GetLabelsSum() const { return iLabelsSum; }
  double GetMaxLabel() const { return iMaxLabel; }
  bool IsBinary() const { return iBinary; }
  double GetPositiveFractionCorrectionFactor() const { return iCorrectionFactor; }
  const Vector_tmpl<double>* GetReweightCoefficients() const { return iReweightCoefficients; }

  // Each aligned sequence's value in the first column of its row, 0 without one; then scaled by the
  // largest label (all 1.0 when that is 0).
  void InitSequencesLabels(Microarray_cl* labels);
  void SetLabel(int i, double value);
  void SetAllLabels(const Vector_tmpl<double>* values);
  void SetAllLabelsToVal(double value);
  // Indices of the labels at or above thresh; the caller owns the vector.
  Vector_tmpl<int>* GetPositiveLabelsndices(double thresh) const;
  // A new set over the chosen sequences' subset alignment, which it owns; out receives the subset's
  // group, which the caller owns.
  LabeledAlignedSequences_cl* GetSubsetByIndices(Name_sptr name, const Vector_tmpl<int>* indices,
                                                 SequenceManager_cl*& out) const;
  LabeledAlignedSequences_cl* GetPositiveLabelsSubset(Name_sptr name, double thresh, SequenceManager_cl*& out) const;
  LabeledAlignedSequences_cl* SampleSequences(Name_sptr name, int count,
                                              SamplingFromLabeledAlignedSequencesMethodType_cl method,
                                              SequenceManager_cl*& out, const Vector_tmpl<int>* excluded) const;
  // Running sums of 1/n, of the labels, or of the labels as logarithms.
  Vector_tmpl<double>* CalCumulativeProbLabelsVec(SamplingFromLabeledAlignedSequencesMethodType_cl method) const;
  // count draws of the global generator; draws that hit an excluded index are dropped, not redrawn.
  Vector_tmpl<int>* SampleSequencesIndecis(int count, SamplingFromLabeledAlignedSequencesMethodType_cl method,
                                           const Vector_tmpl<int>* excluded) const;

  void CalPositiveFractionCorrectionFactor();
  // Weights that make the labelled set look drawn with the prior from a world of that size.
  void CalReweightCoefficients(double prior, double world, Vector_tmpl<double>& coefficients) const;
  void CalReweightCoefficients();

  // A microarray named after the alignment, a row a sequence and the one column "Label"; the caller owns it.
  Microarray_cl* GetLabelsAsMicroArray() const;
  void WriteAlignmentFile(std::ostream& out) const { iAlignment->WriteFile(out); }
  // The window's columns of each sequence.
  void WriteSequencesFile(std::ostream& out) const { iAlignment->WriteSequenceFile(out, iStart, iEnd, 0); }
  void WriteLabelsFile(std::ostream& out) const;

 private:
  void InitWindow(int start, int end, int length);
  void RecomputeLabelStats();

  SequenceAlignment_cl* iAlignment = nullptr;
  bool iOwnsAlignment = false;
  int iStart = -1;
  int iEnd = -1;
  Vector_tmpl<double> iLabels;
  double iLabelsSum = 0.0;
  double iMaxLabel = 0.0;
  bool iBinary = true;
  double iCorrectionFactor = 1.0;
  double iPositiveFraction = -1.0;
  double iNumOfSequencesInTheWorld = -1.0;
  double iPositiveSeqsPriorProbability = -1.0;
  Vector_tmpl<double>* iReweightCoefficients = nullptr;
};

#endif
