#pragma once

#include "service/storage/Storage.h"

namespace navora::service {

/// Gives a user who has no circles yet something to look at: circles with rooms and messages,
/// events around today, and a few finished notes.
void addSampleData(Storage& storage, const User& user);

}  // namespace navora::service
