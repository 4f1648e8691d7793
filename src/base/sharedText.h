#pragma once

#include <string>
#include <string_view>
#include <utility>

// A text that never changes and shares its bytes: a view that keeps what it looks at. Copies and
// parts cost nothing but counting, however long the text is, and so a text that was read out of a
// document stays where it is on its whole way through a scan. The bytes go with the last text that
// shares them: a short part of a document keeps all of it.
//
// It is used as the view that it is. Texts that share bytes stay in one thread: owners are not
// counted for several.
class SharedText : public std::string_view {
 public:
  SharedText() : std::string_view("") {}  // data() is never null
  explicit SharedText(std::string text) : SharedText() {
    if (text.empty()) return;
    bytes_ = new Bytes{std::move(text)};
    view() = bytes_->text;
  }
  explicit SharedText(std::string_view text) : SharedText(std::string(text)) {}
  explicit SharedText(const char* text) : SharedText(std::string(text)) {}

  // Of bytes that last as long as the program does, such as those of a table: it shares those.
  static SharedText lasting(const char* text) {
    SharedText result;
    result.view() = text;
    return result;
  }

  SharedText(const SharedText& other) noexcept : std::string_view(other), bytes_(other.bytes_) {
    if (bytes_ != nullptr) ++bytes_->owners;
  }
  SharedText(SharedText&& other) noexcept
      : std::string_view(std::exchange(other.view(), "")),
        bytes_(std::exchange(other.bytes_, nullptr)) {}
  SharedText& operator=(const SharedText& other) noexcept { return *this = SharedText(other); }
  SharedText& operator=(SharedText&& other) noexcept {
    std::swap(view(), other.view());
    std::swap(bytes_, other.bytes_);
    return *this;
  }
  ~SharedText() {
    if (bytes_ != nullptr && --bytes_->owners == 0) delete bytes_;
  }

  void swap(std::string_view& other) = delete;  // which would leave the bytes behind

  operator std::string() const { return std::string(data(), size()); }

  // A text of its own: `part` must be within this one.
  SharedText part(std::string_view part) const {
    SharedText result(*this);
    result.view() = part;
    return result;
  }

  // For who made the text and still is its only owner, such as a parser that works in place. Null
  // when it is empty.
  char* bytes() { return bytes_ == nullptr ? nullptr : bytes_->text.data(); }

 private:
  struct Bytes {
    std::string text;
    long owners = 1;
  };

  std::string_view& view() { return *this; }

  Bytes* bytes_ = nullptr;  // null when there is nothing to keep
};
