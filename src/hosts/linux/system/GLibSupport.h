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

  // Takes over the reference that the caller has.
  static GObjectPtr adopt(T* object) {
    GObjectPtr pointer;
    pointer.object_ = object;
    return pointer;
  }
  // Adds a reference of its own.
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

struct GErrorDeleter {
  void operator()(GError* error) const { g_error_free(error); }
};
using GErrorPtr = std::unique_ptr<GError, GErrorDeleter>;

struct GVariantDeleter {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using GVariantPtr = std::unique_ptr<GVariant, GVariantDeleter>;

inline std::string stringFrom(const char* text) {
  return text == nullptr ? std::string() : std::string(text);
}

// A signal handler that is disconnected when this object goes. Keeps its instance alive until then.
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
    // A destroyed widget has dropped its handlers already.
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
