#include "profiles.h"

#include "base/formatString.h"

namespace {

std::string dataType(const char* name, const std::string& items) {
  return formatString("<dict>\n<key>_dataType</key>\n<string>%s</string>\n<key>_items</key>\n",
                      name) +
         "<array>\n" + items + "</array>\n</dict>\n";
}

std::string document(const std::string& dictionaries) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<array>\n" +
         dictionaries + "</array>\n</plist>\n";
}

std::string repeated(int count, const char* format) {
  std::string text;
  for (int i = 0; i < count; ++i) text += formatString(format, i, i * 7919 % 100003, i % 10);
  return text;
}

}  // namespace

std::string applicationsProfile(int count) {
  const std::string items = repeated(
      count,
      "\t\t\t<dict>\n\t\t\t\t<key>_name</key>\n\t\t\t\t<string>Application %1$d</string>\n"
      "\t\t\t\t<key>app_store</key>\n\t\t\t\t<string>no</string>\n"
      "\t\t\t\t<key>has64BitIntelCode</key>\n\t\t\t\t<string>yes</string>\n"
      "\t\t\t\t<key>info</key>\n\t\t\t\t<string>%3$d.%2$d, Copyright 2009-2017 A Maker of "
      "Applications, Incorporated. All rights reserved in all countries of the world.</string>\n"
      "\t\t\t\t<key>lastModified</key>\n\t\t\t\t<date>2017-0%3$d-11T09:40:12Z</date>\n"
      "\t\t\t\t<key>location</key>\n\t\t\t\t<string>/Applications/Folder %3$d/Application "
      "%1$d.app</string>\n"
      "\t\t\t\t<key>obtained_from</key>\n\t\t\t\t<string>identified_developer</string>\n"
      "\t\t\t\t<key>path</key>\n\t\t\t\t<string>/Applications/Folder %3$d/Application "
      "%1$d.app</string>\n"
      "\t\t\t\t<key>runtime_environment</key>\n\t\t\t\t<string>arch_x86</string>\n"
      "\t\t\t\t<key>signed_by</key>\n\t\t\t\t<array>\n"
      "\t\t\t\t\t<string>Developer ID Application: Maker %3$d, Inc.</string>\n"
      "\t\t\t\t\t<string>Developer ID Certification Authority</string>\n\t\t\t\t</array>\n"
      "\t\t\t\t<key>version</key>\n\t\t\t\t<string>%3$d.%2$d</string>\n\t\t\t</dict>\n");
  return document(dataType("SPApplicationsDataType", items));
}

std::string removableDisksProfile(int count) {
  const std::string devices = repeated(
      count,
      "<dict><key>_name</key><string>Stick %1$d</string><key>removable_media</key>"
      "<string>yes</string><key>size</key><string>15.%3$d GB</string><key>serial_num</key>"
      "<string>%2$d</string><key>volumes</key><array><dict><key>_name</key><string>Volume "
      "%1$d</string><key>free_space</key><string>%3$d GB</string><key>size</key><string>15 "
      "GB</string></dict></array></dict>\n");
  return document(dataType("SPUSBDataType",
                           "<dict><key>_items</key><array>\n" + devices + "</array></dict>\n"));
}

std::string coreStorageProfile(int count) {
  const std::string volumes = repeated(
      count,
      "<dict><key>_name</key><string>Physical %1$d</string><key>iocontent</key>"
      "<string>Apple_CoreStorage</string><key>size_in_bytes</key><integer>%2$d</integer></dict>\n");
  const std::string storage = repeated(
      count,
      "<dict><key>_name</key><string>Logical %1$d</string><key>com.apple.corestorage.pv</key>"
      "<array><dict><key>_name</key><string>Physical %1$d</string><key>media_name</key>"
      "<string>MODEL X Media</string></dict></array><key>size_in_bytes</key><integer>%2$d"
      "</integer></dict>\n");
  const std::string disk =
      "<dict><key>_items</key><array><dict><key>device_model</key><string>MODEL X</string>"
      "<key>volumes</key><array>\n" +
      volumes + "</array></dict></array></dict>\n";
  return document(dataType("SPNVMeDataType", disk) + dataType("SPStorageDataType", storage));
}

std::string firewallProfile(int count) {
  const std::string rules =
      repeated(count, "<key>Application %1$d</key><string>spfirewall_allow_all</string>\n");
  const std::string item =
      "<dict><key>spfirewall_globalstate</key>"
      "<string>spfirewall_globalstate_limit_connections</string>"
      "<key>spfirewall_applications</key><dict>\n" +
      rules + "</dict></dict>\n";
  return document(dataType("SPFirewallDataType", item));
}
