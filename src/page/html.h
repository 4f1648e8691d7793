#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

// Pages of HTML that hold texts of files, which are anybody's. What is no literal of this program
// can only become text or the value of an attribute; a page is well-formed XML, too.

namespace page {

// What an element or an attribute is called: a literal, so that no file can choose it.
class Name {
 public:
  consteval Name(const char* literal) : text_(literal) {}  // NOLINT(google-explicit-constructor)
  std::string_view text() const { return text_; }

 private:
  std::string_view text_;
};

struct Attribute {
  Name name = "";
  std::string_view value = {};  // one without data leaves the attribute out
};

// Writes elements one after the other. Texts and values may be any bytes: markup is escaped, and
// what steers a terminal or turns the direction of a text is shown as "\u202E" (show::onOneLine),
// line ends become blanks, and what is longer than any figure or name is cut.
class Html {
 public:
  // Ends its element when its scope ends.
  class [[nodiscard]] Open {
   public:
    Open(Open&& other) noexcept : html_(std::exchange(other.html_, nullptr)), name_(other.name_) {}
    Open(const Open&) = delete;
    Open& operator=(Open&&) = delete;
    Open& operator=(const Open&) = delete;
    ~Open() {
      if (html_ != nullptr) html_->close(name_);
    }

   private:
    friend class Html;
    Open(Html* html, Name name) : html_(html), name_(name) {}
    Html* html_;  // null when it was moved from
    Name name_;
  };

  // Begins an element that holds what is written until the answer goes out of scope.
  Open in(Name name, Attribute first = {}, Attribute second = {}, Attribute third = {},
          Attribute fourth = {});

  // A whole element with a text in it.
  void element(Name name, std::string_view content, Attribute first = {}, Attribute second = {},
               Attribute third = {});

  // An element that never holds anything: "meta", "br".
  void empty(Name name, Attribute first = {}, Attribute second = {});

  void text(std::string_view text);

  // A text of a file beside others: its direction of writing does not reach them.
  void isolated(std::string_view text) { element("bdi", text); }

  // What stands where a value is not known: a dash to see, "not known" to hear, and to read where
  // styles are left out.
  void unknown() { element("i", "not known"); }

  const std::string& written() const { return written_; }

 private:
  friend std::string document(std::string_view title, const std::function<void(Html&)>& body);

  void open(Name name, std::initializer_list<Attribute> attributes);
  void close(Name name);
  void escaped(std::string_view text);

  std::string written_;
};

// A whole page in the one style of all pages (style.h), which loads nothing and runs nothing, and
// forbids both. `body` writes what stands in it; its element "main" is to have the id "main", to
// which a first link leads those who do not want to hear everything.
std::string document(std::string_view title, const std::function<void(Html&)>& body);

}  // namespace page
