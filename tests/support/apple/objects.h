#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <vector>

#include "platform/propertyList.h"

// The objects behind the references that the stand-in hands out.
namespace standIn {

enum Kind : CFTypeID {
  Any,
  String,
  Number,
  Flag,
  Date,
  Data,
  Array,
  Dictionary,
  Locale,
  Formatter,
  Url,
  Bundle
};

struct Object {
  Kind kind;
  std::string text = {};                       // a URL's path, a locale's name, bytes
  platform::PropertyList::Number number = {};  // a date's seconds and a flag too
  std::vector<Object*> parts = {};             // owned; a dictionary's keys and values take turns
  int references = 1;
};

constexpr int kConstant = -1;  // references of what is part of the program

Object* make(Object object);

// The same object for one more owner.
Object* share(Object* object);

template <typename Ref>
Ref refOf(Object* object) {
  return reinterpret_cast<Ref>(object);
}

// The object behind a reference. It complains about one that has been released, about a reference
// to nothing, and about an object of another kind.
Object& objectOf(CFTypeRef reference, Kind kind, const char* function);

void release(Object& object);

void complain(const std::string& function, const std::string& what);

}  // namespace standIn
