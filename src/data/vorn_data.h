// The data shared by all runs of the process: microarrays and attribute groups.
#ifndef VORN_DATA_VORN_DATA_H
#define VORN_DATA_VORN_DATA_H

class VornData_cl {
 public:
  VornData_cl() = default;
  VornData_cl(const VornData_cl&) = delete;
  VornData_cl& operator=(const VornData_cl&) = delete;
};

#endif
