// Weighted subsets of experiments, read from the pipeline file, and the microarrays they cut out.
#ifndef VORN_DATA_WEIGHT_GROUPS_H
#define VORN_DATA_WEIGHT_GROUPS_H

#include "data/microarray.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"

class WeightGroup_cl {
 public:
  // Keys Name (default "-"), File, Weight and MinWeight (both default 1.0).
  explicit WeightGroup_cl(PropertyTreeIter_cl* iter);
  ~WeightGroup_cl() { delete iKeys; }
  WeightGroup_cl(const WeightGroup_cl&) = delete;
  WeightGroup_cl& operator=(const WeightGroup_cl&) = delete;

  // Reads File as a list of experiment names and keeps those that the table knows.
  void LoadKeys(const NameSet_tmpl<int>& experiments);

  Name_sptr GetName() const { return iName; }
  Name_sptr GetFile() const { return iFile; }
  double GetWeight() const { return iWeight; }
  double GetMinWeight() const { return iMinWeight; }
  // The kept names, each mapped to its running number; null before LoadKeys.
  const NameSet_tmpl<int>* GetKeys() const { return iKeys; }

 private:
  Name_sptr iName;
  Name_sptr iFile;
  double iWeight;
  double iMinWeight;
  NameSet_tmpl<int>* iKeys = nullptr;
};

class WeightGroups_cl : public Vector_tmpl<WeightGroup_cl*> {
 public:
  // A group for each Experiments child of the element.
  explicit WeightGroups_cl(PropertyTreeIter_cl* iter);
  ~WeightGroups_cl() { DeleteAll(); }
  WeightGroups_cl(const WeightGroups_cl&) = delete;
  WeightGroups_cl& operator=(const WeightGroups_cl&) = delete;

  // Loads each group's keys against the microarray's experiments.
  void LoadKeys(Microarray_cl* microarray);
  // A new microarray for each group: all genes and the group's experiments; the caller owns them.
  Vector_tmpl<Microarray_cl*>* CreateMicroarrays(Microarray_cl* microarray) const;
};

#endif
