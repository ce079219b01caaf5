// Module clusters.
#include "module/vorn_cluster.h"

#include <cstdio>
#include <iostream>
#include <string>

#include "data/data_file.h"
#include "pipeline/converters.h"
#include "pipeline/missing.h"
#include "prob/table_cpd.h"

namespace {
Vector_tmpl<Name_sptr>* CopyNames(const Vector_tmpl<Name_sptr>* names) {
  return names ? new Vector_tmpl<Name_sptr>(*names) : nullptr;
}

Name_sptr Suffixed(Name_sptr name, const char* suffix) {
  return Name_sptr((std::string(name->GetText()) + suffix).c_str());
}

// The names of the list's indices; null without a list.
Vector_tmpl<Name_sptr>* NamesOf(const Vector_tmpl<int>* list, const Vector_tmpl<Name_sptr>* names) {
  if (!list || !names) return nullptr;
  Vector_tmpl<Name_sptr>* out = new Vector_tmpl<Name_sptr>(list->GetSize() + 1, nullptr);
  for (int i = 0; i < list->GetSize(); i++) out->AddLast((*names)[(*list)[i]]);
  return out;
}

// From name to position, every name of the vector, in a table of the given size.
NameSet_tmpl<int>* NameHash(const Vector_tmpl<Name_sptr>* names, int buckets) {
  NameSet_tmpl<int>* hash = new NameSet_tmpl<int>(buckets, -1);
  if (names)
    for (int i = 0; i < names->GetSize(); i++) hash->Insert((*names)[i], i);
  return hash;
}
}  // namespace

// ---------------------------------------------------------------- VornSingleCluster_cl

VornSingleCluster_cl::VornSingleCluster_cl(Name_sptr name, VornCluster_cl* owner, int id)
    : iName(name), iId(id), iOwner(owner) {}

VornSingleCluster_cl::~VornSingleCluster_cl() { Delete(); }

void VornSingleCluster_cl::DropCaches() {
  delete iGenesHash;
  delete iExperimentsHash;
  delete iGeneNamesHash;
  delete iExperimentNamesHash;
  iGenesHash = iExperimentsHash = nullptr;
  iGeneNamesHash = iExperimentNamesHash = nullptr;
}

void VornSingleCluster_cl::AddGene(int gene) {
  if (!iGenes) iGenes = new Vector_tmpl<int>(10, -1);
  iGenes->AddLast(gene);
  DropCaches();
}

void VornSingleCluster_cl::AddExperiment(int experiment) {
  if (!iExperiments) iExperiments = new Vector_tmpl<int>(10, -1);
  iExperiments->AddLast(experiment);
  DropCaches();
}

IntSet_tmpl<int>* VornSingleCluster_cl::GetGenesHash() {
  if (!iGenesHash) iGenesHash = iGenes ? Converters_cl::Vec2Hash(*iGenes) : new IntSet_tmpl<int>(1, -1);
  return iGenesHash;
}

IntSet_tmpl<int>* VornSingleCluster_cl::GetExperimentsHash() {
  if (!iExperimentsHash)
    iExperimentsHash = iExperiments ? Converters_cl::Vec2Hash(*iExperiments) : new IntSet_tmpl<int>(1, -1);
  return iExperimentsHash;
}

NameSet_tmpl<int>* VornSingleCluster_cl::GetGeneNamesHash() {
  if (!iGeneNamesHash) {
    Vector_tmpl<Name_sptr>* names = CreateGeneNames();
    iGeneNamesHash = NameHash(names, GetNumGenes() + 1);
    delete names;
  }
  return iGeneNamesHash;
}

NameSet_tmpl<int>* VornSingleCluster_cl::GetExperimentNamesHash() {
  if (!iExperimentNamesHash) {
    Vector_tmpl<Name_sptr>* names = CreateExperimentNames();
    iExperimentNamesHash = NameHash(names, GetNumExperiments() + 1);
    delete names;
  }
  return iExperimentNamesHash;
}

int VornSingleCluster_cl::HasGene(int gene) { return GetGenesHash()->GetEntry(gene) != -1; }
int VornSingleCluster_cl::HasGene(Name_sptr gene) { return GetGeneNamesHash()->GetEntry(gene) != -1; }
int VornSingleCluster_cl::HasExperiment(Name_sptr experiment) {
  return GetExperimentNamesHash()->GetEntry(experiment) != -1;
}

void VornSingleCluster_cl::Add(const VornSingleCluster_cl* other) {
  auto joined = [](const Vector_tmpl<int>* mine, const Vector_tmpl<int>* theirs) -> Vector_tmpl<int>* {
    if (!mine && !theirs) return nullptr;
    Vector_tmpl<int>* both = new Vector_tmpl<int>(10, -1);
    if (mine) both->Concat(mine);
    if (theirs) both->Concat(theirs);
    return both;
  };
  Vector_tmpl<int>* genes = joined(iGenes, other->iGenes);
  Vector_tmpl<int>* experiments = joined(iExperiments, other->iExperiments);
  Delete();
  iGenes = genes;
  iExperiments = experiments;
}

void VornSingleCluster_cl::Delete() {
  DropCaches();
  delete iGenes;
  delete iExperiments;
  iGenes = iExperiments = nullptr;
}

Vector_tmpl<Name_sptr>* VornSingleCluster_cl::CreateGeneNames() const {
  return NamesOf(iGenes, iOwner->GetGeneNames());
}

Vector_tmpl<Name_sptr>* VornSingleCluster_cl::CreateExperimentNames() const {
  return NamesOf(iExperiments, iOwner->GetExperimentNames());
}

void VornSingleCluster_cl::WriteFile(std::ostream& out) const {
  out << iName << '\t';
  const Vector_tmpl<Name_sptr>* names = iOwner->GetGeneNames();
  for (int i = 0; i < GetNumGenes(); i++) out << (*names)[(*iGenes)[i]] << '\t';
  out << '\n';
}

// ---------------------------------------------------------------- VornCluster_cl

VornCluster_cl::VornCluster_cl(Name_sptr species, Vorn_cl* vorn, AttributeGroupType_cl type)
    : Vector_tmpl<VornSingleCluster_cl*>(10, nullptr), iName(species) {
  SpeciesVorn_cl* data = vorn->GetData()->GetSpecies(species);
  SetNames(data ? data->GetMicroarray() : nullptr);
  BnCpd_sptr cpd = vorn->CreateExpressionCpd(species, nullptr, 0, 0);
  VornTreeNodeInfos_cl infos;
  TreeCpd_sptr tree = Conv2TreeCpd(cpd);
  // Modules live in the infos of a learned tree; any other distribution is turned into a tree of
  // the species' two-valued gene attributes.
  if (tree.IsNull() && data) tree = BuildTree(data, &infos);
  if (!tree.IsNull()) LoadFromTree(tree, type, &infos);
}

VornCluster_cl::VornCluster_cl(Name_sptr species, Vorn_cl* vorn, VornAttributeGroup_cl* group)
    : Vector_tmpl<VornSingleCluster_cl*>(10, nullptr), iName(species) {
  SpeciesVorn_cl* data = vorn->GetData()->GetSpecies(species);
  if (!data || !data->GetMicroarray()) return;
  SetNames(data->GetMicroarray());
  int experiments = group->GetType() == EXPERIMENT_ATTRIBUTES;
  SpeciesAttributes_cl* values = data->GetAttributeData(experiments ? EXPERIMENT_ATTRIBUTES : GENE_ATTRIBUTES);
  int objects = data->GetNumObjects(experiments ? EXPERIMENT_ATTRIBUTES : GENE_ATTRIBUTES);
  if (values->GetNumRows() < objects) objects = values->GetNumRows();
  for (auto* entry : group->GetAttributes()) {
    int column = values->GetColumn(entry->iKey);
    if (!experiments) {
      VornSingleCluster_cl* cluster = AddCluster(entry->iKey, GetSize());
      for (int g = 0; column >= 0 && g < objects; g++)
        if (values->GetValue(g, column) == 1.0) cluster->AddGene(g);
      continue;
    }
    VornSingleCluster_cl* up = AddCluster(Suffixed(entry->iKey, "-up"), GetSize());
    VornSingleCluster_cl* down = AddCluster(Suffixed(entry->iKey, "-down"), GetSize());
    for (int e = 0; column >= 0 && e < objects; e++) {
      double x = values->GetValue(e, column);
      if (x == 1.0) up->AddExperiment(e);
      if (x == -1.0) down->AddExperiment(e);
    }
  }
}

VornCluster_cl::VornCluster_cl(Microarray_cl* microarray, double up, double down)
    : Vector_tmpl<VornSingleCluster_cl*>(10, nullptr), iName(microarray->GetName()) {
  SetNames(microarray);
  Matrix_sptr values = microarray->GetMatrix();
  for (int e = 0; e < microarray->GetNumExperiments(); e++) {
    VornSingleCluster_cl* high = AddCluster(Suffixed(microarray->GetExperimentName(e), "-up"), GetSize());
    VornSingleCluster_cl* low = AddCluster(Suffixed(microarray->GetExperimentName(e), "-down"), GetSize());
    high->AddExperiment(e);
    low->AddExperiment(e);
    for (int g = 0; g < microarray->GetNumGenes(); g++) {
      double x = values->GetRow(g)[e];
      if (x == kMissingReal) continue;
      if (x >= up) high->AddGene(g);
      if (x <= down) low->AddGene(g);
    }
  }
}

VornCluster_cl::VornCluster_cl(Microarray_cl* microarray)
    : Vector_tmpl<VornSingleCluster_cl*>(10, nullptr), iName(microarray->GetName()) {
  SetNames(microarray);
  for (int g = 0; g < microarray->GetNumGenes(); g++) AddCluster(microarray->GetGeneName(g), g)->AddGene(g);
}

VornCluster_cl::VornCluster_cl(Name_sptr name, const Vector_tmpl<Name_sptr>& clusters,
                               const Vector_tmpl<Name_sptr>& genes, Matrix_sptr values,
                               const NameSet_tmpl<int>* genesHash)
    : Vector_tmpl<VornSingleCluster_cl*>(10, nullptr), iName(name) {
  NameSet_tmpl<int> grown(100, -1);
  iGeneNames = new Vector_tmpl<Name_sptr>(10, nullptr);
  for (int c = 0; c < clusters.GetSize(); c++) AddCluster(clusters[c], c);
  int rows = genes.GetSize() < values->GetNumRows() ? genes.GetSize() : values->GetNumRows();
  int columns = clusters.GetSize() < values->GetNumCols() ? clusters.GetSize() : values->GetNumCols();
  IntSet_tmpl<int> seen(100, 0);
  for (int r = 0; r < rows; r++) {
    int gene = GeneIndex(genes[r], genesHash, &grown);
    if (gene < 0) continue;
    // A gene on several rows joins the union of their clusters, once each.
    int repeated = seen.Increment(gene, 1);
    const double* cells = values->GetRow(r);
    for (int c = 0; c < columns; c++) {
      VornSingleCluster_cl* cluster = (*this)[c];
      if (cells[c] == 1.0 && !(repeated && cluster->GetGenes() && cluster->GetGenes()->IsMember(gene)))
        cluster->AddGene(gene);
    }
  }
}

VornCluster_cl::VornCluster_cl(Name_sptr name, const Vector_tmpl<Name_sptr>& files,
                               const NameSet_tmpl<int>* genesHash)
    : Vector_tmpl<VornSingleCluster_cl*>(10, nullptr), iName(name) {
  NameSet_tmpl<int> grown(100, -1);
  iGeneNames = new Vector_tmpl<Name_sptr>(10, nullptr);
  for (int f = 0; f < files.GetSize(); f++) {
    DataFile_cl::StopUnlessReadable(files[f], "VornCluster_cl::VornCluster_cl");
    NameSet_tmpl<int>* list = DataFile_cl::LoadList(files[f], 0);
    // The list's running numbers give the file's order.
    Vector_tmpl<Name_sptr> ordered(list->GetSize() + 1, nullptr);
    ordered.AddLast(list->GetSize(), nullptr);
    for (auto* entry : *list)
      if (entry->iValue >= 0 && entry->iValue < list->GetSize()) ordered[entry->iValue] = entry->iKey;
    delete list;
    VornSingleCluster_cl* cluster = AddCluster(files[f], f);
    for (int i = 0; i < ordered.GetSize(); i++) {
      if (ordered[i].IsNull()) continue;
      int gene = GeneIndex(ordered[i], genesHash, &grown);
      if (gene >= 0 && !(cluster->GetGenes() && cluster->GetGenes()->IsMember(gene))) cluster->AddGene(gene);
    }
  }
}

VornCluster_cl::~VornCluster_cl() {
  DeleteAll();
  delete iGeneNames;
  delete iExperimentNames;
  delete iGeneNamesHash;
  delete iExperimentNamesHash;
}

void VornCluster_cl::SetNames(Microarray_cl* microarray) {
  if (!microarray) return;
  iGeneNames = CopyNames(&microarray->GetGeneNames());
  iExperimentNames = CopyNames(&microarray->GetExperimentNames());
}

VornSingleCluster_cl* VornCluster_cl::AddCluster(Name_sptr name, int id) {
  VornSingleCluster_cl* cluster = new VornSingleCluster_cl(name, this, id);
  AddLast(cluster);
  return cluster;
}

int VornCluster_cl::GeneIndex(Name_sptr gene, const NameSet_tmpl<int>* genesHash, NameSet_tmpl<int>* grown) {
  if (genesHash) {
    int index = genesHash->GetEntry(gene);
    if (index < 0) return -1;
    while (iGeneNames->GetSize() <= index) iGeneNames->AddLast(Name_sptr());
    (*iGeneNames)[index] = gene;
    return index;
  }
  int index = grown->GetEntry(gene);
  if (index < 0) {
    index = iGeneNames->GetSize();
    grown->Insert(gene, index);
    iGeneNames->AddLast(gene);
  }
  return index;
}

NameSet_tmpl<int>* VornCluster_cl::GetGeneNamesHash() {
  if (!iGeneNamesHash) iGeneNamesHash = NameHash(iGeneNames, iGeneNames ? iGeneNames->GetSize() : 1);
  return iGeneNamesHash;
}

NameSet_tmpl<int>* VornCluster_cl::GetExperimentNamesHash() {
  if (!iExperimentNamesHash)
    iExperimentNamesHash = NameHash(iExperimentNames, iExperimentNames ? iExperimentNames->GetSize() : 1);
  return iExperimentNamesHash;
}

Vector_tmpl<Name_sptr>* VornCluster_cl::CreateGeneNames() const { return CopyNames(iGeneNames); }
Vector_tmpl<Name_sptr>* VornCluster_cl::CreateExperimentNames() const { return CopyNames(iExperimentNames); }

VornSingleCluster_cl* VornCluster_cl::GetClusterById(int id) const {
  for (int i = 0; i < GetSize(); i++)
    if ((*this)[i]->GetId() == id) return (*this)[i];
  return nullptr;
}

VornSingleCluster_cl* VornCluster_cl::BuildCluster(const Vector_tmpl<int>* ids) {
  std::string name = "Cluster ";
  for (int i = 0; i < ids->GetSize(); i++) name += std::to_string((*ids)[i]) + " ";
  VornSingleCluster_cl* cluster = new VornSingleCluster_cl(Name_sptr(name.c_str()), this);
  for (int i = 0; i < ids->GetSize(); i++)
    if (VornSingleCluster_cl* member = GetClusterById((*ids)[i])) cluster->Add(member);
  return cluster;
}

void VornCluster_cl::WriteFile(std::ostream& out) const {
  for (int i = 0; i < GetSize(); i++) (*this)[i]->WriteFile(out);
}

TreeCpd_sptr VornCluster_cl::BuildTree(SpeciesVorn_cl* species, VornTreeNodeInfos_cl* infos) {
  Microarray_cl* microarray = species->GetMicroarray();
  SingleRv_sptr dummy(new SingleRv_cl(Name_sptr("dummy"), microarray->GetValueDomain()));
  TreeCpd_sptr tree(new TreeCpd_cl(dummy, RvVector_sptr(new RvVector_cl())));
  infos->Set(tree->GetRoot(), new VornTreeNodeInfo_cl(species));
  SpeciesAttributes_cl* genes = species->GetGeneAttributes();
  Vector_tmpl<int> splits(genes->GetNumAttributes() + 1, -1);
  for (int i = 0; i < genes->GetNumAttributes(); i++) {
    Domain_sptr domain = genes->GetAttr(i)->GetRv()->GetDomain();
    if (domain->IsDiscrete() && domain->GetDomainSize() == 2) splits.AddLast(i);
  }
  TreeCpdNode_cl* node = tree->GetRoot();
  for (int k = 0; k < splits.GetSize(); k++) {
    Attr_cl* attribute = genes->GetAttr(splits[k]);
    std::cerr << "BuildTree adding split on attribute " << attribute->GetName() << std::endl;
    FalseConditionType_cl falseType = k + 1 == splits.GetSize() ? FALSE_CONDITION_FAIL : FALSE_CONDITION_PASS;
    AddTreeSplit(species, tree, node, attribute, genes->GetColumn(attribute->GetName()), falseType, infos);
    node = node->GetBranch(0);
  }
  return tree;
}

void VornCluster_cl::AddTreeSplit(SpeciesVorn_cl* species, TreeCpd_sptr tree, TreeCpdNode_cl* node,
                                  Attr_cl* attribute, int column, FalseConditionType_cl falseType,
                                  VornTreeNodeInfos_cl* infos) {
  SingleRv_sptr rv = attribute->GetRv();
  int isNew = !tree->GetParents()->IsMember(SingleVar_sptr(rv));
  tree->AddEVSplit(node, rv, rv->GetDomain()->IndexToValue(1), isNew);
  VornTreeNodeInfo_cl* info = infos->Get(node);
  info->SetFalseCondition(falseType);
  info->SetSplitType(GENE_ATTRIBUTES);
  RealValue_cl one(1.0);
  info->Split(species, Index_cl(column), &one, COMPARISON_EQUAL, 1, infos);
  for (int b = 0; b < node->GetNumChildren(); b++)
    node->GetBranch(b)->SetCpd(Cpd_sptr(new TableCpd_cl(tree->GetRv(), RvVector_sptr(new RvVector_cl()))));
}

void VornCluster_cl::LoadFromTree(TreeCpd_sptr tree, AttributeGroupType_cl type, VornTreeNodeInfos_cl* infos) {
  int nodes = 0, leaves = 0;
  for (DLRIterator_cl it(tree->GetRoot()); it.NotNull(); ++it) {
    nodes++;
    leaves += it.Current()->IsLeaf();
  }
  int leafNumber = leaves - 1, innerNumber = nodes - 2;
  Vector_tmpl<TreeCpdNode_cl*> stack(16, nullptr);
  TreeCpdNode_cl* root = tree->GetRoot();
  for (int b = root->GetNumChildren() - 1; b >= 0; b--) stack.AddLast(root->GetBranch(b));
  char name[32];
  while (stack.GetSize() > 0) {
    TreeCpdNode_cl* node = stack.GetLast();
    stack.RemoveLastElement();
    int number = node->IsLeaf() ? leafNumber-- : innerNumber--;
    for (int b = node->GetNumChildren() - 1; b >= 0; b--) stack.AddLast(node->GetBranch(b));
    VornTreeNodeInfo_cl* info = infos->Get(node);
    if (!info) continue;
    snprintf(name, sizeof(name), "Cluster %d", number);
    if (type == GENE_ATTRIBUTES && infos->OwnsRows(node)) {
      VornSingleCluster_cl* cluster = AddCluster(Name_sptr(name), number);
      Vector_tmpl<int>* rows = info->GetFilter()->GetRows();
      for (int i = 0; i < rows->GetSize(); i++) cluster->AddGene((*rows)[i]);
    } else if (type == EXPERIMENT_ATTRIBUTES && !node->IsLeaf() && info->GetSplitType() == EXPERIMENT_ATTRIBUTES) {
      VornSingleCluster_cl* cluster = AddCluster(Name_sptr(name), number);
      Vector_tmpl<int>* columns = info->CreateObjectList(EXPERIMENT_ATTRIBUTES, infos);
      for (int i = 0; i < columns->GetSize(); i++) cluster->AddExperiment((*columns)[i]);
      delete columns;
    }
  }
}
