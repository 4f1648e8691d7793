#include "redact/words.h"

#include <algorithm>
#include <iterator>

namespace redact {

namespace {

constexpr Accent kAccents[] = {
    {"à", "a\xCC\x80"},
    {"á", "a\xCC\x81"},
    {"â", "a\xCC\x82"},
    {"ã", "a\xCC\x83"},
    {"ä", "a\xCC\x88"},
    {"å", "a\xCC\x8A"},
    {"ç", "c\xCC\xA7"},
    {"è", "e\xCC\x80"},
    {"é", "e\xCC\x81"},
    {"ê", "e\xCC\x82"},
    {"ë", "e\xCC\x88"},
    {"ì", "i\xCC\x80"},
    {"í", "i\xCC\x81"},
    {"î", "i\xCC\x82"},
    {"ï", "i\xCC\x88"},
    {"ñ", "n\xCC\x83"},
    {"ò", "o\xCC\x80"},
    {"ó", "o\xCC\x81"},
    {"ô", "o\xCC\x82"},
    {"õ", "o\xCC\x83"},
    {"ö", "o\xCC\x88"},
    {"ù", "u\xCC\x80"},
    {"ú", "u\xCC\x81"},
    {"û", "u\xCC\x82"},
    {"ü", "u\xCC\x88"},
    {"ý", "y\xCC\x81"},
    {"ÿ", "y\xCC\x88"},
    {"ă", "a\xCC\x86"},
    {"ą", "a\xCC\xA8"},
    {"ć", "c\xCC\x81"},
    {"č", "c\xCC\x8C"},
    {"ď", "d\xCC\x8C"},
    {"ę", "e\xCC\xA8"},
    {"ě", "e\xCC\x8C"},
    {"ğ", "g\xCC\x86"},
    {"ľ", "l\xCC\x8C"},
    {"ń", "n\xCC\x81"},
    {"ň", "n\xCC\x8C"},
    {"ő", "o\xCC\x8B"},
    {"ř", "r\xCC\x8C"},
    {"ś", "s\xCC\x81"},
    {"ş", "s\xCC\xA7"},
    {"š", "s\xCC\x8C"},
    {"ť", "t\xCC\x8C"},
    {"ů", "u\xCC\x8A"},
    {"ű", "u\xCC\x8B"},
    {"ź", "z\xCC\x81"},
    {"ż", "z\xCC\x87"},
    {"ž", "z\xCC\x8C"},
};
constexpr Letter kLetters[] = {
    {"ä", "",   "ae"},
    {"ö", "",   "oe"},
    {"ü", "",   "ue"},
    {"å", "",   "aa"},
    {"ø", "o",  "oe"},
    {"æ", "ae", "ae"},
    {"œ", "oe", "oe"},
    {"ß", "ss", "ss"},
    {"ł", "l",  "l" },
    {"đ", "d",  "dj"},
    {"ı", "i",  "i" },
};

// Numbers, and what the system calls devices: "disk1s2", "en0".
bool isNumbered(std::string_view word) {
  for (const std::string_view device : {"disk", "en", "bridge", "ppp"}) {
    if (word.starts_with(device)) word.remove_prefix(device.size());
  }
  return !word.empty() && word.front() != 's' &&
         word.find_first_not_of("0123456789s") == std::string_view::npos;
}

}  // namespace

std::span<const Letter> letters() {
  return kLetters;
}

std::span<const Accent> accents() {
  return kAccents;
}

bool isSystemsWord(std::string_view word) {
  // In small letters and sorted.
  constexpr std::string_view kWords[] = {
      "adapter",   "air",        "airport",     "analog",   "apple",     "audio",      "auto",
      "automatic", "base",       "bluetooth",   "bootcamp", "bridge",    "built",      "camera",
      "card",      "data",       "dev",         "device",   "digital",   "display",    "dun",
      "efi",       "en",         "ethernet",    "external", "facetime",  "fi",         "file",
      "firewire",  "hardware",   "hd",          "hdmi",     "headphone", "headphones", "home",
      "hosts",     "imac",       "in",          "input",    "internal",  "internet",   "ipad",
      "iphone",    "iscpreboot", "lan",         "line",     "local",     "mac",        "macbook",
      "macintosh", "map",        "microphone",  "mini",     "modem",     "name",       "net",
      "no",        "output",     "pan",         "port",     "preboot",   "private",    "pro",
      "reader",    "recovery",   "serial",      "sharing",  "slot",      "speaker",    "speakers",
      "studio",    "system",     "thunderbolt", "transfer", "untitled",  "update",     "usb",
      "var",       "vm",         "volumes",     "wi",       "xarts"};
  static_assert(std::ranges::is_sorted(kWords));
  return std::ranges::binary_search(kWords, word) || isNumbered(word);
}

bool isOrdinaryWord(std::string_view word) {
  // What columns are called by is common anyway (Secrets::addVocabulary).
  constexpr std::string_view kWords[] = {"account",     "admin",        "administrator",
                                         "airplay",     "airpods",      "and",
                                         "application", "applications", "archive",
                                         "arguments",   "backup",       "backups",
                                         "battery",     "box",          "bt",
                                         "cd",          "chat",         "co",
                                         "color",       "com",          "com1",
                                         "company",     "computer",     "controller",
                                         "corp",        "demo",         "desk",
                                         "desktop",     "developer",    "documents",
                                         "drive",       "dvd",          "edu",
                                         "eth",         "example",      "express",
                                         "family",      "finder",       "fire",
                                         "for",         "fritz",        "fritzbox",
                                         "from",        "generic",      "gigabit",
                                         "gov",         "group",        "guest",
                                         "hard",        "headset",      "host",
                                         "i7",          "install",      "installer",
                                         "int",         "intel",        "intranet",
                                         "invalid",     "ios",          "ipod",
                                         "keyboard",    "laptop",       "lcd",
                                         "library",     "localdomain",  "localhost",
                                         "macmini",     "macos",        "macpro",
                                         "magic",       "mail",         "max",
                                         "may",         "media",        "mic",
                                         "mobile",      "monitor",      "mouse",
                                         "music",       "new",          "none",
                                         "notebook",    "of",           "office",
                                         "old",         "org",          "osx",
                                         "pc",          "photos",       "pictures",
                                         "ppp",         "printer",      "public",
                                         "remote",      "retina",       "root",
                                         "router",      "runner",       "scratch",
                                         "sd",          "service",      "shared",
                                         "software",    "sound",        "ssd",
                                         "staff",       "startup",      "storage",
                                         "support",     "temp",         "test",
                                         "testing",     "the",          "time",
                                         "tm",          "trackpad",     "ultra",
                                         "unknown",     "users",        "utm",
                                         "vmware",      "vpn",          "will",
                                         "windows",     "wireless",     "with",
                                         "wlan",        "work",         "www"};
  static_assert(std::ranges::is_sorted(kWords));
  return std::ranges::binary_search(kWords, word) || isSystemsWord(word);
}

}  // namespace redact
