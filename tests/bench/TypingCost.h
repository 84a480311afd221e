#pragma once

#include <sys/types.h>

#include "end_to_end/driver/Keyboard.h"

namespace navora::bench {

// What a key costs the program that gets it: processor time of its main thread, which is the time
// for which it can do nothing else. In milliseconds a key, `keys` of them typed one at a time.
double typingCost(driver::Keyboard& keyboard, pid_t program, int keys);

}  // namespace navora::bench
