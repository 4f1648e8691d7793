#include "page/html.h"

#include "page/style.h"
#include "show/columns.h"
#include "show/terminal.h"

namespace page {

namespace {

// Styles of elements are the lengths of bars, so styles within the page are allowed, and nothing
// else.
constexpr std::string_view kPolicy =
    "default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'";

constexpr std::size_t kMostColumns = 400;

}  // namespace

Html::Open Html::in(Name name, Attribute first, Attribute second, Attribute third,
                    Attribute fourth) {
  open(name, {first, second, third, fourth});
  written_ += '>';
  return {this, name};
}

void Html::element(Name name, std::string_view content, Attribute first, Attribute second,
                   Attribute third) {
  const Open element = in(name, first, second, third);
  text(content);
}

void Html::empty(Name name, Attribute first, Attribute second) {
  open(name, {first, second});
  written_ += "/>";
}

void Html::text(std::string_view text) {
  escaped(text);
}

void Html::open(Name name, std::initializer_list<Attribute> attributes) {
  written_ += '<';
  written_ += name.text();
  for (const Attribute& attribute : attributes) {
    if (attribute.value.data() == nullptr) continue;
    written_ += ' ';
    written_ += attribute.name.text();
    written_ += "=\"";
    escaped(attribute.value);
    written_ += '"';
  }
}

// Rows on lines of their own can be looked at in any editor.
void Html::close(Name name) {
  written_ += "</";
  written_ += name.text();
  written_ += '>';
  if (name.text() == "tr" || name.text() == "li" || name.text() == "section") written_ += '\n';
}

void Html::escaped(std::string_view text) {
  for (const char c : show::cut(show::onOneLine(text), kMostColumns)) {
    switch (c) {
      case '&':
        written_ += "&amp;";
        break;
      case '<':
        written_ += "&lt;";
        break;
      case '>':
        written_ += "&gt;";
        break;
      case '"':
        written_ += "&quot;";
        break;
      default:
        written_ += c;
    }
  }
}

std::string document(std::string_view title, const std::function<void(Html&)>& body) {
  Html html;
  html.written_ = "<!DOCTYPE html>\n";
  {
    const auto page = html.in("html", {"lang", "en"});
    {
      const auto head = html.in("head");
      html.empty("meta", {"charset", "utf-8"});
      html.empty("meta", {"http-equiv", "Content-Security-Policy"}, {"content", kPolicy});
      html.empty("meta", {"name", "viewport"}, {"content", "width=device-width, initial-scale=1"});
      html.empty("meta", {"name", "color-scheme"}, {"content", "light dark"});
      html.empty("meta", {"name", "referrer"}, {"content", "no-referrer"});
      html.element("title", title);
      const auto style = html.in("style");
      html.written_ += kStyle;  // a literal without "<" and "&"
    }
    const auto all = html.in("body");
    html.element("a", "To the content", {"class", "skip"}, {"href", "#main"});
    body(html);
  }
  html.written_ += '\n';
  return html.written_;
}

}  // namespace page
