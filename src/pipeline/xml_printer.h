// The writer that all XML output goes through.
#ifndef VORN_PIPELINE_XML_PRINTER_H
#define VORN_PIPELINE_XML_PRINTER_H

#include <ostream>

// Writes elements one per line, indented two blanks per level when indenting is on. Attribute
// values and text are escaped (& < > "), so the output stays well-formed whatever the values;
// a value without those characters is written as it is.
class XmlPrinter_cl {
 public:
  explicit XmlPrinter_cl(std::ostream* stream, int indent = 1) : iStream(stream), iDepth(0), iIndent(indent) {}
  virtual ~XmlPrinter_cl() = default;

  void StartDoc();
  // "<name a="v" ...>" on its own line; the depth goes up. A pair is written only when both the
  // attribute and the value are non-null.
  void StartNode(const char* name, const char* a1 = nullptr, const char* v1 = nullptr, const char* a2 = nullptr,
                 const char* v2 = nullptr, const char* a3 = nullptr, const char* v3 = nullptr, const char* a4 = nullptr,
                 const char* v4 = nullptr, const char* a5 = nullptr, const char* v5 = nullptr, const char* a6 = nullptr,
                 const char* v6 = nullptr, const char* a7 = nullptr, const char* v7 = nullptr, const char* a8 = nullptr,
                 const char* v8 = nullptr, const char* a9 = nullptr, const char* v9 = nullptr, const char* a10 = nullptr,
                 const char* v10 = nullptr);
  // "<name a="v" .../>" on its own line; the depth stays.
  void EmptyNode(const char* name, const char* a1 = nullptr, const char* v1 = nullptr, const char* a2 = nullptr,
                 const char* v2 = nullptr, const char* a3 = nullptr, const char* v3 = nullptr, const char* a4 = nullptr,
                 const char* v4 = nullptr, const char* a5 = nullptr, const char* v5 = nullptr, const char* a6 = nullptr,
                 const char* v6 = nullptr, const char* a7 = nullptr, const char* v7 = nullptr, const char* a8 = nullptr,
                 const char* v8 = nullptr, const char* a9 = nullptr, const char* v9 = nullptr, const char* a10 = nullptr,
                 const char* v10 = nullptr);
  void EndNode(const char* name);
  // A blank, then key="value"; with an empty key a blank and the (escaped) value alone.
  void Attr(const char* key, const char* value);
  void LineBreak();

  int GetDepth() const { return iDepth; }
  std::ostream& GetStream() { return *iStream; }

  // value with & < > " replaced by their entity references.
  static void WriteEscaped(std::ostream& out, const char* value);

 private:
  void Indent();
  void OpenTag(const char* name, const char* const pairs[20]);

  std::ostream* iStream;
  int iDepth;
  int iIndent;
};

#endif
