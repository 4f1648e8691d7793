#pragma once

#include <span>
#include <string>

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

// Scans a machine and reads the documents of the file back: their text forms, one after the other.
// Everything that a scan asks is answered from the machine's folders; a scan takes 65 seconds.
// Fails the test when there is not exactly one readable file.
std::string scannedText(const Machine& machine);

std::string goldenFile(const Machine& machine);

// What it holds; "" when it is missing.
std::string goldenText(const Machine& machine);
