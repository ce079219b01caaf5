// Module clusters: named sets of genes and experiments, made from files, data, attributes or a learned tree.
#ifndef VORN_MODULE_VORN_CLUSTER_H
#define VORN_MODULE_VORN_CLUSTER_H

#include <ostream>

#include "data/microarray.h"
#include "data/species_vorn.h"
#include "data/vorn_attribute_group.h"
#include "module/vorn.h"
#include "module/vorn_tree_node_info.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"
#include "prob/matrix.h"
#include "prob/tree_cpd.h"

class VornCluster_cl;

// Genes and experiments are indices into the names of the owning VornCluster_cl; either list
// may be absent. The hashes are caches that every change drops.
class VornSingleCluster_cl {
 public:
  VornSingleCluster_cl(Name_sptr name, VornCluster_cl* owner, int id = -1);
  ~VornSingleCluster_cl();
  VornSingleCluster_cl(const VornSingleCluster_cl&) = delete;
  VornSingleCluster_cl& operator=(const VornSingleCluster_cl&) = delete;

  Name_sptr GetName() const { return iName; }
  int GetId() const { return iId; }
  VornCluster_cl* GetOwner() const { return iOwner; }
  Vector_tmpl<int>* GetGenes() const { return iGenes; }
  Vector_tmpl<int>* GetExperiments() const { return iExperiments; }
  int GetNumGenes() const { return iGenes ? iGenes->GetSize() : 0; }
  int GetNumExperiments() const { return iExperiments ? iExperiments->GetSize() : 0; }

  void AddGene(int gene);
  void AddExperiment(int experiment);
  int HasGene(int gene);
  int HasGene(Name_sptr gene);
  int HasExperiment(Name_sptr experiment);
  // From index to position in the list, made on first use.
  IntSet_tmpl<int>* GetGenesHash();
  IntSet_tmpl<int>* GetExperimentsHash();
  // From name to position in the list, made on first use.
  NameSet_tmpl<int>* GetGeneNamesHash();
  NameSet_tmpl<int>* GetExperimentNamesHash();
  // Appends the other's genes and experiments behind this cluster's own.
  void Add(const VornSingleCluster_cl* other);
  // Drops both lists.
  void Delete();
  // New vectors of the names; null without a list.
  Vector_tmpl<Name_sptr>* CreateGeneNames() const;
  Vector_tmpl<Name_sptr>* CreateExperimentNames() const;
  // The name, a tab, each gene's name followed by a tab, a line end.
  void WriteFile(std::ostream& out) const;

 private:
  void DropCaches();

  Name_sptr iName;
  int iId;
  Vector_tmpl<int>* iGenes = nullptr;
  Vector_tmpl<int>* iExperiments = nullptr;
  IntSet_tmpl<int>* iGenesHash = nullptr;
  IntSet_tmpl<int>* iExperimentsHash = nullptr;
  NameSet_tmpl<int>* iGeneNamesHash = nullptr;
  NameSet_tmpl<int>* iExperimentNamesHash = nullptr;
  VornCluster_cl* iOwner;
};

// Owns its clusters and the names they index.
class VornCluster_cl : public Vector_tmpl<VornSingleCluster_cl*> {
 public:
  // From the species' expression CPD: its learned modules (type 1) or experiment splits (type 0).
  VornCluster_cl(Name_sptr species, Vorn_cl* vorn, AttributeGroupType_cl type);
  // A gene group: a cluster per attribute, of the genes whose value is exactly 1.0. An experiment
  // group: clusters "<a>-up" and "<a>-down" of the experiments whose value is 1.0 or -1.0.
  VornCluster_cl(Name_sptr species, Vorn_cl* vorn, VornAttributeGroup_cl* group);
  // For each experiment, "<e>-up" and "<e>-down" of the genes at least up or at most down.
  VornCluster_cl(Microarray_cl* microarray, double up, double down);
  // A cluster per gene.
  explicit VornCluster_cl(Microarray_cl* microarray);
  // A cluster per column: gene r joins cluster c where the cell is exactly 1.0. Gene names are
  // found in the hash given, or enter a new one in order of first appearance.
  VornCluster_cl(Name_sptr name, const Vector_tmpl<Name_sptr>& clusters, const Vector_tmpl<Name_sptr>& genes,
                 Matrix_sptr values, const NameSet_tmpl<int>* genesHash);
  // A numbered cluster per file of gene names, named after the file.
  VornCluster_cl(Name_sptr name, const Vector_tmpl<Name_sptr>& files, const NameSet_tmpl<int>* genesHash);
  ~VornCluster_cl();
  VornCluster_cl(const VornCluster_cl&) = delete;
  VornCluster_cl& operator=(const VornCluster_cl&) = delete;

  Name_sptr GetName() const { return iName; }
  const Vector_tmpl<Name_sptr>* GetGeneNames() const { return iGeneNames; }
  const Vector_tmpl<Name_sptr>* GetExperimentNames() const { return iExperimentNames; }
  NameSet_tmpl<int>* GetGeneNamesHash();
  NameSet_tmpl<int>* GetExperimentNamesHash();
  // New vectors of all names; null when there are none.
  Vector_tmpl<Name_sptr>* CreateGeneNames() const;
  Vector_tmpl<Name_sptr>* CreateExperimentNames() const;

  // Null when no cluster has the id.
  VornSingleCluster_cl* GetClusterById(int id) const;
  // "Cluster " and each id followed by a blank: the union of the clusters of those ids. The caller owns it.
  VornSingleCluster_cl* BuildCluster(const Vector_tmpl<int>* ids);
  void WriteFile(std::ostream& out) const;

  // A tree over a variable "dummy" of the expression domain with a split per two-valued gene
  // attribute of the species, each module holding the genes of value 1.
  TreeCpd_sptr BuildTree(SpeciesVorn_cl* species, VornTreeNodeInfos_cl* infos);
  // A value-1 split on the attribute at the node, whose objects pass to the new branches.
  void AddTreeSplit(SpeciesVorn_cl* species, TreeCpd_sptr tree, TreeCpdNode_cl* node, Attr_cl* attribute, int column,
                    FalseConditionType_cl falseType, VornTreeNodeInfos_cl* infos);
  // A cluster per module (type 1) or per split on experiments (type 0), numbered by a depth-first walk.
  void LoadFromTree(TreeCpd_sptr tree, AttributeGroupType_cl type, VornTreeNodeInfos_cl* infos);

 private:
  // Takes the microarray's names, or none.
  void SetNames(Microarray_cl* microarray);
  VornSingleCluster_cl* AddCluster(Name_sptr name, int id);
  // The index of a gene name: from the fixed hash, or from the growing one of this cluster.
  int GeneIndex(Name_sptr gene, const NameSet_tmpl<int>* genesHash, NameSet_tmpl<int>* grown);

  Name_sptr iName;
  Vector_tmpl<Name_sptr>* iGeneNames = nullptr;
  Vector_tmpl<Name_sptr>* iExperimentNames = nullptr;
  NameSet_tmpl<int>* iGeneNamesHash = nullptr;
  NameSet_tmpl<int>* iExperimentNamesHash = nullptr;
};

#endif
