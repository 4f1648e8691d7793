#include "postprocess/sortedChildren.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "base/text.h"
#include "postprocess/mapping.h"

void sortChildrenByValue(Tag& parent) {
  constexpr std::size_t kFewest = 3;
  if (parent.childCount() < kFewest) return;
  std::vector<std::string> keys;
  keys.reserve(parent.childCount());
  for (const auto& child : parent.children()) {
    keys.push_back(child->value() == nullptr ? "" : toLower(textOf(*child->value())));
  }
  std::vector<std::size_t> order(keys.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {},
                           [&keys](std::size_t i) -> const std::string& { return keys[i]; });
  parent.reorderChildren(order);
}
