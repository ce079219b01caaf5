// The reader of the viewer file: its attribute sets, objects and raw data, brought back into a run's data.
#ifndef VORN_EXPORT_TARSIL_TREE_H
#define VORN_EXPORT_TARSIL_TREE_H

#include <xercesc/dom/DOM.hpp>

#include <map>
#include <string>
#include <vector>

#include "pipeline/name.h"
#include "pipeline/prop_tree.h"

class VornData_cl;

// One attribute of a set: its name, its position in the set and the domain text of the file.
struct TarsilAttribute_cl {
  Name_sptr iName;
  int iId;
  Name_sptr iValue;
};

// A gene or an experiment with its value texts of one attribute set.
struct TarsilObject_cl {
  Name_sptr iName;
  int iAttributesId = -1;
  // One text per attribute of the set; an empty text is a missing value.
  std::vector<std::string> iValues;
  // Sparse lists give 1 or 0 whatever the attribute's domain.
  int iSparse = 0;
};

class TarsilTree_cl {
 public:
  // Reads the document element of a viewer file.
  explicit TarsilTree_cl(xercesc::DOMElement* root);

  // Enters the raw table as a microarray of that name and the gene and experiment attributes as the
  // groups "<name>_genes" and "<name>_experiments" with their values.
  void Copy(VornData_cl* data, Name_sptr name) const;

  int GetNumClusters() const { return iNumClusters; }
  const std::map<int, std::vector<TarsilAttribute_cl>>& GetAttributeSets() const { return iAttributeSets; }
  const std::vector<TarsilObject_cl>& GetObjects(int isGene) const { return isGene ? iGenes : iExperiments; }

 private:
  void ReadAttributes(PropertyTreeIter_cl* iter);
  void ReadObjects(PropertyTreeIter_cl* iter);
  void ReadObjectAttributes(PropertyTreeIter_cl* iter, TarsilObject_cl& object);
  void ReadRawData(const std::string& text);
  void CreateAttributes(VornData_cl* data, Name_sptr name, int isGene) const;

  // By set id, each set's attributes in file order.
  std::map<int, std::vector<TarsilAttribute_cl>> iAttributeSets;
  std::vector<TarsilObject_cl> iGenes, iExperiments;
  int iNumClusters = 0;
  std::vector<std::string> iRawExperiments;
  std::vector<std::string> iRawGenes;
  // A row per gene, a cell per experiment; an empty cell is missing.
  std::vector<std::vector<std::string>> iRawValues;
};

#endif
