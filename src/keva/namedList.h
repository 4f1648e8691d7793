#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

// An ordered list of nodes that are found by name, the first of equal names. Nodes do not move
// while the list grows, so that pointers to them last; names must not change while a node is in a
// list. `Node` has `const SharedText& name() const`.
//
// Short lists are searched from the front. From kIndexFrom nodes on the first look-up builds an
// index, so that a list of 100,000 applications costs the same per look-up as one of ten.
template <typename Node>
class NamedList {
 public:
  // Walks the nodes in their order, as pointers. Nodes that are appended meanwhile may be left out.
  class Iterator {
   public:
    Iterator() = default;  // at the end
    explicit Iterator(const NamedList& list) : list_(&list) { enter(list.first_); }

    Node* operator*() const { return node_; }

    Iterator& operator++() {
      if (++node_ == last_) {
        if (next_ < list_->more_.size()) {
          enter(list_->more_[next_++]);
        } else {
          node_ = nullptr;
        }
      }
      return *this;
    }

    bool operator==(const Iterator& other) const { return node_ == other.node_; }

   private:
    void enter(std::vector<Node>& block) {
      node_ = block.empty() ? nullptr : block.data();
      last_ = block.data() + block.size();
    }

    const NamedList* list_ = nullptr;
    Node* node_ = nullptr;  // null at the end
    Node* last_ = nullptr;  // the end of its block
    std::size_t next_ = 0;  // of the blocks behind the first
  };

  std::size_t size() const { return size_; }

  // Null when `index` is not below size().
  Node* at(std::size_t index) const {
    if (index < first_.size()) return &first_[index];
    index -= first_.size();
    for (std::vector<Node>& block : more_) {
      if (index < block.size()) return &block[index];
      index -= block.size();
    }
    return nullptr;
  }

  // The first node of that name; null when there is none.
  Node* find(std::string_view name) const {
    if (size_ < kIndexFrom) {
      for (Node* node : *this) {
        if (node->name() == name) return node;
      }
      return nullptr;
    }
    if (!index_) buildIndex();
    const auto found = index_->byName.find(name);
    return found == index_->byName.end() ? nullptr : found->second;
  }

  // Says of an empty list that so many nodes are likely to come: it takes no more room than they.
  void expect(std::size_t count) {
    if (first_.capacity() == 0) first_.reserve(count);
  }

  // Makes a node of what its constructor takes.
  template <typename... Arguments>
  Node& append(Arguments&&... arguments) {
    std::vector<Node>* block = more_.empty() ? &first_ : &more_.back();
    if (block->size() == block->capacity()) {
      constexpr std::size_t kRoom = 128;  // bytes; most lists are short
      if (size_ > 0) block = &more_.emplace_back();
      block->reserve(std::max(kRoom / sizeof(Node), size_ + 1));
    }
    Node& added = block->emplace_back(std::forward<Arguments>(arguments)...);
    ++size_;
    if (index_) index_->byName.try_emplace(added.name(), &added);
    return added;
  }

  // Puts the nodes into the given order: order[i] is the present position of the node that comes to
  // stand at position i. It must hold every position once. Pointers to nodes are void then.
  void reorder(const std::vector<std::size_t>& order) {
    std::vector<Node> sorted;
    sorted.reserve(order.size());
    for (const std::size_t from : order) sorted.push_back(std::move(*at(from)));
    first_ = std::move(sorted);
    more_.clear();
    index_.reset();
  }

  // The smallest n from 1 for which no node is named `prefix` followed by n in decimal. Nodes are
  // never removed, so the search goes on where the last one with this prefix ended.
  unsigned nextFreeIndex(const std::string& prefix) const {
    if (size_ >= kIndexFrom && !index_) buildIndex();
    unsigned first = 1;
    unsigned& n = index_ ? index_->nextFree.try_emplace(prefix, 1U).first->second : first;
    while (find(prefix + std::to_string(n)) != nullptr) ++n;
    return n;
  }

  Iterator begin() const { return Iterator(*this); }
  Iterator end() const { return {}; }

 private:
  static constexpr std::size_t kIndexFrom = 24;

  struct Index {
    std::unordered_map<std::string_view, Node*> byName;  // keys are the nodes' own names
    std::unordered_map<std::string, unsigned> nextFree;  // by prefix
  };

  void buildIndex() const {
    index_ = std::make_unique<Index>();
    index_->byName.reserve(std::max(2 * size_, first_.capacity()));
    for (Node* node : *this) index_->byName.try_emplace(node->name(), node);
  }

  // Blocks of nodes, of which none grows beyond what it reserved. Each is longer than all before it
  // together, so that few nodes cost an allocation of their own, and most lists are one. Mutable,
  // since the nodes of a constant list are not constant.
  mutable std::vector<Node> first_;
  mutable std::vector<std::vector<Node>> more_;
  std::size_t size_ = 0;
  mutable std::unique_ptr<Index> index_;
};
