#include "machine/marketing.h"

#include <algorithm>

namespace machine {
namespace {

struct Release {
  std::string_view version;  // the numbers that name it: the first one, until 10 the first two
  std::string_view name;
};

constexpr Release kReleases[] = {
    {"10.0",  "Cheetah"      },
    {"10.1",  "Puma"         },
    {"10.2",  "Jaguar"       },
    {"10.3",  "Panther"      },
    {"10.4",  "Tiger"        },
    {"10.5",  "Leopard"      },
    {"10.6",  "Snow Leopard" },
    {"10.7",  "Lion"         },
    {"10.8",  "Mountain Lion"},
    {"10.9",  "Mavericks"    },
    {"10.10", "Yosemite"     },
    {"10.11", "El Capitan"   },
    {"10.12", "Sierra"       },
    {"10.13", "High Sierra"  },
    {"10.14", "Mojave"       },
    {"10.15", "Catalina"     },
    {"10.16", "Big Sur"      }, // what it tells programs built for older
  // systems
    {"11",    "Big Sur"      },
    {"12",    "Monterey"     },
    {"13",    "Ventura"      },
    {"14",    "Sonoma"       },
    {"15",    "Sequoia"      },
    {"26",    "Tahoe"        },
};

}  // namespace

std::string_view marketingName(std::string_view osVersion) {
  std::size_t end = osVersion.find('.');
  if (osVersion.starts_with("10.")) end = osVersion.find('.', end + 1);
  const auto found = std::ranges::find(kReleases, osVersion.substr(0, end), &Release::version);
  return found == std::end(kReleases) ? std::string_view() : found->name;
}

}  // namespace machine
