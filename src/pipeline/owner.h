// Ownership of an object whose class this layer only declares.
#ifndef VORN_PIPELINE_OWNER_H
#define VORN_PIPELINE_OWNER_H

// Learns how to delete its object where the object is handed over, with the class complete there,
// so that the owner's own file needs no knowledge of the subsystem that defines the class.
template <class T>
class Owner_tmpl {
 public:
  Owner_tmpl() = default;
  Owner_tmpl(const Owner_tmpl&) = delete;
  Owner_tmpl& operator=(const Owner_tmpl&) = delete;
  ~Owner_tmpl() { Delete(); }

  T* Get() const { return iObject; }
  template <class U = T>
  void Own(U* object) {
    Delete();
    iDelete = [](T* p) { delete static_cast<U*>(p); };
    iObject = object;
  }
  void Delete() {
    if (iObject && iDelete) iDelete(iObject);
    iObject = nullptr;
  }
  // Gives the object up without deleting it.
  T* Release() {
    T* object = iObject;
    iObject = nullptr;
    return object;
  }

 private:
  T* iObject = nullptr;
  void (*iDelete)(T*) = nullptr;
};

#endif
