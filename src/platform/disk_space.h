#pragma once
#include <cstdint>
#include <string>

namespace recscope {

// Free bytes for the caller on the file system that holds `folder`, or -1 when
// the system cannot tell.
std::int64_t FreeDiskBytes(const std::string &folder);

// Physical memory still available, in bytes, or -1 when unknown.
std::int64_t FreeMemoryBytes();

}  // namespace recscope
