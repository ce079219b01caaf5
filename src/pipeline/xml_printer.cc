// The writer that all XML output goes through.
#include "pipeline/xml_printer.h"

void XmlPrinter_cl::WriteEscaped(std::ostream& out, const char* value) {
  const char* run = value;
  for (const char* c = value; *c; c++) {
    const char* entity = nullptr;
    switch (*c) {
      case '&': entity = "&amp;"; break;
      case '<': entity = "&lt;"; break;
      case '>': entity = "&gt;"; break;
      case '"': entity = "&quot;"; break;
      default: continue;
    }
    out.write(run, c - run);
    out << entity;
    run = c + 1;
  }
  out << run;
}

void XmlPrinter_cl::Indent() {
  if (iIndent)
    for (int i = 0; i < iDepth; i++) *iStream << "  ";
}

void XmlPrinter_cl::StartDoc() { *iStream << "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>" << std::endl; }

void XmlPrinter_cl::OpenTag(const char* name, const char* const pairs[20]) {
  Indent();
  *iStream << '<' << name;
  for (int i = 0; i < 20; i += 2)
    if (pairs[i] && pairs[i + 1]) Attr(pairs[i], pairs[i + 1]);
}

void XmlPrinter_cl::StartNode(const char* name, const char* a1, const char* v1, const char* a2, const char* v2,
                              const char* a3, const char* v3, const char* a4, const char* v4, const char* a5,
                              const char* v5, const char* a6, const char* v6, const char* a7, const char* v7,
                              const char* a8, const char* v8, const char* a9, const char* v9, const char* a10,
                              const char* v10) {
  const char* const pairs[20] = {a1, v1, a2, v2, a3, v3, a4, v4, a5, v5, a6, v6, a7, v7, a8, v8, a9, v9, a10, v10};
  OpenTag(name, pairs);
  *iStream << '>' << std::endl;
  iDepth++;
}

void XmlPrinter_cl::EmptyNode(const char* name, const char* a1, const char* v1, const char* a2, const char* v2,
                              const char* a3, const char* v3, const char* a4, const char* v4, const char* a5,
                              const char* v5, const char* a6, const char* v6, const char* a7, const char* v7,
                              const char* a8, const char* v8, const char* a9, const char* v9, const char* a10,
                              const char* v10) {
  const char* const pairs[20] = {a1, v1, a2, v2, a3, v3, a4, v4, a5, v5, a6, v6, a7, v7, a8, v8, a9, v9, a10, v10};
  OpenTag(name, pairs);
  *iStream << "/>" << std::endl;
}

void XmlPrinter_cl::EndNode(const char* name) {
  iDepth--;
  Indent();
  *iStream << "</" << name << '>' << std::endl;
}

void XmlPrinter_cl::Attr(const char* key, const char* value) {
  if (!key || !value) return;
  *iStream << ' ';
  if (*key == '\0') {
    WriteEscaped(*iStream, value);
    return;
  }
  *iStream << key << "=\"";
  WriteEscaped(*iStream, value);
  *iStream << '"';
}

void XmlPrinter_cl::LineBreak() { *iStream << std::endl; }
