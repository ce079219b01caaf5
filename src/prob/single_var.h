// Random variables: named, numbered holders of a domain, and the base they share with instantiations.
#ifndef VORN_PROB_SINGLE_VAR_H
#define VORN_PROB_SINGLE_VAR_H

#include <ostream>

#include "pipeline/name.h"
#include "pipeline/ref_count.h"
#include "prob/domain.h"

class SingleVar_cl;
class SingleRv_cl;
class SingleInst_sptr;

class SingleVar_sptr : public Sptr_tmpl<SingleVar_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class SingleRv_sptr : public Sptr_tmpl<SingleRv_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

// An empty handle when the object is not a variable.
SingleRv_sptr Conv2SingleRv(const SingleVar_sptr& var);

// Identity and order are by the variable's id alone.
class SingleVar_cl : public RefCount_cl {
 public:
  virtual ~SingleVar_cl() = default;
  virtual int IsInst() const = 0;
  virtual int IsRelVar() const { return 0; }
  virtual int GetId() const = 0;
  virtual Name_sptr GetName() const = 0;
  virtual Name_sptr GetFileName() const { return GetName(); }
  virtual Domain_sptr GetDomain() const = 0;
  virtual int IsDiscrete() const { return GetDomain()->IsDiscrete(); }
  virtual int IsReal() const { return !IsDiscrete(); }
  virtual int GetJointDomainSize() const { return GetDomain()->GetDomainSize(); }
  // The domain size of a discrete variable; n, the points that stand for a continuous one, else.
  virtual int GetHybridDomainSize(int n) const { return IsDiscrete() ? GetDomain()->GetDomainSize() : n; }
  virtual int IsEqual(const SingleVar_sptr& other) const { return GetId() == other->GetId(); }
  virtual int IsLess(const SingleVar_sptr& other) const { return GetId() < other->GetId(); }
  virtual void PrintOs(std::ostream& out) const = 0;

  // The variable's kind as the CPD text files write it.
  void WriteTypeInfo(std::ostream& out) const;
};

std::ostream& operator<<(std::ostream& out, const SingleVar_sptr& var);

class SingleRv_cl : public SingleVar_cl {
 public:
  // Takes the next id of the process-wide counter; the first variable has id 1.
  SingleRv_cl(Name_sptr name, Domain_sptr domain);

  int IsInst() const override { return 0; }
  int GetId() const override { return iId; }
  Name_sptr GetName() const override { return iName; }
  Domain_sptr GetDomain() const override { return iDomain; }
  // The name.
  void PrintOs(std::ostream& out) const override;

  virtual void SetName(Name_sptr name) { iName = name; }
  virtual int IsStructured() const { return iDomain->IsStructured(); }
  virtual int IsDiscretized() const { return iDomain->IsDiscretized(); }
  virtual int IsComposite() const { return 0; }
  // An instantiation of this variable from a value's text, or an empty handle when the text is
  // no legal value: a real, a value name, or the digits of a legal index.
  virtual SingleInst_sptr StrToInst(char* text);
  virtual void WriteFile(std::ostream& out) const { PrintOs(out); }

 private:
  static int id_counter;

  int iId;
  Name_sptr iName;
  Domain_sptr iDomain;
};

#endif
