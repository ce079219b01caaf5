// Random variables: named, numbered holders of a domain, and the base they share with instantiations.
#include "prob/single_var.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <memory>

#include "prob/single_inst.h"

int SingleRv_cl::id_counter = 0;

SingleRv_sptr Conv2SingleRv(const SingleVar_sptr& var) { return SingleRv_sptr(dynamic_cast<SingleRv_cl*>(var.Get())); }

std::ostream& operator<<(std::ostream& out, const SingleVar_sptr& var) {
  var->PrintOs(out);
  return out;
}

void SingleVar_cl::WriteTypeInfo(std::ostream& out) const {
  Domain_sptr domain = GetDomain();
  if (!IsDiscrete()) {
    out << "    type = continuous {\n";
    if (RealDomain_sptr real = Conv2RealDomain(domain)) {
      if (real->HasLower()) out << "        low = " << real->GetLower() << ";\n";
      if (real->HasUpper()) out << "        high = " << real->GetUpper() << ";\n";
    }
    out << "    };\n";
    return;
  }
  int size = domain->GetDomainSize();
  out << (domain->IsOrdinal() ? "    type = ordinal[" : "    type = discrete[") << size << "]\n    {\n";
  for (int i = 0; i < size; i++) {
    std::unique_ptr<Value_cl> value(domain->IndexToValue(i));
    out << (i > 0 ? ",\n" : "") << "        \"" << value.get() << "\"";
  }
  out << "\n    };\n";
}

SingleRv_cl::SingleRv_cl(Name_sptr name, Domain_sptr domain) : iId(++id_counter), iName(name), iDomain(domain) {}

void SingleRv_cl::PrintOs(std::ostream& out) const { out << iName; }

SingleInst_sptr SingleRv_cl::StrToInst(char* text) {
  if (!IsDiscrete()) {
    char* end;
    double x = strtod(text, &end);
    RealDomain_sptr real = Conv2RealDomain(iDomain);
    if (end == text || (real && !real->IsLegalValue(x))) return SingleInst_sptr();
    RealSingleInst_sptr inst = new RealSingleInst_cl(SingleRv_sptr(this));
    inst->SetValue(x);
    return inst;
  }
  if (NameDomain_sptr names = Conv2NameDomain(iDomain)) {
    int index = names->NameToIndex(Name_sptr(text));
    if (index >= 0) return new DiscreteSingleInst_cl(SingleRv_sptr(this), index);
  }
  if (!*text) return SingleInst_sptr();
  for (char* c = text; *c; c++)
    if (!isdigit(static_cast<unsigned char>(*c))) return SingleInst_sptr();
  errno = 0;
  long index = strtol(text, nullptr, 10);
  if (errno == ERANGE || index > iDomain->GetDomainSize() || !iDomain->IsLegalIndex(static_cast<int>(index)))
    return SingleInst_sptr();
  return new DiscreteSingleInst_cl(SingleRv_sptr(this), static_cast<int>(index));
}
