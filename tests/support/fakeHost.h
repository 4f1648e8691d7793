#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/host.h"

// A machine of a test: answers what it was told to and writes down what it was asked. Property
// lists are really parsed; dates are formatted three hours ahead of UTC.
class FakeHost : public platform::Host {
 public:
  FakeHost();

  // The output of a command, for every time it is run. Commands without one print nothing.
  std::map<std::string, std::string> outputs;

  // Outputs of the next runs of a command, used up before `outputs`; each is a list of what the
  // single reads return.
  std::map<std::string, std::deque<std::vector<std::string>>> reads;

  std::string name = "fake-mac";
  std::vector<platform::Process> processes;
  std::map<std::string, std::vector<platform::Bundle>> bundleFolders;
  std::deque<double> times;  // used up one by one, the last one stays; seconds since 2001

  std::vector<std::string> commands;   // what was run, in order
  std::vector<std::size_t> readSizes;  // size of every read of every command

  std::unique_ptr<platform::CommandOutput> startCommand(const std::string& command) override;
  std::optional<platform::PropertyList> parsePropertyList(std::string document) override;
  std::string computerName() override { return name; }
  std::vector<platform::Process> processTable() override { return processes; }
  std::vector<platform::Bundle> bundles(const std::string& folder,
                                        std::span<const std::string_view> keys) override;
  double now() override;
  std::string formatDate(double seconds, std::string_view pattern) override;
};
