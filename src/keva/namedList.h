#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

// An ordered list of owned nodes that are found by name, the first of equal names. Nodes never
// move, so that pointers to them last as long as the list; names must not change while a node is
// in a list. `Node` has `const std::string& name() const`.
//
// Short lists are searched from the front. From kIndexFrom nodes on the first look-up builds an
// index, so that a list of 100,000 applications costs the same per look-up as one of ten.
template <typename Node>
class NamedList {
 public:
  std::size_t size() const { return nodes_.size(); }

  // Null when `index` is not below size().
  Node* at(std::size_t index) const {
    return index < nodes_.size() ? nodes_[index].get() : nullptr;
  }

  // The first node of that name; null when there is none.
  Node* find(std::string_view name) const {
    if (nodes_.size() < kIndexFrom) {
      const auto found =
          std::ranges::find_if(nodes_, [name](const auto& node) { return node->name() == name; });
      return found == nodes_.end() ? nullptr : found->get();
    }
    if (!index_) buildIndex();
    const auto found = index_->byName.find(name);
    return found == index_->byName.end() ? nullptr : found->second;
  }

  Node& append(std::unique_ptr<Node> node) {
    constexpr std::size_t kUsual = 4;  // nodes; most lists get more than two
    if (nodes_.empty()) nodes_.reserve(kUsual);
    nodes_.push_back(std::move(node));
    Node* added = nodes_.back().get();
    if (index_) index_->byName.try_emplace(added->name(), added);
    return *added;
  }

  // Puts the nodes into the given order: order[i] is the present position of the node that comes to
  // stand at position i. It must hold every position once.
  void reorder(const std::vector<std::size_t>& order) {
    std::vector<std::unique_ptr<Node>> sorted;
    sorted.reserve(order.size());
    for (const std::size_t from : order) sorted.push_back(std::move(nodes_[from]));
    nodes_ = std::move(sorted);
    index_.reset();  // another node may now be the first of its name
  }

  // The smallest n from 1 for which no node is named `prefix` followed by n in decimal. Nodes are
  // never removed, so the search goes on where the last one with this prefix ended.
  unsigned nextFreeIndex(const std::string& prefix) const {
    if (nodes_.size() >= kIndexFrom && !index_) buildIndex();
    unsigned first = 1;
    unsigned& n = index_ ? index_->nextFree.try_emplace(prefix, 1U).first->second : first;
    while (find(prefix + std::to_string(n)) != nullptr) ++n;
    return n;
  }

  auto begin() const { return nodes_.begin(); }
  auto end() const { return nodes_.end(); }

 private:
  static constexpr std::size_t kIndexFrom = 24;

  struct Index {
    std::unordered_map<std::string_view, Node*> byName;  // keys are the nodes' own names
    std::unordered_map<std::string, unsigned> nextFree;  // by prefix
  };

  void buildIndex() const {
    index_ = std::make_unique<Index>();
    index_->byName.reserve(2 * nodes_.size());
    for (const auto& node : nodes_) index_->byName.try_emplace(node->name(), node.get());
  }

  std::vector<std::unique_ptr<Node>> nodes_;
  mutable std::unique_ptr<Index> index_;
};
