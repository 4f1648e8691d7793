#include <cinttypes>
#include <cstring>

#include "base/console.h"
#include "base/formatString.h"
#include "keva/deflate.h"
#include "keva/tag.h"

namespace {

constexpr std::string_view kHeader = "\xEF\xBB\xBF?keva\n";

// Writes texts one behind the other into memory; after each stands a NUL that the next one
// overwrites.
class Buffer {
 public:
  explicit Buffer(char* start) : start_(start), end_(start) {}

  void write(std::string_view text) {
    std::memcpy(end_, text.data(), text.size());
    end_ += text.size();
    *end_ = '\0';
  }

  unsigned length() const { return static_cast<unsigned>(end_ - start_); }

 private:
  char* start_;
  char* end_;
};

// `Sink` has write(std::string_view), which takes a text piece by piece.
template <typename Sink>
class TextWriter {
 public:
  explicit TextWriter(Sink& sink) : sink_(sink) {}

  void writeValue(const TagValue& value) {
    switch (value.kind()) {
      case TagValue::Kind::None:
        break;
      case TagValue::Kind::Bool:
        write(*value.boolean() ? "true" : "false");
        break;
      case TagValue::Kind::Integer:
        write(formatString("%" PRId64, *value.integer()));
        break;
      case TagValue::Kind::Double:
        write(formatString("%.2lf", *value.number()));
        break;
      case TagValue::Kind::Text:
        write(*value.text());
        break;
    }
  }

  void writeProperties(const std::vector<TagProperty>& properties) {
    for (const TagProperty& property : properties) {
      write("~");
      write(property.key);
      write("=");
      write(property.value);
      write("\n");
    }
  }

  // The tag's own line, its properties, its attributes with theirs.
  void writeStart(std::string_view lead, const Tag& tag) {
    write(lead);
    write(tag.name());
    write("=");
    if (tag.value() != nullptr) writeValue(*tag.value());
    write("\n");
    if (lead == "+" && tag.propertyCount() > 0)
      printError("tag >>%s<< :\n", std::string(tag.name()).c_str());
    writeProperties(tag.properties());
    for (const auto& attribute : tag.attributes()) {
      write(attribute->name());
      write("=");
      writeValue(attribute->value());
      write("\n");
      writeProperties(attribute->properties());
    }
  }

  void writeTag(const Tag& tag, bool noEndMark, bool noChildren) {
    switch (tag.kind()) {
      case Tag::Kind::Holder:
        write(kHeader);
        for (const auto& child : tag.children()) writeTag(*child, noEndMark, noChildren);
        break;
      case Tag::Kind::Leaf:
        writeStart("*", tag);
        break;
      case Tag::Kind::Branch:
        writeStart("+", tag);
        if (noChildren) break;
        for (const auto& child : tag.children()) writeTag(*child, false, false);
        if (!noEndMark) write("-\n");
        break;
    }
  }

 private:
  void write(std::string_view text) { sink_.write(text); }

  Sink& sink_;
};

unsigned valueSize(const TagValue& value) {
  switch (value.kind()) {
    case TagValue::Kind::None:
      return 0;
    case TagValue::Kind::Bool:
      return *value.boolean() ? 4 : 5;
    case TagValue::Kind::Integer:
      return static_cast<unsigned>(measureFormatted("%" PRId64, *value.integer()));
    case TagValue::Kind::Double:
      return static_cast<unsigned>(measureFormatted("%.2lf", *value.number()));
    case TagValue::Kind::Text:
      return static_cast<unsigned>(value.text()->size());
  }
  return 0;
}

unsigned propertiesSize(const std::vector<TagProperty>& properties) {
  constexpr std::size_t kMarks = 3;  // "~", "=" and the line feed
  std::size_t size = 0;
  for (const TagProperty& property : properties) {
    size += property.key.size() + property.value.size() + kMarks;
  }
  return static_cast<unsigned>(size);
}

}  // namespace

unsigned Tag::writeText(char* buffer, unsigned offset, bool noEndMark, bool noChildren) const {
  Buffer memory(buffer + offset);
  TextWriter(memory).writeTag(*this, noEndMark, noChildren);
  return memory.length();
}

void Tag::writeText(Deflater& stream, bool noEndMark, bool noChildren) const {
  TextWriter(stream).writeTag(*this, noEndMark, noChildren);
}

unsigned Tag::textSize(bool noChildren) const {
  if (kind_ == Kind::Holder) {
    return static_cast<unsigned>(kHeader.size()) + childAt(0)->textSize(noChildren);
  }
  unsigned size = static_cast<unsigned>(name_.size()) + 3;
  if (value_) size += valueSize(*value_);
  for (const auto& attribute : attributes_) {
    size += static_cast<unsigned>(attribute->name().size()) + valueSize(attribute->value()) +
            propertiesSize(attribute->properties()) + 2;
  }
  if (noChildren) return size;
  for (const auto& child : children_) size += child->textSize(false);
  return size + propertiesSize(properties()) + (kind_ == Kind::Branch ? 2 : 0);
}
