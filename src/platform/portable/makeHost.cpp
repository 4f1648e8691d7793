// Apart from the host, so that a program can hold it beside another one, as the tests do.

#include "platform/host.h"
#include "platform/portable/portableHost.h"

namespace platform {

std::unique_ptr<Host> makeHost() {
  return std::make_unique<PortableHost>();
}

}  // namespace platform
