// The run's blackboard: named tables through which steps hand results to later steps.
#ifndef VORN_PIPELINE_DATA_REPOSITORY_H
#define VORN_PIPELINE_DATA_REPOSITORY_H

#include "pipeline/hash_set.h"
#include "pipeline/name.h"

class ChromosomeTrack_cl;
class Microarray_cl;
class SequenceManager_cl;
class SequenceAlignment_cl;
class WeightMatrixCollection_cl;
class GeneGraph_cl;
class RnaModel_cl;
class RnaBgModel_cl;
class RnaData_cl;
class LabeledAlignedSequences_cl;
class LabeledSequences_cl;
class KmerSetMotifModel_cl;
class PeakShape_cl;

// Base of the odd small items kept in the general table.
class GeneralRepositoryHeldData_cl {
 public:
  explicit GeneralRepositoryHeldData_cl(Name_sptr name) : iName(name) {}
  virtual ~GeneralRepositoryHeldData_cl() = default;
  Name_sptr GetName() const { return iName; }

 protected:
  Name_sptr iName;
};

// An insertion-ordered table with look-up by name. A table that owns its objects learns how to
// delete them from the first insertion, where their class is complete, so that this layer needs
// no knowledge of the subsystems that own the element classes.
template <class T>
class RepositoryTable_tmpl : public VectorNameHash_tmpl<T*> {
 public:
  explicit RepositoryTable_tmpl(bool owning) : VectorNameHash_tmpl<T*>(10, nullptr), iOwning(owning) {}
  RepositoryTable_tmpl(const RepositoryTable_tmpl&) = delete;
  RepositoryTable_tmpl& operator=(const RepositoryTable_tmpl&) = delete;
  ~RepositoryTable_tmpl() {
    if (!iDelete) return;
    for (int i = 0; i < this->GetSize(); i++) iDelete((*this)[i]);
  }
  // No check for an existing name: a later object shadows an earlier one in look-ups.
  void AddLast(const Name_sptr& name, T* item) {
    if (iOwning && !iDelete) iDelete = [](T* p) { delete p; };
    VectorNameHash_tmpl<T*>::AddLast(name, item);
  }

 private:
  bool iOwning;
  void (*iDelete)(T*) = nullptr;
};

class DataRepository_cl {
 public:
  // The Add operations are templates so that they compile where the element class is complete.
  template <class T = ChromosomeTrack_cl>
  void AddChromosomeTrack(T* item) { iChromosomeTracks.AddLast(item->GetName(), item); }
  template <class T = Microarray_cl>
  void AddMicroarray(T* item) { iMicroarrays.AddLast(item->GetName(), item); }
  template <class T = SequenceManager_cl>
  void AddSequenceGroup(T* item) { iSequenceGroups.AddLast(item->GetName(), item); }
  template <class T = SequenceAlignment_cl>
  void AddSequenceAlignment(T* item) { iSequenceAlignments.AddLast(item->GetName(), item); }
  template <class T = WeightMatrixCollection_cl>
  void AddWeightMatrixCollection(T* item) { iWeightMatrixCollections.AddLast(item->GetName(), item); }
  template <class T = GeneGraph_cl>
  void AddGeneGraph(T* item) { iGeneGraphs.AddLast(item->GetName(), item); }
  template <class T = RnaModel_cl>
  void AddRnaModel(T* item) { iRnaModels.AddLast(item->GetName(), item); }
  template <class T = RnaBgModel_cl>
  void AddRnaBgModel(T* item) { iRnaBgModels.AddLast(item->GetName(), item); }
  template <class T = RnaData_cl>
  void AddRnaData(T* item) { iRnaData.AddLast(item->GetName(), item); }
  template <class T = LabeledAlignedSequences_cl>
  void AddLabeledAlignedSequences(T* item) { iLabeledAlignedSequences.AddLast(item->GetName(), item); }
  template <class T = KmerSetMotifModel_cl>
  void AddKmerSetMotifModel(T* item) { iKmerSetMotifModels.AddLast(item->GetName(), item); }
  template <class T = PeakShape_cl>
  void AddPeakShape(T* item) { iPeakShapes.AddLast(item->GetName(), item); }
  void AddGeneralDataElement(GeneralRepositoryHeldData_cl* item) { iGeneralData.AddLast(item->GetName(), item); }

  RepositoryTable_tmpl<ChromosomeTrack_cl> iChromosomeTracks{true};
  RepositoryTable_tmpl<Microarray_cl> iMicroarrays{false};
  RepositoryTable_tmpl<SequenceManager_cl> iSequenceGroups{true};
  RepositoryTable_tmpl<SequenceAlignment_cl> iSequenceAlignments{true};
  RepositoryTable_tmpl<WeightMatrixCollection_cl> iWeightMatrixCollections{true};
  RepositoryTable_tmpl<GeneGraph_cl> iGeneGraphs{false};
  RepositoryTable_tmpl<RnaModel_cl> iRnaModels{false};
  RepositoryTable_tmpl<RnaBgModel_cl> iRnaBgModels{false};
  RepositoryTable_tmpl<RnaData_cl> iRnaData{false};
  RepositoryTable_tmpl<LabeledAlignedSequences_cl> iLabeledAlignedSequences{true};
  RepositoryTable_tmpl<LabeledSequences_cl> iLabeledSequences{true};
  RepositoryTable_tmpl<KmerSetMotifModel_cl> iKmerSetMotifModels{true};
  RepositoryTable_tmpl<PeakShape_cl> iPeakShapes{true};
  RepositoryTable_tmpl<GeneralRepositoryHeldData_cl> iGeneralData{true};
};

#endif
