// Carriers of one value of a domain: int, real, name, and the composite of several.
#ifndef VORN_PROB_VALUE_H
#define VORN_PROB_VALUE_H

#include <ostream>

#include "pipeline/name.h"
#include "pipeline/vector.h"

// The type codes shared by values and domains; 3 is the abstractable kind, which no domain has.
enum ValueType_cl { INT_VALUE = 0, REAL_VALUE = 1, NAME_VALUE = 2, ABSTRACT_VALUE = 3, COMPOSITE_VALUE = 4 };

class Value_cl {
 public:
  virtual ~Value_cl() = default;
  virtual int GetType() const = 0;
  // Takes the content of a value of the same type.
  virtual void SetValue(const Value_cl* other) = 0;
  virtual Value_cl* Clone() const = 0;
  virtual void PrintOs(std::ostream& out) const = 0;
};

std::ostream& operator<<(std::ostream& out, const Value_cl* value);

class IntValue_cl : public Value_cl {
 public:
  explicit IntValue_cl(int value = 0) : iValue(value) {}
  int GetType() const override { return INT_VALUE; }
  void SetValue(const Value_cl* other) override { iValue = static_cast<const IntValue_cl*>(other)->iValue; }
  Value_cl* Clone() const override { return new IntValue_cl(iValue); }
  void PrintOs(std::ostream& out) const override { out << iValue; }
  int GetValue() const { return iValue; }
  void SetValue(int value) { iValue = value; }

 private:
  int iValue;
};

class RealValue_cl : public Value_cl {
 public:
  explicit RealValue_cl(double value = 0.0) : iValue(value) {}
  int GetType() const override { return REAL_VALUE; }
  void SetValue(const Value_cl* other) override { iValue = static_cast<const RealValue_cl*>(other)->iValue; }
  Value_cl* Clone() const override { return new RealValue_cl(iValue); }
  void PrintOs(std::ostream& out) const override { out << iValue; }
  double GetValue() const { return iValue; }
  void SetValue(double value) { iValue = value; }

 private:
  double iValue;
};

class NameValue_cl : public Value_cl {
 public:
  explicit NameValue_cl(Name_sptr value = Name_sptr()) : iValue(value) {}
  int GetType() const override { return NAME_VALUE; }
  void SetValue(const Value_cl* other) override { iValue = static_cast<const NameValue_cl*>(other)->iValue; }
  Value_cl* Clone() const override { return new NameValue_cl(iValue); }
  void PrintOs(std::ostream& out) const override { out << iValue; }
  Name_sptr GetValue() const { return iValue; }
  void SetValue(Name_sptr value) { iValue = value; }

 private:
  Name_sptr iValue;
};

// A tuple of values; it deletes its elements only when it made them itself.
class CompositeValue_cl : public Value_cl {
 public:
  // One owned real value per element.
  explicit CompositeValue_cl(const Vector_tmpl<double>& values);
  // Keeps the given pointers, owning them only when told to.
  explicit CompositeValue_cl(const Vector_tmpl<Value_cl*>& values, int owner = 0);
  CompositeValue_cl(const CompositeValue_cl&) = delete;
  CompositeValue_cl& operator=(const CompositeValue_cl&) = delete;
  ~CompositeValue_cl() override;

  int GetType() const override { return COMPOSITE_VALUE; }
  void SetValue(const Value_cl* other) override;
  // Clones every element, and the clone owns them.
  Value_cl* Clone() const override;
  void PrintOs(std::ostream& out) const override;

  int GetNumValues() const { return iNumValues; }
  Value_cl* GetValueAt(int i) const { return iValues[i]; }
  int IsOwner() const { return iOwner; }

 private:
  CompositeValue_cl() : iValues(1, nullptr), iNumValues(0), iOwner(1) {}

  Vector_tmpl<Value_cl*> iValues;
  int iNumValues;
  int iOwner;
};

#endif
