#include "end_to_end/driver/AccessibleObject.h"

#include <utility>

#include "tests/support/Wait.h"

namespace navora::driver {

namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* component = "org.a11y.atspi.Component";

std::string textOf(const Variant& value) {
  if (!value || !g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING)) return {};
  return g_variant_get_string(value.get(), nullptr);
}

Variant firstOf(const Variant& tuple) {
  return tuple ? Variant(g_variant_get_child_value(tuple.get(), 0)) : nullptr;
}

}  // namespace

AccessibleObject::AccessibleObject(std::shared_ptr<BusConnection> bus, std::string owner,
                                   std::string path)
    : bus_(std::move(bus)), owner_(std::move(owner)), path_(std::move(path)) {}

Variant AccessibleObject::ask(const char* interface, const char* method,
                              GVariant* parameters) const {
  return bus_->tryCall({owner_, path_, interface, method}, parameters);
}

Variant AccessibleObject::property(const char* interface, const char* name) const {
  return bus_->tryProperty(owner_, path_, interface, name);
}

void AccessibleObject::command(const char* interface, const char* method,
                               GVariant* parameters) const {
  const std::string what = role() + " \"" + name() + "\"";
  const Variant reply = bus_->call({owner_, path_, interface, method}, parameters);
  gboolean done = FALSE;
  g_variant_get(reply.get(), "(b)", &done);
  if (!done) throw TestError("The " + what + " refused " + method);
}

std::string AccessibleObject::role() const {
  return textOf(firstOf(ask(accessible, "GetRoleName")));
}

std::string AccessibleObject::name() const {
  return textOf(property(accessible, "Name"));
}

std::string AccessibleObject::description() const {
  return textOf(property(accessible, "Description"));
}

std::string AccessibleObject::text() const {
  constexpr int toTheEnd = -1;
  return textOf(firstOf(ask("org.a11y.atspi.Text", "GetText", g_variant_new("(ii)", 0, toTheEnd))));
}

bool AccessibleObject::has(AccessibleState state) const {
  const Variant words = firstOf(ask(accessible, "GetState"));
  if (!words) return false;
  const auto bit = static_cast<unsigned>(state);
  if (g_variant_n_children(words.get()) <= bit / 32) return false;
  guint32 word = 0;
  g_variant_get_child(words.get(), bit / 32, "u", &word);
  return (word >> bit % 32 & 1U) != 0;
}

double AccessibleObject::value() const {
  const Variant value = property("org.a11y.atspi.Value", "CurrentValue");
  return value ? g_variant_get_double(value.get()) : 0;
}

Rectangle AccessibleObject::extents() const {
  constexpr guint32 screenCoordinates = 0;
  const Variant reply = ask(component, "GetExtents", g_variant_new("(u)", screenCoordinates));
  Rectangle extents;
  if (reply) {
    g_variant_get(reply.get(), "((iiii))", &extents.x, &extents.y, &extents.width, &extents.height);
  }
  return extents;
}

std::vector<AccessibleObject> AccessibleObject::children() const {
  std::vector<AccessibleObject> found;
  const Variant list = firstOf(ask(accessible, "GetChildren"));
  if (!list) return found;
  GVariantIter iterator;
  g_variant_iter_init(&iterator, list.get());
  const char* owner = nullptr;
  const char* path = nullptr;
  while (g_variant_iter_next(&iterator, "(&s&o)", &owner, &path)) {
    found.emplace_back(bus_, owner, path);
  }
  return found;
}

void AccessibleObject::press() const {
  command("org.a11y.atspi.Action", "DoAction", g_variant_new("(i)", 0));
}

void AccessibleObject::focus() const {
  command(component, "GrabFocus", nullptr);
}

void AccessibleObject::setText(std::string_view text) const {
  command("org.a11y.atspi.EditableText", "SetTextContents",
          g_variant_new("(s)", std::string(text).c_str()));
}

}  // namespace navora::driver
