// The graph of dependencies between modules.
#include "module/module_graph.h"

#include <cmath>
#include <string>

#include "pipeline/missing.h"
#include "pipeline/random.h"
#include "prob/gaussian.h"
#include "prob/single_inst.h"
#include "prob/split_test.h"

ModuleGraph_cl::ModuleGraph_cl(TreeCpd_sptr tree, VornTreeNodeInfos_cl* infos, NameSet_tmpl<int>* genes,
                               SpeciesAttributes_cl* geneAttributes)
    : iTree(tree),
      iInfos(infos),
      iParentNames(10, 0),
      iParent2Node(100, -1),
      iGenes(genes),
      iGeneAttributes(geneAttributes) {
  for (DLRIterator_cl it(tree->GetRoot()); it.NotNull(); ++it)
    if (infos->OwnsRows(it.Current())) AddNode(new ModuleGraphNode_cl(it.Current()->GetId()));
  for (DLRIterator_cl it(tree->GetRoot()); it.NotNull(); ++it) {
    TreeCpdNode_cl* node = it.Current();
    if (node->IsLeaf()) continue;
    int module = Node2LastGeneSplit(node);
    if (module < 0) continue;
    RvVector_sptr tested = node->GetTestRvs();
    for (int i = 0; i < tested->GetNumberOfVars(); i++) AddParent(tested->GetRv(i)->GetName(), module);
  }
}

void ModuleGraph_cl::SetFlag(NameSet_tmpl<int>& set, Name_sptr name, int value) {
  if (set.Exists(name)) set.GetEntry(name) = value;
  else set.Insert(name, value);
}

void ModuleGraph_cl::AddParent(Name_sptr name, int node) {
  ModuleGraphNode_cl* module = GetNode(node);
  if (!module) return;
  SetFlag(iParentNames, name, 1);
  SetFlag(module->GetParentNames(), name, 1);
}

void ModuleGraph_cl::RemoveParent(Name_sptr name, int node) {
  ModuleGraphNode_cl* module = GetNode(node);
  if (!module) return;
  SetFlag(iParentNames, name, 0);
  SetFlag(module->GetParentNames(), name, 0);
}

int ModuleGraph_cl::Node2LastGeneSplit(TreeCpdNode_cl* node) const {
  for (; node; node = node->GetNodeParent())
    if (iInfos->OwnsRows(node)) return node->GetId();
  return -1;
}

TreeCpdNode_cl* ModuleGraph_cl::WalkToLeaf(TreeCpdNode_cl* node, const InstVector_sptr& assignment) const {
  while (!node->IsLeaf()) {
    int branch = node->GetSplit()->Test(assignment);
    node = node->GetBranch(branch < 0 ? 0 : branch);
  }
  return node;
}

int ModuleGraph_cl::Parent2Node(Name_sptr name) {
  if (iParent2Node.Exists(name)) return iParent2Node.GetEntry(name);
  int row = iGenes->GetEntry(name);
  if (row < 0) return -1;
  RvVector_sptr parents = iTree->GetParents();
  TreeCpdNode_cl* node = iTree->GetRoot();
  while (!iInfos->OwnsRows(node) && !node->IsLeaf()) {
    RvVector_sptr tests = node->GetTestRvs();
    if (tests->GetNumberOfVars() == 0) return -1;
    SingleRv_sptr tested = tests->GetRv(0);
    int column = iGeneAttributes->GetColumn(tested->GetName());
    double value = column < 0 || row >= iGeneAttributes->GetNumRows() ? kMissingReal
                                                                        : iGeneAttributes->GetValue(row, column);
    InstVector_sptr assignment(new InstVector_cl(parents));
    SingleInst_sptr inst = assignment->GetInst(SingleVar_sptr(tested));
    if (value == kMissingReal || inst.IsNull()) return -1;
    if (inst->IsDiscrete() && !(value > -2147483648.0 && value < 2147483648.0)) return -1;
    if (inst->IsDiscrete()) inst->SetValue(static_cast<int>(value));
    else inst->SetValue(value);
    int branch = node->GetSplit()->Test(assignment);
    if (branch < 0) return -1;
    node = node->GetBranch(branch);
  }
  int id = iInfos->OwnsRows(node) ? node->GetId() : -1;
  iParent2Node.Insert(name, id);
  return id;
}

void ModuleGraph_cl::AddUnMarkedParents(Vector_tmpl<ModuleGraphNode_cl*>& stack, ModuleGraphNode_cl* node) {
  if (node->GetMark() == 2) return;
  node->SetMark(2);
  for (auto* entry : node->GetParentNames()) {
    if (entry->iValue != 1) continue;
    ModuleGraphNode_cl* module = GetNode(Parent2Node(entry->iKey));
    if (module && module->GetMark() != 2) stack.AddLast(module);
  }
}

int ModuleGraph_cl::SearchUpward(ModuleGraphNode_cl* start, const std::function<int(ModuleGraphNode_cl*)>& found) {
  UnMarkAllNodes();
  Vector_tmpl<ModuleGraphNode_cl*> stack(16, nullptr);
  stack.AddLast(start);
  while (stack.GetSize() > 0) {
    ModuleGraphNode_cl* node = stack.GetLast();
    stack.RemoveLastElement();
    if (found(node)) return 1;
    AddUnMarkedParents(stack, node);
  }
  return 0;
}

int ModuleGraph_cl::DoesPathExist(int from, int to) {
  ModuleGraphNode_cl* start = GetNode(to);
  ModuleGraphNode_cl* goal = GetNode(from);
  if (!start || !goal) return 0;
  return SearchUpward(start, [goal](ModuleGraphNode_cl* node) { return node == goal; });
}

int ModuleGraph_cl::IsAcyclic(Name_sptr name) {
  ModuleGraphNode_cl* start = GetNode(Parent2Node(name));
  if (!start) return 1;
  return !SearchUpward(start, [&name](ModuleGraphNode_cl* node) { return node->GetParentNames().GetEntry(name) == 1; });
}

void ModuleGraph_cl::BuildGraph() {
  for (int i = 0; i < iNodes.GetSize(); i++) {
    ModuleGraphNode_cl* node = iNodes[i];
    for (auto* entry : node->GetParentNames()) {
      if (entry->iValue != 1) continue;
      ModuleGraphNode_cl* from = GetNode(Parent2Node(entry->iKey));
      if (!from) continue;
      int exists = 0;
      for (int k = 0; k < from->GetNumChildren() && !exists; k++) exists = from->GetChild(k) == node;
      if (!exists) AddEdge(from, node);
    }
  }
}

void ModuleGraph_cl::LeafMoments(TreeCpdNode_cl* leaf, double& mean, double& variance) {
  mean = variance = 0.0;
  Cpd_sptr cpd = leaf->GetCpd();
  if (cpd.IsNull() || !cpd->DoesInheritFrom(GAUSSIAN)) return;
  Gaussian_sptr gaussian = Conv2Gaussian(cpd);
  mean = gaussian->GetMean(0);
  variance = gaussian->GetVariance(0) > 0.0 ? gaussian->GetVariance(0) : 0.0;
}

void ModuleGraph_cl::Sample(std::ostream& out, int genes, int experiments) {
  BuildGraph();
  Vector_tmpl<ModuleGraphNode_cl*>* order = TopologicalSort();
  Vector_tmpl<Name_sptr> rowNames(16, nullptr);
  NameSet_tmpl<int> parentRows(32, -1);
  Vector_tmpl<int> firstGeneRow(order->GetSize() + 1, -1);
  for (int m = 0; m < order->GetSize(); m++) {
    for (auto* entry : (*order)[m]->GetParentNames())
      if (entry->iValue == 1 && !parentRows.Exists(entry->iKey)) {
        parentRows.Insert(entry->iKey, rowNames.GetSize());
        rowNames.AddLast(entry->iKey);
      }
    firstGeneRow.AddLast(rowNames.GetSize());
    for (int g = 1; g <= genes; g++)
      rowNames.AddLast(Name_sptr(("g_" + std::to_string((*order)[m]->GetId()) + "_" + std::to_string(g)).c_str()));
  }
  Matrix_sptr values = Matrix_cl::AllocateCorrectType(rowNames.GetSize(), experiments);
  RvVector_sptr parents = iTree->GetParents();
  Random_cl& random = Random_cl::iGlobalRandomizer;
  for (int e = 0; e < experiments; e++) {
    InstVector_sptr assignment(new InstVector_cl(parents));
    for (int i = 0; i < assignment->GetNumberOfVars(); i++) (*assignment)[i]->SetMissing();
    NameSet_tmpl<int> drawn(32, 0);
    double mean = 0.0, variance = 0.0;
    for (int m = 0; m < order->GetSize(); m++) {
      ModuleGraphNode_cl* module = (*order)[m];
      if (m > 0) LeafMoments(WalkToLeaf(iTree->GetNode((*order)[m - 1]), assignment), mean, variance);
      for (auto* entry : module->GetParentNames()) {
        if (entry->iValue != 1 || drawn.Exists(entry->iKey)) continue;
        drawn.Insert(entry->iKey, 1);
        double x = mean + std::sqrt(variance) * random.SampleNormal();
        values->GetRow(parentRows.GetEntry(entry->iKey))[e] = x;
        for (int i = 0; i < parents->GetNumberOfVars(); i++)
          if (parents->GetRv(i)->GetName() == entry->iKey && !parents->GetRv(i)->IsDiscrete()) (*assignment)[i]->SetValue(x);
      }
      LeafMoments(WalkToLeaf(iTree->GetNode(module), assignment), mean, variance);
      for (int g = 0; g < genes; g++)
        values->GetRow(firstGeneRow[m] + g)[e] = mean + std::sqrt(variance) * random.SampleNormal();
    }
  }
  delete order;
  out << "Gene\t";
  for (int e = 0; e < experiments; e++) out << "e_" << e << '\t';
  out << '\n';
  values->WriteFile(out, &rowNames, kMissingReal);
}
