#include "end_to_end/driver/FakeNotificationDaemon.h"

#include <algorithm>
#include <utility>

namespace navora::driver {
namespace {

constexpr const char* introspection = R"(
<node><interface name='org.freedesktop.Notifications'>
  <method name='GetCapabilities'><arg type='as' direction='out'/></method>
  <method name='GetServerInformation'><arg type='s' direction='out'/><arg type='s' direction='out'/>
    <arg type='s' direction='out'/><arg type='s' direction='out'/></method>
  <method name='CloseNotification'><arg type='u' direction='in'/></method>
  <method name='Notify'><arg type='s' direction='in'/><arg type='u' direction='in'/>
    <arg type='s' direction='in'/><arg type='s' direction='in'/><arg type='s' direction='in'/>
    <arg type='as' direction='in'/><arg type='a{sv}' direction='in'/><arg type='i' direction='in'/>
    <arg type='u' direction='out'/></method>
</interface></node>)";

std::vector<std::string> textsOf(GVariant* list) {
  std::vector<std::string> texts;
  for (gsize index = 0; index < g_variant_n_children(list); ++index) {
    const Variant text(g_variant_get_child_value(list, index));
    texts.emplace_back(g_variant_get_string(text.get(), nullptr));
  }
  return texts;
}

std::map<std::string, std::string> printed(GVariant* dictionary) {
  std::map<std::string, std::string> values;
  GVariantIter entries;
  g_variant_iter_init(&entries, dictionary);
  const char* key = nullptr;
  GVariant* value = nullptr;
  while (g_variant_iter_loop(&entries, "{&sv}", &key, &value) != FALSE) {
    char* text = g_variant_print(value, FALSE);
    values[key] = text;
    g_free(text);
  }
  return values;
}

}  // namespace

FakeNotificationDaemon::FakeNotificationDaemon(const std::string& sessionBusAddress,
                                               std::vector<std::string> capabilities)
    : capabilities_(std::move(capabilities)),
      service_(std::make_unique<BusService>(
          sessionBusAddress, "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
          introspection,
          [this](const std::string& method, GVariant* parameters,
                 GDBusMethodInvocation* invocation) { answer(method, parameters, invocation); })) {}

FakeNotificationDaemon::~FakeNotificationDaemon() {
  service_.reset();
  for (const auto& [invocation, reply] : waiting_) {
    g_object_unref(invocation);
    if (reply != nullptr) g_variant_unref(g_variant_ref_sink(reply));
  }
}

void FakeNotificationDaemon::answer(const std::string& method, GVariant* parameters,
                                    GDBusMethodInvocation* invocation) {
  const std::lock_guard lock(mutex_);
  if (method == "CloseNotification") closeForProgram(parameters, invocation);
  GVariant* answer = reply(method, parameters);
  if (method == heldMethod_) {
    waiting_.emplace_back(invocation, answer);
  } else {
    g_dbus_method_invocation_return_value(invocation, answer);
  }
}

GVariant* FakeNotificationDaemon::reply(const std::string& method, GVariant* parameters) {
  if (method == "Notify") return show(parameters);
  if (method == "GetCapabilities") {
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE_STRING_ARRAY);
    for (const std::string& capability : capabilities_)
      g_variant_builder_add(&list, "s", capability.c_str());
    return g_variant_new("(as)", &list);
  }
  if (method == "GetServerInformation")
    return g_variant_new("(ssss)", "fake", "navora", "1", "1.2");
  return nullptr;
}

GVariant* FakeNotificationDaemon::show(GVariant* parameters) {
  const char* application = nullptr;
  const char* icon = nullptr;
  const char* summary = nullptr;
  const char* body = nullptr;
  GVariant* actions = nullptr;
  GVariant* hints = nullptr;
  Notification shown;
  g_variant_get(parameters, "(&su&s&s&s@as@a{sv}i)", &application, &shown.replacesId, &icon,
                &summary, &body, &actions, &hints, &shown.expireTimeout);
  const Variant actionsOwner(actions);
  const Variant hintsOwner(hints);
  shown.applicationName = application;
  shown.icon = icon;
  shown.summary = summary;
  shown.body = body;
  shown.actions = textsOf(actions);
  shown.hints = printed(hints);

  shown.id = shown.replacesId != 0 ? shown.replacesId : ++lastId_;
  notifications_.push_back(shown);
  if (std::ranges::find(open_, shown.id) == open_.end()) open_.push_back(shown.id);
  return g_variant_new("(u)", shown.id);
}

std::vector<FakeNotificationDaemon::Notification> FakeNotificationDaemon::notifications() const {
  const std::lock_guard lock(mutex_);
  return notifications_;
}

std::vector<std::uint32_t> FakeNotificationDaemon::open() const {
  const std::lock_guard lock(mutex_);
  return open_;
}

void FakeNotificationDaemon::hold(const std::string& method) {
  const std::lock_guard lock(mutex_);
  heldMethod_ = method;
}

void FakeNotificationDaemon::release() {
  const std::lock_guard lock(mutex_);
  heldMethod_.clear();
  for (const auto& [invocation, reply] : std::exchange(waiting_, {}))
    g_dbus_method_invocation_return_value(invocation, reply);
}

std::size_t FakeNotificationDaemon::waitingCount() const {
  const std::lock_guard lock(mutex_);
  return waiting_.size();
}

void FakeNotificationDaemon::click(std::uint32_t id, const std::string& action,
                                   const std::string& activationToken) {
  if (!activationToken.empty())
    service_->emitSignal("ActivationToken", g_variant_new("(us)", id, activationToken.c_str()));
  service_->emitSignal("ActionInvoked", g_variant_new("(us)", id, action.c_str()));
}

void FakeNotificationDaemon::close(std::uint32_t id) {
  constexpr std::uint32_t dismissedByUser = 2;
  {
    const std::lock_guard lock(mutex_);
    std::erase(open_, id);
  }
  service_->emitSignal("NotificationClosed", g_variant_new("(uu)", id, dismissedByUser));
}

void FakeNotificationDaemon::closeForProgram(GVariant* parameters,
                                             GDBusMethodInvocation* invocation) {
  constexpr std::uint32_t closedByACall = 3;
  std::uint32_t id = 0;
  g_variant_get(parameters, "(u)", &id);
  std::erase(open_, id);
  // `service_` may be in destruction.
  g_dbus_connection_emit_signal(g_dbus_method_invocation_get_connection(invocation), nullptr,
                                g_dbus_method_invocation_get_object_path(invocation),
                                g_dbus_method_invocation_get_interface_name(invocation),
                                "NotificationClosed", g_variant_new("(uu)", id, closedByACall),
                                nullptr);
}

}  // namespace navora::driver
