#include "show/grid.h"

#include <algorithm>
#include <utility>

#include "machine/valueText.h"
#include "show/columns.h"
#include "show/terminal.h"

namespace show {

namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kLeast = 8;  // of a text that is cut

std::string shown(const machine::Value& value) {
  return onOneLine(machine::valueText(value));
}

bool isText(const machine::Value& value) {
  return std::holds_alternative<std::string>(value);
}

}  // namespace

Grid::Grid(std::vector<std::string> names, const std::vector<machine::Row>& sample,
           std::size_t width)
    : names_(std::move(names)), width_(width) {
  for (std::size_t i = 0; i < names_.size(); ++i) {
    names_[i] = onOneLine(names_[i]);
    std::size_t widest = columnsOf(names_[i]);
    bool number = !sample.empty();
    for (const machine::Row& row : sample) {
      widest = std::max(widest, columnsOf(shown(row[i])));
      number = number && !isText(row[i]);
    }
    widths_.push_back(widest);
    numbers_.push_back(number);
  }
  if (width == 0 || names_.empty()) return;
  below_ = !narrow();
  if (!below_) return;
  widths_.assign(1, 0);
  for (const std::string& name : names_) widths_[0] = std::max(widths_[0], columnsOf(name));
}

// The widest texts give way first; false when that is not enough.
bool Grid::narrow() {
  for (;;) {
    std::size_t total = kGap * (widths_.size() - 1);
    for (const std::size_t each : widths_) total += each;
    if (total <= width_) return true;
    std::size_t widest = 0;
    std::size_t next = kLeast;  // what the others have
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      if (!numbers_[i]) widest = std::max(widest, widths_[i]);
    }
    if (widest <= kLeast) return false;
    std::size_t many = 0;
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      if (numbers_[i]) continue;
      if (widths_[i] == widest)
        ++many;
      else
        next = std::max(next, widths_[i]);
    }
    const std::size_t excess = (total - width_ + many - 1) / many;
    const std::size_t cutTo = std::max(next, widest - std::min(excess, widest));
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      if (!numbers_[i] && widths_[i] == widest) widths_[i] = cutTo;
    }
  }
}

std::string Grid::line(const std::vector<std::string>& cells) const {
  std::string text;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::string cell = width_ == 0 ? cells[i] : cut(cells[i], widths_[i]);
    const std::size_t taken = columnsOf(cell);
    const std::string blanks(widths_[i] - std::min(widths_[i], taken), ' ');
    text += numbers_[i] ? blanks + cell : cell + blanks;
    if (i + 1 < cells.size()) text.append(kGap, ' ');
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text + "\n";
}

std::string Grid::header() const {
  return below_ ? "" : line(names_);
}

std::string Grid::row(const machine::Row& row) const {
  std::vector<std::string> cells;
  for (const machine::Value& value : row) cells.push_back(shown(value));
  if (!below_) return line(cells);
  std::string lines;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (!machine::isKnown(row[i])) continue;
    const std::size_t left = widths_[0] + kGap;
    lines += cut(padded(names_[i], left) + cells[i], std::max(width_, left + kLeast)) + "\n";
  }
  return lines + "\n";
}

}  // namespace show
