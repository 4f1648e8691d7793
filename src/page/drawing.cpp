#include "page/drawing.h"

#include <algorithm>

#include "base/formatString.h"

namespace page {

namespace {

double within(double share) {
  return share > 0 ? std::min(share, 1.0) : 0;  // no number is not above 0
}

}  // namespace

void drawBar(Html& html, double share, std::string_view words, Tone tone) {
  const Attribute role =
      words.empty() ? Attribute{"aria-hidden", "true"} : Attribute{"role", "img"};
  const Attribute label = words.empty() ? Attribute{} : Attribute{"aria-label", words};
  const auto bar = html.in("span", {"class", tone == Tone::Bad ? "bar bad" : "bar"}, role, label);
  html.element("span", "", {"style", formatString("width:%.1f%%", 100 * within(share))});
}

void drawChart(Html& html, std::string_view caption, std::span<const Measure> measures) {
  double largest = 0;
  for (const Measure& measure : measures) largest = std::max(largest, measure.amount);
  const auto table = html.in("table", {"class", "chart"});
  if (!caption.empty()) html.element("caption", caption);
  for (const Measure& measure : measures) {
    const auto row = html.in("tr");
    {
      const auto head = html.in("th", {"scope", "row"});
      html.text(measure.label);
      if (!measure.below.empty()) {
        html.text(" ");
        html.element("small", measure.below);
      }
    }
    {
      const auto cell = html.in("td");
      drawBar(html, largest > 0 ? measure.amount / largest : 0, "", measure.tone);
    }
    html.element("td", measure.figure);
  }
}

}  // namespace page
