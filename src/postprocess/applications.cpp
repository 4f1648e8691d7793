#include "postprocess/applications.h"

#include <iterator>
#include <utility>

#include "postprocess/mapping.h"
#include "postprocess/sortedChildren.h"

namespace {

// The calendar day of a converted date, "yyyyMMdd".
TagValue day(const TagValue& source, const char*) {
  constexpr std::size_t kDay = 8;
  const SharedText& text = textOf(source);
  return TagValue(text.part(text.substr(0, kDay)));
}

constexpr Row kApplication[] = {
    {"version",             {"version"},             copied      },
    {"app-store",           {"app_store"},           zeroIf("no")},
    {"inst-date",           {"lastModified"},        {day}       },
    {"runtime-environment", {"runtime_environment"}, copied      },
    {"info",                {"info"},                copied      },
};

SharedText tagName(const Item& application) {
  std::string name = "Soft:";
  name += application.text("_name");
  if (application.has("version")) name.append(" ").append(application.text("version"));
  return normalizedText(std::move(name));
}

}  // namespace

void PostProcessApplications(kevaDoc& snapshot, const kevaDoc& raw) {
  const std::vector<Item> applications = items(raw, "SPApplicationsDataType");
  if (applications.empty()) return;
  Tag& software = branch(snapshot, {"Software"});
  software.expectChildren(applications.size());
  for (const Item& application : applications) {
    Tag& tag = *software.setChild(tagName(application), TagValue(application.text("_name")));
    tag.expectAttributes(std::size(kApplication) + 2);
    write(kApplication, application, tag);
    const TagValue& has64 = application.value("has64BitIntelCode");
    if (has64.kind() == TagValue::Kind::None) {
      tag.setAttribute("64bit-app", TagValue("1"), "type", "unknown");
    } else if (textOf(has64) == "yes") {
      tag.setAttribute(SharedText::lasting("64bit-app"), TagValue(SharedText::lasting("1")));
    }
    // Always there, unlike the others: newer systems name the place by another key.
    const TagValue& location = application.value("location");
    const bool isKnown = location.kind() != TagValue::Kind::None;
    tag.setAttribute(SharedText::lasting("path"), isKnown ? location : TagValue(""));
  }
  sortChildrenByValue(software);
}
