#include "collect/plistToTags.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/formatString.h"
#include "collect/dates.h"

using platform::NumberType;
using platform::PropertyList;

namespace {

enum class Level { Top, Nested };  // direct key of a data type, or below

TagValue numberValue(const PropertyList::Number& number, Level level) {
  switch (number.type) {
    case NumberType::SInt8:
      return TagValue(std::int64_t{static_cast<std::uint8_t>(number.integer)});
    case NumberType::SInt16:
      return TagValue(std::int64_t{static_cast<std::uint16_t>(number.integer)});
    case NumberType::SInt32:
      // Read into a 32-bit slot of which the upper half of the stored number knows nothing: -1 is
      // stored as 4294967295.
      return TagValue(std::int64_t{static_cast<std::uint32_t>(number.integer)});
    case NumberType::Char:
    case NumberType::Short:
    case NumberType::Int:
    case NumberType::Long:
    case NumberType::CFIndex:
    case NumberType::NSInteger:
      return TagValue(std::int64_t{static_cast<std::int32_t>(number.integer)});
    case NumberType::SInt64:
    case NumberType::LongLong:
      if (level == Level::Top) {
        return TagValue(formatString("%lld", static_cast<long long>(number.integer)));
      }
      return TagValue(number.integer);
    case NumberType::Float32:
    case NumberType::Float64:
    case NumberType::Float:
    case NumberType::Double:
      return TagValue(number.real);
    case NumberType::CGFloat:
      break;
  }
  return TagValue();
}

// One more component of a path, for as long as this object lives.
class Below {
 public:
  Below(std::string& path, std::string_view name) : path_(path), length_(path.size()) {
    path_ += '/';
    path_ += name;
  }
  Below(const Below&) = delete;
  Below& operator=(const Below&) = delete;
  ~Below() { path_.resize(length_); }

 private:
  std::string& path_;
  std::size_t length_;
};

// Walks a property list with one path that grows and shrinks as it goes.
class Converter {
 public:
  Converter(platform::Host& host, kevaDoc& document, std::string path)
      : host_(host), document_(document), path_(std::move(path)) {}

  void dataType(const PropertyList::Dictionary& dictionary) {
    constexpr std::array<std::string_view, 3> kSkipped = {"_dataType", "_detailLevel",
                                                          "_properties"};
    for (const auto& [key, value] : dictionary) {
      if (std::ranges::find(kSkipped, key) != kSkipped.end()) continue;
      const Below below(path_, sanitizeKey(key));
      convert(value, Level::Top);
    }
  }

  void dictionary(const PropertyList::Dictionary& dictionary) {
    for (const auto& [key, value] : dictionary) {
      const Below below(path_, sanitizeKey(key));
      const bool rules = key == "spfirewall_applications" || key == "spfirewall_services";
      if (rules && value.dictionary() != nullptr) {
        namedValues(*value.dictionary());
      } else {
        convert(value, Level::Nested);
      }
    }
  }

  void array(const PropertyList::Array& array) {
    for (std::size_t i = 0; i < array.size(); ++i) {
      const Below below(path_, "item" + std::to_string(i));
      convert(array[i], Level::Nested);
    }
  }

  void namedValues(const PropertyList::Dictionary& dictionary) {
    std::size_t position = 0;
    for (const auto& [key, value] : dictionary) {
      const Below item(path_, "item" + std::to_string(position++));
      if (value.text() == nullptr) continue;
      set("_name", key);
      set("value", *value.text());
    }
  }

 private:
  void set(std::string_view name, const std::string& text) {
    const Below below(path_, name);
    document_.set(path_, TagValue(text));
  }

  void convert(const PropertyList& value, Level level) {
    if (value.dictionary() != nullptr) {
      dictionary(*value.dictionary());
    } else if (value.array() != nullptr) {
      array(*value.array());
    } else if (value.text() != nullptr) {
      document_.set(path_, TagValue(*value.text()));
    } else if (value.date() != nullptr) {
      document_.set(path_, TagValue(formatDate(host_, value.date()->seconds, TimestampForm::Long)));
    } else if (value.number() != nullptr) {
      const TagValue number = numberValue(*value.number(), level);
      if (number.kind() != TagValue::Kind::None) document_.set(path_, number);
    }
  }

  platform::Host& host_;
  kevaDoc& document_;
  std::string path_;
};

}  // namespace

void convertProfile(platform::Host& host, const PropertyList& root, kevaDoc& document) {
  if (root.array() == nullptr) return;
  for (const PropertyList& element : *root.array()) {
    const PropertyList* dataType = element.find("_dataType");
    if (dataType == nullptr || dataType->text() == nullptr) continue;
    if (*dataType->text() == "SPLogsDataType" || *dataType->text() == "SPFontsDataType") continue;
    const std::string path = formatString("/%s", normalizedText(*dataType->text()).c_str());
    Converter(host, document, path).dataType(*element.dictionary());
  }
}

void convertDictionary(platform::Host& host, const PropertyList::Dictionary& dictionary,
                       const std::string& path, kevaDoc& document) {
  Converter(host, document, path).dictionary(dictionary);
}

void convertArray(platform::Host& host, const PropertyList::Array& array, const std::string& path,
                  kevaDoc& document) {
  Converter(host, document, path).array(array);
}

void convertNamedValues(platform::Host& host, const PropertyList::Dictionary& dictionary,
                        const std::string& path, kevaDoc& document) {
  Converter(host, document, path).namedValues(dictionary);
}

std::string sanitizeKey(std::string_view key) {
  constexpr std::string_view kReplaced[] = {
      "'", " ", "/", ",", "\xE2\x80\x98", "\xE2\x80\x99", "\xE2\x80\x9B"};
  std::string sanitized;
  while (!key.empty()) {
    const auto mark = std::ranges::find_if(
        kReplaced, [key](std::string_view candidate) { return key.starts_with(candidate); });
    const bool replaced = mark != std::end(kReplaced);
    sanitized += replaced ? '_' : key.front();
    key.remove_prefix(replaced ? mark->size() : 1);
  }
  return normalizedText(sanitized);
}
