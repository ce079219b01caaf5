// Tree CPDs: a decision tree whose inner nodes test parents and whose leaves hold distributions.
#ifndef VORN_PROB_TREE_CPD_H
#define VORN_PROB_TREE_CPD_H

#include <ostream>

#include "pipeline/graph.h"
#include "prob/bn_cpd.h"
#include "prob/split_test.h"

class TreeCpd_cl;
class TreeCpdNode_cl;

class TreeCpd_sptr : public Sptr_tmpl<TreeCpd_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

TreeCpd_sptr Conv2TreeCpd(const Measure_sptr& m);

class TreeCpdEdge_cl : public DEdge_tmpl<TreeCpdNode_cl> {
 public:
  using DEdge_tmpl::DEdge_tmpl;
};

// The nodes of one tree, the leaf count, the vector of all variables and the columns of the tree's
// parents in the wider scope of data rows, which every test of the fast road reads through.
class TreeCpdGraph_cl : public DirectedGraph_tmpl<TreeCpdNode_cl, TreeCpdEdge_cl> {
 public:
  int GetNumLeafs() const { return iNumLeafs; }
  int IncNumLeafs() { return iNumLeafs++; }
  void SetNumLeafs(int n) { iNumLeafs = n; }
  int NextNodeId() { return ++iLastId; }
  RvVector_sptr GetAllVars() const { return iAllVars; }
  void SetAllVars(RvVector_sptr vars) { iAllVars = vars; }
  // Refills the column of each parent by name in the wider scope; the program stops when one is absent.
  void SetRowScope(const RvVector_sptr& parents, const RvVector_sptr& wider);
  const short* GetColumns() const { return iColumns.GetSize() ? iColumns.GetData() : nullptr; }

 private:
  int iNumLeafs = 0;
  int iLastId = 0;
  RvVector_sptr iAllVars;
  Vector_tmpl<short> iColumns;
};

class TreeCpdNode_cl : public DNode_tmpl<TreeCpdNode_cl, TreeCpdEdge_cl> {
 public:
  static constexpr int kUnsetHash = static_cast<int>(0x80000001u);

  explicit TreeCpdNode_cl(TreeCpdGraph_cl* graph);
  TreeCpdNode_cl(const TreeCpdNode_cl&) = delete;
  TreeCpdNode_cl& operator=(const TreeCpdNode_cl&) = delete;
  ~TreeCpdNode_cl() override { delete iSplit; }

  // A detached trial copy answers with the parent of the node it was copied from.
  int HasParent() const { return GetNumParents() > 0 || iDetachedParent; }
  TreeCpdNode_cl* GetNodeParent() const { return GetNumParents() > 0 ? GetParent(0) : iDetachedParent; }
  // The branch of the parent that leads here; -1 for the root.
  int GetBranchInParent() const;
  TreeCpdNode_cl* GetBranch(int branch) const { return GetChild(branch); }
  // The branch that leads to child; -1 with a message when it is not a child.
  int GetBranchIndex(const TreeCpdNode_cl* child) const;
  TreeCpdNode_cl* NewChild();
  SplitTest_cl* GetSplit() const { return iSplit; }
  ConditionSplitTest_cl* GetConditionSplit() const;
  int IsLeaf() const { return iSplit == nullptr; }
  // Installs a split on each value of a discrete variable, with a child per value.
  void SetSplitRv(SingleRv_sptr rv);
  // Installs an empty condition split and two children; child 0 takes over the leaf number.
  void SetConditionSplit();
  // Installs a split made by the caller, with a child per branch; the node owns it.
  void SetSplit(SplitTest_cl* split) { InstallSplit(split); }
  Cpd_sptr GetCpd() const { return iCpd; }
  // A node without distribution and leaf number takes the next leaf number.
  void SetCpd(Cpd_sptr cpd);
  int GetLeafNum() const { return iLeafNum; }
  Name_sptr GetName() const { return iName; }
  void SetName(Name_sptr name) { iName = name; }
  RvMapping_sptr GetMapping() const { return iMapping; }
  void RebuildMapping();

  // --- conditions, looked up by name among the tree's parents
  void AddEQConjCondition(SingleRv_sptr first, SingleRv_sptr second);
  // Takes the value over; with check set, an illegal value is reported and the clause still added.
  void AddEVConjCondition(SingleRv_sptr rv, Value_cl* value, int check);
  void AddGTEConjCondition(SingleRv_sptr rv, Value_cl* value, int direction, int check);
  // False when an ancestor splits on the variable's values or holds an equality on it.
  int IsLegalGTECondition(SingleRv_sptr rv, int position) const;

  // --- walks and queries
  int GetDepth() const;
  // Shallower first; at equal depth the node under branch 0 of the first common ancestor.
  int IsLess(const TreeCpdNode_cl* other) const;
  long long GetNodeCode() const;
  // The conditions along the path in words, sorted and joined by " AND "; "Root" for the root.
  Name_sptr GetHashValue();
  int GetIntHashValue();
  void ClearHashes();
  void GetReducedDomain(const SingleRv_sptr& rv, DomainSubset_cl* subset, int recursive) const;
  // The variables tested by this node's split, and by all splits on the way to the root.
  RvVector_sptr GetTestRvs() const;
  RvVector_sptr GetAllTestRvs() const;
  int HasBadAncestor(const SingleRv_sptr& rv) const;
  int CheckNode(const RvVector_sptr& parents, const SingleRv_sptr& child) const;
  // A leaf reached from here; leaf set to whether one was found.
  Cpd_sptr GetLeafCpd(int leaf, bool& found) const;

  // --- copies
  // A copy of the subtree in another graph, leaf numbers and names included.
  TreeCpdNode_cl* Clone(TreeCpdGraph_cl* graph) const;
  // A detached copy of a leaf with a fresh condition split and two children; it knows the leaf's
  // parent and branch but is not among the parent's children.
  TreeCpdNode_cl* CreateConditionSplitCopy();
  // Drops the split; with removeChildren the children go too and the node takes their largest leaf number.
  void RemoveConditionSplit(int removeChildren);

  void WriteFile(std::ostream& out, int indent) const;
  int GetStorageSize(int recursive) const;

 private:
  friend class TreeCpd_cl;
  RvVector_sptr Parents() const;
  int ParentPosition(const SingleRv_sptr& rv) const;
  // Gives the split and makes children; child 0 inherits the leaf number.
  void InstallSplit(SplitTest_cl* split);

  TreeCpdGraph_cl* iGraph;
  Cpd_sptr iCpd;
  SplitTest_cl* iSplit = nullptr;
  int iLeafNum = -1;
  RvMapping_sptr iMapping;
  Name_sptr iName;
  Name_sptr iHashName;
  int iIntHash = kUnsetHash;
  TreeCpdNode_cl* iDetachedParent = nullptr;
  int iDetachedBranch = -1;
};

// Depth first, node first, then each branch left to right.
class DLRIterator_cl {
 public:
  explicit DLRIterator_cl(TreeCpdNode_cl* root) : iRoot(root), iStack(16, nullptr) { Reset(); }
  void Reset();
  int NotNull() const { return iStack.GetSize() > 0; }
  TreeCpdNode_cl* Current() const { return iStack.GetSize() ? iStack[iStack.GetSize() - 1] : nullptr; }
  DLRIterator_cl& operator++();

 private:
  TreeCpdNode_cl* iRoot;
  Vector_tmpl<TreeCpdNode_cl*> iStack;
};

class TreeCpd_cl : public BnCpd_cl {
 public:
  TreeCpd_cl(SingleRv_sptr child, RvVector_sptr parents);
  TreeCpd_cl(const TreeCpd_cl& other);
  ~TreeCpd_cl() override { delete iGraph; }

  int GetType() const override { return TREE_CPD; }
  int DoesInheritFrom(int type) const override { return type == TREE_CPD || BnCpd_cl::DoesInheritFrom(type); }
  Measure_sptr Copy() const override { return new TreeCpd_cl(*this); }
  BnCpd_sptr Clone() const override { return new TreeCpd_cl(*this); }
  using BnCpd_cl::GetValue;
  double GetValue(InstVector_sptr inst) override;
  void Sample(Sample_sptr const& sample) override;
  void AddParents(RvVector_sptr parents) override;
  void DeleteParents(RvVector_sptr parents) override;
  Cpd_sptr GetLine(InstVector_sptr inst, int copy) override;
  // The line of the flat index over all parents; an empty handle when their joint size overflows.
  Cpd_sptr GetLine(int line) override;
  void SetLine(int line, Cpd_sptr cpd, int copy) override;
  void SetLine(InstVector_sptr inst, Cpd_sptr cpd, int copy);
  int IsEmpty() override { return iRoot->IsLeaf() && iRoot->GetCpd().IsNull(); }
  int GetNumParams() const override;

  int GetNumLeafs() const { return iGraph->GetNumLeafs(); }
  TreeCpdNode_cl* GetRoot() const { return iRoot; }
  TreeCpdNode_cl* GetNode(Id_cl* id) { return iGraph->GetNode(id); }
  TreeCpdGraph_cl* GetGraph() const { return iGraph; }
  Cpd_sptr GetLeafCpd(int leaf) const;
  // Walks the fast road; -1 as soon as a test reports a missing value.
  int GetLeafId(int const* row) const {
    const short* columns = iGraph->GetColumns();
    const TreeCpdNode_cl* node = iRoot;
    while (node->iSplit) {
      int branch = node->iSplit->Test(row, columns);
      if (branch < 0) return -1;
      node = node->GetChild(branch);
    }
    return node->iLeafNum;
  }
  void SetRowScope(const RvVector_sptr& wider) { iGraph->SetRowScope(iParents, wider); }
  // The leaf of a full assignment; null when a tested value is missing.
  TreeCpdNode_cl* FindLeaf(InstVector_sptr inst) const;
  // The deepest node that the mapped part of an assignment decides.
  TreeCpdNode_cl* FindNode(InstVector_sptr inst, RvMapping_sptr mapping) const;

  void AddParent(SingleRv_sptr parent);
  // Turns a leaf into a condition split, or leaves an existing split for a further clause.
  void AddSplit(TreeCpdNode_cl* node, SingleRv_sptr rv, int addParent);
  void AddEVSplit(TreeCpdNode_cl* node, SingleRv_sptr rv, Value_cl* value, int addParent);
  void AddGTESplit(TreeCpdNode_cl* node, SingleRv_sptr rv, Value_cl* value, int direction, int addParent);
  int CheckTree() const { return iRoot->CheckNode(iParents, iChild); }

  // "probability(child | parents) tree" and the nodes.
  void WriteFile(std::ostream& out) const override;
  // Every assignment of the parents with its leaf's distribution.
  void WriteTable(std::ostream& out) const override;
  int GetStorageSize(int recursive) const override { return iRoot->GetStorageSize(recursive) + sizeof(*this); }

 private:
  // Installs the scopes in the graph and refreshes every leaf's mapping.
  void SyncGraph();
  TreeCpdNode_cl* Walk(InstVector_sptr inst, RvMapping_sptr mapping, int stopAtUnmapped) const;
  // An assignment of all variables whose parents take the values of a flat index over the parents.
  InstVector_sptr ParentAssignment(int line) const;

  TreeCpdGraph_cl* iGraph;
  TreeCpdNode_cl* iRoot = nullptr;
};

#endif
