// Table CPDs: lines by parent assignment, sampling and the table text.
#include "prob/table_cpd.h"

#include <cstdlib>
#include <iostream>

#include "prob/multinomial.h"

TableCpd_sptr Conv2TableCpd(const Measure_sptr& m) { return Conv2X<TableCpd_sptr>(m, "TableCpd_cl"); }

TableCpd_cl::TableCpd_cl(SingleRv_sptr child, RvVector_sptr parents) : BnCpd_cl(child, parents) { ResetLines(); }

void TableCpd_cl::ResetLines() {
  if (iDiscParents->GetJointDomainSize() < 0) {
    std::cerr << "TableCpd_cl: the joint domain size of the discrete parents of " << iChild->GetName()
              << " does not fit an int" << std::endl;
    abort();
  }
  iLines.RemoveAll();
  iLines.AddEmptyLast(iNumLines);
}

TableCpd_cl::TableCpd_cl(const TableCpd_cl& other) : Measure_cl(other), BnCpd_cl(other) {
  for (int i = 0; i < other.iLines.GetSize(); i++) {
    Cpd_sptr line = other.iLines[i];
    iLines.AddLast(line.IsNull() ? line : Conv2Cpd(line->Copy()));
  }
}

double TableCpd_cl::GetValue(InstVector_sptr inst) {
  return GetLine(inst, 0)->GetValueOfSuperset(inst, RvMapping_sptr());
}

void TableCpd_cl::Sample(Sample_sptr const& sample) {
  GetLine(sample, 0)->SampleIntoSuperset(sample, RvMapping_sptr());
}

int TableCpd_cl::IsDeterministic() const {
  for (int i = 0; i < iLines.GetSize(); i++)
    if (iLines[i].IsNull() || !iLines[i]->IsDeterministic()) return 0;
  return 1;
}

void TableCpd_cl::AddParents(RvVector_sptr parents) {
  BnCpd_cl::AddParents(parents);
  ResetLines();
}

void TableCpd_cl::DeleteParents(RvVector_sptr parents) {
  BnCpd_cl::DeleteParents(parents);
  ResetLines();
}

Cpd_sptr TableCpd_cl::GetLine(InstVector_sptr inst, int copy) {
  Cpd_sptr line = iLines[GetLineIndex(inst)];
  if (line.IsNull()) {
    std::cerr << "TableCpd_cl::GetLine: line " << GetLineIndex(inst) << " of " << iChild->GetName() << " is empty"
              << std::endl;
    abort();
  }
  return copy ? Conv2Cpd(line->Copy()) : line;
}

void TableCpd_cl::SetLine(int line, Cpd_sptr cpd, int copy) {
  iLines[line] = copy && !cpd.IsNull() ? Conv2Cpd(cpd->Copy()) : cpd;
}

void TableCpd_cl::InitializeDiscrete(BnCpd_sptr cpd) {
  InstVector_sptr inst = new InstVector_cl(iAllVars);
  int childSize = iChild->GetDomain()->GetDomainSize();
  int child = iAllVars->GetNumberOfVars() - 1;
  for (int line = 0; line < iNumLines; line++) {
    inst->SetValueDisc(line * childSize);
    Multinomial_sptr multinomial = new Multinomial_cl(new RvVector_cl(SingleVar_sptr(iChild)), 0, 0);
    for (int c = 0; c < childSize; c++) {
      (*inst)[child]->SetValue(c);
      inst->SetChanged();
      multinomial->SetValue(cpd->GetValueOfSuperset(inst, RvMapping_sptr()), c);
    }
    if (multinomial->GetEntriesSum() == 0.0) multinomial->Initialize(1.0);
    multinomial->Normalize(1.0);
    iLines[line] = multinomial;
  }
}

void TableCpd_cl::WriteFile(std::ostream& out) const {
  out << "probability (" << iChild->GetName();
  for (int i = 0; i < iParents->GetNumberOfVars(); i++) {
    int real = !iParents->GetRv(i)->IsDiscrete();
    if (i == 0)
      out << (real ? " | ; " : " | ");
    else if (real && iParents->GetRv(i - 1)->IsDiscrete())
      out << "; ";
    else
      out << ", ";
    out << iParents->GetRv(i)->GetName();
  }
  out << ")\n";
  WriteTable(out);
}

void TableCpd_cl::WriteTable(std::ostream& out) const {
  out << "{\n";
  for (int line = 0; line < iNumLines; line++) {
    iDiscParents->WriteCpdStyle(out, line);
    if (iLines[line].IsNull())
      out << "null";
    else
      iLines[line]->WriteFile(out);
    out << ";\n";
  }
  out << "}";
  if (iFixed) out << " fixed";
  out << "\n";
}

int TableCpd_cl::GetStorageSize(int recursive) const {
  int size = static_cast<int>(sizeof(*this));
  for (int i = 0; recursive && i < iLines.GetSize(); i++)
    if (!iLines[i].IsNull()) size += iLines[i]->GetStorageSize(recursive);
  return size;
}
