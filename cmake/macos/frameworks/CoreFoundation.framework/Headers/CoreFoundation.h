#pragma once

// The declarations of CoreFoundation that the agent uses, and no others: written from the published
// interface (developer.apple.com/documentation/corefoundation) for machines without the Mac's SDK.
// CoreFoundation.tbd beside this folder lists the same functions for the linker. On a Mac, this
// file is not used.

#ifdef __cplusplus
extern "C" {
#endif

// --- Types, as wide as on 64-bit systems

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef unsigned int CFStringEncoding;
typedef double CFAbsoluteTime;  // seconds since 2001-01-01 00:00:00 UTC

typedef const void* CFTypeRef;
typedef CFTypeRef CFPropertyListRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFDate* CFDateRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFLocale* CFLocaleRef;
typedef const struct __CFNumber* CFNumberRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __CFBundle* CFBundleRef;
typedef struct __CFDateFormatter* CFDateFormatterRef;

typedef struct {
  CFIndex location;
  CFIndex length;
} CFRange;

static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
  CFRange range = {location, length};
  return range;
}

// --- Every object. What a function named Create or Copy returns is released by its caller, once.

CFTypeID CFGetTypeID(CFTypeRef object);
void CFRelease(CFTypeRef object);
Boolean CFEqual(CFTypeRef object, CFTypeRef other);

extern const CFAllocatorRef kCFAllocatorNull;

// --- Texts

enum { kCFStringEncodingUTF8 = 0x08000100 };

// A string that is part of the program.
#ifndef CFSTR
#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))
#endif

CFTypeID CFStringGetTypeID(void);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex size,
                                    CFStringEncoding encoding, Boolean hasByteOrderMark);
CFStringRef CFStringCreateWithFormat(CFAllocatorRef allocator, CFDictionaryRef options,
                                     CFStringRef format, ...);
CFIndex CFStringGetLength(CFStringRef string);
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         UInt8 lossByte, Boolean withByteOrderMark, UInt8* buffer, CFIndex size,
                         CFIndex* used);

// --- The other values of a property list

typedef enum : CFIndex {
  kCFNumberSInt64Type = 4,
  kCFNumberFloat64Type = 6,
} CFNumberType;

CFTypeID CFNumberGetTypeID(void);
CFNumberType CFNumberGetType(CFNumberRef number);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

CFTypeID CFBooleanGetTypeID(void);
Boolean CFBooleanGetValue(CFBooleanRef boolean);

CFTypeID CFDateGetTypeID(void);
CFDateRef CFDateCreate(CFAllocatorRef allocator, CFAbsoluteTime time);
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);
CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);

CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef allocator, const UInt8* bytes, CFIndex size,
                                      CFAllocatorRef bytesDeallocator);

CFTypeID CFArrayGetTypeID(void);
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

CFTypeID CFDictionaryGetTypeID(void);
CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);
void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys,
                                  const void** values);

enum { kCFPropertyListImmutable = 0 };

__attribute__((deprecated)) CFPropertyListRef CFPropertyListCreateFromXMLData(
    CFAllocatorRef allocator, CFDataRef document, CFOptionFlags options, CFStringRef* errorText);

// --- Dates as texts

typedef enum : CFIndex {
  kCFDateFormatterNoStyle = 0,
} CFDateFormatterStyle;

typedef CFStringRef CFCalendarIdentifier;
typedef CFStringRef CFLocaleIdentifier;
typedef CFStringRef CFLocaleKey;

extern const CFCalendarIdentifier kCFGregorianCalendar;
extern const CFLocaleKey kCFLocaleCalendarIdentifier;  // a CFCalendarIdentifier

CFLocaleRef CFLocaleCopyCurrent(void);
CFLocaleRef CFLocaleCreate(CFAllocatorRef allocator, CFLocaleIdentifier identifier);
CFTypeRef CFLocaleGetValue(CFLocaleRef locale, CFLocaleKey key);
CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef allocator, CFLocaleRef locale,
                                         CFDateFormatterStyle dateStyle,
                                         CFDateFormatterStyle timeStyle);
void CFDateFormatterSetFormat(CFDateFormatterRef formatter, CFStringRef format);
CFStringRef CFDateFormatterCreateStringWithDate(CFAllocatorRef allocator,
                                                CFDateFormatterRef formatter, CFDateRef date);

// --- Folders of bundles

typedef enum : CFIndex {
  kCFURLPOSIXPathStyle = 0,
} CFURLPathStyle;

CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef path,
                                       CFURLPathStyle style, Boolean isFolder);
CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style);
CFStringRef CFURLCopyLastPathComponent(CFURLRef url);

CFArrayRef CFBundleCreateBundlesFromDirectory(CFAllocatorRef allocator, CFURLRef folder,
                                              CFStringRef suffix);
CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle);
CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);

#ifdef __cplusplus
}
#endif
