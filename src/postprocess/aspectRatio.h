#pragma once

#include <string>

// The shape of a picture, "16:9": the name of a usual ratio when the picture's own is within
// `tolerance` of it (0.01: one in a hundred), else its own, reduced. Neither side may be 0.
std::string aspectRatio(unsigned width, unsigned height, double tolerance);
