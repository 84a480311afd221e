#pragma once

#include <sys/types.h>

#include "end_to_end/driver/Keyboard.h"

namespace navora::bench {

// Types `keys` keys one at a time and returns the processor time per key of the main thread of the
// program that has the focus, in milliseconds.
double typingCost(driver::Keyboard& keyboard, pid_t program, int keys);

}  // namespace navora::bench
