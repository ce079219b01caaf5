// Carriers of one value of a domain: int, real, name, and the composite of several.
#include "prob/value.h"

std::ostream& operator<<(std::ostream& out, const Value_cl* value) {
  value->PrintOs(out);
  return out;
}

CompositeValue_cl::CompositeValue_cl(const Vector_tmpl<double>& values)
    : iValues(values.GetSize() > 0 ? values.GetSize() : 1, nullptr), iNumValues(values.GetSize()), iOwner(1) {
  for (int i = 0; i < iNumValues; i++) iValues.AddLast(new RealValue_cl(values[i]));
}

CompositeValue_cl::CompositeValue_cl(const Vector_tmpl<Value_cl*>& values, int owner)
    : iValues(values), iNumValues(values.GetSize()), iOwner(owner) {}

CompositeValue_cl::~CompositeValue_cl() {
  if (iOwner) iValues.DeleteAll();
}

void CompositeValue_cl::SetValue(const Value_cl* other) {
  const CompositeValue_cl* composite = static_cast<const CompositeValue_cl*>(other);
  for (int i = 0; i < iNumValues; i++) iValues[i]->SetValue(composite->iValues[i]);
}

Value_cl* CompositeValue_cl::Clone() const {
  CompositeValue_cl* clone = new CompositeValue_cl();
  for (int i = 0; i < iNumValues; i++) clone->iValues.AddLast(iValues[i]->Clone());
  clone->iNumValues = iNumValues;
  return clone;
}

void CompositeValue_cl::PrintOs(std::ostream& out) const {
  out << "<";
  for (int i = 0; i < iNumValues; i++) {
    if (i > 0) out << " ";
    iValues[i]->PrintOs(out);
  }
  out << ">";
}
