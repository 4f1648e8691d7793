#include "redact/walk.h"

#include <algorithm>
#include <vector>

#include "base/digits.h"

namespace redact {

namespace {

constexpr std::string_view kBlank = " \t\r\n";

// Takes the blanks around it off.
Field fieldAt(std::string_view text, std::size_t begin, std::size_t end) {
  while (begin < end && kBlank.find(text[begin]) != std::string_view::npos) ++begin;
  while (end > begin && kBlank.find(text[end - 1]) != std::string_view::npos) --end;
  return {.begin = begin, .end = end};
}

// Follows the elements of a property list and remembers under which key each stands.
class ProfileWalker {
 public:
  ProfileWalker(std::string_view text, const std::function<void(const Field&)>& take)
      : text_(text), take_(take) {}

  void walk() {
    for (std::size_t at = text_.find('<'); at != std::string_view::npos; at = text_.find('<', at)) {
      const std::size_t end = text_.find('>', at);
      if (end == std::string_view::npos) return;
      at = element(at, end);
    }
  }

 private:
  // Where to go on.
  std::size_t element(std::size_t at, std::size_t end) {
    const std::string_view name = text_.substr(at + 1, end - at - 1);
    if (name == "dict" || name == "array") {
      open(name == "dict");
    } else if (name == "/dict" || name == "/array") {
      if (!around_.empty()) around_.pop_back();
      key_ = {};
    } else if (!name.starts_with('/') && !name.ends_with('/') && !name.starts_with('!') &&
               !name.starts_with('?')) {
      const std::size_t close = text_.find('<', end);
      if (close == std::string_view::npos) return text_.size();
      value(name, end + 1, close);
      return close;
    }
    return end + 1;
  }

  void open(bool dictionary) {
    if (dictionary && machine::isProfiledName(section_, key_) && !key_.empty()) {
      const auto begin = static_cast<std::size_t>(key_.data() - text_.data());
      Field field = fieldAt(text_, begin, begin + key_.size());
      field.place = machine::findProfiledSecret("SPBluetoothDataType", "", "general_name");
      take_(field);
    }
    around_.push_back(keyNow());
    key_ = {};
  }

  std::string_view keyNow() const {
    return key_.empty() && !around_.empty() ? around_.back() : key_;
  }

  void value(std::string_view element, std::size_t begin, std::size_t end) {
    const std::string_view content = text_.substr(begin, end - begin);
    if (element == "key") {
      key_ = content;
      return;
    }
    if (key_ == "_dataType") section_ = content;
    Field field = fieldAt(text_, begin, end);
    const bool listed = key_.empty();  // its key is that of the list
    field.key = keyNow();
    field.parent = listed ? above(1) : above(0);
    field.data = element == "data";
    field.number = element == "integer" || element == "real";
    // Of a data type that nobody reads any text may stand there.
    field.date = element == "date" && hasShape(content, "0000-00-00T00:00:00Z");
    if (!field.date) field.place = machine::findProfiledSecret(section_, field.parent, field.key);
    take_(field);
    key_ = {};
  }

  std::string_view above(std::size_t levels) const {
    return around_.size() > levels ? around_[around_.size() - 1 - levels] : std::string_view();
  }

  std::string_view text_;
  const std::function<void(const Field&)>& take_;
  std::vector<std::string_view> around_;
  std::string_view section_;
  std::string_view key_;
};

}  // namespace

void walkProfile(std::string_view text, const std::function<void(const Field& field)>& take) {
  ProfileWalker(text, take).walk();
}

void walkDocument(std::string_view text, const std::function<void(const Field& field)>& take) {
  std::string_view tag;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const std::string_view line = text.substr(at, end - at);
    const std::size_t equals = line.find('=');
    const bool isTag = line.starts_with('*') || line.starts_with('+');
    if (equals != std::string_view::npos && isTag) {
      tag = line.substr(1, equals - 1);
      // The name may hold the value, and "=" with it; a place that is replaced whole is one whose
      // name is a number.
      Field field = fieldAt(text, at + equals + 1, end);
      field.key = tag.substr(0, tag.find(':'));
      field.place = machine::findSnapshotSecret(tag, "");
      take(field);
    } else if (equals != std::string_view::npos) {
      Field field = fieldAt(text, at + equals + 1, end);
      field.key = line.substr(0, equals);
      field.date = field.key == "inst-date" &&
                   hasShape(text.substr(field.begin, field.end - field.begin), "00000000");
      field.place = line.starts_with('~') ? nullptr : machine::findSnapshotSecret(tag, field.key);
      take(field);
    }
    at = end + 1;
  }
}

}  // namespace redact
