#include "page/report.h"

#include <gtest/gtest.h>

#include <cmath>
#include <pugixml.hpp>
#include <sstream>

#include "page/drawing.h"
#include "page/html.h"
#include "page/style.h"
#include "show/machines.h"
#include "support/rows.h"

// Pages are well-formed XML, so they can be asked.

using machine::Description;
using page::Html;

namespace {

pugi::xml_document parsed(const std::string& page) {
  pugi::xml_document document;
  const auto result = document.load_string(page.c_str(), pugi::parse_full | pugi::parse_ws_pcdata);
  EXPECT_TRUE(result) << result.description() << ": "
                      << page.substr(static_cast<std::size_t>(result.offset), 80);
  return document;
}

std::string reportOf(const Description& machine) {
  return page::report(machine, "folder.hux", "huxutil 1");
}

// Names of elements and attributes, each element on a line.
struct Skeleton : pugi::xml_tree_walker {
  std::ostringstream names;
  bool for_each(pugi::xml_node& node) override {
    if (node.type() != pugi::node_element) return true;
    names << depth() << ' ' << node.name();
    for (const pugi::xml_attribute attribute : node.attributes()) names << ' ' << attribute.name();
    names << '\n';
    return true;
  }
};
std::string skeletonOf(const std::string& page) {
  Skeleton skeleton;
  parsed(page).traverse(skeleton);
  return skeleton.names.str();
}

// Every column of every table known, every text that one.
Description allOf(const std::string& text) {
  Description machine(machine::Source::Debug);
  for (std::size_t place = 0; place < machine::kTableCount; ++place) {
    machine[place].recorded = true;
    machine::Row row;
    for (const machine::Column& column : machine::kTables[place].columns) {
      switch (column.type) {
        case machine::Type::Text:
          row.emplace_back(text);
          break;
        case machine::Type::Integer:
          row.emplace_back(std::int64_t{90});
          break;
        case machine::Type::Real:
          row.emplace_back(1.5);
          break;
        case machine::Type::Flag:
          row.emplace_back(true);
          break;
      }
    }
    machine[place].rows.push_back(row);
  }
  return machine;
}

// One change of each kind in each table.
inspect::Comparison changesOf(const Description& before, const Description& after,
                              const std::string& text) {
  inspect::Comparison compared;
  compared.sameMachine = false;
  for (std::size_t place = 0; place < machine::kTableCount; ++place) {
    const machine::Table& table = machine::kTables[place];
    const machine::Row* old = &before[place].rows.front();
    const machine::Row* now = &after[place].rows.front();
    using enum inspect::Change::Kind;
    compared.changes.push_back({Added, &table, text, nullptr, nullptr, now});
    compared.changes.push_back({Removed, &table, text, nullptr, old, nullptr});
    compared.changes.push_back({Changed, &table, text, &table.columns[1], old, now});
  }
  return compared;
}

std::string comparisonOf(const std::string& text) {
  const Description machine = allOf(text);
  return page::comparison({machine, text}, {machine, text}, changesOf(machine, machine, text),
                          text);
}

// What a colour of the style sheet is: its luminance by the rules of WCAG 2.
double luminance(const std::string& scheme, const std::string& name) {
  const std::size_t at = scheme.find("--" + name + ": #");
  EXPECT_NE(at, std::string::npos) << name;
  const unsigned long colour = std::stoul(scheme.substr(scheme.find('#', at) + 1, 6), nullptr, 16);
  const auto linear = [colour](unsigned shift) {
    const double part = static_cast<double>(colour >> shift & 255) / 255;
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(16) + 0.7152 * linear(8) + 0.0722 * linear(0);
}

}  // namespace

TEST(Report, SaysWhatIsKnown) {
  const pugi::xml_document page = parsed(reportOf(notebook()));
  const std::pair<const char*, const char*> asked[] = {
      {"string(/html/@lang)",                                                  "en"                                             },
      {"string(/html/head/title)",                                             "Mara’s MacBook Pro, C02XK0AAJGH5: inventory"  },
      {"string(//dt[.='Firmware']/../dd/i)",                                   "not known"                                      },
      {"string(//*[@id='findings']//li[1])",                                   "remark a disk is failing: Kestrel Backup HUX202"},
      {"string(//*[@id='storage']//li[1]/span/@aria-label)",                   "73 % used"                                      },
      {"string(//*[@id='storage']//li[1]/span/span/@style)",                   "width:73.1%"                                    },
      {"count(//*[@class='screens']/li)",                                      "2"                                              },
      {"count(//a[not(starts-with(@href,'#') and substring(@href,2)=//@id)])", "0"                                              },
      {"count(//table//th[not(@scope)])",                                      "0"                                              },
      {"count(//@id)=count(//@id[not(.=../following::*/@id)])",                "true"                                           },
  };
  for (const auto& [question, answer] : asked) {
    EXPECT_EQ(pugi::xpath_query(question).evaluate_string(page), answer) << question;
  }
}

TEST(Report, HoldsNoMarkupButItsOwn) {
  const std::string texts[] = {
      "<script>alert(1)</script>",       "\" onload=\"x\" a='",
      "</style></title><img src=x>",     "--><!-- ]]> <![CDATA[ &#x3c;&amp;",
      "\xFF\xC2\x9B\x1B[2J\xE2\x80\xAE", std::string(1000, '&')};
  const std::string report = skeletonOf(reportOf(allOf("x")));
  const std::string comparison = skeletonOf(comparisonOf("x"));
  for (const std::string& text : texts) {
    EXPECT_EQ(skeletonOf(reportOf(allOf(text))), report) << text;
    EXPECT_EQ(skeletonOf(comparisonOf(text)), comparison) << text;
  }
  const std::string page = reportOf(allOf(texts[4]));
  EXPECT_EQ(page.find('\x1B'), std::string::npos);
  EXPECT_EQ(page.find("\xE2\x80\xAE"), std::string::npos);
  EXPECT_LT(reportOf(allOf(std::string(5000, 'w'))).size(), 300000U);
}

TEST(Report, IsSmallWithManyApplications) {
  Description mac = notebook();
  for (int i = 0; i < 2000; ++i) {
    const std::string name = "Application of a usual name " + std::to_string(i);
    addRows(mac, "software: name=" + name + " | path=/Applications/Some Folder/" + name +
                     ".app/Contents/Library/Helper.app | version=2024.10.1 (1234)"
                     " | architecture=universal | origin=identified_developer"
                     " | signed_by=Developer ID Application: A Company of Some Size GmbH "
                     "(ABCDE12345), Developer ID Certification Authority, Apple Root CA"
                     " | info=" +
                     std::string(200, 'i'));
  }
  EXPECT_LT(reportOf(mac).size(), 1000000U);
}

TEST(Report, DrawsTheFirstOfMany) {
  Description mac(machine::Source::Debug);
  for (int i = 0; i < 120; ++i) addRows(mac, "volumes:\ndisks:\nmemory:\ndisplays:");
  const pugi::xml_document page = parsed(reportOf(mac));
  EXPECT_EQ(
      page.select_nodes("//section[not(@id='tables')]//li[not(ancestor::ul/@class='findings')]")
          .size(),
      200U);
  for (const std::string table : {"volumes", "disks", "memory", "displays"}) {
    const std::string rest = "//p[.='… 70 more, in the table of " + table + ".']";
    EXPECT_EQ(page.select_nodes(rest.c_str()).size(), 1U) << table;
  }
}

TEST(Report, SaysByWhichMeasureDisplaysAreDrawn) {
  Description mac(machine::Source::Debug);
  const auto said = [&mac](const char* sentence) {
    const std::string path = "//p[.='" + std::string(sentence) + "']";
    return parsed(reportOf(mac)).select_nodes(path.c_str()).size();
  };
  addRows(mac, "displays: width_px=2560 | height_px=1440 | diagonal_in=27");
  EXPECT_EQ(said("Drawn to scale."), 1U);
  addRows(mac, "displays: width_px=2560 | height_px=1440");
  EXPECT_EQ(said("Drawn to scale."), 0U);
}

TEST(Comparison, SaysWhenThereIsNothingToTell) {
  const Description mac = notebook();
  const pugi::xml_document page =
      parsed(page::comparison({mac, "a.hux"}, {mac, "b.hux"}, {}, "huxutil 1"));
  EXPECT_EQ(pugi::xpath_query("string(//main/section/p)").evaluate_string(page),
            "Nothing changed.");
  EXPECT_EQ(pugi::xpath_query("string(//*[@aria-label='Warning'])")
                .evaluate_string(parsed(comparisonOf("x")))
                .substr(0, 34),
            "These are two different machines: ");
}

TEST(Html, LeavesOutAnAttributeWithoutAValue) {
  Html html;
  html.empty("br", {}, {"id", "x"});
  EXPECT_EQ(html.written(), "<br id=\"x\"/>");
}

TEST(Drawing, TakesAnyShare) {
  Html html;
  page::drawChart(html, "c",
                  std::vector<page::Measure>{
                      {"a", 0.4, "4"},
                      {"b", 0.1, "1"},
                      {"c", NAN, "?"},
                      {"d", -1,  "-"}
  });
  page::drawBar(html, 7, "\"<\"");
  std::string widths;
  const pugi::xml_document page = parsed("<a>" + html.written() + "</a>");
  for (const pugi::xpath_node bar : page.select_nodes("//@style")) {
    widths += std::string(bar.attribute().value()) + " ";
  }
  EXPECT_EQ(widths, "width:100.0% width:25.0% width:0.0% width:0.0% width:100.0% ");
}

TEST(Style, CanBeReadInBothSchemes) {
  const std::string style(page::kStyle);
  const std::size_t dark = style.find("@media screen and (prefers-color-scheme: dark)");
  ASSERT_NE(dark, std::string::npos);
  const std::pair<const char*, const char*> pairs[] = {
      {"text", "ground"    },
      {"text", "panel"     },
      {"text", "warnground"},
      {"dim",  "ground"    },
      {"dim",  "panel"     },
      {"link", "ground"    },
      {"bad",  "badground" },
      {"warn", "warnground"},
      {"good", "goodground"},
      {"dim",  "badground" }
  };
  for (const std::string& scheme : {style.substr(0, dark), style.substr(dark)}) {
    for (const auto& [text, ground] : pairs) {
      const double one = luminance(scheme, text) + 0.05;
      const double other = luminance(scheme, ground) + 0.05;
      EXPECT_GE(std::max(one, other) / std::min(one, other), 4.5) << text << " on " << ground;
    }
  }
}
