#pragma once

#include <functional>
#include <string>
#include <utility>

namespace navora {

// How to produce a text that the user sees, so that it can be produced again in another language.
using CaptureMessage = std::function<std::string()>;

// Why a note was not stored, as far as is known.
struct CaptureError {
  enum class Kind {
    // The answer is no confirmation or cannot be trusted; `text` says so.
    message,
    // Nobody is signed in.
    login,
    // Somebody else is signed in than when the note was first sent.
    changedAccount,
    // The service could not be asked, or did not answer in its own words.
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
