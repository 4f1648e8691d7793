#pragma once

#include <span>
#include <string>
#include <string_view>

#include "page/html.h"

// What pages draw. Everything drawn is said in words beside it or for who cannot see it.

namespace page {

enum class Tone { Usual, Bad };

// A bar as wide as its place, filled to `share`, from 0 to 1 (what is beyond counts as that, no
// number as 0). `words` say the same: "62 % used"; "" when they stand beside it.
void drawBar(Html& html, double share, std::string_view words, Tone tone = Tone::Usual);

// One row of a chart.
struct Measure {
  std::string label;   // a text of a file, or ours
  double amount;       // drawn as part of the largest
  std::string figure;  // what stands behind the bar: "12", "48 GB"
  Tone tone = Tone::Usual;
  std::string below = {};  // in smaller letters under the label; may be ""
};

// A chart of bars below each other, as a table with that caption, unless a heading says it all: the
// label heads its row.
void drawChart(Html& html, std::string_view caption, std::span<const Measure> measures);

}  // namespace page
