#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

// A test that works in an empty folder of its own, which goes with it.
class WorkingFolder : public testing::Test {
 protected:
  WorkingFolder() : before_(std::filesystem::current_path()) {
    std::string name = testing::TempDir() + "/orbex.XXXXXX";
    folder_ = std::filesystem::canonical(mkdtemp(name.data()));
    std::filesystem::current_path(folder_);
  }

  ~WorkingFolder() override {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }

  std::string pathOf(const std::string& name) const { return (folder_ / name).string(); }

 private:
  std::filesystem::path before_;
  std::filesystem::path folder_;
};
