#pragma once

#include <string>

// What the system says of this process and thread.
namespace quillet::bench {

// The thread's own time in seconds, kernel included: what others take meanwhile does not count.
double ThreadTime();
// Seconds as a clock on the wall counts them.
double WallTime();

// A line of /proc/self/status, in bytes; 0 where there is none.
double StatusOf(const std::string& name);
// Bytes in memory once the heap has given back what it can.
double Resident();
// Lets the peak (VmHWM) start anew from what is resident now. False where that is not possible.
bool ResetPeak();

}  // namespace quillet::bench
