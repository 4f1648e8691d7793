#include "shortForms.h"

#include "support/shortForm.h"

kevaDoc rawDocument(std::initializer_list<std::string_view> typesAndItems) {
  kevaDoc raw(true, "Macintosh");
  for (auto it = typesAndItems.begin(); it != typesAndItems.end(); it += 2) {
    addRawItems(raw, it[0], elementsOf(it[1]));
  }
  return raw;
}

std::string lines(std::string text) {
  for (std::size_t at = text.find(" | "); at != std::string::npos; at = text.find(" | ", at)) {
    text.replace(at, 3, "\n");
  }
  if (text.starts_with('\n')) text.erase(0, 1);
  return text.ends_with('\n') ? text : text + "\n";
}
