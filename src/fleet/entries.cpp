#include "fleet/entries.h"

#include <algorithm>
#include <chrono>
#include <string_view>

#include "base/formatString.h"
#include "machine/cleanText.h"
#include "machine/valueText.h"

namespace fleet {

using huxread::SectionType;
using huxread::TagView;
using platform::PropertyList;

namespace {

// Seconds since 2001 as "2026-11-21T15:22:05Z"; of no year with four digits as they are.
std::string dateText(double seconds) {
  constexpr double kFirst = -63'145'526'400;  // of year 0
  constexpr double kLast = 252'423'993'600;   // of year 9999
  if (!(seconds >= kFirst && seconds < kLast)) return machine::valueText(seconds);
  const std::chrono::sys_seconds time = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1) +
                                        std::chrono::seconds(static_cast<std::int64_t>(seconds));
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const auto second = (time - day).count();
  return formatString("%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                      static_cast<int>(second / 3600), static_cast<int>(second / 60 % 60),
                      static_cast<int>(second % 60));
}

}  // namespace

Entries::Entries(huxread::Container file) : file_(std::move(file)), host_(platform::makeHost()) {}

const Entry* Entries::next() {
  if (given_ == waiting_.size() && !refill()) return nullptr;
  return &waiting_[given_++];
}

// Gets the entries of one tag or of one data type; false when nothing is left.
bool Entries::refill() {
  waiting_.clear();
  given_ = 0;
  while (waiting_.empty()) {
    if (!levels_.empty()) {
      addTag();
    } else if (!dataTypes_.empty()) {
      addDataType();
    } else if (!openSection()) {
      return false;
    }
  }
  return true;
}

bool Entries::openSection() {
  if (section_ == file_.sections().size()) return false;
  const huxread::Section& section = file_.sections()[section_++];
  document_ = typeName(section.type);
  auto text = file_.text(section.number);
  if (!text) return true;
  if (section.type == SectionType::CustomData) {
    report_ = std::move(*text);
    auto profile = machine::Profile::open(report_, *host_);
    if (!profile) return true;
    profile_ = std::move(*profile);
    dataTypes_ = profile_->dataTypes();
    std::ranges::reverse(dataTypes_);
  } else if (auto tree = huxread::Document::parse(std::move(*text))) {
    tree_ = std::move(*tree);
    path_ = "/";
    if (const auto top = tree_->top()) levels_.push_back({*top, 0});
  }
  return true;
}

void Entries::addTag() {
  const Level level = levels_.back();
  const bool isTop = levels_.size() == 1;
  const TagView& tag = level.tag;
  path_.resize(level.pathSize);
  path_ += isTop ? "/" : std::string(tag.name()) + "/";
  if (!tag.value().empty()) add(path_, tag.value());
  addProperties(path_, tag.properties());
  for (const huxread::Attribute& attribute : tag.attributes()) {
    const std::string path = path_ + std::string(attribute.name);
    add(path, attribute.value);
    addProperties(path, attribute.properties);
  }
  if (const auto child = tag.firstChild()) {
    levels_.push_back({*child, path_.size()});
    return;
  }
  while (!levels_.empty()) {
    const Level done = levels_.back();
    levels_.pop_back();
    const auto sibling = done.tag.nextSibling();
    if (!levels_.empty() && sibling) {  // the documents have one top
      levels_.push_back({*sibling, done.pathSize});
      return;
    }
  }
}

void Entries::addProperties(const std::string& path,
                            std::span<const huxread::Property> properties) {
  for (const huxread::Property& property : properties) {
    add(path + "~" + std::string(property.key), property.value);
  }
}

void Entries::addDataType() {
  std::size_t number = 0;
  const std::string type = dataTypes_.back();
  dataTypes_.pop_back();
  profile_->forEach(type, [&](const PropertyList& item) {
    addValue(formatString("/%s/%zu", type.c_str(), ++number), item);
  });
}

// No deeper than parsed lists are nested (Host::kMaxNesting).
void Entries::addValue(const std::string& path, const PropertyList& value) {
  if (const auto* dictionary = value.dictionary()) {
    for (const auto& [key, below] : *dictionary) {
      addValue(path + "/" + std::string(key), below);
    }
  } else if (const auto* array = value.array()) {
    std::size_t number = 0;
    for (const PropertyList& below : *array) {
      addValue(formatString("%s/%zu", path.c_str(), ++number), below);
    }
  } else if (const auto* text = value.text()) {
    add(path, *text);
  } else if (const auto* flag = value.boolean()) {
    add(path, *flag ? "true" : "false");
  } else if (const auto* number = value.number()) {
    const bool real = isReal(number->type);
    add(path,
        machine::valueText(real ? machine::Value(number->real) : machine::Value(number->integer)));
  } else if (const auto* date = value.date()) {
    add(path, dateText(date->seconds));
  }
}

void Entries::add(const std::string& path, std::string_view value) {
  waiting_.push_back({document_, machine::cleanText(path), machine::cleanText(value)});
}

}  // namespace fleet
