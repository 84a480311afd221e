#pragma once

#include <functional>
#include <string>
#include <utility>

namespace navora {

// Returns a text for the user in the current language; called again when the language changes.
using CaptureMessage = std::function<std::string()>;

// The reason why a note is not known to be stored.
struct CaptureError {
  enum class Kind {
    // The reply confirms nothing or cannot be trusted; `text` describes it.
    message,
    // No user is signed in.
    login,
    // The signed-in user is not the one who first sent the note.
    changedAccount,
    // The service could not be reached, or its reply is not JSON.
    network,
  };

  Kind kind = Kind::network;
  CaptureMessage text = {};

  static CaptureError message(CaptureMessage text) { return {Kind::message, std::move(text)}; }
  static CaptureError login() { return {Kind::login}; }
  static CaptureError changedAccount() { return {Kind::changedAccount}; }
  static CaptureError network() { return {Kind::network}; }
};

}  // namespace navora
