// Agglomerative clustering with a bounded number of candidate merges per node, and its tree files.
#include "clustering/hierarchical_clustering.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

#include "data/data_file.h"

namespace {
// A kept candidate of one pass, with the partner it would merge with.
class Candidate_cl : public ReverseClusteringNode_cl {
 public:
  Candidate_cl(ClusteringNode_cl* node, ClusteringNode_cl* partner) : ReverseClusteringNode_cl(node), iPartner(partner) {}
  ClusteringNode_cl* iPartner;
};

void OpenOrStop(std::ofstream& out, const std::string& file) {
  out.open(file);
  if (out) return;
  std::cerr << "HierarchicalClustering_cl::PrintTreeView Cannot write file " << file << std::endl;
  abort();
}
}  // namespace

HierarchicalClustering_cl::HierarchicalClustering_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : Clustering_cl(Name_sptr("Hierarchical"), iter, run) {
  iter->GetIntProperty("CutDepth", &iCutDepth, 0);
  iter->GetIntProperty("MaxMergesPerNode", &iMaxMergesPerNode, 5);
}

HierarchicalClustering_cl::HierarchicalClustering_cl(Name_sptr metric, int maxMergesPerNode)
    : Clustering_cl(Name_sptr("Hierarchical"), metric), iMaxMergesPerNode(maxMergesPerNode) {}

HierarchicalClustering_cl::~HierarchicalClustering_cl() {
  Cleanup();
  DeleteSolution();
  DeleteLeaves();
}

// ---------------------------------------------------------------- building the tree

void HierarchicalClustering_cl::Prepare() {
  std::cerr << "BOF HierarchicalClustering_cl::Prepare()" << std::endl;
  Cleanup();
  DeleteSolution();
  int n = GetNumObjects();
  int same = iLeaves.GetSize() == n;
  for (int i = 0; same && i < n; i++) same = iLeaves[i]->GetMetric() == (*iMetrics)[i];
  if (!same) {
    DeleteLeaves();
    for (int i = 0; i < n; i++) iLeaves.AddLast(new ClusteringNode_cl(i, (*iMetrics)[i], 0));
  }
  for (int i = 0; i < n; i++) iLeaves[i]->SetActive(1);
  iNextNodeId = n;
  // Twice as many buckets as nodes can ever be active, so the set never rehashes mid-run.
  iActive = new IdSet_tmpl<ClusteringNode_cl*>(2 * n + 1, nullptr);
  iActiveOrder.RemoveAll();
  iActiveCount = 0;
  iQueue = new Heap_cl(n * (iMaxMergesPerNode >= 0 ? iMaxMergesPerNode + 1 : 1) + 1);
  iQueueBuilt = 0;
  if (n > 0) iScratch = (*iMetrics)[0]->GetEmpty();
}

void HierarchicalClustering_cl::Run() {
  ActivateAndQueueInitLayer();
  while (iActive->GetSize() > iNumClusters) {
    ClusteringNode_cl* node = NextNode();
    if (!node) {
      std::cerr << "Queue depleted." << std::endl;
      if (iActive->GetSize() > 1) ReportDepletedQueue();
      break;
    }
    if (node->GetNumChildren() < 2) {
      // One of its children merged elsewhere: the other looks for a new partner.
      ClusteringNode_cl* survivor = node->GetNumChildren() == 1 ? node->GetChild(0) : nullptr;
      delete node;
      if (survivor && iActive->Exists(survivor)) QueueTestMerges(survivor);
      continue;
    }
    node->Combine();
    InactivateChildren(node);
    Activate(node);
    if (iActive->GetSize() <= iNumClusters) break;
    std::cerr << "Merged node " << node->GetId() << ", " << iActive->GetSize() << " active nodes left." << std::endl;
    QueueTestMerges(node);
  }
  CreateSolution();
}

void HierarchicalClustering_cl::Cleanup() {
  delete iQueue;  // the candidates left in it unlink themselves from the tree
  iQueue = nullptr;
  delete iActive;
  iActive = nullptr;
  delete iScratch;
  iScratch = nullptr;
}

void HierarchicalClustering_cl::ActivateAndQueueInitLayer() {
  int n = iLeaves.GetSize();
  if (n == 0) return;
  Activate(iLeaves[0]);
  long long total = static_cast<long long>(n) * (n - 1) / 2;
  long long shown = 0;
  for (int i = 1; i < n; i++) {
    QueueTestMerges(iLeaves[i]);
    Activate(iLeaves[i]);
    long long done = static_cast<long long>(i) * (i + 1) / 2;
    long long percent = 100 * done / total;
    if (percent <= shown) continue;
    shown = percent;
    std::cerr << done << " leaves merged and queued out of " << total << " (" << percent << "% done)." << std::endl;
  }
  iQueueBuilt = 1;
}

ClusteringNode_cl* HierarchicalClustering_cl::NextNode() {
  while (HeapEntry_cl* entry = iQueue->ExtractMax()) {
    ClusteringNode_cl* node = static_cast<ClusteringNode_cl*>(entry);
    if (node->IsActive()) return node;
    delete node;
  }
  return nullptr;
}

void HierarchicalClustering_cl::QueueTestMerges(ClusteringNode_cl* node) {
  // Every node keeps at least its best candidate, or the queue could run dry.
  int keep = iMaxMergesPerNode >= 0 ? iMaxMergesPerNode + 1 : 1;
  ClusteringMetric_cl* mine = node->GetMetric();
  // Worst kept candidate on top, so that a better one can take its place in constant time.
  Heap_cl kept(keep);
  // The costs of a block of partners come first, in one go; a partner that beats the worst kept
  // candidate has its metric computed again in full, so the candidates are those of pair by pair.
  constexpr int kBlock = 64;
  ClusteringMetric_cl* block[kBlock];
  double costs[kBlock];
  ClusteringNode_cl* partners[kBlock];
  int size = iActiveOrder.GetSize();
  for (int start = 0; start < size;) {
    int n = 0;
    for (; start < size && n < kBlock; start++) {
      ClusteringNode_cl* other = iActiveOrder[start];
      if (other == node) continue;
      partners[n] = other;
      block[n++] = other->GetMetric();
    }
    int filled = 0;
    for (; filled < n && kept.GetSize() < keep; filled++) {
      ClusteringNode_cl* candidate = new ClusteringNode_cl(-1, mine->GetEmpty(), 1);
      candidate->GetMetric()->ComputeCost(mine, block[filled]);
      kept.Insert(new Candidate_cl(candidate, partners[filled]), 0);
    }
    if (filled == n) continue;
    iScratch->ComputeCosts(mine, block + filled, n - filled, costs + filled);
    for (int i = filled; i < n; i++) {
      Candidate_cl* worst = static_cast<Candidate_cl*>(kept.Maximum());
      iScratch->SetCost(costs[i]);
      if (!iScratch->IHaveHigherPriority(worst->iNode->GetMetric())) continue;
      iScratch->ComputeCost(mine, block[i]);
      iScratch = worst->iNode->ExchangeMetric(iScratch);
      worst->iPartner = partners[i];
      kept.UpdateKey(worst);
    }
  }
  while (HeapEntry_cl* entry = kept.ExtractMax()) {
    Candidate_cl* candidate = static_cast<Candidate_cl*>(entry);
    ClusteringNode_cl* merge = candidate->iNode;
    merge->SetId(iNextNodeId++);
    merge->AddChild(node);
    merge->AddChild(candidate->iPartner);
    iQueue->Insert(merge, iQueueBuilt);
    delete candidate;
  }
}

namespace {
// The first place in order whose key is above key.
int FindAbove(const Vector_tmpl<ClusteringNode_cl*>& order, long long key) {
  int lo = 0, hi = order.GetSize();
  while (lo < hi) {
    int mid = (lo + hi) / 2;
    if (order[mid]->GetActiveKey() <= key) lo = mid + 1;
    else hi = mid;
  }
  return lo;
}
}  // namespace

void HierarchicalClustering_cl::Activate(ClusteringNode_cl* node) {
  node->SetActive(1);
  iActive->Insert(node, node);
  // The set never rehashes (see Prepare), so a node's bucket is fixed; a new entry heads its chain.
  long long bucket = HashToBucket(node->GetId(), kHashMultiplier, iActive->GetNumBuckets());
  node->SetActiveKey((bucket << 32) | (0xFFFFFFFFu - iActiveCount++));
  iActiveOrder.InsertAt(FindAbove(iActiveOrder, node->GetActiveKey()), node);
}

void HierarchicalClustering_cl::Inactivate(ClusteringNode_cl* node) {
  iActive->Remove(node);
  node->SetActive(0);
  iActiveOrder.RemoveIndexKeepOrder(FindAbove(iActiveOrder, node->GetActiveKey()) - 1);
}

void HierarchicalClustering_cl::InactivateChildren(ClusteringNode_cl* node) {
  for (int c = 0; c < 2; c++) {
    ClusteringNode_cl* child = node->GetChild(c);
    Inactivate(child);
    // The child's other candidates lose it; one left with no child at all is dropped at NextNode.
    for (int i = 0; i < child->GetNumParents();) {
      ClusteringNode_cl* spouse = child->GetParent(i);
      if (spouse == node) {
        i++;
        continue;
      }
      spouse->RemoveChild(child);
      if (spouse->GetNumChildren() == 0) spouse->SetActive(0);
    }
  }
}

void HierarchicalClustering_cl::ReportDepletedQueue() {
  std::cerr << "ERROR: The active set contains more than 1 node.  The nodes remaining are:" << std::endl;
  Vector_tmpl<ClusteringNode_cl*> left(iActive->GetSize() + 1, nullptr);
  for (int i = 0; i < iActiveOrder.GetSize(); i++) {
    ClusteringNode_cl* node = iActiveOrder[i];
    left.AddLast(node);
    int internal = node->GetNumChildren() == 2;
    std::cerr << "node = " << node->GetId() << ", left = " << (internal ? node->GetChild(0)->GetId() : -1)
              << ", right = " << (internal ? node->GetChild(1)->GetId() : -1) << ", cost = " << node->GetMetric()->GetCost()
              << std::endl;
  }
  std::cerr << "Trying test merges of all pairs:" << std::endl;
  for (int i = 0; i < left.GetSize(); i++)
    for (int j = i + 1; j < left.GetSize(); j++) {
      iScratch->ComputeCost(left[i]->GetMetric(), left[j]->GetMetric());
      std::cerr << "merged: left = " << left[i]->GetId() << ", right = " << left[j]->GetId()
                << ", cost = " << iScratch->GetCost() << std::endl;
    }
  abort();
}

void HierarchicalClustering_cl::CreateSolution() {
  iSolution.RemoveAll();
  for (int i = 0; i < iActiveOrder.GetSize(); i++) iSolution.AddLast(iActiveOrder[i]);
}

void HierarchicalClustering_cl::DeleteSolution() {
  Vector_tmpl<ClusteringNode_cl*>* nodes = GetLinearOrdering();
  for (int i = 0; i < nodes->GetSize(); i++)
    if (!(*nodes)[i]->IsLeaf()) delete (*nodes)[i];
  delete nodes;
  iSolution.RemoveAll();
}

void HierarchicalClustering_cl::DeleteLeaves() { iLeaves.DeleteAll(); }

// ---------------------------------------------------------------- reading the tree

Vector_tmpl<ClusteringNode_cl*>* HierarchicalClustering_cl::GetLinearOrdering() const {
  Vector_tmpl<ClusteringNode_cl*>* order = new Vector_tmpl<ClusteringNode_cl*>(2 * iLeaves.GetSize() + 1, nullptr);
  // A walk with its own stack: a tree of chained merges is as deep as it has leaves.
  Vector_tmpl<ClusteringNode_cl*> path(64, nullptr);
  Vector_tmpl<int> next(64, 0);
  for (int r = 0; r < iSolution.GetSize(); r++) {
    path.AddLast(iSolution[r]);
    next.AddLast(0);
    while (path.GetSize() > 0) {
      ClusteringNode_cl* top = path.GetLast();
      int& k = next.GetLast();
      if (k < top->GetNumChildren()) {
        path.AddLast(top->GetChild(k++));
        next.AddLast(0);
      } else {
        order->AddLast(top);
        path.RemoveLastElement();
        next.RemoveLastElement();
      }
    }
  }
  return order;
}

Vector_tmpl<int>* HierarchicalClustering_cl::GetClusterOrder() {
  Vector_tmpl<ClusteringNode_cl*>* nodes = GetLinearOrdering();
  Vector_tmpl<int>* leaves = new Vector_tmpl<int>(iLeaves.GetSize() + 1, -1);
  for (int i = 0; i < nodes->GetSize(); i++)
    if ((*nodes)[i]->IsLeaf()) leaves->AddLast((*nodes)[i]->GetId());
  delete nodes;
  return leaves;
}

void HierarchicalClustering_cl::GetAncestorsAtGeneration(ClusteringNode_cl* node, int depth,
                                                         Vector_tmpl<ClusteringNode_cl*>* out) const {
  Vector_tmpl<ClusteringNode_cl*> stack(16, nullptr);
  Vector_tmpl<int> levels(16, 0);
  stack.AddLast(node);
  levels.AddLast(0);
  while (stack.GetSize() > 0) {
    ClusteringNode_cl* top = stack.GetLast();
    int level = levels.GetLast();
    stack.RemoveLastElement();
    levels.RemoveLastElement();
    if (level >= depth || top->GetNumChildren() == 0) {
      out->AddLast(top);
      continue;
    }
    for (int c = top->GetNumChildren() - 1; c >= 0; c--) {
      stack.AddLast(top->GetChild(c));
      levels.AddLast(level + 1);
    }
  }
}

Vector_tmpl<int>* HierarchicalClustering_cl::GetClusters() {
  std::cerr << "BOF HierarchicalClustering_cl::GetClusters()" << std::endl;
  int n = iLeaves.GetSize();
  Vector_tmpl<int>* clusters = new Vector_tmpl<int>(n + 1, -1);
  clusters->AddEmptyLast(n);
  int cluster = 0;
  Vector_tmpl<ClusteringNode_cl*> subtrees(16, nullptr);
  Vector_tmpl<ClusteringNode_cl*> below(16, nullptr);
  for (int r = 0; r < iSolution.GetSize(); r++) {
    subtrees.RemoveAll();
    GetAncestorsAtGeneration(iSolution[r], iCutDepth, &subtrees);
    for (int s = 0; s < subtrees.GetSize(); s++, cluster++) {
      below.RemoveAll();
      // Every leaf of the subtree: descend past any depth.
      GetAncestorsAtGeneration(subtrees[s], 2147483647, &below);
      for (int i = 0; i < below.GetSize(); i++) (*clusters)[below[i]->GetId()] = cluster;
    }
  }
  int exhaustive = 1;
  for (int i = 0; i < n; i++) {
    if ((*clusters)[i] >= 0) continue;
    std::cerr << "ERROR: non-exhaustive Hierarchical Clustering: row " << i << " was not assigned to a cluster!"
              << std::endl;
    exhaustive = 0;
  }
  if (exhaustive) {
    std::cerr << "Hierarchical clustering solution passed mutual exclusiveness and exhaustiveness check." << std::endl;
  } else {
    for (int i = 0; i < n; i++) std::cerr << "row " << i << "\tcluster " << (*clusters)[i] << std::endl;
  }
  return clusters;
}

Vector_tmpl<Vector_tmpl<int>*>* HierarchicalClustering_cl::GetSeparableClusters(double minCostDifference,
                                                                                double maxSingletonParentCost,
                                                                                int maxSize) {
  Vector_tmpl<ClusteringNode_cl*>* nodes = GetLinearOrdering();
  int count = nodes->GetSize();
  // Children come before parents and a subtree's leaves are consecutive in leaf order, so each node's
  // leaves are a range: its first leaf's place in leafOrder and its leaf count.
  Vector_tmpl<int> leafOrder(iLeaves.GetSize() + 1, -1);
  for (int i = 0; i < count; i++) {
    ClusteringNode_cl* node = (*nodes)[i];
    node->SetMark(i);
    if (node->IsLeaf()) leafOrder.AddLast(node->GetId());
  }
  Vector_tmpl<int> first(count + 1, 0), size(count + 1, 0);
  first.AddEmptyLast(count);
  size.AddEmptyLast(count);
  int leaves = 0;
  for (int i = 0; i < count; i++) {
    ClusteringNode_cl* node = (*nodes)[i];
    if (node->GetNumChildren() == 0) {
      first[i] = leaves++;
      size[i] = 1;
      continue;
    }
    first[i] = first[node->GetChild(0)->GetMark()];
    for (int c = 0; c < node->GetNumChildren(); c++) size[i] += size[node->GetChild(c)->GetMark()];
  }
  Vector_tmpl<Vector_tmpl<int>*>* modules = new Vector_tmpl<Vector_tmpl<int>*>(10, nullptr);
  for (int i = 0; i < count; i++) {
    ClusteringNode_cl* node = (*nodes)[i];
    if (node->GetNumParents() == 0 || size[i] > maxSize) continue;
    ClusteringNode_cl* parent = node->GetParent(0);
    double cost = node->GetMetric()->GetCost();
    double parentCost = parent->GetMetric()->GetCost();
    if (parentCost == kMissingReal) continue;
    // A leaf has no cost of its own: only its parent's counts.
    int separable = node->GetNumChildren() == 0
                        ? parentCost <= maxSingletonParentCost
                        : cost != kMissingReal && cost - parentCost >= minCostDifference;
    if (!separable) continue;
    std::cerr << "HierarchicalClustering found separable node with id=[" << node->GetId() << "] leaves=[" << size[i]
              << "] cost=[" << cost << "] and parent cost=[" << parentCost << "]" << std::endl;
    Vector_tmpl<int>* rows = new Vector_tmpl<int>(size[i], -1);
    for (int k = 0; k < size[i]; k++) rows->AddLast(leafOrder[first[i] + k]);
    modules->AddLast(rows);
  }
  delete nodes;
  return modules;
}

// ---------------------------------------------------------------- tree view files

double HierarchicalClustering_cl::Metric2BranchLength(const ClusteringMetric_cl* metric, double minCost,
                                                      double maxCost) {
  double cost = metric->GetCost();
  if (cost == kMissingReal) return 1.0;
  if (strcmp(metric->GetName(), "Pearson") == 0) return cost;
  // A tree whose merges all cost the same has no spread to show.
  if (maxCost == minCost || minCost == kMissingReal) return 1.0;
  return 2.0 * (cost - minCost) / (maxCost - minCost) - 1.0;
}

void HierarchicalClustering_cl::ComputeCostStats(const Vector_tmpl<ClusteringNode_cl*>& nodes, double* minCost,
                                                 double* maxCost) const {
  const ClusteringMetric_cl* best = nullptr;
  const ClusteringMetric_cl* worst = nullptr;
  for (int i = 0; i < nodes.GetSize(); i++) {
    const ClusteringMetric_cl* metric = nodes[i]->GetMetric();
    if (nodes[i]->GetNumChildren() == 0 || metric->GetCost() == kMissingReal) continue;
    if (!best || metric->IHaveHigherPriority(best)) best = metric;
    if (!worst || worst->IHaveHigherPriority(metric)) worst = metric;
  }
  *minCost = best ? best->GetCost() : kMissingReal;
  *maxCost = worst ? worst->GetCost() : kMissingReal;
}

void HierarchicalClustering_cl::PrintTreeView(Name_sptr base, const Vector_tmpl<Name_sptr>* rowNames,
                                              const Vector_tmpl<Name_sptr>* columnNames) {
  std::string prefix = base.IsNull() ? "" : base->GetText();
  std::ofstream cdt, gtr;
  OpenOrStop(cdt, prefix + ".cdt");
  OpenOrStop(gtr, prefix + ".gtr");
  Vector_tmpl<ClusteringNode_cl*>* nodes = GetLinearOrdering();
  int columns = iMatrix.IsNull() ? 0 : iMatrix->GetNumCols();

  cdt << "GID\tId\tName\tGWEIGHT";
  for (int c = 0; c < columns; c++) {
    if (columnNames) cdt << "\t" << (*columnNames)[c];
    else cdt << "\tColumn " << c;
  }
  if (columns == 0) cdt << "\tDummy Column";
  cdt << "\n";
  cdt << "EWEIGHT\t\t\t";
  for (int c = 0; c < columns; c++) cdt << "\t1";
  cdt << "\n";

  double minCost, maxCost;
  ComputeCostStats(*nodes, &minCost, &maxCost);
  // A node's name is looked up by its place in the ordering, kept in its mark; 0 is unseen.
  Vector_tmpl<std::string*> names(nodes->GetSize() + 1, nullptr);
  for (int i = 0; i < nodes->GetSize(); i++) (*nodes)[i]->SetMark(0);
  int leaves = 0, internal = 0;
  for (int i = 0; i < nodes->GetSize(); i++) {
    ClusteringNode_cl* node = (*nodes)[i];
    if (node->GetNumChildren() == 0) {
      int row = node->GetId();
      names.AddLast(new std::string("GENE" + std::to_string(leaves) + "X"));
      node->SetMark(names.GetSize());
      cdt << *names.GetLast() << "\t" << row + 1 << "\t";
      if (rowNames) cdt << (*rowNames)[row];
      else cdt << row;
      cdt << "\t1";
      for (int c = 0; c < columns; c++) {
        double value = iMatrix->GetElement(row, c);
        cdt << "\t";
        if (value != kMissingReal) cdt << value;
      }
      cdt << "\n";
      leaves++;
      continue;
    }
    internal++;
    names.AddLast(new std::string("NODE" + std::to_string(internal) + "X"));
    node->SetMark(names.GetSize());
    int complete = node->GetNumChildren() == 2 && node->GetChild(0)->GetMark() && node->GetChild(1)->GetMark();
    if (!complete) {
      std::cerr << "Error detected.  Internal count = " << internal << ", name = " << *names.GetLast()
                << ", (leaf count = " << leaves << ")." << std::endl;
      std::cerr << "The left child " << node->GetChild(0)->GetId() << " should have been seen and was not."
                << std::endl;
      continue;
    }
    gtr << *names.GetLast() << "\t" << *names[node->GetChild(0)->GetMark() - 1] << "\t"
        << *names[node->GetChild(1)->GetMark() - 1] << "\t"
        << Metric2BranchLength(node->GetMetric(), minCost, maxCost) << "\n";
  }
  names.DeleteAll();
  delete nodes;
}
