#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "huxread/result.h"
#include "platform/host.h"

namespace machine {

// The profiler's document of a debug file, taken apart by its data types and their items without
// being parsed: a real Mac's holds logs and fonts too, up to 200 MB, and what no table asks for
// costs no more than being passed over. Items are parsed one at a time, so that the tree of one is
// all that is held.
class Profile {
 public:
  // `document` and `host` must outlive the result. Fails when it is no property list with an array.
  // One that ends too early, or whose elements do not match, keeps the items that are whole.
  static huxread::Result<Profile> open(std::string_view document, platform::Host& host);

  // Whether the document ends within its array, so that items or data types may be missing.
  bool cutOff() const { return cutOff_; }

  // Whether the document holds the data type, with items or without.
  bool has(std::string_view dataType) const;

  // All of them, by name.
  std::vector<std::string> dataTypes() const;

  // Hands over the items of a data type ("_items") one by one, in order, those of several
  // dictionaries of that type one after the other. Those that cannot be parsed, or are no
  // dictionaries, are left out and counted.
  void forEach(std::string_view dataType,
               const std::function<void(const platform::PropertyList& item)>& take) const;

  // How many items could not be parsed until now.
  std::size_t unreadable() const { return unreadable_; }

 private:
  using Items = std::vector<std::string_view>;  // slices of the document, one whole element each

  explicit Profile(platform::Host& host) : host_(&host) {}

  platform::Host* host_;
  std::map<std::string, Items, std::less<>> items_;
  bool cutOff_ = false;
  mutable std::size_t unreadable_ = 0;
};

}  // namespace machine
