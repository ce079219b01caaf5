// Alignments of sequences without and with gaps, and their XML file.
#include "sequence/sequence_alignment.h"

#include <cstdlib>
#include <iostream>

#include "pipeline/enum_converter.h"
#include "pipeline/utils.h"
#include "pipeline/xml_parser.h"
#include "pipeline/xml_printer.h"

const char* SEQUENCE_ALIGNMENT_TYPE_STR[2] = {"GaplessAlignment", "GappedAlignment"};

namespace {
// Columns stay far inside the range of int, so that no span or shift of a column can overflow.
constexpr int kMaxColumn = 1 << 29;

// Null and empty names are written as an empty value.
void WriteName(std::ostream& out, Name_sptr name) { XmlPrinter_cl::WriteEscaped(out, name.CStr() ? name.CStr() : ""); }

[[noreturn]] void StopWrongKind(const char* operation) {
  std::cerr << "SequenceAlignment_cl::" << operation << " is not defined for this kind of alignment" << std::endl;
  abort();
}
}  // namespace

SequenceAlignment_cl::SequenceAlignment_cl() = default;

SequenceAlignment_cl::~SequenceAlignment_cl() { delete iSequences; }

void SequenceAlignment_cl::Reset(Name_sptr name, const SequenceManager_cl* group) {
  iName = name;
  delete iSequences;
  iSequences = new SequenceManager_cl(name, group->GetAlphabet(), group->GetAlphabetSize(), true);
  iSequenceStart.RemoveAll();
  iSequenceEnd.RemoveAll();
  iAlignmentStart.RemoveAll();
  iWeight.RemoveAll();
  for (int i = 0; i < group->GetNumSequences(); i++) AddAlignedSequence(group->GetSequence(i), 0, 0, 1.0, -1);
  RecomputeAlignmentLength();
}

Vector_tmpl<int>* SequenceAlignment_cl::GetSequenceAlignmentInserts(int) {
  StopWrongKind("GetSequenceAlignmentInserts");
}

void SequenceAlignment_cl::SetSequenceAlignmentInserts(int, const Vector_tmpl<int>*, int) {
  StopWrongKind("SetSequenceAlignmentInserts");
}

SequenceAlignment_cl* SequenceAlignment_cl::GetSubsetByIndices(Name_sptr, const Vector_tmpl<int>*,
                                                               SequenceManager_cl*&) const {
  StopWrongKind("GetSubsetByIndices");
}

Vector_tmpl<Vector_tmpl<int>*>* SequenceAlignment_cl::GetSequenceCharsCounts() const {
  StopWrongKind("GetSequenceCharsCounts");
}

void SequenceAlignment_cl::FixAlignmentOffsetToBeNonNegavite() { StopWrongKind("FixAlignmentOffsetToBeNonNegavite"); }

int SequenceAlignment_cl::GetSpan(int i) const { return iSequenceEnd[i] - iSequenceStart[i] + 1; }

void SequenceAlignment_cl::RecomputeAlignmentLength() {
  iAlignmentLength = -1;
  for (int i = 0; i < GetNumSequences(); i++) {
    int end = iAlignmentStart[i] + GetSpan(i);
    if (end > iAlignmentLength) iAlignmentLength = end;
  }
  int first = GetFirstFullAlignmentPosition();
  int last = GetLastFullAlignmentPosition();
  iFullLength = first < 0 || last < 0 ? -1 : last - first + 1;
}

// Every sequence covers one interval of columns, so the full columns are the intersection of the
// intervals, cut to the columns 0 to length - 1.
int SequenceAlignment_cl::GetFirstFullAlignmentPosition() const {
  int first = 0;
  int last = iAlignmentLength - 1;
  for (int i = 0; i < GetNumSequences(); i++) {
    if (iAlignmentStart[i] > first) first = iAlignmentStart[i];
    if (iAlignmentStart[i] + GetSpan(i) - 1 < last) last = iAlignmentStart[i] + GetSpan(i) - 1;
  }
  return first <= last ? first : -1;
}

int SequenceAlignment_cl::GetLastFullAlignmentPosition() const {
  int first = GetFirstFullAlignmentPosition();
  if (first < 0) return -1;
  int last = iAlignmentLength - 1;
  for (int i = 0; i < GetNumSequences(); i++)
    if (iAlignmentStart[i] + GetSpan(i) - 1 < last) last = iAlignmentStart[i] + GetSpan(i) - 1;
  return last;
}

void SequenceAlignment_cl::ReverseComplement() {
  for (int i = 0; i < GetNumSequences(); i++) ReverseComplement(i);
}

void SequenceAlignment_cl::ReverseComplement(int i) {
  Sequence_cl* sequence = GetSequence(i);
  sequence->ReverseComplement(iSequences->GetAlphabetSize());
  int start = iSequenceStart[i];
  iSequenceStart[i] = sequence->GetLength() - iSequenceEnd[i] - 1;
  iSequenceEnd[i] = sequence->GetLength() - start - 1;
}

void SequenceAlignment_cl::WriteSequenceFile(std::ostream& out, int first, int last, int reversed) const {
  if (first < 0) first = 0;
  if (last == -1 || last > iAlignmentLength - 1) last = iAlignmentLength - 1;
  int size = iSequences->GetAlphabetSize();
  Name_sptr alphabet = iSequences->GetAlphabet();
  for (int i = 0; i < GetNumSequences(); i++) {
    out << ">" << GetSequence(i)->GetName() << "\n";
    for (int k = first; k <= last; k++) {
      int letter = GetChar(i, reversed ? last - (k - first) : k);
      if (letter == -1)
        out << '-';
      else
        out << Sequence_cl::LetterOf(reversed ? size - letter - 1 : letter, alphabet);
    }
    out << "\n";
  }
}

void SequenceAlignment_cl::AddAlignedSequence(const Sequence_cl* sequence, int alignmentStart, int sequenceStart,
                                              double weight, int sequenceEnd) {
  int length = sequence->GetLength();
  if (sequenceEnd == -1) sequenceEnd = length - 1;
  if (sequenceStart < 0 || sequenceEnd >= length || sequenceEnd < sequenceStart - 1 || alignmentStart < -kMaxColumn ||
      alignmentStart > kMaxColumn) {
    std::cerr << "SequenceAlignment_cl Sequence " << sequence->GetName() << " of length " << length
              << " cannot be aligned with SequenceStart=" << sequenceStart << " SequenceEnd=" << sequenceEnd
              << " AlignmentStart=" << alignmentStart << std::endl;
    abort();
  }
  iSequences->AddSequence(sequence->Copy());
  iAlignmentStart.AddLast(alignmentStart);
  iSequenceStart.AddLast(sequenceStart);
  iWeight.AddLast(weight);
  iSequenceEnd.AddLast(sequenceEnd);
}

void SequenceAlignment_cl::ReadTree(PropertyTreeIter_cl* root, const SequenceManager_cl* target,
                                    Vector_tmpl<Vector_tmpl<int>*>* inserts) {
  iName = root->GetProperty("Name");
  iSequences = target ? new SequenceManager_cl(iName, target->GetAlphabet(), target->GetAlphabetSize(), true)
                      : new SequenceManager_cl(true);
  iSequences->SetName(iName);
  PropertyTreeIter_cl* child = root->Clone();
  Property_cl text;
  for (child->FirstChild(); child->NotNull(); child->NextSibling()) {
    if (!child->IsNameEqual("Sequence")) continue;
    Name_sptr name = child->GetProperty("Name");
    Sequence_cl* sequence = target && name ? target->GetSequence(name) : nullptr;
    if (!sequence) {
      std::cerr << "SequenceAlignment_cl::Create Unknown sequence " << name << " in sequence group "
                << (target ? target->GetName() : Name_sptr()) << std::endl;
      abort();
    }
    int alignmentStart, sequenceStart, sequenceEnd;
    double weight;
    child->GetIntProperty("AlignmentStart", &alignmentStart, 0);
    child->GetIntProperty("SequenceStart", &sequenceStart, 0);
    child->GetDoubleProperty("Weight", &weight, 1.0);
    child->GetIntProperty("SequenceEnd", &sequenceEnd, -1);
    AddAlignedSequence(sequence, alignmentStart, sequenceStart, weight, sequenceEnd);
    if (!inserts) continue;
    Vector_tmpl<int>* columns = child->GetProperty("SequenceInserts", &text)
                                    ? Utils_cl::StrToIntVec(text.GetText(), ";")
                                    : new Vector_tmpl<int>(10, -1);
    inserts->AddLast(columns);
    for (int k = 0; k < columns->GetSize(); k++)
      if ((*columns)[k] < -kMaxColumn || (*columns)[k] > kMaxColumn) {
        std::cerr << "SequenceAlignment_cl Sequence " << name
                  << " has an insert outside the alignment: " << (*columns)[k] << std::endl;
        abort();
      }
  }
  delete child;
}

SequenceAlignment_cl* SequenceAlignment_cl::Create(PropertyTreeIter_cl* root, const SequenceManager_cl* target) {
  auto type = EnumConverter_tmpl<SequenceAlignmentType_cl, 2>::FromString(SEQUENCE_ALIGNMENT_TYPE_STR,
                                                                          root->GetProperty("Type"), nullptr);
  if (type == GAPPED_ALIGNMENT) return new GappedSequenceAlignment_cl(root, target);
  return new GaplessSequenceAlignment_cl(root, target);
}

SequenceAlignment_cl* SequenceAlignment_cl::Create(Name_sptr file, const SequenceManager_cl* target) {
  XmlParser_cl parser;
  xercesc::DOMDocument* document = parser.Parse(file.CStr() ? file.CStr() : "", false, false);
  XmlIter_cl root(document->getDocumentElement());
  return Create(&root, target);
}

void SequenceAlignment_cl::CopySubset(const SequenceAlignment_cl* source, Name_sptr name,
                                      const Vector_tmpl<int>* indices, SequenceManager_cl*& out) {
  out = new SequenceManager_cl(source->iSequences, name, indices);
  iName = name;
  iSequences = new SequenceManager_cl(name, out->GetAlphabet(), out->GetAlphabetSize(), true);
  for (int k = 0; k < indices->GetSize(); k++) {
    int i = (*indices)[k];
    AddAlignedSequence(out->GetSequence(k), source->iAlignmentStart[i], source->iSequenceStart[i], source->iWeight[i],
                       source->iSequenceEnd[i]);
  }
  iAlignmentLength = source->iAlignmentLength;
  iFullLength = source->iFullLength;
}

void SequenceAlignment_cl::WriteSequenceStart(std::ostream& out, int i) const {
  out << "<Sequence Name=\"";
  WriteName(out, GetSequence(i)->GetName());
  out << "\" AlignmentStart=\"" << iAlignmentStart[i] << "\" SequenceStart=\"" << iSequenceStart[i] << "\" Weight=\""
      << iWeight[i] << "\" SequenceEnd=\"" << iSequenceEnd[i] << "\"";
}

void SequenceAlignment_cl::WriteRootStart(std::ostream& out, const char* type) const {
  out << "<SequenceAlignment Name=\"";
  WriteName(out, iName);
  out << "\" Type=\"" << type << "\">\n";
}

GaplessSequenceAlignment_cl::GaplessSequenceAlignment_cl(PropertyTreeIter_cl* root, const SequenceManager_cl* target) {
  ReadTree(root, target, nullptr);
  RecomputeAlignmentLength();
}

int GaplessSequenceAlignment_cl::GetChar(int i, int p) const {
  if (!HasChar(i, p)) return -1;
  return GetSequence(i)->GetLetter(p + iSequenceStart[i] - iAlignmentStart[i]);
}

bool GaplessSequenceAlignment_cl::HasChar(int i, int p) const {
  return iAlignmentStart[i] <= p && p < iAlignmentStart[i] + iSequenceEnd[i] - iSequenceStart[i] + 1;
}

void GaplessSequenceAlignment_cl::WriteFile(std::ostream& out) const {
  WriteRootStart(out, SEQUENCE_ALIGNMENT_TYPE_STR[GAPLESS_ALIGNMENT]);
  for (int i = 0; i < GetNumSequences(); i++) {
    WriteSequenceStart(out, i);
    out << "></Sequence>\n";
  }
  out << "</SequenceAlignment>\n";
}

SequenceAlignment_cl* GaplessSequenceAlignment_cl::GetSubsetByIndices(Name_sptr name, const Vector_tmpl<int>* indices,
                                                                      SequenceManager_cl*& out) const {
  GaplessSequenceAlignment_cl* subset = new GaplessSequenceAlignment_cl;
  subset->CopySubset(this, name, indices, out);
  return subset;
}

Vector_tmpl<Vector_tmpl<int>*>* GaplessSequenceAlignment_cl::GetSequenceCharsCounts() const {
  int size = iSequences->GetAlphabetSize();
  auto* counts = new Vector_tmpl<Vector_tmpl<int>*>(10, nullptr);
  int first = GetFirstFullAlignmentPosition();
  int last = GetLastFullAlignmentPosition();
  for (int p = first; first >= 0 && p <= last; p++) {
    auto* column = new Vector_tmpl<int>(size > 0 ? size : 1, 0);
    column->AddEmptyLast(size);
    for (int i = 0; i < GetNumSequences(); i++) {
      int letter = GetChar(i, p);
      if (letter >= 0 && letter < size) (*column)[letter]++;
    }
    counts->AddLast(column);
  }
  return counts;
}

void GaplessSequenceAlignment_cl::FixAlignmentOffsetToBeNonNegavite() {
  int smallest = iAlignmentStart.GetSize() > 0 ? iAlignmentStart[iAlignmentStart.GetIndexOfMinWithOperator()] : 0;
  for (int i = 0; i < iAlignmentStart.GetSize(); i++) iAlignmentStart[i] -= smallest;
  RecomputeAlignmentLength();
}

GappedSequenceAlignment_cl::GappedSequenceAlignment_cl(PropertyTreeIter_cl* root, const SequenceManager_cl* target) {
  ReadTree(root, target, &iInserts);
  RecomputeAlignmentLength();
}

GappedSequenceAlignment_cl::~GappedSequenceAlignment_cl() { iInserts.DeleteAll(); }

void GappedSequenceAlignment_cl::Reset(Name_sptr name, const SequenceManager_cl* group) {
  iInserts.DeleteAll();
  for (int i = 0; i < group->GetNumSequences(); i++) iInserts.AddLast(new Vector_tmpl<int>(10, -1));
  SequenceAlignment_cl::Reset(name, group);
}

void GappedSequenceAlignment_cl::SetSequenceAlignmentInserts(int i, const Vector_tmpl<int>* inserts, int offset) {
  iInserts[i]->RemoveAll();
  for (int k = 0; k < inserts->GetSize(); k++) iInserts[i]->AddLast((*inserts)[k] + offset);
}

int GappedSequenceAlignment_cl::GetNumInsertsUpToPosition(int i, int p) const {
  const Vector_tmpl<int>& inserts = *iInserts[i];
  int count = 0;
  for (int k = 0; k < inserts.GetSize(); k++) count += inserts[k] <= p;
  return count;
}

int GappedSequenceAlignment_cl::GetSpan(int i) const {
  return SequenceAlignment_cl::GetSpan(i) + iInserts[i]->GetSize();
}

bool GappedSequenceAlignment_cl::HasChar(int i, int p) const {
  return iAlignmentStart[i] <= p && p < iAlignmentStart[i] + GetSpan(i);
}

// Inserts that lie outside the sequence's columns could point behind its letters: those columns read
// as having none.
int GappedSequenceAlignment_cl::GetChar(int i, int p) const {
  if (!HasChar(i, p) || iInserts[i]->IsMember(p)) return -1;
  int position = p + iSequenceStart[i] - iAlignmentStart[i] - GetNumInsertsUpToPosition(i, p);
  if (position < iSequenceStart[i] || position > iSequenceEnd[i]) return -1;
  return GetSequence(i)->GetLetter(position);
}

void GappedSequenceAlignment_cl::WriteFile(std::ostream& out) const {
  WriteRootStart(out, SEQUENCE_ALIGNMENT_TYPE_STR[GAPPED_ALIGNMENT]);
  for (int i = 0; i < GetNumSequences(); i++) {
    WriteSequenceStart(out, i);
    const Vector_tmpl<int>& inserts = *iInserts[i];
    if (inserts.GetSize() > 0) {
      out << " SequenceInserts=\"";
      for (int k = 0; k < inserts.GetSize(); k++) out << (k > 0 ? ";" : "") << inserts[k];
      out << "\"";
    }
    out << "></Sequence>\n";
  }
  out << "</SequenceAlignment>\n";
}
