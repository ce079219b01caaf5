// The weighted neighbour relation between the objects that the older agglomerative engine merges.
#include "clustering/cluster_graph.h"

int ClusterGraph_cl::AddObject(Name_sptr name) {
  iNames.AddLast(name);
  iLinks.AddLast(new IntSet_tmpl<double>(8, 0.0));
  return iNames.GetSize() - 1;
}

void ClusterGraph_cl::AddLink(int a, int b, double weight) {
  if (a == b) return;
  for (int side = 0; side < 2; side++) {
    IntSet_tmpl<double>* links = iLinks[side ? b : a];
    int other = side ? a : b;
    if (links->Exists(other)) links->GetEntry(other) = weight;
    else links->Insert(other, weight);
  }
}
