// Feeds arbitrary bytes to the module cluster readers: a membership matrix and a gene list file,
// against a microarray's genes and against names collected on the way.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "abort_road.h"
#include "data/data_file.h"
#include "module/vorn_cluster.h"

namespace {
const DataFileDescriptor_cl kMembership(1, 1, 0, 0, -1, 1, -999, -1, -1);

void Exercise(VornCluster_cl& cluster) {
  std::ostringstream out;
  cluster.WriteFile(out);
  Vector_tmpl<int> ids(4, -1);
  for (int i = 0; i < cluster.GetSize(); i++) {
    ids.AddLast(i);
    delete cluster[i]->CreateGeneNames();
    cluster[i]->HasGene(Name_sptr("g1"));
  }
  delete cluster.BuildCluster(&ids);
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VORN_FUZZ_GUARDED({
    WriteFuzzFile("input.tab", data, size);
    NameSet_tmpl<int> known(8, -1);
    known.Insert(Name_sptr("g1"), 0);
    known.Insert(Name_sptr("g2"), 1);
    DataFile_cl file(Name_sptr("input.tab"), kMembership);
    Vector_tmpl<Name_sptr>* clusters = file.GetMatrixColumnKeys(nullptr);
    Vector_tmpl<Name_sptr>* genes = file.GetRowKeys(nullptr);
    Matrix_sptr values = file.CreateMatrix(nullptr, nullptr);
    for (const NameSet_tmpl<int>* hash : {static_cast<const NameSet_tmpl<int>*>(&known),
                                          static_cast<const NameSet_tmpl<int>*>(nullptr)}) {
      VornCluster_cl matrix(Name_sptr("m"), *clusters, *genes, values, hash);
      Exercise(matrix);
      Vector_tmpl<Name_sptr> files(2, nullptr);
      files.AddLast(Name_sptr("input.tab"));
      files.AddLast(Name_sptr("input.tab"));
      VornCluster_cl lists(Name_sptr("m"), files, hash);
      Exercise(lists);
    }
    delete clusters;
    delete genes;
  });
  return 0;
}
