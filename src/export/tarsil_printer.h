// The writer of the viewer file: raw expression data, attributes, objects, the regulation tree, named analyses.
#ifndef VORN_EXPORT_TARSIL_PRINTER_H
#define VORN_EXPORT_TARSIL_PRINTER_H

#include <ostream>

#include "data/vorn_attribute_group.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"
#include "pipeline/xml_printer.h"

class Microarray_cl;
class SpeciesAttributes_cl;
class VornData_cl;

enum TarsilFormatType_cl { TARSIL_FORMAT_TARSIL = 0, TARSIL_FORMAT_CLUSTER, TARSIL_FORMAT_TYPE_NUM };

class BioTokens_cl {
 public:
  // "Tarsil" or "Cluster"; anything else is fatal.
  static TarsilFormatType_cl GetTarsilFormatType(Name_sptr name);
};

// Every text, attribute value or table cell goes out escaped, so that the file stays well-formed
// for any gene, experiment or attribute name.
class TarsilPrinter_cl {
 public:
  // The table of TSCRawData: UID, NAME (the description when the table has the gene), weight 1, values.
  static void PrintRawData(XmlPrinter_cl& printer, Microarray_cl* microarray,
                           const NameSet_tmpl<Name_sptr>* descriptions);
  // TarsilAttributes, then TarsilObjects with each object's full value list.
  static void PrintAttributes(XmlPrinter_cl& printer, VornData_cl* data, Microarray_cl* microarray,
                              Name_sptr urlPrefix);
  // The hierarchy of a microarray with no learned tree.
  static void PrintEmptyTree(XmlPrinter_cl& printer);
  static void PrintAttributeSets(XmlPrinter_cl& printer, VornData_cl* data, const Vector_tmpl<Name_sptr>& groups);
  static void PrintAnalyses(XmlPrinter_cl& printer, VornData_cl* data, Microarray_cl* microarray,
                            const Vector_tmpl<Name_sptr>& groups);
  // Gene -> "<field 2> - <field 3>" of the lines of a tab file with at least three fields.
  static NameSet_tmpl<Name_sptr>* BuildGeneDescriptions(Name_sptr file);
  // The names of a discrete domain's values, in index order.
  static Vector_tmpl<Name_sptr>* CreateValueNames(Domain_sptr domain);

 private:
  static void PrintAttributeList(XmlPrinter_cl& printer, SpeciesAttributes_cl* values, const char* id);
  static void PrintObjects(XmlPrinter_cl& printer, SpeciesAttributes_cl* values, const Vector_tmpl<Name_sptr>& names,
                           int isGene, Name_sptr urlPrefix);
};

#endif
