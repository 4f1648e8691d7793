#pragma once

// The one declaration of SystemConfiguration that the agent uses, from the published interface
// (developer.apple.com/documentation/systemconfiguration); see CoreFoundation.h.

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef const struct __SCDynamicStore* SCDynamicStoreRef;

CFStringRef SCDynamicStoreCopyComputerName(SCDynamicStoreRef store, CFStringEncoding* encoding);

#ifdef __cplusplus
}
#endif
