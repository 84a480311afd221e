#pragma once

#include "service/storage/Storage.h"

namespace navora::service {

// Fills the account of a user without circles: circles with rooms and messages, events around
// today, and a few processed notes.
void addSampleData(Storage& storage, const User& user);

}  // namespace navora::service
