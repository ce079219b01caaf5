// Domains: the values a variable can take, by index; name, int, real and composite kinds.
#ifndef VORN_PROB_DOMAIN_H
#define VORN_PROB_DOMAIN_H

#include "pipeline/name.h"
#include "pipeline/ref_count.h"
#include "pipeline/vector.h"
#include "prob/index.h"
#include "prob/value.h"

class PropertyTreeIter_cl;
class PropertyTreePrinter_cl;

class Domain_cl;
class DiscreteDomain_cl;
class NameDomain_cl;
class IntDomain_cl;
class RealDomain_cl;
class CompositeDomain_cl;

class Domain_sptr : public Sptr_tmpl<Domain_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class DiscreteDomain_sptr : public Sptr_tmpl<DiscreteDomain_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class NameDomain_sptr : public Sptr_tmpl<NameDomain_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class IntDomain_sptr : public Sptr_tmpl<IntDomain_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class RealDomain_sptr : public Sptr_tmpl<RealDomain_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class CompositeDomain_sptr : public Sptr_tmpl<CompositeDomain_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

// Down-conversions: an empty handle when the domain is not of that kind.
DiscreteDomain_sptr Conv2DiscreteDomain(const Domain_sptr& domain);
NameDomain_sptr Conv2NameDomain(const Domain_sptr& domain);
IntDomain_sptr Conv2IntDomain(const Domain_sptr& domain);
RealDomain_sptr Conv2RealDomain(const Domain_sptr& domain);
CompositeDomain_sptr Conv2CompositeDomain(const Domain_sptr& domain);

// Type codes are those of Value_cl. Abstraction (Base2Abs, Abs2Base) is a hook that every domain
// here leaves at the identity.
class Domain_cl : public RefCount_cl {
 public:
  virtual ~Domain_cl() = default;

  // A new value, owned by the caller.
  virtual Value_cl* IndexToValue(const Index_cl& index) const = 0;
  virtual Index_cl ValueToIndex(const Value_cl* value) const = 0;
  virtual int GetType() const = 0;
  // The index of a value's text, -1 when the text is no value of this domain.
  virtual int ParseDiscreteValue(const char* text) const { return -1; }
  // The value of a text, the largest double when the text is no value of this domain.
  virtual double ParseRealValue(const char* text) const;
  virtual int IsDiscrete() const { return GetType() != REAL_VALUE; }
  virtual int IsAbstractable() const { return GetType() == ABSTRACT_VALUE; }
  virtual int IsStructured() const { return 0; }
  virtual int IsDiscretized() const { return 0; }
  virtual int GetDomainSize() const = 0;
  // Grows the domain by a value; only name domains can.
  virtual void Add(const Value_cl* value);
  virtual int IsLegalValue(const Value_cl* value) const = 0;
  virtual int IsLegalIndex(const Index_cl& index) const = 0;
  virtual int IsFirstIndex(const Index_cl& index) const = 0;
  virtual int IsLastIndex(const Index_cl& index) const = 0;
  virtual int IsSame(const Index_cl& a, const Index_cl& b) const { return a == b; }
  virtual Index_cl Base2Abs(const Index_cl& index) const { return index; }
  virtual Index_cl Abs2Base(const Index_cl& index) const { return index; }
  virtual int IsOrdinal() const { return 0; }
  // Writes the element that DomainFactory_cl::CreateDomain reads back.
  virtual void Print(PropertyTreePrinter_cl* printer) const = 0;
  // The values as one text; only name and real domains have one.
  virtual Name_sptr ToString(const char* separator) const;
};

class DiscreteDomain_cl : public Domain_cl {
 public:
  DiscreteDomain_cl(int size, int ordinal) : iDomainSize(size), iOrdinal(ordinal) {}
  int GetDomainSize() const override { return iDomainSize; }
  int IsLegalIndex(const Index_cl& index) const override { return index >= 0 && index < iDomainSize; }
  int IsFirstIndex(const Index_cl& index) const override { return static_cast<int>(index) == 0; }
  int IsLastIndex(const Index_cl& index) const override { return static_cast<int>(index) == iDomainSize - 1; }
  int IsOrdinal() const override { return iOrdinal; }
  void SetOrdinal(int ordinal) { iOrdinal = ordinal; }

 protected:
  int iDomainSize;
  int iOrdinal;
};

// Index i stands for the value lower + i.
class IntDomain_cl : public DiscreteDomain_cl {
 public:
  IntDomain_cl(int lower, int upper);

  Value_cl* IndexToValue(const Index_cl& index) const override;
  Index_cl ValueToIndex(const Value_cl* value) const override;
  int GetType() const override { return INT_VALUE; }
  // strtol base 10; -1 without digits or outside the bounds.
  int ParseDiscreteValue(const char* text) const override;
  int IsLegalValue(const Value_cl* value) const override;
  void Print(PropertyTreePrinter_cl* printer) const override;

  int GetLower() const { return iLower; }
  int GetUpper() const { return iUpper; }

 private:
  friend class DomainFactory_cl;
  // The size follows the bounds; a range wider than an int can count stops the program.
  void SetBounds(int lower, int upper);

  int iLower;
  int iUpper;
};

// Index i stands for the i-th name.
class NameDomain_cl : public DiscreteDomain_cl {
 public:
  explicit NameDomain_cl(int ordinal = 0) : DiscreteDomain_cl(0, ordinal), iNames(10, Name_sptr()) {}

  Value_cl* IndexToValue(const Index_cl& index) const override;
  Index_cl ValueToIndex(const Value_cl* value) const override;
  int GetType() const override { return NAME_VALUE; }
  int ParseDiscreteValue(const char* text) const override;
  using Domain_cl::Add;
  void Add(const Value_cl* value) override;
  void Add(Name_sptr name);
  int IsLegalValue(const Value_cl* value) const override;
  void Print(PropertyTreePrinter_cl* printer) const override;
  Name_sptr ToString(const char* separator) const override;

  Name_sptr IndexToName(const Index_cl& index) const { return iNames[index]; }
  // The first appearance, -1 when absent.
  int NameToIndex(Name_sptr name) const;
  const Vector_tmpl<Name_sptr>& GetNames() const { return iNames; }

 private:
  Vector_tmpl<Name_sptr> iNames;
};

// A continuous domain with optional bounds; the bounds themselves are legal. Index operations
// are type errors.
class RealDomain_cl : public Domain_cl {
 public:
  RealDomain_cl() = default;
  RealDomain_cl(double lower, double upper) : iLower(lower), iUpper(upper), iHasLower(1), iHasUpper(1) {}

  Value_cl* IndexToValue(const Index_cl& index) const override;
  Index_cl ValueToIndex(const Value_cl* value) const override;
  int GetType() const override { return REAL_VALUE; }
  double ParseRealValue(const char* text) const override;
  int GetDomainSize() const override;
  int IsLegalValue(const Value_cl* value) const override;
  int IsLegalIndex(const Index_cl& index) const override;
  int IsFirstIndex(const Index_cl& index) const override;
  int IsLastIndex(const Index_cl& index) const override;
  void Print(PropertyTreePrinter_cl* printer) const override;
  // "Continuous".
  Name_sptr ToString(const char* separator) const override;

  int IsLegalValue(double x) const { return !(iHasLower && iLower > x) && !(iHasUpper && iUpper < x); }
  int HasLower() const { return iHasLower; }
  int HasUpper() const { return iHasUpper; }
  double GetLower() const { return iLower; }
  double GetUpper() const { return iUpper; }
  void SetLower(double lower) {
    iLower = lower;
    iHasLower = 1;
  }
  void SetUpper(double upper) {
    iUpper = upper;
    iHasUpper = 1;
  }
  // n equal-width bins between the bounds, named "%.4f - %.4f" by their edges.
  NameDomain_sptr Discretize(int n) const;

 private:
  double iLower = 0.0;
  double iUpper = 0.0;
  int iHasLower = 0;
  int iHasUpper = 0;
};

// The product of its element domains; indices are vectors with one index per element.
class CompositeDomain_cl : public Domain_cl {
 public:
  CompositeDomain_cl() : iDomains(10, Domain_sptr()), iNumDomains(0) {}
  void AddDomain(Domain_sptr domain);
  int GetNumDomains() const { return iNumDomains; }
  Domain_sptr GetDomainAt(int i) const { return iDomains[i]; }

  Value_cl* IndexToValue(const Index_cl& index) const override;
  Index_cl ValueToIndex(const Value_cl* value) const override;
  int GetType() const override { return COMPOSITE_VALUE; }
  int IsDiscrete() const override;
  int IsAbstractable() const override;
  // The product of the element sizes, 1 when there are none.
  int GetDomainSize() const override;
  int IsLegalValue(const Value_cl* value) const override;
  int IsLegalIndex(const Index_cl& index) const override;
  int IsFirstIndex(const Index_cl& index) const override;
  int IsLastIndex(const Index_cl& index) const override;
  int IsOrdinal() const override;
  void Print(PropertyTreePrinter_cl* printer) const override;

 private:
  Vector_tmpl<Domain_sptr> iDomains;
  int iNumDomains;
};

class DomainFactory_cl {
 public:
  // From an element whose attribute "type" is "name", "real" or "int".
  static Domain_sptr CreateDomain(PropertyTreeIter_cl* iter);
  // An unbounded real domain when text equals realWord (if given), else a name domain with one
  // value per token of text, which strtok cuts in place.
  static Domain_sptr CreateDomain(char* text, const char* delimiters, const char* realWord);
  // n values named "%d" of first, first + 1, ...: a name domain, not an int domain.
  static NameDomain_sptr CreateIntegerDomain(int first, int n);
};

#endif
