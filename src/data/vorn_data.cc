// The data shared by all runs of the process: microarrays and attribute groups.
#include "data/vorn_data.h"

#include <cstdlib>
#include <iostream>

#include "data/microarray.h"

VornData_cl::VornData_cl() : iMicroarrays(32, nullptr, 0.5, 2.0), iOwned(10, nullptr) {}

VornData_cl::~VornData_cl() { iOwned.DeleteAll(); }

void VornData_cl::AddMicroarray(Microarray_cl* microarray) {
  if (iMicroarrays.Exists(microarray->GetName())) iMicroarrays.Remove(microarray->GetName());
  iMicroarrays.Insert(microarray->GetName(), microarray);
  if (!iOwned.IsMember(microarray)) iOwned.AddLast(microarray);
}

Microarray_cl* VornData_cl::FindMicroarray(Name_sptr name, const char* caller) const {
  Microarray_cl* microarray = GetMicroarray(name);
  if (!microarray) {
    std::cerr << caller << " Unknown microarray " << name << std::endl;
    abort();
  }
  return microarray;
}

// No gene has a meta gene until gene mappings are loaded, so the matrix has no rows and its
// shuffle has nothing to give back.
Matrix_sptr VornData_cl::GetMatrix() { return Matrix_cl::AllocateCorrectType(0, iMicroarrays.GetSize()); }

void VornData_cl::SetMatrix(Matrix_sptr) {}
