// Tree factors: per-leaf statistics of a tree CPD.
#include "prob/tree_factor.h"

#include <string>

TreeFactor_sptr Conv2TreeFactor(const Measure_sptr& m) { return Conv2X<TreeFactor_sptr>(m, "TreeFactor_cl"); }

TreeFactor_cl::TreeFactor_cl(BnCpd_sptr tree)
    : iTree(tree), iRVs(tree->GetRVs()), iLeaves(32, Measure_sptr(), 0.5, 2.0), iDiscrete(tree->GetRv()->IsDiscrete()) {
  SingleRv_sptr target = tree->GetRv();
  if (iDiscrete) {
    iLeafScope = new RvVector_cl(SingleVar_sptr(target));
  } else {
    NameDomain_sptr moments = new NameDomain_cl();
    for (const char* name : {"SumX", "SumXX", "Weight"}) moments->Add(Name_sptr(name));
    std::string name = std::string(target->GetName()->GetText()) + ".tree_factor";
    iLeafScope = new RvVector_cl(SingleVar_sptr(new SingleRv_cl(Name_sptr(name.c_str()), moments)));
  }
  iLeafSize = iLeafScope->GetJointDomainSize();
}

TreeFactor_cl::TreeFactor_cl(const TreeFactor_cl& other)
    : Measure_cl(other),
      iTree(other.iTree),
      iRVs(other.iRVs),
      iLeafScope(other.iLeafScope),
      iLeaves(32, Measure_sptr(), 0.5, 2.0),
      iNumLeaves(other.iNumLeaves),
      iLeafSize(other.iLeafSize),
      iDiscrete(other.iDiscrete) {
  for (int leaf = 0; leaf < iNumLeaves; leaf++)
    if (other.iLeaves.Exists(leaf)) iLeaves.Insert(leaf, other.iLeaves.GetEntry(leaf)->Copy());
}

Factor_sptr TreeFactor_cl::GetLeafFactor(int leaf) {
  if (!iLeaves.Exists(leaf)) {
    Factor_sptr factor = new Factor_cl(iLeafScope, 0, 0);
    factor->Initialize(0.0);
    iLeaves.Insert(leaf, factor);
    if (leaf >= iNumLeaves) iNumLeaves = leaf + 1;
  }
  return Conv2Factor(iLeaves.GetEntry(leaf));
}

void TreeFactor_cl::Add(int leaf, double x, double weight) {
  Factor_sptr factor = GetLeafFactor(leaf);
  if (iDiscrete) {
    factor->AddValue(weight, static_cast<int>(x));
    return;
  }
  factor->AddValue(weight * x, kSumX);
  factor->AddValue(weight * x * x, kSumXX);
  factor->AddValue(weight, kWeight);
}

void TreeFactor_cl::Reset() {
  for (int leaf = 0; leaf < iNumLeaves; leaf++)
    if (iLeaves.Exists(leaf)) Conv2Factor(iLeaves.GetEntry(leaf))->Initialize(0.0);
}

double TreeFactor_cl::Normalize(double z) {
  for (int leaf = 0; leaf < iNumLeaves; leaf++)
    if (iLeaves.Exists(leaf)) Conv2Factor(iLeaves.GetEntry(leaf))->MultiplyBy(1.0 / z);
  return 1.0 / z;
}

void TreeFactor_cl::WriteFile(std::ostream& out) const {
  out << "TreeFactor_cl: ";
  for (int leaf = 0; leaf < iNumLeaves; leaf++)
    if (iLeaves.Exists(leaf)) iLeaves.GetEntry(leaf)->WriteFile(out);
}
