#include "redact/derived.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace redact {

namespace {

void appendUtf8(std::string& text, unsigned long code) {
  const auto add = [&text](unsigned long byte) { text += static_cast<char>(byte); };
  if (code < 0x80) {
    add(code);
  } else if (code < 0x800) {
    add(0xC0 | code >> 6);
    add(0x80 | (code & 0x3F));
  } else {
    if (code >= 0x10000) add(0xF0 | (code >> 18 & 0x7));
    add(code >= 0x10000 ? 0x80 | (code >> 12 & 0x3F) : 0xE0 | code >> 12);
    add(0x80 | (code >> 6 & 0x3F));
    add(0x80 | (code & 0x3F));
  }
}

// The character of an entity, without its signs: "lt", "#x27"; "" of what is none.
std::string characterOf(std::string_view entity) {
  constexpr struct {
    std::string_view name;
    std::string_view character;
  } kNamed[] = {
      {"amp",  "&" },
      {"lt",   "<" },
      {"gt",   ">" },
      {"quot", "\""},
      {"apos", "'" }
  };
  const auto* const named =
      std::ranges::find(kNamed, entity, [](const auto& of) { return of.name; });
  if (named != std::end(kNamed)) return std::string(named->character);
  if (!entity.starts_with('#')) return {};
  entity.remove_prefix(1);
  const bool hexadecimal = entity.starts_with('x') || entity.starts_with('X');
  if (hexadecimal) entity.remove_prefix(1);
  const std::string_view digits = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
  if (entity.empty() || entity.find_first_not_of(digits) != std::string_view::npos) return {};
  constexpr unsigned long kLast = 0x10FFFF;
  const unsigned long code =
      std::strtoul(std::string(entity).c_str(), nullptr, hexadecimal ? 16 : 10);
  std::string character;
  if (code > 0 && code <= kLast) appendUtf8(character, code);
  return character;
}

// How much of a text is a separator.
std::size_t separatorSize(std::string_view text) {
  if (std::string_view(" -_:.").find(text.front()) != std::string_view::npos) return 1;
  return text.starts_with("%2d") ? 3 : 0;
}

}  // namespace

void Derived::add(std::string_view bytes, std::size_t begin, std::size_t end) {
  if (bytes.empty()) return;
  runs_.push_back({text_.size(), begin, end});
  text_ += bytes;
}

const Derived::Run& Derived::runAt(std::size_t at) const {
  return *std::prev(std::ranges::upper_bound(runs_, at, {}, &Run::at));
}

std::pair<std::size_t, std::size_t> Derived::origin(std::size_t begin, std::size_t end) const {
  const Run& first = runAt(begin);
  const Run& last = runAt(end - 1);
  const std::size_t from = std::min(first.begin + (begin - first.at), first.end);
  // Of a character that is an entity its end; else where the byte is.
  const std::size_t next = static_cast<std::size_t>(&last - runs_.data()) + 1;
  const std::size_t runEnd = next < runs_.size() ? runs_[next].at : text_.size();
  const bool whole = runEnd == end;
  return {from, whole ? last.end : std::min(last.begin + (end - last.at), last.end)};
}

Derived withoutEntities(std::string_view text) {
  constexpr std::size_t kLongest = 10;  // "&#x10FFFF;"
  Derived plain;
  std::size_t done = 0;
  for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
    const std::size_t size = text.substr(at, kLongest).find(';');
    if (size == std::string_view::npos) continue;
    const std::string character = characterOf(text.substr(at + 1, size - 1));
    if (character.empty()) continue;
    plain.add(text.substr(done, at - done), done, at);
    done = at + size + 1;
    plain.add(character, at, done);
  }
  plain.add(text.substr(done), done, text.size());
  return plain;
}

Derived withoutSeparators(std::string_view text) {
  Derived bare;
  std::size_t done = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = separatorSize(text.substr(at, 3));
    if (size > 0) {
      bare.add(text.substr(done, at - done), done, at);
      done = at + size;
    }
    at += std::max<std::size_t>(size, 1);
  }
  bare.add(text.substr(done), done, text.size());
  return bare;
}

}  // namespace redact
