#include "show/machines.h"

#include <cstdint>
#include <string>

using machine::Description;
using machine::Value;

namespace {

Value number(std::int64_t value) {
  return value;
}

}  // namespace

void addRow(Description& machine, std::string_view table, Cells cells) {
  machine::TableData& data = machine[machine::tableAt(table)];
  data.recorded = true;
  machine::Row row(machine::kTables[machine::tableAt(table)].columns.size());
  for (const auto& [column, value] : cells) row[machine::columnAt(table, column)] = value;
  data.rows.push_back(row);
}

Description notebook() {
  Description mac(machine::Source::Debug);
  addRow(mac, "machine",
         {
             {"serial",            "C02XK0AAJGH5"             },
             {"name",              "Mara’s MacBook Pro"     },
             {"model_id",          "MacBookPro18,3"           },
             {"model_name",        "MacBook Pro"              },
             {"os_name",           "macOS"                    },
             {"os_version",        "14.5"                     },
             {"os_build",          "23F79"                    },
             {"os_marketing_name", "Sonoma"                   },
             {"architecture",      "arm64"                    },
             {"chip",              "Apple M1 Pro"             },
             {"cores",             number(10)                 },
             {"performance_cores", number(8)                  },
             {"efficiency_cores",  number(2)                  },
             {"memory_mb",         number(16384)              },
             {"uptime_seconds",    number(1050000)            },
             {"virtual",           false                      },
             {"scanned_at",        "2026-11-21T16:22:05+01:00"},
             {"agent_version",     "17.05.24"                 }
  });
  addRow(mac, "memory",
         {
             {"used",     true         },
             {"soldered", true         },
             {"size_mb",  number(16384)},
             {"type",     "LPDDR5"     }
  });
  addRow(mac, "disks",
         {
             {"model",      "APPLE SSD AP0512R" },
             {"size_bytes", number(500277792768)},
             {"kind",       "ssd"               },
             {"internal",   true                },
             {"health",     "verified"          }
  });
  addRow(mac, "disks",
         {
             {"model",      "Kestrel Backup"     },
             {"size_bytes", number(4000787030016)},
             {"kind",       "rotational"         },
             {"internal",   false                },
             {"health",     "failing"            }
  });
  for (const char* name : {"Macintosh HD - Data", "Macintosh HD", "VM"}) {
    const std::string mountPoint =
        name == std::string("Macintosh HD") ? "/" : "/System/Volumes/" + std::string(name);
    addRow(mac, "volumes",
           {
               {"mount_point", mountPoint          },
               {"name",        name                },
               {"file_system", "APFS"              },
               {"size_bytes",  number(494384795648)},
               {"free_bytes",  number(133200000000)},
               {"container",   "disk3"             },
               {"encrypted",   true                }
    });
  }
  addRow(mac, "volumes",
         {
             {"name",       "Cryptex"   },
             {"size_bytes", number(9000)},
             {"disk_model", "Disk Image"}
  });
  addRow(mac, "volumes",
         {
             {"mount_point", "/Volumes/日本語のバックアップ"},
             {"name",        "日本語のバックアップ"         },
             {"file_system", "Journaled HFS+"                         },
             {"size_bytes",  number(4000000000000)                    },
             {"free_bytes",  number(120000000000)                     }
  });
  addRow(mac, "adapters",
         {
             {"interface", "en5"    },
             {"name",      "USB LAN"}
  });
  addRow(mac, "adapters",
         {
             {"interface",    "en0"              },
             {"name",         "Wi-Fi"            },
             {"ip_addresses", "192.168.1.20"     },
             {"mac_address",  "F8-4D-89-00-11-22"}
  });
  addRow(mac, "displays",
         {
             {"name",        "Color LCD" },
             {"built_in",    true        },
             {"diagonal_in", 14.2        },
             {"width_px",    number(3024)},
             {"height_px",   number(1964)}
  });
  addRow(mac, "displays",
         {
             {"name",      "LG HDR 4K" },
             {"width_px",  number(3840)},
             {"height_px", number(2160)}
  });
  addRow(mac, "video",
         {
             {"model", "Apple M1 Pro"}
  });
  addRow(mac, "battery",
         {
             {"condition",            "Good"     },
             {"cycles",               number(312)},
             {"maximum_capacity_pct", number(87) },
             {"charge_pct",           number(54) }
  });
  for (int i = 0; i < 318; ++i) {
    addRow(mac, "software",
           {
               {"path",   "/Applications/Product " + std::to_string(i) + ".app"},
               {"origin", i < 12 ? "unknown" : "apple"                         }
    });
  }
  addRow(mac, "usb",
         {
             {"name", "Hub"},
             {"hub",  true }
  });
  addRow(mac, "usb",
         {
             {"name",         "Keyboard"},
             {"serial",       "=1+1"    },
             {"speed_mbit_s", 1.5       }
  });
  mac[machine::tableAt("printers")].recorded = true;  // none
  return mac;
}

Description monster() {
  const std::string wide(300, 'W');
  const std::string kanji =
      "機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械";
  Description mac(machine::Source::Snapshot);
  addRow(mac, "machine",
         {
             {"name",           "a\x1B[2J\n\xC2\x9B" + kanji},
             {"model_name",     wide                        },
             {"serial",         wide                        },
             {"os_name",        wide                        },
             {"chip",           kanji                       },
             {"packages",       INT64_MAX                   },
             {"cores",          INT64_MAX                   },
             {"clock_mhz",      INT64_MAX                   },
             {"memory_mb",      INT64_MAX                   },
             {"uptime_seconds", INT64_MAX                   },
             {"scanned_at",     wide                        }
  });
  for (int i = 0; i < 30; ++i) {
    addRow(mac, "memory",
           {
               {"slot", wide},
               {"used", true},
               {"type", wide}
    });
    addRow(mac, "disks",
           {
               {"model",      kanji    },
               {"size_bytes", INT64_MAX},
               {"health",     "failing"}
    });
    addRow(mac, "volumes",
           {
               {"name",        kanji    },
               {"size_bytes",  INT64_MAX},
               {"free_bytes",  number(i)},
               {"file_system", wide     }
    });
    addRow(mac, "adapters",
           {
               {"name",         kanji},
               {"ip_addresses", wide }
    });
    addRow(mac, "displays",
           {
               {"name",        wide     },
               {"diagonal_in", 1e300    },
               {"width_px",    INT64_MIN},
               {"height_px",   INT64_MAX}
    });
    addRow(mac, "video",
           {
               {"model",     kanji    },
               {"memory_mb", INT64_MIN}
    });
    addRow(mac, "battery",
           {
               {"cycles",     INT64_MIN},
               {"charge_pct", INT64_MAX}
    });
    addRow(mac, "usb",
           {
               {"name", wide}
    });
    addRow(mac, "printers",
           {
               {"name", wide}
    });
    addRow(mac, "software",
           {
               {"name", wide}
    });
  }
  return mac;
}
