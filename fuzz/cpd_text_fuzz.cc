// Feeds arbitrary text to the CPD text reader; what it reads must write, read and write again alike.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "abort_road.h"
#include "prob/cpd_text.h"

namespace {

SingleRv_sptr Named(const char* name, int size) {
  return new SingleRv_cl(Name_sptr(name), DomainFactory_cl::CreateIntegerDomain(0, size));
}

// Discrete parents of name and int domains, real ones with and without bounds, and both kinds of child.
RvVector_sptr Variables() {
  RvVector_sptr vars = new RvVector_cl();
  vars->AddLast(Named("a", 3));
  vars->AddLast(Named("b", 2));
  vars->AddLast(Named("c", 4));
  vars->AddLast(Named("y", 2));
  vars->AddLast(new SingleRv_cl(Name_sptr("i"), new IntDomain_cl(-2, 2)));
  vars->AddLast(new SingleRv_cl(Name_sptr("r"), new RealDomain_cl()));
  vars->AddLast(new SingleRv_cl(Name_sptr("s"), new RealDomain_cl(0.0, 10.0)));
  vars->AddLast(new SingleRv_cl(Name_sptr("x"), new RealDomain_cl()));
  return vars;
}

std::string Write(const BnCpd_sptr& cpd) {
  std::ostringstream out;
  cpd->WriteFile(out);
  return out.str();
}

// The first writing may still change the text (number forms, blanks); later cycles may not.
void Check(const RvVector_sptr& vars, const std::string& input) {
  std::string first = Write(CpdTextReader_cl::Read(input, vars));
  std::string second = Write(CpdTextReader_cl::Read(first, vars));
  std::string third = Write(CpdTextReader_cl::Read(second, vars));
  if (third != second) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static RvVector_sptr vars = Variables();
  std::string input(reinterpret_cast<const char*>(data), size);
  VORN_FUZZ_GUARDED(Check(vars, input));
  return 0;
}
