#pragma once

#include <string>

namespace quillet {

// The system, the display and the data source manager, a line each.
std::string DescribeSystem();

// What systems differ in without being wrong, a line each.
std::string Measurements();

}  // namespace quillet
