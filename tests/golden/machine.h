#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "huxread/container.h"
#include "machine/description.h"

// The machines that golden snapshots are kept of, and the options they are scanned with.
// tests/machines/README.md says what their folders hold.
struct Machine {
  const char* name;       // of the golden file
  const char* folder;     // in tests/machines
  const char* recording;  // another folder, in the checkout, that is played too; may be null
  const char* computerName;
  const char* ipAddress;  // "-ip:"
  const char* login;      // "-login:"
  bool debug;             // "-debug"
};

std::span<const Machine> machines();

// Those that are scanned into a snapshot: each once.
std::vector<Machine> distinctMachines();

// For the names of tests.
void PrintTo(const Machine& machine, std::ostream* out);
std::string testName(const testing::TestParamInfo<Machine>& info);

// Scan a machine and read the file back: the file, the text forms of its documents, one after the
// other, or its tables. Everything that a scan asks is answered from the machine's folders; a scan
// takes 65 seconds. They fail the test when there is not exactly one readable file.
using TakeFile = std::function<void(const huxread::Container& file, const std::string& bytes)>;
void scan(const Machine& machine, const TakeFile& take);
std::string scannedText(const Machine& machine);
machine::Description scannedTables(const Machine& machine);

// Fails unless the file holds that text. Writes it when scripts/refresh-golden asks for that name.
void expectGolden(const std::string& name, const std::string& file, const std::string& text);

std::string goldenFile(const Machine& machine);

std::string goldenTablesFile(const Machine& machine);

// A page, or what else is drawn for people.
std::string goldenPage(const std::string& name, const char* extension = ".html");

// What the first of them holds; "" when it is missing.
std::string goldenText(const Machine& machine);

// Of two texts, the line in which they begin to differ, for messages.
std::string difference(const std::string& golden, const std::string& scanned);
