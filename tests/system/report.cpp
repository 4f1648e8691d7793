#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "huxread/handmade.h"
#include "support/demoMac.h"
#include "support/shell.h"
#include "support/snapshotFile.h"
#include "support/workingFolder.h"

// Pages from outside, in a real browser: Chromium, where there is one.

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// Listens on the loopback address, hangs up on whoever calls, and counts them.
class Listener {
 public:
  Listener() : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    bind(socket_, reinterpret_cast<sockaddr*>(&address), size);
    listen(socket_, 16);
    getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size);
    url_ = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/";
    thread_ = std::thread([this] {
      for (int caller; (caller = accept(socket_, nullptr, nullptr)) >= 0; close(caller)) ++calls_;
    });
  }
  ~Listener() {
    shutdown(socket_, SHUT_RDWR);  // ends accept
    thread_.join();
    close(socket_);
  }
  const std::string& url() const { return url_; }
  int calls() const { return calls_; }

 private:
  int socket_;
  std::string url_;
  std::atomic<int> calls_ = 0;
  std::thread thread_;
};

class ReportPage : public WorkingFolder {
 protected:
  static Outcome huxutil(const std::string& arguments) {
    return outcome("'" HUXUTIL "' " + arguments);
  }

  // What a browser makes of a page: its elements with the names of their attributes, and what it
  // says on its console.
  struct Seen {
    std::set<std::string> elements;
    std::string console;
  };
  Seen open(const std::string& page) const {
    const Outcome browser = outcome(
        "timeout 60 chromium --headless --no-sandbox --disable-gpu --disable-dev-shm-usage "
        "--disable-background-networking --enable-logging=stderr --user-data-dir=profile "
        "--virtual-time-budget=2000 --dump-dom 'file://" +
        pathOf(page) + "'");
    EXPECT_EQ(browser.exitCode, 0) << browser.errors;
    Seen seen;
    const std::regex element("<(?:[^\"<>]|\"[^\"]*\")*>");  // nowhere else is there a "<"
    const std::string& dom = browser.output;
    for (std::sregex_iterator at(dom.begin(), dom.end(), element), end; at != end; ++at) {
      seen.elements.insert(std::regex_replace(at->str(), std::regex("=\"[^\"]*\""), ""));
    }
    const std::regex console("[^\n]*CONSOLE[^\n]*");
    for (std::sregex_iterator at(browser.errors.begin(), browser.errors.end(), console), end;
         at != end; ++at) {
      seen.console += at->str() + "\n";
    }
    return seen;
  }
};

// A file of the recorded report with these texts, in turn, in the place of its own.
std::string fileWith(const std::string& report, const std::vector<std::string>& texts) {
  static const std::regex kTexts("<key>(?!_dataType)[^<]*</key>\\s*<string>([^<]*)</string>");
  std::string changed;
  std::size_t next = 0;
  auto end = report.begin();
  for (std::sregex_iterator at(report.begin(), report.end(), kTexts), last; at != last; ++at) {
    changed.append(end, (*at)[1].first);
    changed += texts[next++ % texts.size()];
    end = (*at)[1].second;
  }
  changed.append(end, report.end());
  return fileOfOne("customdata", zlibStream(changed));
}

}  // namespace

TEST_F(ReportPage, GoesWhereItIsToldTo) {
  outcome(kMac + kAgent + "-silent -debug && mv *.hux mac.hux");
  const Outcome page = huxutil("report mac.hux");
  EXPECT_EQ(page.exitCode, 0);
  EXPECT_EQ(page.errors, "");
  EXPECT_EQ(huxutil("report mac.hux -o page.html").exitCode, 0);
  EXPECT_EQ(fileText("page.html"), page.output);
  struct stat status {};
  stat("page.html", &status);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(huxutil("report mac.hux -o page.html").exitCode, 2);
  EXPECT_EQ(huxutil("report mac.hux mac.hux -o page.html -f").exitCode, 0);
  EXPECT_THAT(fileText("page.html"), HasSubstr("<p>Nothing changed.</p>"));
  EXPECT_EQ(huxutil("report mac.hux nowhere.hux").exitCode, 2);
}

TEST_F(ReportPage, OfAHostileFileIsHarmlessInABrowser) {
  if (outcome("command -v chromium").exitCode != 0) GTEST_SKIP() << "no Chromium";
  const Listener listener;
  outcome(kMac + kAgent + "-silent -debug && mv *.hux mac.hux");
  const std::string report = sectionOf("mac.hux", 1);
  const std::string url = listener.url();
  const std::vector<std::string> hostile = {
      "&lt;script src=\"" + url + "\"&gt;alert(1)&lt;/script&gt;&lt;img src=\"" + url +
          "\" onerror=alert(1)&gt;",
      "\" onload=\"alert(1)\" style=\"background:url(" + url + ")",
      "&lt;/style&gt;&lt;/title&gt;--&gt;&lt;/table&gt;&lt;iframe src=" + url + "&gt;",
      "&amp;#x3c;script&amp;gt; ' onclick='alert(1)' \\3c x",
  };
  std::ofstream("old.hux") << fileWith(report, {"quiet", "pleasant", "usual", "yonder"});
  std::ofstream("harmless.hux") << fileWith(report, {"loud", "whole", "young", "royal"});
  std::ofstream("hostile.hux") << fileWith(report, hostile);
  for (const std::string before : {"", "old.hux "}) {
    EXPECT_EQ(huxutil("report " + before + "harmless.hux -o harmless.html -f").exitCode, 0);
    EXPECT_EQ(huxutil("report " + before + "hostile.hux -o hostile.html -f").exitCode, 0);
    EXPECT_THAT(fileText("hostile.html"), HasSubstr(url));
    const Seen seen = open("hostile.html");
    EXPECT_EQ(seen.elements, open("harmless.html").elements);
    EXPECT_THAT(seen.console, IsEmpty());
    EXPECT_EQ(listener.calls(), 0);
  }

  // That none of it would have gone unnoticed.
  std::ofstream("control.html") << "<p title=\">\">x</p><script>console.log(1)</script><img src=\""
                                << url << "\">";
  const Seen control = open("control.html");
  EXPECT_THAT(control.elements, Contains("<script>"));
  EXPECT_THAT(control.console, HasSubstr("CONSOLE"));
  EXPECT_GT(listener.calls(), 0);
}
