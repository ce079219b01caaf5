// Objects known by an integer id: graph nodes and the keys of id tables.
#ifndef VORN_PIPELINE_ID_H
#define VORN_PIPELINE_ID_H

class Id_cl {
 public:
  explicit Id_cl(int id = 0) : iId(id) {}
  virtual ~Id_cl() = default;
  int GetId() const { return iId; }
  void SetId(int id) { iId = id; }

 protected:
  int iId;
};

#endif
