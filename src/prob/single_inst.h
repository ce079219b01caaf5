// Instantiations of one variable: a discrete index or a real value, with their walks and conversions.
#ifndef VORN_PROB_SINGLE_INST_H
#define VORN_PROB_SINGLE_INST_H

#include "pipeline/random.h"
#include "prob/single_var.h"

class SingleInst_cl;
class DiscreteSingleInst_cl;
class RealSingleInst_cl;

class SingleInst_sptr : public Sptr_tmpl<SingleInst_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class DiscreteSingleInst_sptr : public Sptr_tmpl<DiscreteSingleInst_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};
class RealSingleInst_sptr : public Sptr_tmpl<RealSingleInst_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

// Empty handles on a mismatch of kind.
SingleInst_sptr Conv2SingleInst(const SingleVar_sptr& var);
DiscreteSingleInst_sptr Conv2DiscreteSingleInst(const SingleVar_sptr& var);
RealSingleInst_sptr Conv2RealSingleInst(const SingleVar_sptr& var);

// Holds its variable and answers for it; the value is the subclass's.
class SingleInst_cl : public SingleVar_cl {
 public:
  explicit SingleInst_cl(SingleRv_sptr rv) : iRv(rv) {}
  // A new instantiation of the kind that the variable asks for, not yet legal.
  static SingleInst_sptr Create(SingleRv_sptr rv);

  int IsInst() const override { return 1; }
  int GetId() const override { return iRv->GetId(); }
  Name_sptr GetName() const override { return iRv->GetName(); }
  Domain_sptr GetDomain() const override { return iRv->GetDomain(); }
  int IsDiscrete() const override { return iRv->IsDiscrete(); }
  int GetJointDomainSize() const override { return iRv->GetJointDomainSize(); }
  int GetHybridDomainSize(int n) const override { return iRv->GetHybridDomainSize(n); }
  SingleRv_sptr GetRv() const { return iRv; }

  virtual void SetValue(const Value_cl* value) = 0;
  // Takes the other's index or real value.
  virtual void SetValue(const SingleInst_sptr& other) = 0;
  virtual void SetMissing() = 0;
  virtual int IsMissing() const = 0;
  virtual int IsLegalValue() const = 0;
  virtual int IsFirstValue() const = 0;
  virtual int IsLastValue() const = 0;
  // A new value, owned by the caller.
  virtual Value_cl* GetValue() const = 0;
  virtual void SetValue(int index) = 0;
  virtual void SetFirstValue() = 0;
  virtual void SetLastValue() = 0;
  virtual void NextInst() = 0;
  virtual void PrevInst() = 0;
  virtual int GetIndex() const = 0;
  virtual void SetValue(double value) = 0;
  virtual double GetRealValue() const = 0;
  // Takes the value of an instantiation of another kind or domain, see the subclasses.
  virtual void GeneralInitialize(const SingleInst_sptr& source, Random_cl* random) = 0;
  // A new instantiation of the same variable with the same value.
  virtual SingleInst_sptr Copy() const = 0;

 protected:
  // The variable's name and "=" then the value, or "???" when it is not legal.
  void PrintNameAndValue(std::ostream& out) const;

  SingleRv_sptr iRv;
};

// Index -1 after construction from the variable alone; the missing index is the smallest int.
// The walks add and subtract one without bound checks.
class DiscreteSingleInst_cl : public SingleInst_cl {
 public:
  static constexpr int kMissing = -2147483647 - 1;

  explicit DiscreteSingleInst_cl(SingleRv_sptr rv, int index = -1) : SingleInst_cl(rv), iIndex(index) {}

  void SetValue(const Value_cl* value) override { iIndex = GetDomain()->ValueToIndex(value); }
  void SetValue(const SingleInst_sptr& other) override { iIndex = other->GetIndex(); }
  void SetMissing() override { iIndex = kMissing; }
  int IsMissing() const override { return iIndex == kMissing; }
  int IsLegalValue() const override { return GetDomain()->IsLegalIndex(iIndex); }
  int IsFirstValue() const override { return GetDomain()->IsFirstIndex(iIndex); }
  int IsLastValue() const override { return GetDomain()->IsLastIndex(iIndex); }
  Value_cl* GetValue() const override { return GetDomain()->IndexToValue(iIndex); }
  void SetValue(int index) override { iIndex = index; }
  void SetFirstValue() override { iIndex = 0; }
  void SetLastValue() override { iIndex = GetDomain()->GetDomainSize() - 1; }
  void NextInst() override { iIndex = static_cast<int>(static_cast<unsigned>(iIndex) + 1u); }
  void PrevInst() override { iIndex = static_cast<int>(static_cast<unsigned>(iIndex) - 1u); }
  int GetIndex() const override { return iIndex; }
  // The truncated value, or the missing index when it has no int.
  void SetValue(double value) override;
  double GetRealValue() const override;
  // A discrete source gives its index; a real one is binned over the source domain's bounds.
  void GeneralInitialize(const SingleInst_sptr& source, Random_cl* random) override;
  SingleInst_sptr Copy() const override { return new DiscreteSingleInst_cl(iRv, iIndex); }
  // Same variable and same index; id order first, then the index.
  int IsEqual(const SingleVar_sptr& other) const override;
  int IsLess(const SingleVar_sptr& other) const override;
  void PrintOs(std::ostream& out) const override { PrintNameAndValue(out); }

 private:
  int iIndex;
};

// A double and whether it was ever set. Missing is the smallest positive normal double; the walks
// and index operations are type errors.
class RealSingleInst_cl : public SingleInst_cl {
 public:
  static constexpr double kMissing = 2.2250738585072014e-308;

  explicit RealSingleInst_cl(SingleRv_sptr rv) : SingleInst_cl(rv) {}

  void SetValue(const Value_cl* value) override { SetValue(static_cast<const RealValue_cl*>(value)->GetValue()); }
  void SetValue(const SingleInst_sptr& other) override { SetValue(other->GetRealValue()); }
  void SetMissing() override { iValue = kMissing; }
  int IsMissing() const override { return iValue == kMissing; }
  // Set, and inside the bounds that the domain has.
  int IsLegalValue() const override;
  int IsFirstValue() const override;
  int IsLastValue() const override;
  Value_cl* GetValue() const override { return new RealValue_cl(iValue); }
  void SetValue(int value) override { SetValue(static_cast<double>(value)); }
  void SetFirstValue() override;
  void SetLastValue() override;
  void NextInst() override;
  void PrevInst() override;
  int GetIndex() const override;
  void SetValue(double value) override {
    iValue = value;
    iIsSet = 1;
  }
  double GetRealValue() const override { return iValue; }
  // A discrete source gives a point in its bin of this domain; a real one is rescaled between the
  // two domains' bounds when this one has both, else copied.
  void GeneralInitialize(const SingleInst_sptr& source, Random_cl* random) override;
  SingleInst_sptr Copy() const override;
  int IsEqual(const SingleVar_sptr& other) const override;
  int IsLess(const SingleVar_sptr& other) const override;
  void PrintOs(std::ostream& out) const override { PrintNameAndValue(out); }

 private:
  double iValue = 0.0;
  int iIsSet = 0;
};

#endif
