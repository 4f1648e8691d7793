// Apart from the host, so that a program can hold it beside another one, as the tests do.

#include "platform/apple/appleHost.h"
#include "platform/host.h"

namespace platform {

std::unique_ptr<Host> makeHost() {
  return std::make_unique<apple::AppleHost>();
}

}  // namespace platform
