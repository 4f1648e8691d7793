#include "postprocess/partition.h"

#include "base/formatString.h"
#include "base/quantities.h"

namespace {

constexpr double kGigabytesPerByte = 1.0 / 1073741824;  // 2^-30

double gigabytesOf(std::int64_t bytes) {
  return static_cast<double>(bytes) * kGigabytesPerByte;
}

void writeAmount(const char* attribute, std::int64_t bytes, Tag& partition) {
  const double gigabytes = gigabytesOf(bytes);
  const bool small = gigabytes < 1.0;
  const std::string shown =
      small ? formatString("%.1f", gigabytes * 1024) : formatString("%.2f", gigabytes);
  TagAttribute* written =
      partition.setAttribute(attribute, TagValue(shown), "base-value", bytesText(bytes).c_str());
  if (small) written->addProperty("units", "MB");
}

// Wraps instead of overflowing: both figures come from outside.
std::int64_t difference(std::int64_t left, std::int64_t right) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(left) -
                                   static_cast<std::uint64_t>(right));
}

}  // namespace

VolumeAmounts writeAmounts(const Item& volume, Tag& partition) {
  VolumeAmounts amounts;
  const auto read = [&volume](const char* inBytes, const char* asText, std::int64_t& bytes) {
    bytes = volume.has(inBytes) ? volume.integer(inBytes) : quantity(SizeToBytes, volume, asText);
    return volume.has(inBytes) || volume.has(asText);
  };
  if (read("size_in_bytes", "size", amounts.size)) writeAmount("size", amounts.size, partition);
  amounts.hasFree = read("free_space_in_bytes", "free_space", amounts.free);
  if (amounts.hasFree) {
    writeAmount("free", amounts.free, partition);
    writeAmount("used", difference(amounts.size, amounts.free), partition);
  }
  return amounts;
}

void writePercentages(const VolumeAmounts& amounts, Tag& partition) {
  if (!amounts.hasFree || amounts.size == 0) return;
  const double size = gigabytesOf(amounts.size);
  const double used = size - gigabytesOf(amounts.free);
  const std::int64_t percent = static_cast<std::int32_t>(truncateToInteger(used / size * 100));
  partition.setAttribute("free%", TagValue(100 - percent));
  TagAttribute* written = partition.setAttribute("used%", TagValue(percent));
  written->addProperty("pos", formatString("%.2lf", used));
  written->addProperty("max", formatString("%.2lf", size));
  written->addProperty("val-units", "GB");
}
