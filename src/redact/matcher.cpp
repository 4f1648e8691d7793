#include "redact/matcher.h"

#include <algorithm>

namespace redact {

std::optional<Matcher> Matcher::make(const std::vector<Text>& texts) {
  Matcher matcher;
  std::size_t bytes = 1;
  for (const Text& text : texts) {
    bytes += text.text.size();
    for (const char c : text.text) matcher.class_[static_cast<unsigned char>(c)] = 1;
  }
  if (bytes > kMostNodes) return std::nullopt;
  for (std::uint8_t& of : matcher.class_) {
    if (of != 0 && matcher.classes_ < 256) of = static_cast<std::uint8_t>(matcher.classes_++);
  }
  matcher.next_.resize(matcher.classes_);
  for (const Text& text : texts) matcher.add(text);
  matcher.link();
  return matcher;
}

void Matcher::add(const Text& text) {
  std::uint32_t node = 0;
  for (const char c : text.text) {
    const auto byte = static_cast<unsigned char>(c);
    if (next(node, byte) == 0) {
      next(node, byte) = static_cast<std::uint32_t>(nodes_.size());
      nodes_.emplace_back();
      next_.resize(next_.size() + classes_);
    }
    node = next_[node * classes_ + class_[byte]];
  }
  if (node == 0 || nodes_[node].length != 0) return;
  nodes_[node].length = static_cast<std::uint32_t>(text.text.size());
  nodes_[node].id = text.id;
}

// Breadth first, so that what a node falls back to is complete before it.
void Matcher::link() {
  std::vector<std::uint32_t> queue;
  queue.reserve(nodes_.size());
  queue.push_back(0);
  for (std::size_t at = 0; at < queue.size(); ++at) {
    const std::uint32_t node = queue[at];
    for (std::size_t of = 1; of < classes_; ++of) {
      std::uint32_t& below = next_[node * classes_ + of];
      const std::uint32_t other = node == 0 ? 0 : next_[nodes_[node].fallback * classes_ + of];
      if (below == 0) {
        below = other;
        continue;
      }
      nodes_[below].fallback = other;
      nodes_[below].shorter = nodes_[other].length != 0 ? other : nodes_[other].shorter;
      queue.push_back(below);
    }
  }
}

void Matcher::find(
    std::string_view text,
    const std::function<void(std::size_t begin, std::size_t end, std::size_t id)>& take) const {
  std::uint32_t node = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    node = next_[node * classes_ + class_[static_cast<unsigned char>(text[i])]];
    for (std::uint32_t at = nodes_[node].length != 0 ? node : nodes_[node].shorter; at != 0;
         at = nodes_[at].shorter) {
      take(i + 1 - nodes_[at].length, i + 1, nodes_[at].id);
    }
  }
}

}  // namespace redact
