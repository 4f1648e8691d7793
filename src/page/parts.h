#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "machine/description.h"
#include "page/html.h"

// What pages about machines are put together from.

namespace page {

// With a capital at its beginning.
std::string asTitle(std::string_view text);

// A section with its heading.
Html::Open beginSection(Html& html, std::string_view id, std::string_view title);

// What is folded at first, with the number of rows in it, which a printed page says, too.
Html::Open beginFold(Html& html, std::string_view title, std::size_t rows, bool open);

// Whether the table has rows; where it has none the page says so, or that it is not recorded.
bool hasRows(Html& html, const machine::Description& machine, std::string_view table);

// "snapshot of 2026-11-21 16:22"
std::string scanWords(const machine::Description& machine);

// At the foot: what the file is, and what made the page.
void writeIdentity(Html& html, const machine::Description& machine, std::string_view file);
void writeMaker(Html& html, std::string_view program);

}  // namespace page
