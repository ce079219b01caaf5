// Tree CPDs: nodes, splits, leaf look-up and the tree text.
#include "prob/tree_cpd.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

TreeCpd_sptr Conv2TreeCpd(const Measure_sptr& m) { return Conv2X<TreeCpd_sptr>(m, "TreeCpd_cl"); }

// ---------------------------------------------------------------- TreeCpdGraph_cl

void TreeCpdGraph_cl::SetRowScope(const RvVector_sptr& parents, const RvVector_sptr& wider) {
  iColumns.RemoveAll();
  for (int i = 0; i < parents->GetNumberOfVars(); i++) {
    int at = wider->GetRvIndex(parents->GetRv(i)->GetName()->GetText());
    if (at < 0 || at > 32767) {
      std::cerr << "TreeCpdGraph_cl::AddNewRv: variable " << parents->GetRv(i)->GetName()
                << " has no column in the data scope" << std::endl;
      abort();
    }
    iColumns.AddLast(static_cast<short>(at));
  }
}

// ---------------------------------------------------------------- TreeCpdNode_cl

TreeCpdNode_cl::TreeCpdNode_cl(TreeCpdGraph_cl* graph) : DNode_tmpl(graph->NextNodeId()), iGraph(graph) {
  graph->AddNode(this);
}

RvVector_sptr TreeCpdNode_cl::Parents() const {
  RvVector_sptr all = iGraph->GetAllVars();
  RvVector_sptr parents = new RvVector_cl(all->GetNumberOfVars());
  for (int i = 0; i + 1 < all->GetNumberOfVars(); i++) parents->AddLast(all->GetRv(i));
  return parents;
}

int TreeCpdNode_cl::ParentPosition(const SingleRv_sptr& rv) const {
  RvVector_sptr all = iGraph->GetAllVars();
  int at = all->GetRvIndex(rv->GetName()->GetText());
  if (at < 0 || at == all->GetNumberOfVars() - 1) {
    std::cerr << "TreeCpdNode_cl: " << rv->GetName() << " is not a parent of the tree" << std::endl;
    abort();
  }
  return at;
}

int TreeCpdNode_cl::GetBranchIndex(const TreeCpdNode_cl* child) const {
  for (int i = 0; i < GetNumChildren(); i++)
    if (GetChild(i) == child) return i;
  std::cerr << "TreeCpdNode child Index not found\n";
  return -1;
}

int TreeCpdNode_cl::GetBranchInParent() const {
  if (iDetachedParent) return iDetachedBranch;
  return HasParent() ? GetParent(0)->GetBranchIndex(this) : -1;
}

TreeCpdNode_cl* TreeCpdNode_cl::NewChild() {
  auto* child = new TreeCpdNode_cl(iGraph);
  iGraph->AddEdge(this, child);
  return child;
}

ConditionSplitTest_cl* TreeCpdNode_cl::GetConditionSplit() const {
  if (iSplit && iSplit->GetSplitType() == CONDITION_SPLIT) return static_cast<ConditionSplitTest_cl*>(iSplit);
  return nullptr;
}

void TreeCpdNode_cl::InstallSplit(SplitTest_cl* split) {
  iSplit = split;
  for (int b = 0; b < split->GetNumBranches(); b++) NewChild();
  GetChild(0)->iLeafNum = iLeafNum;
  iLeafNum = -1;
  iCpd = Cpd_sptr();
  iMapping = RvMapping_sptr();
  ClearHashes();
}

void TreeCpdNode_cl::SetSplitRv(SingleRv_sptr rv) {
  auto* split = new DomainSplitTest_cl(rv, ParentPosition(rv), rv->GetDomain()->GetDomainSize());
  for (int v = 0; v < rv->GetDomain()->GetDomainSize(); v++) split->SetValueBranch(v, v);
  InstallSplit(split);
}

void TreeCpdNode_cl::SetConditionSplit() { InstallSplit(new ConditionSplitTest_cl()); }

void TreeCpdNode_cl::SetCpd(Cpd_sptr cpd) {
  if (iCpd.IsNull() && iLeafNum == -1) iLeafNum = iGraph->IncNumLeafs();
  iCpd = cpd;
  RebuildMapping();
}

void TreeCpdNode_cl::RebuildMapping() {
  iMapping =
      iCpd.IsNull() ? RvMapping_sptr() : RvMapping_sptr(new RvMapping_cl(*iCpd->GetRVs(), *iGraph->GetAllVars(), 0));
}

void TreeCpdNode_cl::AddEQConjCondition(SingleRv_sptr first, SingleRv_sptr second) {
  GetConditionSplit()->AddEqualRVCondition(ParentPosition(first), ParentPosition(second));
  ClearHashes();
}

void TreeCpdNode_cl::AddEVConjCondition(SingleRv_sptr rv, Value_cl* value, int check) {
  if (check && !rv->GetDomain()->IsLegalValue(value))
    std::cerr << "Illegal value for tree_cpd_node test on rv " << rv->GetName() << " and value " << value << std::endl;
  GetConditionSplit()->AddEVCondition(ParentPosition(rv), rv->GetDomain(), value);
  ClearHashes();
}

void TreeCpdNode_cl::AddGTEConjCondition(SingleRv_sptr rv, Value_cl* value, int direction, int check) {
  int position = ParentPosition(rv);
  if (check && !rv->GetDomain()->IsLegalValue(value))
    std::cerr << "Illegal value for tree_cpd_node test on rv " << rv->GetName() << " and value " << value << std::endl;
  if (check && !IsLegalGTECondition(rv, position))
    std::cerr << "Illegal split for tree_cpd_node test on rv " << rv->GetName() << " and value " << value << std::endl;
  GetConditionSplit()->AddGTECondition(position, rv->GetDomain(), value, direction);
  ClearHashes();
}

int TreeCpdNode_cl::IsLegalGTECondition(SingleRv_sptr rv, int position) const {
  for (const TreeCpdNode_cl* node = GetNodeParent(); node; node = node->GetNodeParent()) {
    const SplitTest_cl* split = node->iSplit;
    if (split->GetSplitType() == DOMAIN_SPLIT && split->GetTestPosition() == position) return 0;
    if (split->GetSplitType() == CONDITION_SPLIT &&
        !static_cast<const ConditionSplitTest_cl*>(split)->IsLegalSplitToAdd(position))
      return 0;
  }
  return 1;
}

int TreeCpdNode_cl::GetDepth() const {
  int depth = 0;
  for (const TreeCpdNode_cl* node = GetNodeParent(); node; node = node->GetNodeParent()) depth++;
  return depth;
}

int TreeCpdNode_cl::IsLess(const TreeCpdNode_cl* other) const {
  int mine = GetDepth(), theirs = other->GetDepth();
  if (mine != theirs) return mine < theirs;
  const TreeCpdNode_cl* a = this;
  const TreeCpdNode_cl* b = other;
  if (a == b) return 0;
  while (a->GetNodeParent() != b->GetNodeParent()) {
    a = a->GetNodeParent();
    b = b->GetNodeParent();
  }
  return a->GetBranchInParent() < b->GetBranchInParent();
}

long long TreeCpdNode_cl::GetNodeCode() const {
  long long code = 0;
  int d = GetDepth();
  for (const TreeCpdNode_cl* node = this; node->HasParent(); node = node->GetNodeParent(), d--) {
    long long power = 1;
    for (int k = 1; k < d; k++) power *= 3;
    code += node->GetBranchInParent() == 1 ? 2 * power : power;
  }
  return code;
}

Name_sptr TreeCpdNode_cl::GetHashValue() {
  if (!iHashName.IsNull()) return iHashName;
  if (!HasParent()) {
    iHashName = Name_sptr("Root");
    return iHashName;
  }
  RvVector_sptr parents = Parents();
  std::vector<std::string> conditions;
  // Each clause is one item, so that the name does not depend on the order of the tests.
  for (const TreeCpdNode_cl* node = this; node->HasParent(); node = node->GetNodeParent()) {
    const TreeCpdNode_cl* parent = node->GetNodeParent();
    int branch = node->GetBranchInParent();
    const ConditionSplitTest_cl* condition = parent->GetConditionSplit();
    int items = condition ? condition->GetNumClauses() : 1;
    for (int i = 0; i < items; i++) {
      std::ostringstream text;
      if (condition)
        condition->GetClause(i)->PrintBranchCondition(text, parents, branch);
      else
        parent->iSplit->PrintBranchCondition(text, parents, branch);
      conditions.push_back(text.str());
    }
  }
  std::sort(conditions.begin(), conditions.end());
  std::string joined;
  for (size_t i = 0; i < conditions.size(); i++) joined += (i ? " AND " : "") + conditions[i];
  iHashName = Name_sptr(joined.c_str());
  return iHashName;
}

int TreeCpdNode_cl::GetIntHashValue() {
  if (iIntHash != kUnsetHash) return iIntHash;
  const char* text = GetHashValue()->GetText();
  double h = 0.0;
  for (const char* c = text; c && *c; c++) h = 2.0 * h + static_cast<unsigned char>(*c);
  double x = h * 0.6180339887;
  int hash = static_cast<int>((x - std::floor(x)) * 1000.0);
  iIntHash = hash == 1000 ? 0 : hash;
  return iIntHash;
}

void TreeCpdNode_cl::ClearHashes() {
  for (DLRIterator_cl it(this); it.NotNull(); ++it) {
    it.Current()->iHashName = Name_sptr();
    it.Current()->iIntHash = kUnsetHash;
  }
}

void TreeCpdNode_cl::GetReducedDomain(const SingleRv_sptr& rv, DomainSubset_cl* subset, int recursive) const {
  int position = iGraph->GetAllVars()->GetFirstEntry(SingleVar_sptr(rv));
  for (const TreeCpdNode_cl* node = this; node->HasParent(); node = node->GetNodeParent()) {
    const TreeCpdNode_cl* parent = node->GetNodeParent();
    parent->iSplit->GetReducedDomain(position, node->GetBranchInParent(), subset);
    if (!recursive) return;
  }
}

RvVector_sptr TreeCpdNode_cl::GetTestRvs() const {
  RvVector_sptr out = new RvVector_cl();
  if (iSplit) iSplit->GetTestRvs(Parents(), out);
  return out;
}

RvVector_sptr TreeCpdNode_cl::GetAllTestRvs() const {
  RvVector_sptr out = new RvVector_cl();
  RvVector_sptr parents = Parents();
  for (const TreeCpdNode_cl* node = this; node; node = node->GetNodeParent())
    if (node->iSplit) node->iSplit->GetTestRvs(parents, out);
  return out;
}

int TreeCpdNode_cl::HasBadAncestor(const SingleRv_sptr& rv) const {
  RvVector_sptr parents = Parents();
  for (const TreeCpdNode_cl* node = GetNodeParent(); node; node = node->GetNodeParent()) {
    RvVector_sptr tested = new RvVector_cl();
    node->iSplit->GetTestRvs(parents, tested);
    if (tested->IsMember(SingleVar_sptr(rv))) return 1;
  }
  return 0;
}

int TreeCpdNode_cl::CheckNode(const RvVector_sptr& parents, const SingleRv_sptr& child) const {
  if (iSplit) {
    int ok = iSplit->CheckSplit(parents);
    for (int b = 0; b < GetNumChildren(); b++) ok &= GetChild(b)->CheckNode(parents, child);
    return ok;
  }
  if (iCpd.IsNull()) {
    std::cerr << "Error: A node in the tree has neither a split nor a leaf cpd." << std::endl;
    return 0;
  }
  if (iCpd->GetRv()->GetId() != child->GetId()) {
    std::cerr << "Error: A leaf cpd in the tree has wrong target rv." << std::endl;
    return 0;
  }
  int ok = 1;
  RvVector_sptr given = iCpd->GetGiven();
  for (int i = 0; i < given->GetNumberOfVars(); i++) {
    SingleRv_sptr rv = given->GetRv(i);
    if (HasBadAncestor(rv)) {
      std::cerr << "Error: Tree with variables " << VarsVector_sptr(iGraph->GetAllVars())
                << "\n\tParent in leaf cpd is already split on." << std::endl;
      ok = 0;
    }
    if (!parents->IsMember(SingleVar_sptr(rv))) {
      std::cerr << "Error: Tree with variables " << VarsVector_sptr(iGraph->GetAllVars())
                << "\n\tParent in leaf cpd is not a parent in the tree." << std::endl;
      ok = 0;
    }
  }
  return ok;
}

Cpd_sptr TreeCpdNode_cl::GetLeafCpd(int leaf, bool& found) const {
  for (DLRIterator_cl it(const_cast<TreeCpdNode_cl*>(this)); it.NotNull(); ++it) {
    if (it.Current()->IsLeaf() && it.Current()->iLeafNum == leaf) {
      found = true;
      return it.Current()->iCpd;
    }
  }
  found = false;
  return Cpd_sptr();
}

TreeCpdNode_cl* TreeCpdNode_cl::Clone(TreeCpdGraph_cl* graph) const {
  auto* copy = new TreeCpdNode_cl(graph);
  copy->iSplit = iSplit ? iSplit->Clone() : nullptr;
  copy->iCpd = iCpd.IsNull() ? iCpd : Conv2Cpd(iCpd->Copy());
  copy->iLeafNum = iLeafNum;
  copy->iName = iName;
  if (!copy->iCpd.IsNull()) copy->RebuildMapping();
  for (int b = 0; b < GetNumChildren(); b++) graph->AddEdge(copy, GetChild(b)->Clone(graph));
  return copy;
}

TreeCpdNode_cl* TreeCpdNode_cl::CreateConditionSplitCopy() {
  auto* copy = new TreeCpdNode_cl(iGraph);
  copy->iDetachedParent = GetNodeParent();
  copy->iDetachedBranch = GetBranchInParent();
  copy->iLeafNum = iLeafNum;
  copy->InstallSplit(new ConditionSplitTest_cl());
  return copy;
}

void TreeCpdNode_cl::RemoveConditionSplit(int removeChildren) {
  delete iSplit;
  iSplit = nullptr;
  ClearHashes();
  if (!removeChildren) return;
  while (GetNumChildren() > 0) {
    TreeCpdNode_cl* child = GetChild(GetNumChildren() - 1);
    iLeafNum = std::max(iLeafNum, child->iLeafNum);
    for (DLRIterator_cl it(child); it.NotNull(); ++it) iLeafNum = std::max(iLeafNum, it.Current()->iLeafNum);
    Vector_tmpl<TreeCpdNode_cl*> subtree;
    for (DLRIterator_cl it(child); it.NotNull(); ++it) subtree.AddLast(it.Current());
    for (int i = subtree.GetSize() - 1; i >= 0; i--) iGraph->RemoveNode(subtree[i]);
  }
}

void TreeCpdNode_cl::WriteFile(std::ostream& out, int indent) const {
  RvVector_sptr parents = Parents();
  Measure_cl::Indent(out, indent);
  out << "{\n";
  if (iSplit) {
    Measure_cl::Indent(out, indent + 1);
    if (iSplit->GetSplitType() == CONDITION_SPLIT) {
      out << "split on condition ";
      static_cast<const ConditionSplitTest_cl*>(iSplit)->PrintCondition(out, parents);
    } else {
      out << "split on " << static_cast<const DomainSplitTest_cl*>(iSplit)->GetRv()->GetName();
    }
    out << " {";
    if (!iName.IsNull()) out << "  " << iName;
    out << "\n";
    for (int b = 0; b < GetNumChildren(); b++) {
      Measure_cl::Indent(out, indent + 2);
      iSplit->PrintBranch(out, b, parents);
      GetChild(b)->WriteFile(out, indent + 2);
    }
    Measure_cl::Indent(out, indent + 1);
    out << "}\n";
  } else if (!iCpd.IsNull()) {
    iCpd->WriteFile(out, indent + 1);
  } else {
    Measure_cl::Indent(out, indent + 1);
    out << "null;\n";
  }
  Measure_cl::Indent(out, indent);
  out << "}\n";
}

int TreeCpdNode_cl::GetStorageSize(int recursive) const {
  int size = static_cast<int>(sizeof(*this));
  if (iSplit) size += iSplit->GetStorageSize();
  if (!iCpd.IsNull()) size += iCpd->GetStorageSize(recursive);
  for (int b = 0; recursive && b < GetNumChildren(); b++) size += GetChild(b)->GetStorageSize(recursive);
  return size;
}

// ---------------------------------------------------------------- DLRIterator_cl

void DLRIterator_cl::Reset() {
  iStack.RemoveAll();
  if (iRoot) iStack.AddLast(iRoot);
}

// The stack holds the nodes still to visit, the current one on top; its children go on in reverse.
DLRIterator_cl& DLRIterator_cl::operator++() {
  TreeCpdNode_cl* node = iStack[iStack.GetSize() - 1];
  iStack.RemoveLast();
  for (int b = node->GetNumChildren() - 1; b >= 0; b--) iStack.AddLast(node->GetChild(b));
  return *this;
}

// ---------------------------------------------------------------- TreeCpd_cl

TreeCpd_cl::TreeCpd_cl(SingleRv_sptr child, RvVector_sptr parents)
    : BnCpd_cl(child, parents), iGraph(new TreeCpdGraph_cl()) {
  SyncGraph();
  iRoot = new TreeCpdNode_cl(iGraph);
}

TreeCpd_cl::TreeCpd_cl(const TreeCpd_cl& other) : Measure_cl(other), BnCpd_cl(other), iGraph(new TreeCpdGraph_cl()) {
  SyncGraph();
  iRoot = other.iRoot->Clone(iGraph);
  iGraph->SetNumLeafs(other.iGraph->GetNumLeafs());
}

void TreeCpd_cl::SyncGraph() {
  iGraph->SetAllVars(iAllVars);
  for (DLRIterator_cl it(iRoot); it.NotNull(); ++it)
    if (!it.Current()->iCpd.IsNull()) it.Current()->RebuildMapping();
}

void TreeCpd_cl::AddParents(RvVector_sptr parents) {
  BnCpd_cl::AddParents(parents);
  SyncGraph();
}

void TreeCpd_cl::AddParent(SingleRv_sptr parent) { AddParents(new RvVector_cl(SingleVar_sptr(parent))); }

// Tested parents stay in place; the positions of the others move down over the removed ones.
void TreeCpd_cl::DeleteParents(RvVector_sptr parents) {
  Vector_tmpl<int> map;
  int next = 0;
  for (int i = 0; i < iParents->GetNumberOfVars(); i++)
    map.AddLast(parents->IsMember(SingleVar_sptr(iParents->GetRv(i))) ? -1 : next++);
  for (DLRIterator_cl it(iRoot); it.NotNull(); ++it) {
    SplitTest_cl* split = it.Current()->iSplit;
    if (!split) continue;
    RvVector_sptr tested = new RvVector_cl();
    split->GetTestRvs(iParents, tested);
    if (!tested->IsEmptyIntersection(parents)) {
      std::cerr << "TreeCpd_cl::DeleteParents: a split of " << iChild->GetName() << " tests a parent to delete"
                << std::endl;
      abort();
    }
    if (split->GetSplitType() == CONDITION_SPLIT)
      static_cast<ConditionSplitTest_cl*>(split)->RemapPositions(map);
    else
      static_cast<DomainSplitTest_cl*>(split)->SetPosition(map[split->GetTestPosition()]);
  }
  BnCpd_cl::DeleteParents(parents);
  SyncGraph();
}

TreeCpdNode_cl* TreeCpd_cl::Walk(InstVector_sptr inst, RvMapping_sptr mapping, int stopAtUnmapped) const {
  TreeCpdNode_cl* node = iRoot;
  while (node->iSplit) {
    if (stopAtUnmapped && !node->iSplit->IsSplitInMapping(mapping)) return node;
    int branch = node->iSplit->Test(inst, mapping);
    if (branch < 0) return stopAtUnmapped ? node : nullptr;
    node = node->GetChild(branch);
  }
  return node;
}

TreeCpdNode_cl* TreeCpd_cl::FindLeaf(InstVector_sptr inst) const {
  RvMapping_sptr mapping;
  if (!iAllVars->IsEqualStrict(inst)) mapping = new RvMapping_cl(*iAllVars, *inst, 0);
  return Walk(inst, mapping, 0);
}

TreeCpdNode_cl* TreeCpd_cl::FindNode(InstVector_sptr inst, RvMapping_sptr mapping) const {
  return Walk(inst, mapping, 1);
}

namespace {

[[noreturn]] void NoLeaf(const SingleRv_sptr& child, const char* operation) {
  std::cerr << "TreeCpd_cl::" << operation << ": no leaf distribution of " << child->GetName() << " for the assignment"
            << std::endl;
  abort();
}

}  // namespace

double TreeCpd_cl::GetValue(InstVector_sptr inst) {
  TreeCpdNode_cl* leaf = FindLeaf(inst);
  if (!leaf || leaf->iCpd.IsNull()) NoLeaf(iChild, "GetValue");
  return leaf->iCpd->GetValueOfSuperset(inst, iAllVars->IsEqualStrict(inst) ? leaf->iMapping : RvMapping_sptr());
}

void TreeCpd_cl::Sample(Sample_sptr const& sample) {
  TreeCpdNode_cl* leaf = FindLeaf(sample);
  if (!leaf || leaf->iCpd.IsNull()) NoLeaf(iChild, "Sample");
  leaf->iCpd->SampleIntoSuperset(sample, iAllVars->IsEqualStrict(sample) ? leaf->iMapping : RvMapping_sptr());
}

Cpd_sptr TreeCpd_cl::GetLine(InstVector_sptr inst, int copy) {
  TreeCpdNode_cl* leaf = FindLeaf(inst);
  if (!leaf || leaf->iCpd.IsNull()) return Cpd_sptr();
  Cpd_sptr line = leaf->iCpd;
  if (line->DoesInheritFrom(BN_CPD)) return Conv2BnCpd(line)->GetLine(inst, copy);
  return copy ? Conv2Cpd(line->Copy()) : line;
}

InstVector_sptr TreeCpd_cl::ParentAssignment(int line) const {
  InstVector_sptr inst = new InstVector_cl(iAllVars);
  inst->SetValueDisc(line * (iChild->IsDiscrete() ? iChild->GetDomain()->GetDomainSize() : 1));
  return inst;
}

Cpd_sptr TreeCpd_cl::GetLine(int line) {
  if (!iParents->IsPureDiscrete() || iParents->GetJointDomainSize() < 0) return Cpd_sptr();
  return GetLine(ParentAssignment(line), 0);
}

void TreeCpd_cl::SetLine(InstVector_sptr inst, Cpd_sptr cpd, int copy) {
  TreeCpdNode_cl* leaf = FindLeaf(inst);
  if (!leaf) NoLeaf(iChild, "SetLine");
  leaf->SetCpd(copy && !cpd.IsNull() ? Conv2Cpd(cpd->Copy()) : cpd);
}

void TreeCpd_cl::SetLine(int line, Cpd_sptr cpd, int copy) { SetLine(ParentAssignment(line), cpd, copy); }

int TreeCpd_cl::GetNumParams() const {
  return GetNumLeafs() * (iChild->IsDiscrete() ? iChild->GetDomain()->GetDomainSize() - 1 : 2);
}

Cpd_sptr TreeCpd_cl::GetLeafCpd(int leaf) const {
  bool found = false;
  return iRoot->GetLeafCpd(leaf, found);
}

void TreeCpd_cl::AddSplit(TreeCpdNode_cl* node, SingleRv_sptr rv, int addParent) {
  if (addParent) AddParent(rv);
  if (!node->iSplit) node->SetConditionSplit();
}

void TreeCpd_cl::AddEVSplit(TreeCpdNode_cl* node, SingleRv_sptr rv, Value_cl* value, int addParent) {
  AddSplit(node, rv, addParent);
  node->AddEVConjCondition(rv, value, 1);
}

void TreeCpd_cl::AddGTESplit(TreeCpdNode_cl* node, SingleRv_sptr rv, Value_cl* value, int direction, int addParent) {
  AddSplit(node, rv, addParent);
  node->AddGTEConjCondition(rv, value, direction, 1);
}

void TreeCpd_cl::WriteFile(std::ostream& out) const {
  out << "probability(" << iChild->GetName();
  if (iParents->GetNumberOfVars() > 0) out << " |";
  for (int i = 0; i < iDiscParents->GetNumberOfVars(); i++)
    out << (i ? ", " : " ") << iDiscParents->GetRv(i)->GetName();
  for (int i = 0; i < iRealParents->GetNumberOfVars(); i++)
    out << (i ? ", " : "; ") << iRealParents->GetRv(i)->GetName();
  out << ") tree\n";
  iRoot->WriteFile(out, 0);
}

void TreeCpd_cl::WriteTable(std::ostream& out) const {
  out << "{\n";
  int rows = iParents->IsPureDiscrete() ? iParents->GetJointDomainSize() : -1;
  for (int row = 0; row < rows; row++) {
    iParents->WriteCpdStyle(out, row);
    TreeCpdNode_cl* leaf = FindLeaf(ParentAssignment(row));
    if (!leaf || leaf->iCpd.IsNull())
      out << "null";
    else
      leaf->iCpd->WriteFile(out);
    out << ";\n";
  }
  out << "}\n";
}
