#include "redact/redact.h"

#include <gtest/gtest.h>

#include <string>

#include "huxread/handmade.h"
#include "support/fakeHost.h"

// What becomes of planted secrets.

namespace {

using redact::Kind;
using redact::Redacted;

const std::string kBegin = "\xEF\xBB\xBF?keva\n";
// Mara's Mac: what the tables know, and then the line that is looked at.
const std::string kMara = kBegin +
                          "+Snapshot=\nhostname=MARA-KESTREL\nuser-name=mara\nip-address=10.1.2.3\n"
                          "+System=\n*Computer-system=\nuuid=5B0C7A1E-3D42-4F86-9A17-"
                          "6C2E81D94F03\n*Chassis=\nserial=C02XK0AAJG5H\n-\n"
                          "+User-accounts=\n*usr-acc:mara=mara\nfullname=Mara "
                          "Ekström\n*usr-acc:mac=mac\nhdir=/users/mac\n-\n"
                          "+Network=\n*net-adapter:1=Desk\nmac-address=F8-4D-89-00-11-22\n-\n"
                          "+Storage=\n+Logical-disks=\n*partition:1=Mara’s "
                          "Attic\nmount-point=/Volumes/Mara’s Attic\nfree=1\n"
                          "*partition:2=Macintosh HD\nfree=1\n-\n-\n*p:1=\n";

Redacted redactedFile(const std::string& bytes, const std::set<Kind>& kept = {},
                      const std::string& name = "") {
  const auto file = huxread::Container::parse(bytes);
  FakeHost host;
  auto result = redact::redact(*file, host, kept, name);
  EXPECT_TRUE(result) << result.error().message;
  if (!result) return {};
  EXPECT_TRUE(result->left.empty());
  return std::move(*result);
}

std::string textOf(const Redacted& result) {
  const auto file = huxread::Container::parse(result.file);
  return file ? *file->text(0) : file.error().message;
}

// The lines that are put behind Mara's, as they come out.
std::string planted(const std::string& lines, const std::set<Kind>& kept = {}) {
  const Redacted result = redactedFile(fileOfOne("snapshot", blob(kMara + lines + "-\n")), kept);
  const std::string text = textOf(result);
  const std::size_t at = text.find("*p:1=\n") + 6;
  return text.substr(at, text.size() - at - 2);
}

std::string profiled(const std::string& dataType, const std::string& item) {
  const std::string begin =
      "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><array><dict><key>_dataType</key><string>" +
      dataType + "</string><key>_items</key><array><dict>";
  const std::string end = "</dict></array></dict></array></plist>\n";
  const std::string text =
      textOf(redactedFile(fileOfOne("customdata", zlibStream(begin + item + end))));
  return text.size() < begin.size() + end.size()
             ? text
             : text.substr(begin.size(), text.size() - begin.size() - end.size());
}

}  // namespace

TEST(Redact, ReplacesEverySpellingWhereverItStands) {
  // clang-format off
  const struct {
    const char* before;
    const char* after;
  } kCases[] = {
      // names
      {"x=/Users/mara/a",                                  "x=/Users/USER-1/a"                                   },
      {"x=MARA's and Mara’s",                              "x=USER-1's and USER-1’s"                             },
      {"x=Tamara's marathon, Marasm, maraï",                "x=Tamara's marathon, Marasm, maraï"                   },
      {"x=mara2 %2Fmara%20 file:mara_x",                   "x=USER-1_2 %2FUSER-1%20 file:USER-1_x"                },
      {"x=mara ekstro\xCC\x88m Ekstr%C3%B6m mara.ekstrom", "x=USER-1 USER-1 USER-1"                              },
      {"x=mara-kestrel.local Kestrel MARA-KESTREL",        "x=HOST-1.local HOST-1 HOST-1"                        },
      {"x=m.e@mail.example.com",                           "x=USER-3"                                            },
      {"x=/Volumes/Mara’s Attic/a Mara's%20Attic",         "x=/Volumes/VOLUME-1/a VOLUME-1"                      },
      {"+m.e@mail.example.com=\n-",                         "+USER-3=\n-"                                        },
      {"+Soft:Mara=x 1.0=Mara=x\n-",                       "+Soft:USER-1=x 1.0=USER-1=x\n-"                      },
      {"x=Maras-MacBook Maras Fotos MarasMacBookPro maraimac", "x=USER-1-MacBook USER-1 Fotos USER-1MacBookPro USER-1imac"},
      {"x=a@kestrelsoft.com com.kestrelsoft Kestrelsofts",  "x=USER-3 com.kestrelsoft Kestrelsofts"              },
      {"*usr-acc:j=j\nfullname=Jörg O’Brién-Müller\nx=Joerg jorgs Mueller OBrien O'Brien-Muller joerg-obrien Jmüller",
       "*usr-acc:j=USER-3\nfullname=USER-4\nx=USER-4 USER-4 USER-4 USER-4 USER-4-USER-4 USER-4-USER-4 USER-4"},
      {"*usr-acc:łø=a\nfullname=Łukasz Øster Großmann Will Kim\nx=lukasz oster Oester Grossmann will Kim",
       "*usr-acc:łø=USER-3\nfullname=USER-4\nx=USER-4 USER-4 USER-4 USER-4 will Kim"},
      {"*usr-acc:j=j\nfullname=Åsé Lindqvist\nx=Åsé Lindqvist, åsé, lindqvist",
       "*usr-acc:j=USER-3\nfullname=USER-4\nx=USER-4, åsé, USER-4"},
      // a user who is called like everything else: only where it says that it is one
      {"x=mac the mac /Users/mac/ user",                   "x=mac the mac /Users/USER-2/ user"                   },
      {"*process:1=a\nuser=mac\ncmd-line=mac -x mac",      "*process:1=a\nuser=USER-2\ncmd-line=ARGUMENTS-1"     },
      {"*process:1=a\nuser=root\ncmd-line=/a b",           "*process:1=a\nuser=root\ncmd-line=ARGUMENTS-1"       },
      {"*env-var:U=U\nvalue=mara",                         "*env-var:U=U\nvalue=USER-1"                          },
      {"*env-var:K=K\nvalue=k3y0fMara71\nx=ak3y0fMara71",   "*env-var:K=K\nvalue=VALUE-1\nx=ak3y0fMara71"         },
      {"*env-var:K=K\nvalue=k3y0fMara715\nx=k3y0fmara715",  "*env-var:K=K\nvalue=VALUE-1\nx=VALUE-1"              },
      // tokens of an earlier redaction
      {"*process:1=a\nuser=USER-14\nx=HOST 12 user-14",      "*process:1=a\nuser=USER-14\nx=HOST 12 user-14"    },
      {"*process:1=a\nuser=noor\nx=USER-14",               "*process:1=a\nuser=USER-17\nx=USER-14"            },
      // numbers and addresses, in their own spelling
      {"x=--serial=c02xk0aajg5h_1",                        "x=--serial=SERIAL-1_1"                               },
      {"x=f8:4d:89:00:11:22 F84D89001122 f84d.8900.1122",
       "x=00:00:5e:00:53:01 00005E005301 0000.5e00.5301"                                                         },
      {"x=F8 4D 89 00 11 22, f8_4d_89_00_11_22 fa4d:89ff:fe00:1122",
       "x=00 00 5E 00 53 01, 00_00_5e_00_53_01 00:00:5e:00:53:01"},
      {"x=5B0C7A1E%2D3D42%2D4F86%2D9A17%2D6C2E81D94F03 5b0c7a1e_3d42_4f86_9a17_6c2e81d94f03",
       "x=00000000%2D0000%2D4000%2D8000%2D000000000001 00000000_0000_4000_8000_000000000001"},
      {"x=C02X K0AA JG5H, c02x-k0aa-jg5h ac02x-k0aajg5h c02x k0a-ajg5h", "x=SERIAL-1, SERIAL-1 ac02x-k0aajg5h c02x k0a-ajg5h"},
      {"x=\"IOPlatformSerialNumber\" = \"C02H40CEDV7N\", \"Serial Number\" = \"  X1IACZPDT\" \"Serial\"=\"A7\"",
       "x=\"IOPlatformSerialNumber\" = \"SERIAL-2\", \"Serial Number\" = \"  SERIAL-3\" \"Serial\"=\"A7\""},
      {"x=\"Serial Number\" = \"A7B2\", \"Serial Number\" = \"A7B2C\", \"Serial Number\" = \"123456\", \"Serial Number\" = \"1234567\" A7B2 A7B2C 123456 1234567",
       "x=\"Serial Number\" = \"SERIAL-2\", \"Serial Number\" = \"SERIAL-3\", \"Serial Number\" = \"SERIAL-4\", \"Serial Number\" = \"SERIAL-5\" A7B2 SERIAL-3 123456 SERIAL-5"},
      {"x=IOMACAddress = <0aa86d508964> \"kCGSessionLongUserNameKey\"=\"Noor Vesterby\" Vesterby",
       "x=IOMACAddress = <00005e005302> \"kCGSessionLongUserNameKey\"=\"USER-3\" USER-3"},
      {"*net-adapter:2=\nmanuf-by-mac=0A-5\nmac-address=0A-5\n*net-adapter:3=\nmanuf-by-mac=F8-4D-89",
       "*net-adapter:2=\nmanuf-by-mac=00:00:5E:00:53:02\nmac-address=00:00:5E:00:53:02\n*net-adapter:3=\nmanuf-by-mac=F8-4D-89"},
      {"x=F8:4D:89:0:11:22",                               "x=00:00:5E:00:53:01"                                 },
      {"x=5b0c7a1e3d424f869a176c2e81d94f03",               "x=00000000000040008000000000000001"                  },
      {"x=10.1.2.3 10-1-2-3 http://10.1.2.3:80/",          "x=192.0.2.1 192.0.2.1 http://192.0.2.1:80/"          },
      {"x=172.16.0.9, 169.254.3.4",                        "x=192.0.2.2, 169.254.0.3"                            },
      {"version=172.16.0.9\nx=10.1.2.3.4 1.10.1.2.3",      "version=172.16.0.9\nx=10.1.2.3.4 1.10.1.2.3"         },
      {"x=00:00:5e:00:53:ab:cd:ef 0:0:5e:0:53:ab:cd:ee 00:00:5e:00:53:ab:cd g2A02:8:0:0::1",
       "x=00:00:5e:ef:10:00:00:02 0:0:00:00:5e:00:53:03 00:00:00:5e:00:53:04 g2A02:8:0:0::1"},
      {"x=127.0.0.1 0.0.0.0 255.255.255.0 224.0.0.251",    "x=127.0.0.1 0.0.0.0 255.255.255.0 224.0.0.251"       },
      {"x=fe80::1c2b%en0 2A02:8:0:0::1/64 ::1 12:34:56",   "x=fe80::2%en0 2001:db8::3/64 ::1 12:34:56"           },
  };
  // clang-format on
  for (const auto& [before, after] : kCases) {
    EXPECT_EQ(planted(std::string(before) + "\n"), std::string(after) + "\n");
  }
}

TEST(Redact, ReplacesWhatOnlyTheProfilersDocumentHas) {
  // A block that states a number (123456789) and a text: neither is left, and its bytes add up to
  // 0.
  std::string panel =
      "00ffffffffffff0006103eb015cd5b0709160104a521157802f4b5a3554f9b261050540000000101010101010101"
      "0101"
      "0101010101017c2e90a0601a1e40302036004bcf1000001a000000ff00485832372d303134303232370a00000010"
      "0000";
  panel.resize(256, '0');
  const std::string key = "<key>_spdisplays_edid</key><string>";
  const std::string shown = profiled("SPDisplaysDataType", key + panel + "</string>");
  EXPECT_EQ(shown.substr(key.size(), 24) + shown.substr(key.size() + 32, 112),
            panel.substr(0, 24) + panel.substr(32, 112));
  unsigned sum = 0;
  for (std::size_t i = 0; i < 256; i += 2) {
    sum += static_cast<unsigned>(std::stoul(shown.substr(key.size() + i, 2), nullptr, 16));
  }
  EXPECT_EQ(sum % 256, 0U);
  for (const char* secret : {"15cd5b07", "303134303232370a"}) {
    EXPECT_EQ(shown.find(secret), std::string::npos) << shown;
  }
  // clang-format off
  const struct {
    const char* dataType;
    const char* before;
    const char* after;
  } kCases[] = {
      {"SPSoftwareDataType",
       "<key>local_host_name</key><string>Mara&#8217;s Kestrel</string><key>b</key><string>M&#97;ra&#x2019;s&#32;Kestrel &amp; "
       "Mara&apos;s Kestrel</string>",
       "<key>local_host_name</key><string>HOST 1</string><key>b</key><string>HOST-1 &amp; HOST 1</string>"},
      {"SPSoftwareDataType",
       "<key>local_host_name</key><string>(Tarn)  Rohre – Werk 12</string><key>b</key><string>tarn-rohre-werk-12.local "
       "TARN-ROHRE-WERK tarnrohrewerk12 TARNROHREWERK12 tarnrohrewer</string>",
       "<key>local_host_name</key><string>HOST 1</string><key>b</key><string>HOST-1.local HOST-1 HOST-1 HOST-1 tarnrohrewer</string>"},
      {"SPDisplaysDataType",
       "<key>_spdisplays_display-serial-number</key><string>3e9</string><key>x_serial</key><string>1002</string>",
       "<key>_spdisplays_display-serial-number</key><string>3eb</string><key>x_serial</key><string>SERIAL-2</string>"},
      {"SPBluetoothDataType", "<key>Noor’s Mouse</key><dict><key>device_name</key><string>noor's mouse</string></dict>",
       "<key>DEVICE-1</key><dict><key>device_name</key><string>DEVICE-1</string></dict>"},
      {"SPAirPortDataType",
       "<key>spairport_current_network_information</key><dict><key>_name</key><string>Vesterby &amp; "
       "5</string></dict>",
       "<key>spairport_current_network_information</key><dict><key>_name</key><string>NETWORK-1</string></dict>"},
      {"SPPrintersDataType", "<key>uri</key><string>ipp://lp.vesterby.dk/q</string>",
       "<key>uri</key><string>ipp://PRINTER-1</string>"},
      {"SPSoftwareDataType",
       "<key>user_name</key><string>Noor Vest (noor)</string><key>x</key><data>YSBub29y</data><key>y</key><data>"
       "YSBi</data>",
       "<key>user_name</key><string>USER-1 (USER-1)</string><key>x</key><data></data><key>y</key><data>YSBi</data>"},
  };
  // clang-format on
  for (const auto& [dataType, before, after] : kCases) EXPECT_EQ(profiled(dataType, before), after);
}

TEST(Redact, LeavesWhatIsKeptAndTellsWhatIsCommon) {
  EXPECT_EQ(planted("x=mara MARA-KESTREL c02xk0aajg5h\n", {Kind::Serial, Kind::Host}),
            "x=USER-1 USER-1-KESTREL c02xk0aajg5h\n");
  const Redacted result = redactedFile(fileOfOne("snapshot", blob(kMara + "-\n")), {Kind::Uuid},
                                       "kestrel-F84D89001122.hux");
  EXPECT_EQ(result.inName, (std::set{Kind::HardwareAddress, Kind::Host}));
  EXPECT_EQ(result.common, (std::vector<std::string>{"mac", "Desk"}));
  EXPECT_EQ(result.everybodys, std::set<std::string>{"Macintosh HD"});
  EXPECT_EQ(result.kept[static_cast<std::size_t>(Kind::Uuid)].values, 1U);
  EXPECT_EQ(result.counts[static_cast<std::size_t>(Kind::Host)].values, 1U);
}

TEST(Redact, RefusesWhatItCannotRead) {
  const std::string data = blob(kMara + "-\n");
  const auto messageOf = [](const std::string& bytes) {
    FakeHost host;
    const auto result = redact::redact(*huxread::Container::parse(bytes), host, {}, "");
    return result ? "" : result.error().message;
  };
  EXPECT_NE(
      messageOf(fileOfOne("snapshot", data.substr(0, 20) + std::string(80, 'x') + "\0\1KEVA")), "");
  const std::string header =
      "[H]\ncount=2\nsnapshotcount=1\n[0]\noffset=0\nlength=" + std::to_string(data.size()) +
      "\ntype=snapshot\n[1]\noffset=" + std::to_string(data.size()) + "\nlength=";
  const std::string more = zlibStream("mara");
  EXPECT_EQ(
      messageOf(huxFile(data + more, header + std::to_string(more.size()) + "\ntype=other\n")),
      "section 1 is of a type that is not known: what it holds cannot be told");
}
