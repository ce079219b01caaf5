// The writer side of the property tree: elements with attributes, written as XML.
#ifndef VORN_PIPELINE_PROP_TREE_PRINTER_H
#define VORN_PIPELINE_PROP_TREE_PRINTER_H

#include "pipeline/xml_printer.h"

// Objects that can be read back through a PropertyTreeIter_cl write themselves through this name,
// so that they need not know that the tree is stored as XML.
class PropertyTreePrinter_cl : public XmlPrinter_cl {
 public:
  using XmlPrinter_cl::XmlPrinter_cl;
};

#endif
