#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <glib-object.h>

namespace navora {

// Owns one reference to a GObject.
template <typename T>
class GObjectPtr {
 public:
  GObjectPtr() = default;
  GObjectPtr(const GObjectPtr& other) : object_(other.object_) {
    if (object_ != nullptr) g_object_ref(object_);
  }
  GObjectPtr(GObjectPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  GObjectPtr& operator=(GObjectPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~GObjectPtr() {
    if (object_ != nullptr) g_object_unref(object_);
  }

  // Takes ownership of the caller's reference.
  static GObjectPtr adopt(T* object) {
    GObjectPtr pointer;
    pointer.object_ = object;
    return pointer;
  }
  // Adds a reference.
  static GObjectPtr retain(T* object) {
    if (object != nullptr) g_object_ref(object);
    return adopt(object);
  }

  T* get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  T* object_ = nullptr;
};

struct GFreeDeleter {
  void operator()(gpointer memory) const { g_free(memory); }
};
using GCharPtr = std::unique_ptr<char, GFreeDeleter>;

// Owns a GError, or null. Passes itself to calls that report failures through a GError** parameter:
//
//   GErrorPtr error;
//   if (g_file_get_contents(path, &text, &size, error.out()) == FALSE) report(error->message);
class GErrorPtr {
 public:
  GErrorPtr() = default;
  explicit GErrorPtr(GError* error) : error_(error) {}
  GErrorPtr(GErrorPtr&& other) noexcept : error_(std::exchange(other.error_, nullptr)) {}
  GErrorPtr& operator=(GErrorPtr other) noexcept {
    std::swap(error_, other.error_);
    return *this;
  }
  ~GErrorPtr() { g_clear_error(&error_); }

  // Frees the error that it owns and returns the place for the next one.
  GError** out() {
    g_clear_error(&error_);
    return &error_;
  }

  GError* get() const { return error_; }
  GError* operator->() const { return error_; }
  GError& operator*() const { return *error_; }
  explicit operator bool() const { return error_ != nullptr; }
  bool matches(GQuark domain, int code) const {
    return g_error_matches(error_, domain, code) != FALSE;
  }

 private:
  GError* error_ = nullptr;
};

struct GVariantDeleter {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using GVariantPtr = std::unique_ptr<GVariant, GVariantDeleter>;

// Returns the empty string for null.
inline std::string stringFrom(const char* text) {
  return text == nullptr ? std::string() : std::string(text);
}

// Owns a signal handler: connects it, holds a reference to the instance, and disconnects the
// handler when it is destroyed.
class SignalConnection {
 public:
  SignalConnection() = default;
  SignalConnection(SignalConnection&& other) noexcept
      : instance_(std::move(other.instance_)), handler_(std::exchange(other.handler_, 0)) {}
  SignalConnection& operator=(SignalConnection&& other) noexcept {
    disconnect();
    instance_ = std::move(other.instance_);
    handler_ = std::exchange(other.handler_, 0);
    return *this;
  }
  ~SignalConnection() { disconnect(); }

  template <typename Instance>
  SignalConnection(Instance* instance, const char* signal, GCallback callback, gpointer userData)
      : instance_(GObjectPtr<GObject>::retain(G_OBJECT(instance))),
        handler_(g_signal_connect(instance, signal, callback, userData)) {}

  void disconnect() {
    const gulong handler = std::exchange(handler_, 0);
    // gtk_widget_destroy() disconnects all handlers.
    if (handler != 0 && g_signal_handler_is_connected(instance_.get(), handler) != FALSE) {
      g_signal_handler_disconnect(instance_.get(), handler);
    }
    instance_ = {};
  }

 private:
  GObjectPtr<GObject> instance_;
  gulong handler_ = 0;
};

}  // namespace navora
