// The graph of dependencies between the modules of one species' expression tree, with cycle checks and sampling.
#ifndef VORN_MODULE_MODULE_GRAPH_H
#define VORN_MODULE_MODULE_GRAPH_H

#include <functional>
#include <ostream>

#include "data/species_attributes.h"
#include "module/vorn_tree_node_info.h"
#include "pipeline/graph.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "prob/tree_cpd.h"

class ModuleGraphNode_cl;

class ModuleGraphEdge_cl : public DEdge_tmpl<ModuleGraphNode_cl> {
 public:
  using DEdge_tmpl::DEdge_tmpl;
};

// A module, by the id of its tree node, with the names of its regulators (1 present, 0 removed).
class ModuleGraphNode_cl : public DNode_tmpl<ModuleGraphNode_cl, ModuleGraphEdge_cl> {
 public:
  explicit ModuleGraphNode_cl(int id) : DNode_tmpl(id), iParentNames(10, 0) {}
  NameSet_tmpl<int>& GetParentNames() { return iParentNames; }

 private:
  NameSet_tmpl<int> iParentNames;
};

// An edge runs from the module of a regulator's gene to the module that the regulator regulates.
class ModuleGraph_cl : public DirectedGraph_tmpl<ModuleGraphNode_cl, ModuleGraphEdge_cl> {
 public:
  // A node per module of the tree, with the variables tested below it as its parents. The tables
  // are the caller's and must outlive the graph.
  ModuleGraph_cl(TreeCpd_sptr tree, VornTreeNodeInfos_cl* infos, NameSet_tmpl<int>* genes,
                 SpeciesAttributes_cl* geneAttributes);

  void AddParent(Name_sptr name, int node);
  void RemoveParent(Name_sptr name, int node);
  // The module of the gene that a regulator stands for; -1 for a name that is no gene or whose
  // way down the tree meets a missing value.
  int Parent2Node(Name_sptr name);
  // The id of the nearest node upward, itself included, that owns its rows; -1 when none does.
  int Node2LastGeneSplit(TreeCpdNode_cl* node) const;
  // Whether giving a module the regulator keeps the graph free of cycles.
  int IsAcyclic(Name_sptr name);
  // Whether from is reached by walking up regulator links from to.
  int DoesPathExist(int from, int to);
  // Turns the parent sets into edges, each once.
  void BuildGraph();
  // A tab file of synthetic values: per module in topological order its new regulators' rows,
  // then rows "g_<module>_<k>" for k = 1..genes; experiments columns named "e_<j>".
  void Sample(std::ostream& out, int genes, int experiments);

 private:
  static void SetFlag(NameSet_tmpl<int>& set, Name_sptr name, int value);
  void AddUnMarkedParents(Vector_tmpl<ModuleGraphNode_cl*>& stack, ModuleGraphNode_cl* node);
  // Walks from the start up the regulator links, each module once, until found says yes.
  int SearchUpward(ModuleGraphNode_cl* start, const std::function<int(ModuleGraphNode_cl*)>& found);
  // Walks down from the node with the assignment; an undecided test takes branch 0.
  TreeCpdNode_cl* WalkToLeaf(TreeCpdNode_cl* node, const InstVector_sptr& assignment) const;
  // The mean and variance of the leaf's Gaussian, or 0.0 and 0.0.
  static void LeafMoments(TreeCpdNode_cl* leaf, double& mean, double& variance);

  TreeCpd_sptr iTree;
  VornTreeNodeInfos_cl* iInfos;
  NameSet_tmpl<int> iParentNames;
  NameSet_tmpl<int> iParent2Node;
  NameSet_tmpl<int>* iGenes;
  SpeciesAttributes_cl* iGeneAttributes;
};

#endif
