// The reader of the CPD text format: a tokenizer, a parse into plain records, then the CPD.
#include "prob/cpd_text.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <iterator>
#include <memory>
#include <vector>

#include "prob/gaussian_cpd.h"
#include "prob/multinomial.h"
#include "prob/table_cpd.h"
#include "prob/tree_cpd.h"

namespace {

enum TokenKind { END, WORD, PUNCT, STRING };

struct Token {
  TokenKind kind = END;
  std::string text;
  int line = 1;
};

// Words run up to a blank or one of the punctuation marks; ">=" and "<=" are one mark each.
class Tokenizer {
 public:
  explicit Tokenizer(const std::string& text) : iText(text) {}

  [[noreturn]] void Fail(int line, const std::string& what) const {
    std::cerr << "CpdTextReader_cl line " << line << ": " << what << std::endl;
    abort();
  }
  [[noreturn]] void Fail(const std::string& what) { Fail(Peek().line, what); }

  const Token& Peek() {
    if (!iHasPeek) {
      iPeek = Scan();
      iHasPeek = true;
    }
    return iPeek;
  }
  Token Next() {
    Peek();
    iHasPeek = false;
    return iPeek;
  }
  bool Accept(const char* text) {
    const Token& t = Peek();
    if (t.kind == STRING || t.kind == END || t.text != text) return false;
    Next();
    return true;
  }
  void Expect(const char* text) {
    if (!Accept(text)) Fail("expected '" + std::string(text) + "', found " + Describe(Peek()));
  }
  std::string ExpectWord(const char* what) {
    if (Peek().kind != WORD) Fail("expected " + std::string(what) + ", found " + Describe(Peek()));
    return Next().text;
  }
  std::string ExpectString() {
    if (Peek().kind != STRING) Fail("expected a quoted value, found " + Describe(Peek()));
    return Next().text;
  }
  double ExpectNumber() {
    std::string word = ExpectWord("a number");
    char* end = nullptr;
    errno = 0;
    double value = std::strtod(word.c_str(), &end);
    if (*end || errno == ERANGE || value != value) Fail(iPeek.line, "'" + word + "' is not a number");
    return value;
  }
  // The rest of the current line, blanks trimmed; the next token starts on the following line.
  std::string RestOfLine() {
    if (iHasPeek) Fail("a node name must follow the split's brace on its line");
    size_t end = iText.find('\n', iPos);
    if (end == std::string::npos) end = iText.size();
    std::string rest = iText.substr(iPos, end - iPos);
    iPos = end;
    size_t first = rest.find_first_not_of(" \t\r");
    if (first == std::string::npos) return "";
    return rest.substr(first, rest.find_last_not_of(" \t\r") - first + 1);
  }
  static std::string Describe(const Token& t) {
    if (t.kind == END) return "the end of the text";
    if (t.kind == STRING) return "\"" + t.text + "\"";
    return "'" + t.text + "'";
  }

 private:
  static bool IsMark(char c) { return std::strchr("(){},;|=\"<>", c) != nullptr && c != '\0'; }

  Token Scan() {
    while (iPos < iText.size() && std::isspace(static_cast<unsigned char>(iText[iPos]))) {
      if (iText[iPos] == '\n') iLine++;
      iPos++;
    }
    Token t;
    t.line = iLine;
    if (iPos >= iText.size()) return t;
    char c = iText[iPos];
    if (c == '"') {
      size_t close = iText.find('"', iPos + 1);
      if (close == std::string::npos) Fail(iLine, "a quoted value has no closing quotation mark");
      t.kind = STRING;
      t.text = iText.substr(iPos + 1, close - iPos - 1);
      for (char k : t.text) iLine += k == '\n';
      iPos = close + 1;
      return t;
    }
    if (IsMark(c)) {
      t.kind = PUNCT;
      int two = (c == '<' || c == '>') && iPos + 1 < iText.size() && iText[iPos + 1] == '=';
      t.text = iText.substr(iPos, two ? 2 : 1);
      iPos += two ? 2 : 1;
      return t;
    }
    size_t start = iPos;
    while (iPos < iText.size() && !std::isspace(static_cast<unsigned char>(iText[iPos])) && !IsMark(iText[iPos]))
      iPos++;
    t.kind = WORD;
    t.text = iText.substr(start, iPos - start);
    return t;
  }

  const std::string& iText;
  size_t iPos = 0;
  int iLine = 1;
  Token iPeek;
  bool iHasPeek = false;
};

// A distribution as written: "null", a row of numbers, or a Gaussian.
struct LineText {
  enum { NONE, CELLS, GAUSSIAN } kind = NONE;
  int line = 0;
  std::vector<double> cells;
  double mean = 0.0, variance = 1.0;
  std::vector<double> weights;
};

struct ClauseText {
  std::string op;  // "equal", "=", ">=", "<="
  std::string first, second;
  int line = 0;
};

struct NodeText {
  enum { EMPTY, LEAF, CONDITION, DOMAIN } kind = EMPTY;
  int line = 0;
  std::string name;
  LineText leaf;
  std::vector<ClauseText> clauses;
  std::string splitVar;
  std::vector<std::vector<std::string>> groups;  // the values of each branch but the default one
  std::vector<std::unique_ptr<NodeText>> children;
};

class Parser {
 public:
  Parser(const std::string& text, const RvVector_sptr& vars) : iTok(text), iVars(vars) {}

  BnCpd_sptr Parse() {
    iTok.Expect("probability");
    iTok.Expect("(");
    SingleRv_sptr child = Variable(iTok.ExpectWord("the child's name"));
    RvVector_sptr parents = new RvVector_cl();
    if (iTok.Accept("|")) {
      while (!iTok.Accept(")")) {
        if (iTok.Accept(",") || iTok.Accept(";")) continue;
        SingleRv_sptr parent = Variable(iTok.ExpectWord("a parent's name"));
        if (parents->IsMember(SingleVar_sptr(parent)) || parent->GetId() == child->GetId())
          iTok.Fail("variable '" + std::string(parent->GetName()->GetText()) + "' appears twice");
        parents->AddLast(parent);
      }
    } else {
      iTok.Expect(")");
    }
    BnCpd_sptr cpd = iTok.Accept("tree") ? ReadTree(child, parents) : ReadTable(child, parents);
    if (iTok.Peek().kind != END) iTok.Fail("unexpected " + Tokenizer::Describe(iTok.Peek()) + " after the CPD");
    return cpd;
  }

 private:
  SingleRv_sptr Variable(const std::string& name) {
    int at = iVars->GetRvIndex(name.c_str());
    if (at < 0) iTok.Fail("unknown variable '" + name + "'");
    return iVars->GetRv(at);
  }

  LineText ReadLine() {
    LineText line;
    line.line = iTok.Peek().line;
    if (iTok.Accept("null")) return line;
    if (iTok.Accept("gaussian")) {
      line.kind = LineText::GAUSSIAN;
      iTok.Expect("{");
      iTok.Expect("mean");
      iTok.Expect("=");
      line.mean = iTok.ExpectNumber();
      iTok.Expect(";");
      iTok.Expect("var");
      iTok.Expect("=");
      line.variance = iTok.ExpectNumber();
      iTok.Expect(";");
      iTok.Expect("weights");
      iTok.Expect("=");
      while (!iTok.Accept(";")) {
        if (!line.weights.empty()) iTok.Expect(",");
        line.weights.push_back(iTok.ExpectNumber());
      }
      iTok.Expect("}");
      return line;
    }
    line.kind = LineText::CELLS;
    line.cells.push_back(iTok.ExpectNumber());
    while (iTok.Accept(",")) line.cells.push_back(iTok.ExpectNumber());
    return line;
  }

  Cpd_sptr MakeLine(const LineText& text, const SingleRv_sptr& child, const RvVector_sptr& realParents) {
    if (text.kind == LineText::NONE) return Cpd_sptr();
    if (text.kind == LineText::CELLS) {
      if (!child->IsDiscrete()) iTok.Fail(text.line, "a real child needs a gaussian line");
      int size = child->GetDomain()->GetDomainSize();
      if (static_cast<int>(text.cells.size()) != size)
        iTok.Fail(text.line,
                  "a line has " + std::to_string(text.cells.size()) + " values, the child has " + std::to_string(size));
      Multinomial_sptr line = new Multinomial_cl(new RvVector_cl(SingleVar_sptr(child)), 0, 0);
      line->SetValues(text.cells.data(), size);
      return line;
    }
    if (child->IsDiscrete()) iTok.Fail(text.line, "a discrete child needs a line of probabilities");
    int n = realParents->GetNumberOfVars();
    if (!text.weights.empty() && static_cast<int>(text.weights.size()) != n)
      iTok.Fail(text.line, "a gaussian line has " + std::to_string(text.weights.size()) + " weights, the CPD has " +
                               std::to_string(n) + " real parents");
    if (!(text.variance > 0.0)) iTok.Fail(text.line, "a gaussian line needs a positive variance");
    GaussianCpd_sptr line = new GaussianCpd_cl(child, text.weights.empty() ? RvVector_sptr() : realParents);
    line->SetMean(text.mean);
    line->SetVariance(text.variance);
    for (size_t i = 0; i < text.weights.size(); i++) line->SetWeight(text.weights[i], static_cast<int>(i));
    return line;
  }

  BnCpd_sptr ReadTable(const SingleRv_sptr& child, const RvVector_sptr& parents) {
    TableCpd_sptr cpd = new TableCpd_cl(child, parents);
    RvVector_sptr disc = cpd->GetDiscParents();
    iTok.Expect("{");
    std::vector<int> indices(disc->GetNumberOfVars() + 1);
    for (int row = 0; row < cpd->GetNumLines(); row++) {
      if (iTok.Peek().text == "(" && iTok.Peek().kind == PUNCT) {
        int line = iTok.Next().line;
        disc->DecodeFlatIndex(row, indices.data(), 0);
        for (int i = 0; i < disc->GetNumberOfVars(); i++) {
          if (i > 0) iTok.Expect(",");
          double index = iTok.ExpectNumber();
          if (index != indices[i]) iTok.Fail(line, "the row prefix does not match row " + std::to_string(row));
        }
        iTok.Expect(")");
        iTok.Expect("=");
      } else if (disc->GetNumberOfVars() > 0) {
        iTok.Fail("expected the prefix of row " + std::to_string(row) + ", found " + Tokenizer::Describe(iTok.Peek()));
      }
      cpd->SetLine(row, MakeLine(ReadLine(), child, cpd->GetRealParents()), 0);
      iTok.Expect(";");
    }
    iTok.Expect("}");
    if (iTok.Accept("fixed")) cpd->SetFixed(1);
    return cpd;
  }

  std::unique_ptr<NodeText> ReadNode(int depth) {
    if (depth > CpdTextReader_cl::kMaxDepth)
      iTok.Fail("tree nodes nest deeper than " + std::to_string(CpdTextReader_cl::kMaxDepth));
    auto node = std::make_unique<NodeText>();
    node->line = iTok.Peek().line;
    iTok.Expect("{");
    if (iTok.Accept("split")) {
      iTok.Expect("on");
      if (iTok.Accept("condition")) {
        node->kind = NodeText::CONDITION;
        ReadCondition(node.get());
      } else {
        node->kind = NodeText::DOMAIN;
        node->splitVar = iTok.ExpectWord("the split variable");
      }
      iTok.Expect("{");
      node->name = iTok.RestOfLine();
      if (node->kind == NodeText::CONDITION) {
        iTok.Expect("false");
        node->children.push_back(ReadNode(depth + 1));
        iTok.Expect("true");
        node->children.push_back(ReadNode(depth + 1));
      } else {
        while (iTok.Accept("in")) {
          iTok.Expect("{");
          node->groups.emplace_back();
          // A branch whose values all went elsewhere is written with an empty list.
          if (!iTok.Accept("}")) {
            do node->groups.back().push_back(iTok.ExpectString());
            while (iTok.Accept(","));
            iTok.Expect("}");
          }
          node->children.push_back(ReadNode(depth + 1));
        }
        iTok.Expect("default");
        node->children.push_back(ReadNode(depth + 1));
      }
      iTok.Expect("}");
    } else {
      node->leaf = ReadLine();
      node->kind = node->leaf.kind == LineText::NONE ? NodeText::EMPTY : NodeText::LEAF;
      iTok.Expect(";");
    }
    iTok.Expect("}");
    return node;
  }

  void ReadCondition(NodeText* node) {
    iTok.Expect("(");
    do {
      ClauseText clause;
      clause.line = iTok.Peek().line;
      iTok.Expect("(");
      clause.first = iTok.ExpectWord("a variable name");
      if (iTok.Accept("equal")) {
        clause.op = "equal";
        clause.second = iTok.ExpectWord("a variable name");
      } else {
        for (const char* op : {"=", ">=", "<="})
          if (clause.op.empty() && iTok.Accept(op)) clause.op = op;
        if (clause.op.empty()) iTok.Fail("expected a comparison, found " + Tokenizer::Describe(iTok.Peek()));
        clause.second = iTok.ExpectString();
      }
      iTok.Expect(")");
      node->clauses.push_back(clause);
    } while (iTok.Accept("and"));
    iTok.Expect(")");
  }

  SingleRv_sptr Parent(const TreeCpd_sptr& tree, const std::string& name, int line) {
    SingleRv_sptr rv = Variable(name);
    if (!tree->GetParents()->IsMember(SingleVar_sptr(rv))) iTok.Fail(line, "variable '" + name + "' is not a parent");
    return rv;
  }

  // The value of a text in the variable's domain, owned by the caller.
  Value_cl* ParseValue(const SingleRv_sptr& rv, const std::string& text, int line) {
    Domain_sptr domain = rv->GetDomain();
    if (!domain->IsDiscrete()) {
      double x = domain->ParseRealValue(text.c_str());
      if (x == 1.7976931348623157e308)
        iTok.Fail(line, "illegal value \"" + text + "\" for " + rv->GetName()->GetText());
      return new RealValue_cl(x);
    }
    int index = domain->ParseDiscreteValue(text.c_str());
    if (index < 0) iTok.Fail(line, "illegal value \"" + text + "\" for " + rv->GetName()->GetText());
    return domain->IndexToValue(index);
  }

  void Build(const TreeCpd_sptr& tree, TreeCpdNode_cl* node, const NodeText& text) {
    node->SetName(text.name.empty() ? Name_sptr() : Name_sptr(text.name.c_str()));
    if (text.kind == NodeText::LEAF) {
      node->SetCpd(MakeLine(text.leaf, tree->GetRv(), tree->GetRealParents()));
      return;
    }
    if (text.kind == NodeText::EMPTY) return;
    if (text.kind == NodeText::CONDITION) {
      node->SetConditionSplit();
      for (const ClauseText& clause : text.clauses) {
        SingleRv_sptr rv = Parent(tree, clause.first, clause.line);
        if (clause.op == "equal") {
          node->AddEQConjCondition(rv, Parent(tree, clause.second, clause.line));
        } else if (clause.op == "=") {
          node->AddEVConjCondition(rv, ParseValue(rv, clause.second, clause.line), 0);
        } else {
          node->AddGTEConjCondition(rv, ParseValue(rv, clause.second, clause.line), clause.op == ">=", 0);
        }
      }
    } else {
      SingleRv_sptr rv = Parent(tree, text.splitVar, text.line);
      if (!rv->IsDiscrete()) iTok.Fail(text.line, "split on real variable '" + text.splitVar + "'");
      int branches = static_cast<int>(text.children.size());
      auto* split = new DomainSplitTest_cl(rv, tree->GetParents()->GetFirstEntry(SingleVar_sptr(rv)), branches);
      for (int v = 0; v < rv->GetDomain()->GetDomainSize(); v++) split->SetValueBranch(v, branches - 1);
      for (int b = 0; b + 1 < branches; b++) {
        for (const std::string& value : text.groups[b]) {
          Value_cl* parsed = ParseValue(rv, value, text.line);
          int index = rv->GetDomain()->ValueToIndex(parsed);
          delete parsed;
          split->SetValueBranch(index, b);
        }
      }
      node->SetSplit(split);
    }
    for (size_t b = 0; b < text.children.size(); b++)
      Build(tree, node->GetChild(static_cast<int>(b)), *text.children[b]);
  }

  BnCpd_sptr ReadTree(const SingleRv_sptr& child, const RvVector_sptr& parents) {
    TreeCpd_sptr tree = new TreeCpd_cl(child, parents);
    std::unique_ptr<NodeText> root = ReadNode(0);
    Build(tree, tree->GetRoot(), *root);
    return tree;
  }

  Tokenizer iTok;
  RvVector_sptr iVars;
};

}  // namespace

BnCpd_sptr CpdTextReader_cl::Read(const std::string& text, const RvVector_sptr& vars) {
  return Parser(text, vars).Parse();
}

BnCpd_sptr CpdTextReader_cl::Read(std::istream& in, const RvVector_sptr& vars) {
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  return Read(text, vars);
}
