// Intrusive reference counting for the shared class hierarchies and their _sptr handles.
#ifndef VORN_PIPELINE_REF_COUNT_H
#define VORN_PIPELINE_REF_COUNT_H

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <type_traits>

// Base of every reference-counted class; the count is a plain field, as nothing is shared
// between threads.
class RefCount_cl {
 public:
  RefCount_cl() = default;
  // A copy is a new object with no holders yet.
  RefCount_cl(const RefCount_cl&) : iRefCount(0) {}
  RefCount_cl& operator=(const RefCount_cl&) { return *this; }
  uint32_t GetRefCount() const { return iRefCount; }
  void AddRef() { ++iRefCount; }
  // Drops one holder; true when none is left and the object must be deleted.
  bool DropRef() { return --iRefCount == 0; }

 private:
  uint32_t iRefCount = 0;
};

// The shape shared by every X_sptr handle: one pointer, counted copies, deletion at zero.
// Each hierarchy declares its own handle class deriving from this, e.g.
//   class Matrix_sptr : public Sptr_tmpl<Matrix_cl> { public: using Sptr_tmpl::Sptr_tmpl; };
// The template carries the mechanics only; no output depends on them.
template <class T>
class Sptr_tmpl {
 public:
  Sptr_tmpl() = default;
  Sptr_tmpl(std::nullptr_t) {}  // NOLINT: null converts implicitly
  Sptr_tmpl(T* object) : iPtr(object) { Acquire(); }  // NOLINT: handles convert implicitly
  Sptr_tmpl(const Sptr_tmpl& other) : iPtr(other.iPtr) { Acquire(); }
  // A handle of a derived class converts to that of its base.
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  Sptr_tmpl(const Sptr_tmpl<U>& other) : iPtr(other.Get()) {  // NOLINT
    Acquire();
  }
  ~Sptr_tmpl() { Release(); }
  Sptr_tmpl& operator=(const Sptr_tmpl& other) {
    Reset(other.iPtr);
    return *this;
  }
  Sptr_tmpl& operator=(T* object) {
    Reset(object);
    return *this;
  }

  T* operator->() const { return iPtr; }
  T& operator*() const { return *iPtr; }
  T* Get() const { return iPtr; }
  bool IsNull() const { return iPtr == nullptr; }
  explicit operator bool() const { return iPtr != nullptr; }
  bool operator==(const Sptr_tmpl& other) const { return iPtr == other.iPtr; }

 private:
  void Acquire() {
    if (iPtr) iPtr->AddRef();
  }
  void Release() {
    if (iPtr && iPtr->DropRef()) delete iPtr;
    iPtr = nullptr;
  }
  void Reset(T* object) {
    if (object) object->AddRef();
    Release();
    iPtr = object;
  }

  T* iPtr = nullptr;
};

// Converts a handle to a subclass handle, stopping when the object is not of that class.
template <class To, class From>
To Conv2X(const From& handle, const char* className) {
  if (handle.IsNull()) return To();
  auto* cast = dynamic_cast<decltype(To().Get())>(handle.Get());
  if (!cast) {
    std::cerr << "Conv2X: object does not inherit from " << className << std::endl;
    abort();
  }
  return To(cast);
}

#endif
