// Unordered bags of objects with ids, and the cursor that walks them; removal fills holes from the end.
#ifndef VORN_PIPELINE_CONTAINER_H
#define VORN_PIPELINE_CONTAINER_H

#include "pipeline/vector.h"

// A bag of pointers to Id_cl-like objects. It shares the vector's growth and swap-removal, so the
// order after a removal is the one a vector would leave.
template <class T, class Self>
class GeneralContainer_tmpl {
 public:
  explicit GeneralContainer_tmpl(int capacity = 10, const T& def = T()) : iData(capacity, def), iDefault(def) {}
  virtual ~GeneralContainer_tmpl() = default;

  int GetSize() const { return iData.GetSize(); }
  T& operator[](int i) { return iData[i]; }
  const T& operator[](int i) const { return iData[i]; }
  const T& GetDefault() const { return iDefault; }
  // The slot at i or, out of range, the slot of the default element.
  T* Probe(int i) { return i >= 0 && i < iData.GetSize() ? &iData[i] : &iDefault; }

  void Add(const T& element) { iData.AddLast(element); }
  // Removes every element with the same id, moving the last element into each hole; returns the count.
  int Remove(const T& element) {
    int id = element->GetId();  // element may be a reference into the bag itself
    int removed = 0;
    for (int i = 0; i < iData.GetSize();) {
      if (iData[i]->GetId() == id) {
        iData.Swap(i, iData.GetSize() - 1);
        iData.RemoveLastElement();
        removed++;
      } else {
        i++;
      }
    }
    return removed;
  }
  // Removes the first element that is this very pointer.
  int RemoveFirstPtr(const T& element) { return iData.RemoveFirst(element); }
  void RemoveAll() { iData.RemoveAll(); }
  int IsMember(const T& element) const { return iData.IsMember(element); }

  void SetChanged() { iData.SetChanged(); }
  void ResetChanged() { iData.ResetChanged(); }
  int IsChanged() const { return iData.IsChanged(); }

 protected:
  Vector_tmpl<T> iData;
  T iDefault;
};

template <class T>
class Container_tmpl : public GeneralContainer_tmpl<T, Container_tmpl<T>*> {
 public:
  explicit Container_tmpl(int capacity = 10, const T& def = T()) : GeneralContainer_tmpl<T, Container_tmpl<T>*>(capacity, def) {}
};

// A position in a container. With a null default, `while (Node* n = *iter++)` visits every element.
template <class T, class Self>
class GeneralContainerIter_tmpl {
 public:
  explicit GeneralContainerIter_tmpl(GeneralContainer_tmpl<T, Self>* container) : iContainer(container), iPosition(0) {}

  T* Probe(int i) { return iContainer->Probe(i); }
  T* Current() { return iContainer->Probe(iPosition); }
  // The current slot; the position moves on.
  T* operator++(int) { return iContainer->Probe(iPosition++); }
  int GetPosition() const { return iPosition; }
  void SetPosition(int position) { iPosition = position; }
  void Reset() { iPosition = 0; }

 private:
  GeneralContainer_tmpl<T, Self>* iContainer;
  int iPosition;
};

template <class T>
class ContainerIter_tmpl : public GeneralContainerIter_tmpl<T, Container_tmpl<T>*> {
 public:
  explicit ContainerIter_tmpl(Container_tmpl<T>* container) : GeneralContainerIter_tmpl<T, Container_tmpl<T>*>(container) {}
};

#endif
