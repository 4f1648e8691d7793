#include "huxread/check.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/formatString.h"

namespace huxread {

namespace {

using Kind = Problem::Kind;

constexpr std::string_view kXmlStart = "<?xml";
constexpr std::string_view kBlanks = " \t\r\n";

// Whether the elements of an XML text are nested rightly; that is all that it looks at.
class XmlScan {
 public:
  explicit XmlScan(std::string_view text) : text_(text) {}

  // What is wrong at the place where it stopped; null when nothing is.
  const char* run() {
    while (true) {
      const std::size_t before = std::exchange(at_, std::min(text_.find('<', at_), text_.size()));
      const std::string_view passed = text_.substr(before, at_ - before);
      if (open_.empty() && passed.find_first_not_of(kBlanks) != std::string_view::npos) {
        return "text stands outside of the elements";
      }
      if (at_ == text_.size()) break;
      if (const char* problem = takeMarkup()) return problem;
    }
    if (!open_.empty()) return "an element is not ended";
    return hasRoot_ ? nullptr : "there is no element";
  }

  std::ptrdiff_t line() const { return 1 + std::ranges::count(text_.substr(0, at_), '\n'); }

 private:
  static constexpr std::size_t kMaxDepth = 512;

  const char* takeMarkup() {
    const std::string_view rest = text_.substr(at_);
    if (rest.starts_with("<?")) return passTo("?>");
    if (rest.starts_with("<!--")) return passTo("-->");
    if (rest.starts_with("<![CDATA[")) return passTo("]]>");
    if (rest.starts_with("<!")) return passTo(">");
    const std::size_t end = endOfMark(rest);
    if (end == std::string_view::npos) return "an element is cut off";
    return takeMark(rest.substr(1, end - 1));
  }

  // The ">" of an element's mark: quoted values may hold others.
  static std::size_t endOfMark(std::string_view rest) {
    std::size_t end = rest.find('>');
    std::size_t quote = rest.substr(0, end).find_first_of("\"'");
    while (quote < end) {
      const std::size_t closing = rest.find(rest[quote], quote + 1);
      if (closing == std::string_view::npos) return closing;
      if (closing > end) end = rest.find('>', closing);
      quote = rest.find_first_of("\"'", closing + 1);
    }
    return end;
  }

  // `mark` is what stands between "<" and ">".
  const char* takeMark(std::string_view mark) {
    const bool isEnd = mark.starts_with('/');
    const bool isEmpty = mark.ends_with('/');
    std::string_view name = mark.substr(isEnd ? 1 : 0);
    name = name.substr(0, name.find_first_of("/ \t\r\n"));
    if (name.empty()) return "an element has no name";
    if (isEnd) {
      if (open_.empty() || open_.back() != name) return "an end belongs to no element";
      open_.pop_back();
    } else {
      if (open_.empty() && hasRoot_) return "a second document begins";
      hasRoot_ = true;
      if (!isEmpty) open_.push_back(name);
      if (open_.size() > kMaxDepth) return "elements are nested too deeply";
    }
    at_ += mark.size() + 2;
    return nullptr;
  }

  const char* passTo(std::string_view end) {
    const std::size_t found = text_.find(end, at_);
    if (found == std::string_view::npos) return "a comment or an instruction is not ended";
    at_ = found + end.size();
    return nullptr;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::vector<std::string_view> open_;
  bool hasRoot_ = false;
};

// What is wrong with a document; "" when nothing is. `top` is the name that its top tag must have,
// "" when any will do.
std::string documentProblem(const Result<Document>& document, std::string_view top) {
  if (!document) return document.error().message;
  const std::optional<TagView> first = document->top();
  if (!first) return "the document has no tag";
  if (!top.empty() && first->name() != top) return "line 2 is not the top tag of such a section";
  return first->nextSibling() ? "the document has more than one top tag" : "";
}

std::string reportProblem(std::string_view text) {
  if (text.empty()) return "the report is empty";
  XmlScan scan(text);
  const char* problem = scan.run();
  return problem == nullptr ? "" : formatString("line %td: %s", scan.line(), problem);
}

// The name of the top tag of such a section; "" when any will do.
std::string_view topName(SectionType type) {
  if (type == SectionType::Snapshot) return "Snapshot";
  return type == SectionType::AssetInfo ? "AssetInfo" : "";
}

std::string textProblem(SectionType type, std::string text, std::optional<Document>* snapshot) {
  const bool unknown = type == SectionType::Unknown;
  if (type == SectionType::CustomData || (unknown && text.starts_with(kXmlStart))) {
    return reportProblem(text);
  }
  if (unknown && !text.starts_with(Document::kFirstLine)) return "";
  Result<Document> document = Document::parse(std::move(text));
  std::string problem = documentProblem(document, topName(type));
  if (document && type == SectionType::Snapshot && snapshot != nullptr) {
    *snapshot = std::move(*document);
  }
  return problem;
}

}  // namespace

std::vector<Problem> check(const Container& container, std::optional<Document>* snapshot) {
  std::vector<Problem> problems;
  for (const std::string& remark : container.remarks()) {
    problems.push_back({Kind::Header, std::nullopt, remark});
  }
  for (const Section& section : container.sections()) {
    const std::string title = formatString("section %u: ", section.number);
    if (section.type == SectionType::Unknown) {
      problems.push_back({Kind::Type, section.number, title + "its type is not known"});
    }
    Result<std::string> text = container.text(section.number);
    if (!text) {
      problems.push_back({Kind::Stream, section.number, text.error().message});
      continue;
    }
    const std::string problem = textProblem(section.type, std::move(*text), snapshot);
    if (section.type == SectionType::Snapshot) snapshot = nullptr;  // it was the first
    if (!problem.empty()) problems.push_back({Kind::Text, section.number, title + problem});
  }
  return problems;
}

}  // namespace huxread
