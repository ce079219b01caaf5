// Directed and undirected graphs of id-carrying nodes that own their edge lists.
#ifndef VORN_PIPELINE_GRAPH_H
#define VORN_PIPELINE_GRAPH_H

#include <ostream>

#include "pipeline/container.h"
#include "pipeline/hash_table.h"
#include "pipeline/id.h"
#include "pipeline/vector.h"

// One edge line of a layout file, with the edge style when there is one.
inline void WriteGraphEasyEdge(std::ostream& out, int from, const char* arrow, int to, const char* edgeStyle) {
  out << "[ " << from << " ] " << arrow << " [ " << to << " ]";
  if (edgeStyle) out << " { " << edgeStyle << " }";
  out << std::endl;
}

// An edge from one node to another. Subclasses add weights or tests.
template <class Node>
class DEdge_tmpl {
 public:
  DEdge_tmpl(Node* from, Node* to) : iFrom(from), iTo(to) {}
  virtual ~DEdge_tmpl() = default;
  Node* GetFrom() const { return iFrom; }
  Node* GetTo() const { return iTo; }
  int GetMark() const { return iMark; }
  void SetMark(int mark) { iMark = mark; }

 protected:
  Node* iFrom;
  Node* iTo;
  int iMark = 0;
};

template <class Node>
class UEdge_tmpl {
 public:
  UEdge_tmpl(Node* first, Node* second) : iFirst(first), iSecond(second) {}
  virtual ~UEdge_tmpl() = default;
  Node* GetFirst() const { return iFirst; }
  Node* GetSecond() const { return iSecond; }
  Node* GetOther(const Node* node) const { return node == iFirst ? iSecond : iFirst; }
  int GetMark() const { return iMark; }
  void SetMark(int mark) { iMark = mark; }

 protected:
  Node* iFirst;
  Node* iSecond;
  int iMark = 0;
};

// A node with parent (incoming) and child (outgoing) edges. Node is the derived class itself.
template <class Node, class Edge>
class DNode_tmpl : public Id_cl {
 public:
  explicit DNode_tmpl(int id = 0) : Id_cl(id), iParents(4, nullptr), iChildren(4, nullptr) {}
  // An edge is shared by its two ends: unlink it from the other end before deleting it. A child
  // edge that is also a parent edge here is a self-loop; telling it so avoids touching this node
  // through its derived type, which is already gone.
  ~DNode_tmpl() override {
    while (iChildren.GetSize() > 0) {
      Edge* e = iChildren[0];
      iChildren.RemoveFirstPtr(e);
      if (!iParents.RemoveFirstPtr(e)) e->GetTo()->iParents.RemoveFirstPtr(e);
      delete e;
    }
    while (iParents.GetSize() > 0) {
      Edge* e = iParents[0];
      iParents.RemoveFirstPtr(e);
      e->GetFrom()->iChildren.RemoveFirstPtr(e);
      delete e;
    }
  }

  int GetNumParents() const { return iParents.GetSize(); }
  int GetNumChildren() const { return iChildren.GetSize(); }
  Edge* GetParentEdge(int i) const { return iParents[i]; }
  Edge* GetChildEdge(int i) const { return iChildren[i]; }
  Node* GetParent(int i) const { return iParents[i]->GetFrom(); }
  Node* GetChild(int i) const { return iChildren[i]->GetTo(); }
  Container_tmpl<Edge*>& GetParentEdges() { return iParents; }
  Container_tmpl<Edge*>& GetChildEdges() { return iChildren; }
  int GetMark() const { return iMark; }
  void SetMark(int mark) { iMark = mark; }

  // The node's own text in a layout file: its box, then one line per child edge.
  virtual void WriteGraphEasy(std::ostream& out, const char* edgeStyle) const {
    out << "[ " << GetId() << " ]" << std::endl;
    for (int i = 0; i < iChildren.GetSize(); i++) WriteGraphEasyEdge(out, GetId(), "-->", GetChild(i)->GetId(), edgeStyle);
  }

 protected:
  template <class N, class E>
  friend class DirectedGraph_tmpl;

  Container_tmpl<Edge*> iParents;
  Container_tmpl<Edge*> iChildren;
  int iMark = 0;
};

// A node with one list of edges; a self-loop is listed once.
template <class Node, class Edge>
class UNode_tmpl : public Id_cl {
 public:
  explicit UNode_tmpl(int id = 0) : Id_cl(id), iEdges(4, nullptr) {}
  ~UNode_tmpl() override {
    while (iEdges.GetSize() > 0) {
      Edge* e = iEdges[0];
      iEdges.RemoveFirstPtr(e);
      if (e->GetFirst() != e->GetSecond()) (IsMe(e->GetFirst()) ? e->GetSecond() : e->GetFirst())->iEdges.RemoveFirstPtr(e);
      delete e;
    }
  }

  int GetNumEdges() const { return iEdges.GetSize(); }
  Edge* GetEdge(int i) const { return iEdges[i]; }
  Node* GetNeighbour(int i) const { return iEdges[i]->GetOther(static_cast<const Node*>(this)); }
  Container_tmpl<Edge*>& GetEdges() { return iEdges; }
  int GetMark() const { return iMark; }
  void SetMark(int mark) { iMark = mark; }
  // The connected component found by the last walk of the graph.
  int GetComponent() const { return iComponent; }

  // The node's own text in a layout file: its box, then each edge that starts here.
  virtual void WriteGraphEasy(std::ostream& out, const char* edgeStyle) const {
    out << "[ " << GetId() << " ]" << std::endl;
    for (int i = 0; i < iEdges.GetSize(); i++)
      if (iEdges[i]->GetFirst() == static_cast<const Node*>(this))
        WriteGraphEasyEdge(out, GetId(), "--", iEdges[i]->GetSecond()->GetId(), edgeStyle);
  }

 protected:
  template <class N, class E>
  friend class UndirectedGraph_tmpl;
  // Node classes derive from UNode_tmpl first, so a node and its UNode_tmpl part share one
  // address; comparing addresses works even while the derived part is being destroyed.
  bool IsMe(const Node* node) const { return static_cast<const void*>(node) == static_cast<const void*>(this); }

  Container_tmpl<Edge*> iEdges;
  int iMark = 0;
  int iComponent = -1;
};

// The nodes of a graph, with a look-up table by id that is built when first needed and dropped
// when the graph outgrows it (the table never grows).
template <class Node, class Edge>
class Graph_tmpl {
 public:
  explicit Graph_tmpl(int capacity = 10) : iNodes(capacity, nullptr) {}
  Graph_tmpl(const Graph_tmpl&) = delete;
  Graph_tmpl& operator=(const Graph_tmpl&) = delete;
  virtual ~Graph_tmpl() {
    for (int i = 0; i < iNodes.GetSize(); i++) delete iNodes[i];
    delete iTable;
  }

  int GetNumNodes() const { return iNumNodes; }
  Node* GetNodeAt(int i) const { return iNodes[i]; }
  Container_tmpl<Node*>& GetNodes() { return iNodes; }

  virtual void AddNode(Node* node) {
    iNodes.Add(node);
    iNumNodes++;
    if (!iTable) return;
    if (iNumNodes < iTableLimit) {
      iTable->Insert(node, node);
    } else {
      delete iTable;
      iTable = nullptr;
    }
  }
  Node* GetNode(Id_cl* key) {
    if (!iTable) {
      iTable = new IdTable_tmpl<Node*>(3 * iNumNodes, nullptr);
      iTableLimit = 2 * iNumNodes;
      for (int i = 0; i < iNodes.GetSize(); i++) iTable->Insert(iNodes[i], iNodes[i]);
    }
    return iTable->GetEntry(key);
  }
  Node* GetNode(int id) {
    Id_cl key(id);
    return GetNode(&key);
  }
  // Takes the node out of the graph; its edges stay attached to it.
  virtual void DetachNode(Node* node) {
    if (!iNodes.RemoveFirstPtr(node)) return;
    iNumNodes--;
    if (iTable) iTable->Remove(node);
  }
  void RemoveNode(Node* node) {
    DetachNode(node);
    delete node;
  }

  // A layout file: nothing for an empty graph, else the header and each node's own text.
  void WriteGraphEasyFile(std::ostream& out, const char* label, const char* nodeStyle, const char* edgeStyle) const {
    if (iNumNodes == 0) return;
    out << "graph { align: center; label: " << (label ? label : "") << "; }" << std::endl;
    out << "node { " << (nodeStyle ? nodeStyle : "fill: orange; align: left;") << " }" << std::endl;
    out << std::endl;
    for (int i = 0; i < iNodes.GetSize(); i++) iNodes[i]->WriteGraphEasy(out, edgeStyle);
  }

  void UnMarkAllNodes() {
    for (int i = 0; i < iNodes.GetSize(); i++) iNodes[i]->SetMark(0);
  }

 protected:
  Container_tmpl<Node*> iNodes;
  IdTable_tmpl<Node*>* iTable = nullptr;
  int iNumNodes = 0;
  int iTableLimit = 0;
};

template <class Node, class Edge>
class DirectedGraph_tmpl : public Graph_tmpl<Node, Edge> {
 public:
  using Graph_tmpl<Node, Edge>::Graph_tmpl;
  ~DirectedGraph_tmpl() override { DeleteEdges(); }

  Edge* AddEdge(Node* from, Node* to) {
    Edge* e = new Edge(from, to);
    Connect(e);
    return e;
  }
  // Links an edge made by the caller into both of its ends.
  void Connect(Edge* e) {
    e->GetFrom()->iChildren.Add(e);
    e->GetTo()->iParents.Add(e);
  }
  void RemoveEdge(Edge* e) {
    e->GetFrom()->iChildren.RemoveFirstPtr(e);
    e->GetTo()->iParents.RemoveFirstPtr(e);
    delete e;
  }
  // Deletes every edge, each once through its start node; the nodes stay.
  void DeleteEdges() {
    for (int i = 0; i < this->iNodes.GetSize(); i++) {
      Node* n = this->iNodes[i];
      for (int k = 0; k < n->iChildren.GetSize(); k++) delete n->iChildren[k];
    }
    for (int i = 0; i < this->iNodes.GetSize(); i++) {
      this->iNodes[i]->iChildren.RemoveAll();
      this->iNodes[i]->iParents.RemoveAll();
    }
  }
  void UnMarkAllEdges() {
    for (int i = 0; i < this->iNodes.GetSize(); i++)
      for (int k = 0; k < this->iNodes[i]->GetNumChildren(); k++) this->iNodes[i]->GetChildEdge(k)->SetMark(0);
  }

  // The nodes in an order where every edge points forward, filled from the end as a depth-first
  // walk over child edges finishes nodes. A cycle clears *isAcyclic; the order is then partial.
  // The walk keeps its own stack so that long chains cannot exhaust the call stack.
  Vector_tmpl<Node*>* TopologicalSort(int* isAcyclic = nullptr) {
    int n = this->iNodes.GetSize();
    Vector_tmpl<Node*>* order = new Vector_tmpl<Node*>(n, nullptr);
    order->AddEmptyLast(n);
    int ok = 1;
    int fill = n;
    this->UnMarkAllNodes();
    Vector_tmpl<Node*> path(16, nullptr);
    Vector_tmpl<int> next(16, 0);
    for (int r = 0; r < n; r++) {
      Node* root = this->iNodes[r];
      if (root->GetMark() != 0) continue;
      root->SetMark(1);
      path.AddLast(root);
      next.AddLast(0);
      while (path.GetSize() > 0) {
        Node* top = path.GetLast();
        int& k = next.GetLast();
        if (k < top->GetNumChildren()) {
          Node* child = top->GetChild(k++);
          if (child->GetMark() == 1) {
            ok = 0;
          } else if (child->GetMark() == 0) {
            child->SetMark(1);
            path.AddLast(child);
            next.AddLast(0);
          }
        } else {
          top->SetMark(2);
          (*order)[--fill] = top;
          path.RemoveLastElement();
          next.RemoveLastElement();
        }
      }
    }
    if (isAcyclic) *isAcyclic = ok;
    return order;
  }
};

template <class Node, class Edge>
class UndirectedGraph_tmpl : public Graph_tmpl<Node, Edge> {
 public:
  using Graph_tmpl<Node, Edge>::Graph_tmpl;
  ~UndirectedGraph_tmpl() override { DeleteEdges(); }

  void AddNode(Node* node) override {
    Graph_tmpl<Node, Edge>::AddNode(node);
    iNumComponents = -1;
  }
  void DetachNode(Node* node) override {
    Graph_tmpl<Node, Edge>::DetachNode(node);
    iNumComponents = -1;
  }
  Edge* AddEdge(Node* first, Node* second) {
    Edge* e = new Edge(first, second);
    Connect(e);
    return e;
  }
  void Connect(Edge* e) {
    e->GetFirst()->iEdges.Add(e);
    if (e->GetSecond() != e->GetFirst()) e->GetSecond()->iEdges.Add(e);
    iNumComponents = -1;
  }
  void RemoveEdge(Edge* e) {
    e->GetFirst()->iEdges.RemoveFirstPtr(e);
    e->GetSecond()->iEdges.RemoveFirstPtr(e);
    delete e;
    iNumComponents = -1;
  }
  // Deletes every edge, each once through its first node; the nodes stay. The edges are gathered
  // first, as a deleted edge would still be listed at its second node.
  void DeleteEdges() {
    Vector_tmpl<Edge*> edges(this->iNodes.GetSize() + 1, nullptr);
    for (int i = 0; i < this->iNodes.GetSize(); i++) {
      Node* n = this->iNodes[i];
      for (int k = 0; k < n->iEdges.GetSize(); k++)
        if (n->iEdges[k]->GetFirst() == n) edges.AddLast(n->iEdges[k]);
      n->iEdges.RemoveAll();
    }
    edges.DeleteAll();
    iNumComponents = -1;
  }
  int GetNumOfEdges() const {
    int count = 0;
    for (int i = 0; i < this->iNodes.GetSize(); i++) {
      Node* n = this->iNodes[i];
      for (int k = 0; k < n->GetNumEdges(); k++)
        if (n->GetEdge(k)->GetFirst() == n) count++;
    }
    return count;
  }
  void UnMarkAllEdges() {
    for (int i = 0; i < this->iNodes.GetSize(); i++)
      for (int k = 0; k < this->iNodes[i]->GetNumEdges(); k++) this->iNodes[i]->GetEdge(k)->SetMark(0);
  }

  // Walks the whole graph depth first, component after component in node order, writing the
  // nodes to out (room for every node) in visiting order and giving each its component.
  // Returns the number of components.
  int DFS(Node** out) {
    this->UnMarkAllNodes();
    int written = 0;
    int components = 0;
    Vector_tmpl<Node*> path(16, nullptr);
    Vector_tmpl<int> next(16, 0);
    for (int r = 0; r < this->iNodes.GetSize(); r++) {
      Node* root = this->iNodes[r];
      if (root->GetMark()) continue;
      Visit(root, components, out, written, path, next);
      while (path.GetSize() > 0) {
        Node* top = path.GetLast();
        int& k = next.GetLast();
        if (k < top->GetNumEdges()) {
          Node* other = top->GetNeighbour(k++);
          if (!other->GetMark()) Visit(other, components, out, written, path, next);
        } else {
          path.RemoveLastElement();
          next.RemoveLastElement();
        }
      }
      components++;
    }
    return components;
  }
  // The number of components, computed once until the graph changes.
  int GetConnectedComponents() {
    if (iNumComponents < 0) {
      Node** order = new Node*[this->iNodes.GetSize() + 1];
      iNumComponents = DFS(order);
      delete[] order;
    }
    return iNumComponents;
  }
  // A new vector of the nodes of the component with the most nodes, in visiting order; on ties
  // the first component found.
  Vector_tmpl<Node*>* GetLargestConnectedComponent() {
    int n = this->iNodes.GetSize();
    Node** order = new Node*[n + 1];
    iNumComponents = DFS(order);
    Vector_tmpl<int> sizes(iNumComponents + 1, 0);
    sizes.AddEmptyLast(iNumComponents);
    for (int i = 0; i < n; i++) sizes[order[i]->iComponent]++;
    int best = sizes.GetIndexOfMaxWithOperator();
    Vector_tmpl<Node*>* largest = new Vector_tmpl<Node*>(best < 0 ? 1 : sizes[best], nullptr);
    for (int i = 0; i < n; i++)
      if (order[i]->iComponent == best) largest->AddLast(order[i]);
    delete[] order;
    return largest;
  }
  // Connected, with one edge fewer than nodes. An empty graph is no tree.
  int IsTree() {
    if (this->iNumNodes == 0) return 0;
    return GetConnectedComponents() == 1 && GetNumOfEdges() == this->iNumNodes - 1;
  }

 private:
  void Visit(Node* node, int component, Node** out, int& written, Vector_tmpl<Node*>& path, Vector_tmpl<int>& next) {
    node->SetMark(1);
    node->iComponent = component;
    out[written++] = node;
    path.AddLast(node);
    next.AddLast(0);
  }

  int iNumComponents = -1;
};

#endif
