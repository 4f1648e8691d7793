#pragma once

#include "../../../../cmake/macos/frameworks/SystemConfiguration.framework/Headers/SystemConfiguration.h"
