// The values of attributes for one microarray.
#include "data/species_attributes.h"

#include <cmath>
#include <cstdlib>
#include <iostream>

#include "data/data_file.h"
#include "pipeline/missing.h"
#include "prob/single_inst.h"

const char* OPERATION_TYPE_STR[OPERATION_TYPE_NUM] = {"All", "And", "Average", "First", "Max", "Min", "Or"};

namespace {
// Attribute files: one header row, no header or key column, every column real.
const DataFileDescriptor_cl kAttributeDescriptor(1, 0, -1, 0, -1, 0, -999, -1, -1);

double kDefaultDiscretizationClusters[3] = {-1.0, 0.0, 1.0};

// Values outside the int range, the missing real among them, are no discrete level.
int IsIntValue(double x) { return x > -2147483648.0 && x < 2147483648.0; }
}  // namespace

SpeciesAttributes_cl::SpeciesAttributes_cl()
    : iMatrix(Matrix_cl::AllocateCorrectType(0, 0)), iAttrs(10, nullptr), iColumns(10, -1), iAttrIndex(32, -1) {}

void SpeciesAttributes_cl::AddAttr(Attr_cl* attribute, int column) {
  iAttrs.AddLast(attribute);
  iColumns.AddLast(column);
  iAttrIndex.Insert(attribute->GetName(), column);
  iInstVector = nullptr;
}

Attr_cl* SpeciesAttributes_cl::GetAttribute(Name_sptr name) const {
  int column = GetColumn(name);
  if (column < 0) return nullptr;
  // The shadowing entry of a repeated name is the last one added.
  for (int i = iAttrs.GetSize() - 1; i >= 0; i--)
    if (iColumns[i] == column) return iAttrs[i];
  return nullptr;
}

void SpeciesAttributes_cl::Load(Name_sptr file, VornAttributeGroup_cl* group) {
  DataFile_cl::StopUnlessReadable(file, "SpeciesAttributes_cl::Load");
  DataFile_cl data(file, kAttributeDescriptor);
  Vector_tmpl<Name_sptr>* names = data.GetMatrixColumnKeys(nullptr);
  Load(data.CreateMatrix(nullptr, nullptr), *names, group);
  delete names;
}

void SpeciesAttributes_cl::Load(Matrix_sptr matrix, const Vector_tmpl<Name_sptr>& names,
                                VornAttributeGroup_cl* group) {
  iMatrix = matrix;
  FillAttributes(names, group);
}

void SpeciesAttributes_cl::FillAttributes(const Vector_tmpl<Name_sptr>& names, VornAttributeGroup_cl* group) {
  for (int c = 0; c < names.GetSize(); c++) {
    Attr_cl* attribute = group->GetAttribute(names[c]);
    if (attribute) AddAttr(attribute, c);
  }
}

void SpeciesAttributes_cl::Load(Microarray_cl* microarray, VornAttributeGroup_cl* group) {
  int numExperiments = microarray->GetNumExperiments();
  int numColumns = 0;
  for (int e = 0; e < numExperiments; e++) numColumns += group->HasAttribute(microarray->GetExperimentName(e));
  int numGenes = microarray->GetNumGenes();
  iMatrix = Matrix_cl::AllocateCorrectType(numGenes, numColumns);
  Matrix_sptr values = microarray->GetMatrix();
  for (int e = 0, column = 0; e < numExperiments; e++) {
    Attr_cl* attribute = group->GetAttribute(microarray->GetExperimentName(e));
    if (!attribute) continue;
    AddAttr(attribute, column);
    if (attribute->GetRv()->IsDiscrete()) {
      double centers[3] = {kDefaultDiscretizationClusters[0], kDefaultDiscretizationClusters[1],
                           kDefaultDiscretizationClusters[2]};
      DiscretizeRow(microarray, e, iMatrix, column, centers, 3, 1);
    } else {
      for (int g = 0; g < numGenes; g++) {
        double x = values->GetRow(g)[e];
        iMatrix->GetRow(g)[column] = x == kMissingReal ? 0.0 : x;
      }
    }
    column++;
  }
}

void SpeciesAttributes_cl::DiscretizeRow(Microarray_cl* microarray, int experiment, Matrix_sptr matrix, int column,
                                         double* centers, int numCenters, int defaultIndex) {
  int numGenes = microarray->GetNumGenes();
  Matrix_sptr values = microarray->GetMatrix();
  Vector_tmpl<int> assignment(numGenes + 1, -1);
  assignment.AddLast(numGenes, -1);
  Vector_tmpl<double> sums(numCenters, 0.0);
  Vector_tmpl<int> counts(numCenters, 0);
  sums.AddLast(numCenters, 0.0);
  counts.AddLast(numCenters, 0);
  for (int pass = 0; pass < 50; pass++) {
    int changed = 0;
    for (int k = 0; k < numCenters; k++) {
      counts[k] = 0;
      sums[k] = 0.0;
    }
    for (int g = 0; g < numGenes; g++) {
      double x = values->GetRow(g)[experiment];
      if (x == kMissingReal) continue;
      int best = 0;
      for (int k = 1; k < numCenters; k++)
        if (std::fabs(x - centers[k]) < std::fabs(x - centers[best])) best = k;
      if (assignment[g] != best) changed = 1;
      assignment[g] = best;
      counts[best]++;
      sums[best] += x;
    }
    for (int k = 0; k < numCenters; k++) centers[k] = counts[k] ? sums[k] / counts[k] : 0.0;
    if (!changed && pass >= 11) break;
  }
  std::cerr << "Centers are: ";
  for (int k = 0; k < numCenters; k++) std::cerr << centers[k] << "\t";
  std::cerr << std::endl;
  for (int g = 0; g < numGenes; g++)
    matrix->GetRow(g)[column] = assignment[g] < 0 ? defaultIndex : assignment[g];
}

void SpeciesAttributes_cl::Load(int rows, VornAttributeGroup_cl* group, double start, double step) {
  iMatrix = Matrix_cl::AllocateCorrectType(rows, group->GetNumAttributes());
  int column = 0;
  for (auto* entry : group->GetAttributes()) {
    AddAttr(entry->iValue, column);
    for (int r = 0; r < rows; r++) iMatrix->GetRow(r)[column] = r * step + start;
    column++;
  }
}

double SpeciesAttributes_cl::ComputeOp(double a, double b, OperationType_cl operation) {
  switch (operation) {
    case OPERATION_AND:
      return a == 1.0 && b == 1.0 ? 1.0 : 0.0;
    case OPERATION_OR:
      return a == 1.0 || b == 1.0 ? 1.0 : 0.0;
    default:
      return kMissingReal;
  }
}

void SpeciesAttributes_cl::Load(SpeciesAttributes_cl* source, VornAttributeGroup_cl* target,
                                VornAttributeGroup_cl* first, VornAttributeGroup_cl* second,
                                OperationType_cl operation) {
  int rows = source->GetNumRows();
  // The pairs are walked twice: to count the columns, then to fill them.
  auto forEachPair = [&](auto visit) {
    for (auto* a : first->GetAttributes()) {
      int ca = source->GetColumn(a->iKey);
      if (ca < 0) continue;
      for (auto* b : second->GetAttributes()) {
        int cb = source->GetColumn(b->iKey);
        if (cb < 0 || a->iKey == b->iKey) continue;
        std::string name = std::string(a->iKey->GetText()) + "_" + b->iKey->GetText();
        Attr_cl* combined = target->GetAttribute(Name_sptr(name.c_str()));
        if (combined) visit(combined, ca, cb);
      }
    }
  };
  int numColumns = 0;
  forEachPair([&](Attr_cl*, int, int) { numColumns++; });
  iMatrix = Matrix_cl::AllocateCorrectType(rows, numColumns);
  int column = 0;
  forEachPair([&](Attr_cl* combined, int ca, int cb) {
    AddAttr(combined, column);
    for (int r = 0; r < rows; r++) {
      const double* cells = source->iMatrix->GetRow(r);
      iMatrix->GetRow(r)[column] = ComputeOp(cells[ca], cells[cb], operation);
    }
    column++;
  });
}

void SpeciesAttributes_cl::Add(SpeciesAttributes_cl* other) {
  int shift = iMatrix->GetNumCols();
  if (shift == 0 && iAttrs.GetSize() == 0) iMatrix = Matrix_cl::AllocateCorrectType(other->GetNumRows(), 0);
  if (other->GetNumRows() != GetNumRows()) {
    std::cerr << "SpeciesAttributes_cl::Add " << other->GetNumRows() << " rows added to a table of " << GetNumRows()
              << " rows" << std::endl;
    abort();
  }
  iMatrix = iMatrix->ConcatColumns(other->iMatrix);
  for (int i = 0; i < other->iAttrs.GetSize(); i++) AddAttr(other->iAttrs[i], other->iColumns[i] + shift);
}

void SpeciesAttributes_cl::Update(Name_sptr name, double value) {
  int column = GetColumn(name);
  if (column < 0) return;
  for (int r = 0; r < GetNumRows(); r++) iMatrix->GetRow(r)[column] = value;
}

void SpeciesAttributes_cl::Update(VornAttributeGroup_cl* group, double value) {
  for (auto* entry : group->GetAttributes()) Update(entry->iKey, value);
}

void SpeciesAttributes_cl::KeepColumns(const Vector_tmpl<int>& columns) {
  int rows = GetNumRows();
  Matrix_sptr kept = Matrix_cl::AllocateCorrectType(rows, columns.GetSize());
  for (int r = 0; r < rows; r++) {
    const double* from = iMatrix->GetRow(r);
    double* to = kept->GetRow(r);
    for (int c = 0; c < columns.GetSize(); c++) to[c] = from[columns[c]];
  }
  Vector_tmpl<int> newColumn(iMatrix->GetNumCols() + 1, -1);
  newColumn.AddLast(iMatrix->GetNumCols(), -1);
  for (int c = 0; c < columns.GetSize(); c++) newColumn[columns[c]] = c;
  Vector_tmpl<Attr_cl*> attrs(iAttrs);
  Vector_tmpl<int> attrColumns(iColumns);
  iAttrs.RemoveAll();
  iColumns.RemoveAll();
  iAttrIndex.RemoveAll();
  iMatrix = kept;
  for (int i = 0; i < attrs.GetSize(); i++)
    if (newColumn[attrColumns[i]] >= 0) AddAttr(attrs[i], newColumn[attrColumns[i]]);
  iInstVector = nullptr;
}

void SpeciesAttributes_cl::Delete(VornAttributeGroup_cl* group) {
  Vector_tmpl<int> dropped(iMatrix->GetNumCols() + 1, 0);
  dropped.AddLast(iMatrix->GetNumCols(), 0);
  for (int i = 0; i < iAttrs.GetSize(); i++)
    if (group->GetAttribute(iAttrs[i]->GetName()) == iAttrs[i]) dropped[iColumns[i]] = 1;
  Vector_tmpl<int> columns(iMatrix->GetNumCols() + 1, -1);
  for (int c = 0; c < iMatrix->GetNumCols(); c++)
    if (!dropped[c]) columns.AddLast(c);
  KeepColumns(columns);
}

void SpeciesAttributes_cl::Reduce(const IntSet_tmpl<int>& keep) {
  Vector_tmpl<int> rows(GetNumRows() + 1, -1);
  for (int r = 0; r < GetNumRows(); r++)
    if (keep.GetEntry(r) != 0) rows.AddLast(r);
  MatrixFilter_cl filter(&rows, 0, nullptr, 0);
  iMatrix = iMatrix->Copy(&filter);
  iInstVector = nullptr;
}

void SpeciesAttributes_cl::DeleteAttributeValues(int column) {
  int rows = GetNumRows();
  Vector_tmpl<int> distinct(rows + 1, 0);
  for (int r = 0; r < rows; r++) {
    double x = iMatrix->GetRow(r)[column];
    if (IsIntValue(x)) distinct.AddLast(static_cast<int>(x));
  }
  distinct.SortWithOperator();
  Vector_tmpl<int> levels(rows + 1, 0);
  for (int i = 0; i < distinct.GetSize(); i++)
    if (i == 0 || distinct[i] != distinct[i - 1]) levels.AddLast(distinct[i]);
  for (int r = 0; r < rows; r++) {
    double& x = iMatrix->GetRow(r)[column];
    if (IsIntValue(x)) x = levels.BinarySearch(static_cast<int>(x));
  }
}

Matrix_sptr SpeciesAttributes_cl::GetData(const Vector_tmpl<Name_sptr>& names) const {
  int rows = GetNumRows();
  Matrix_sptr data = Matrix_cl::AllocateCorrectType(rows, names.GetSize());
  for (int i = 0; i < names.GetSize(); i++) {
    int column = GetColumn(names[i]);
    for (int r = 0; r < rows; r++) data->GetRow(r)[i] = column < 0 ? kMissingReal : iMatrix->GetRow(r)[column];
  }
  return data;
}

void SpeciesAttributes_cl::GetAttributesValues(InstVector_sptr& inst, int row) const {
  const double* cells = iMatrix->GetRow(row);
  for (int i = 0; i < iAttrs.GetSize(); i++) {
    SingleInst_sptr value = inst->GetInst(SingleVar_sptr(iAttrs[i]->GetRv()));
    if (value.IsNull()) continue;
    double x = cells[iColumns[i]];
    if (x == kMissingReal || (value->IsDiscrete() && !IsIntValue(x))) value->SetMissing();
    else if (value->IsDiscrete()) value->SetValue(static_cast<int>(x));
    else value->SetValue(x);
  }
}

RvVector_sptr SpeciesAttributes_cl::GetRvs() const {
  RvVector_sptr rvs(new RvVector_cl(iAttrs.GetSize() + 1));
  for (int i = 0; i < iAttrs.GetSize(); i++) rvs->AddLast(iAttrs[i]->GetRv());
  return rvs;
}

InstVector_sptr SpeciesAttributes_cl::GetFullInstVec() {
  if (iInstVector.IsNull()) {
    iInstVector = new InstVector_cl(iAttrs.GetSize() + 1);
    for (int i = 0; i < iAttrs.GetSize(); i++) iInstVector->AddLast(SingleInst_cl::Create(iAttrs[i]->GetRv()));
  }
  return iInstVector;
}

void SpeciesAttributes_cl::Write(std::ostream& out, VornAttributeGroup_cl* group) const {
  Vector_tmpl<int> columns(iAttrs.GetSize() + 1, -1);
  for (int i = 0; i < iAttrs.GetSize(); i++) {
    if (group && group->GetAttribute(iAttrs[i]->GetName()) != iAttrs[i]) continue;
    out << iAttrs[i]->GetName() << '\t';
    columns.AddLast(iColumns[i]);
  }
  out << '\n';
  for (int r = 0; r < GetNumRows(); r++) {
    const double* cells = iMatrix->GetRow(r);
    for (int c = 0; c < columns.GetSize(); c++) {
      if (cells[columns[c]] != kMissingReal) out << cells[columns[c]];
      out << '\t';
    }
    out << '\n';
  }
}
