// Scopes: ordered vectors of variables with their set algebra, joint sizes and text forms.
#ifndef VORN_PROB_VARS_H
#define VORN_PROB_VARS_H

#include <ostream>

#include "pipeline/hash_set.h"
#include "pipeline/vector.h"
#include "prob/single_var.h"

class VarsVector_cl;
class RvVector_cl;
class CompositeRv_cl;
class RvVectorCont_cl;
class InstVector_sptr;

class VarsVector_sptr : public Sptr_tmpl<VarsVector_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class RvVector_sptr : public Sptr_tmpl<RvVector_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class CompositeRv_sptr : public Sptr_tmpl<CompositeRv_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

// Empty handles on a mismatch of kind.
RvVector_sptr Conv2RvVector(const VarsVector_sptr& vars);
CompositeRv_sptr Conv2CompositeRv(const SingleVar_sptr& var);

// The ordered list shared by scopes and assignments. Every operation below treats variables by
// id, so an assignment and its scope hold the same variables. A flat index is mixed radix with
// the last variable running fastest.
class VarsVector_cl : public RefCount_cl {
 public:
  virtual ~VarsVector_cl() = default;
  virtual int GetNumberOfVars() const = 0;
  virtual int IsInst() const = 0;
  virtual SingleVar_sptr GetVar(int i) const = 0;
  virtual SingleRv_sptr GetRv(int i) const = 0;
  // The variables separated by blanks.
  virtual void PrintOs(std::ostream& out) const;

  // --- joint sizes
  // The product of the domain sizes; -1 as soon as the running product, in wrapping 32-bit
  // arithmetic, falls below its previous value.
  int GetJointDomainSize() const;
  long long GetMaxJointDomainSize() const;
  // The product of the variables' GetHybridDomainSize(n), -1 when the next factor would overflow.
  long long GetHybridDomainSize(int n) const;

  // --- kinds
  int GetNumberOfDiscreteVars() const;
  int GetNumberOfRealVars() const;
  int IsPureDiscrete() const { return GetNumberOfRealVars() == 0; }
  int IsPureReal() const { return GetNumberOfDiscreteVars() == 0; }

  // --- membership; positions are -1 when absent
  int IsMember(const SingleVar_sptr& var) const { return GetFirstEntry(var) >= 0; }
  int GetFirstEntry(const SingleVar_sptr& var) const;
  int GetRvIndex(const char* name) const;

  // --- comparisons; an empty handle stands for an empty vector
  int IsEqual(const VarsVector_sptr& other) const;
  int IsEqualStrict(const VarsVector_sptr& other) const;
  // Position by position by id; a shorter prefix is less.
  int IsLess(const VarsVector_sptr& other) const;
  // Whether every variable of other is in this vector.
  int IsSubset(const VarsVector_sptr& other) const;
  int IsEmptyIntersection(const VarsVector_sptr& other) const;
  int NoRvDuplicates() const;
  int IncludesStructured() const;

  // --- set algebra in this vector's order; unique non-zero enters a variable only once
  RvVector_sptr GetDifference(const VarsVector_sptr& other, int unique) const;
  RvVector_sptr GetIntersection(const VarsVector_sptr& other, int unique) const;
  int GetIntersectionSize(const VarsVector_sptr& other, int unique) const;
  RvVector_sptr GetRest(const SingleVar_sptr& var) const;
  RvVector_sptr GetRest(const VarsVector_sptr& vars) const { return GetDifference(vars, 0); }
  RvVector_sptr GetReal(int unique) const;
  RvVector_sptr GetDiscrete(int unique) const;
  // The variables of other in this vector's order.
  RvVector_sptr SortRvVector(const VarsVector_sptr& other) const;
  // The instantiations of other, shared, in this vector's order.
  InstVector_sptr SortInstVector(const InstVector_sptr& other) const;

  // --- text
  // Names separated by "=,; \t\n" for the first and "=, \t\n" after; unknown names are skipped.
  RvVector_sptr StrToRVs(const char* text) const;
  // Alternating names and values with the same delimiters; an unknown name skips its value and
  // a value that does not parse is dropped.
  InstVector_sptr StrToInstVec(const char* text) const;
  // Name to variable, with twice the vector's size as bucket count.
  NameSet_tmpl<SingleVar_sptr>* CreateSymbolTable() const;
  // The prefix of one parent row of a table: "    (i, j, ...) = ", or four blanks alone when the
  // joint size is 1. The verbose form writes value names, so every domain must be a name domain.
  void WriteCpdStyle(std::ostream& out, int flatIndex) const;
  void WriteVerboseCpdStyle(std::ostream& out, int flatIndex) const;
  // The value index of each variable in an assignment's flat index, from the last variable
  // backward by remainder and quotient; with discreteOnly, real variables are passed over.
  void DecodeFlatIndex(int flatIndex, int* indices, int discreteOnly) const;

 private:
  RvVector_sptr Select(const VarsVector_sptr& other, int inOther, int unique) const;
  RvVector_sptr SelectKind(int discrete, int unique) const;
  void WriteCpdStyle(std::ostream& out, int flatIndex, int verbose) const;
};

std::ostream& operator<<(std::ostream& out, const VarsVector_sptr& vars);

// A scope. The vector's changed flag marks it for its owners' caches.
class RvVector_cl : public VarsVector_cl, public GeneralVector_tmpl<SingleRv_sptr, RvVector_cl*> {
 public:
  explicit RvVector_cl(int capacity = 10) : GeneralVector_tmpl(capacity, SingleRv_sptr()) {}
  // The variables of a scope or an assignment, each only once when unique is non-zero.
  RvVector_cl(const VarsVector_sptr& vars, int unique);
  explicit RvVector_cl(const SingleVar_sptr& var);
  // The concatenation of the container's scopes.
  RvVector_cl(const RvVectorCont_cl* scopes, int unique);

  int GetNumberOfVars() const override { return iSize; }
  int IsInst() const override { return 0; }
  SingleVar_sptr GetVar(int i) const override { return iData[i]; }
  SingleRv_sptr GetRv(int i) const override { return iData[i]; }
  using VarsVector_cl::IsMember;

  // All of a, then all of b; with uniqueFirst duplicates inside a are dropped, with uniqueSecond
  // members of b already present.
  static RvVector_sptr UnionRvVectors(const VarsVector_sptr& a, const VarsVector_sptr& b, int uniqueFirst,
                                      int uniqueSecond);
  // Appends the other's variables.
  void Merge(const VarsVector_sptr& other);
  int GetIndexOfRv(const SingleRv_sptr& rv) const { return GetFirstEntry(rv); }
  // Appends a variable unless unique is set and it is already here.
  void AddVar(const SingleVar_sptr& var, int unique);
};

// A variable whose value is a tuple of the values of its components.
class CompositeRv_cl : public SingleRv_cl {
 public:
  CompositeRv_cl(Name_sptr name, RvVector_sptr components);
  int GetNumRvs() const { return iNumRvs; }
  SingleRv_sptr GetRvAt(int i) const { return (*iRvs)[i]; }
  RvVector_sptr GetRvs() const { return iRvs; }
  int IsComposite() const override { return 1; }
  // The name, then one line per component with a blank before its name.
  void PrintOs(std::ostream& out) const override;
  // A composite has no text form: the program stops.
  SingleInst_sptr StrToInst(char* text) override;

 private:
  RvVector_sptr iRvs;
  int iNumRvs;
};

// A plain container of scopes.
class RvVectorCont_cl : public Vector_tmpl<RvVector_sptr> {
 public:
  // Whether some stored scope holds every variable of vars.
  int HasASupersetOf(const VarsVector_sptr& vars) const;
  // Appends the other's scopes that no stored scope equals as a set.
  void UnionRvVectorConts(const RvVectorCont_cl& other);
};

#endif
