#include "hosts/linux/tray/DBusMenu.h"

#include <algorithm>
#include <string_view>

#include "hosts/linux/keyboard/ModifierNames.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr const char* menuInterface = R"xml(<node><interface name="com.canonical.dbusmenu">
  <property name="Version" type="u" access="read"/>
  <property name="TextDirection" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="IconThemePath" type="as" access="read"/>
  <method name="GetLayout">
    <arg type="i" direction="in"/><arg type="i" direction="in"/><arg type="as" direction="in"/>
    <arg type="u" direction="out"/><arg type="(ia{sv}av)" direction="out"/>
  </method>
  <method name="GetGroupProperties">
    <arg type="ai" direction="in"/><arg type="as" direction="in"/>
    <arg type="a(ia{sv})" direction="out"/>
  </method>
  <method name="GetProperty">
    <arg type="i" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/>
  </method>
  <method name="Event">
    <arg type="i" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="in"/>
    <arg type="u" direction="in"/>
  </method>
  <method name="EventGroup">
    <arg type="a(isvu)" direction="in"/><arg type="ai" direction="out"/>
  </method>
  <method name="AboutToShow">
    <arg type="i" direction="in"/><arg type="b" direction="out"/>
  </method>
  <method name="AboutToShowGroup">
    <arg type="ai" direction="in"/><arg type="ai" direction="out"/><arg type="ai" direction="out"/>
  </method>
  <signal name="ItemsPropertiesUpdated"><arg type="a(ia{sv})"/><arg type="a(ias)"/></signal>
  <signal name="LayoutUpdated"><arg type="u"/><arg type="i"/></signal>
</interface></node>)xml";

constexpr guint32 protocolVersion = 3;

GVariant* propertyOf(const char* name) {
  const std::string_view wanted(name);
  if (wanted == "Version") return g_variant_new_uint32(protocolVersion);
  if (wanted == "TextDirection") return g_variant_new_string("ltr");
  if (wanted == "Status") return g_variant_new_string("normal");
  if (wanted == "IconThemePath") return g_variant_new_strv(nullptr, 0);
  return nullptr;
}

void add(GVariantBuilder& properties, const char* name, GVariant* value) {
  g_variant_builder_add(&properties, "{sv}", name, value);
}

// In dbusmenu labels a single underscore marks a mnemonic.
std::string labelOf(const MenuItem& item) {
  return replaceAll(withModifierNames(item.title), "_", "__");
}

// Returns the value that the protocol defines for a property an item does not set, or null for an
// unknown property.
GVariant* defaultProperty(std::string_view name) {
  if (name == "enabled" || name == "visible") return g_variant_new_boolean(TRUE);
  if (name == "type") return g_variant_new_string("standard");
  if (name == "label") return g_variant_new_string("");
  return nullptr;
}

std::vector<std::int32_t> idsFrom(GVariant* array) {
  gsize count = 0;
  const auto* ids = static_cast<const std::int32_t*>(
      g_variant_get_fixed_array(array, &count, sizeof(std::int32_t)));
  return {ids, ids + count};
}

GVariant* arrayFrom(const std::vector<std::int32_t>& ids) {
  return g_variant_new_fixed_array(G_VARIANT_TYPE_INT32, ids.data(), ids.size(),
                                   sizeof(std::int32_t));
}

}  // namespace

DBusMenu::DBusMenu(GDBusConnection* bus, const Menu& menu,
                   std::function<void(const MenuItem&)> onChosen)
    : onChosen_(std::move(onChosen)),
      object_(bus, path, menuInterface,
              {[this](const char* method, GVariant* parameters, GDBusMethodInvocation* invocation) {
                 call(method, parameters, invocation);
               },
               propertyOf}) {
  for (const MenuItem& item : menu.items)
    entries_.push_back({++lastId_, item});
}

void DBusMenu::insert(std::size_t index, const MenuItem& item) {
  const auto position = std::min(index, entries_.size());
  entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(position), {++lastId_, item});
  ++revision_;
  object_.emit("LayoutUpdated", g_variant_new("(ui)", revision_, root));
}

const DBusMenu::Entry* DBusMenu::find(Id id) const {
  const auto found = std::ranges::find(entries_, id, &Entry::id);
  return found == entries_.end() ? nullptr : &*found;
}

bool DBusMenu::refuseUnknown(Id id, GDBusMethodInvocation* invocation) const {
  if (has(id)) return false;
  g_dbus_method_invocation_return_error(invocation, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS,
                                        "No menu item %d", id);
  return true;
}

// Returns all properties even if a caller asks for some only, as other implementations do.
GVariant* DBusMenu::propertiesOf(Id id) const {
  GVariantBuilder properties;
  g_variant_builder_init(&properties, G_VARIANT_TYPE_VARDICT);
  const Entry* entry = find(id);
  if (entry == nullptr) {
    add(properties, "children-display", g_variant_new_string("submenu"));
  } else if (entry->item.isSeparator()) {
    add(properties, "type", g_variant_new_string("separator"));
  } else {
    add(properties, "label", g_variant_new_string(labelOf(entry->item).c_str()));
    if (!entry->item.action) add(properties, "enabled", g_variant_new_boolean(FALSE));
  }
  return g_variant_builder_end(&properties);
}

const std::vector<DBusMenu::Method>& DBusMenu::methods() {
  static const std::vector<Method> all{{"GetLayout", &DBusMenu::getLayout},
                                       {"GetGroupProperties", &DBusMenu::getGroupProperties},
                                       {"GetProperty", &DBusMenu::getProperty},
                                       {"Event", &DBusMenu::event},
                                       {"EventGroup", &DBusMenu::eventGroup},
                                       {"AboutToShow", &DBusMenu::aboutToShow},
                                       {"AboutToShowGroup", &DBusMenu::aboutToShowGroup}};
  return all;
}

void DBusMenu::call(const char* name, GVariant* parameters, GDBusMethodInvocation* invocation) {
  const auto method = std::ranges::find(methods(), std::string_view(name), &Method::name);
  (this->*method->answer)(parameters, invocation);
}

void DBusMenu::getLayout(GVariant* parameters, GDBusMethodInvocation* invocation) {
  Id parent = root;
  std::int32_t depth = 0;
  g_variant_get(parameters, "(ii@as)", &parent, &depth, nullptr);
  if (refuseUnknown(parent, invocation)) return;
  GVariantBuilder children;
  g_variant_builder_init(&children, G_VARIANT_TYPE("av"));
  if (parent == root && depth != 0) {
    for (const Entry& entry : entries_) {
      g_variant_builder_add(
          &children, "v", g_variant_new("(i@a{sv}av)", entry.id, propertiesOf(entry.id), nullptr));
    }
  }
  g_dbus_method_invocation_return_value(
      invocation,
      g_variant_new("(u(i@a{sv}av))", revision_, parent, propertiesOf(parent), &children));
}

// An empty list of ids requests all items. Unknown ids are ignored: the item may just have been
// removed.
void DBusMenu::getGroupProperties(GVariant* parameters, GDBusMethodInvocation* invocation) {
  const GVariantPtr array(g_variant_get_child_value(parameters, 0));
  std::vector<Id> ids = idsFrom(array.get());
  if (ids.empty()) {
    ids.push_back(root);
    std::ranges::transform(entries_, std::back_inserter(ids), &Entry::id);
  }
  GVariantBuilder group;
  g_variant_builder_init(&group, G_VARIANT_TYPE("a(ia{sv})"));
  for (const Id id : ids) {
    if (has(id)) g_variant_builder_add(&group, "(i@a{sv})", id, propertiesOf(id));
  }
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(a(ia{sv}))", &group));
}

void DBusMenu::getProperty(GVariant* parameters, GDBusMethodInvocation* invocation) {
  Id id = root;
  const char* name = nullptr;
  g_variant_get(parameters, "(i&s)", &id, &name);
  if (refuseUnknown(id, invocation)) return;
  const GVariantPtr properties(g_variant_ref_sink(propertiesOf(id)));
  const GVariantPtr own(g_variant_lookup_value(properties.get(), name, nullptr));
  GVariant* value = own ? own.get() : defaultProperty(name);
  if (value == nullptr) {
    g_dbus_method_invocation_return_error(invocation, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS,
                                          "No property %s", name);
    return;
  }
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(v)", value));
}

void DBusMenu::choose(Id id, const std::string& event) {
  const Entry* entry = find(id);
  if (event != "clicked" || entry == nullptr || !entry->item.action) return;
  // Copies, because the call may destroy this menu.
  const auto onChosen = onChosen_;
  const MenuItem item = entry->item;
  onChosen(item);
}

void DBusMenu::event(GVariant* parameters, GDBusMethodInvocation* invocation) {
  Id id = root;
  const char* name = nullptr;
  g_variant_get(parameters, "(i&s@vu)", &id, &name, nullptr, nullptr);
  if (refuseUnknown(id, invocation)) return;
  const std::string event = name;
  g_dbus_method_invocation_return_value(invocation, nullptr);
  choose(id, event);
}

void DBusMenu::eventGroup(GVariant* parameters, GDBusMethodInvocation* invocation) {
  std::vector<std::pair<Id, std::string>> events;
  std::vector<Id> unknown;
  const GVariantPtr array(g_variant_get_child_value(parameters, 0));
  for (gsize index = 0; index < g_variant_n_children(array.get()); ++index) {
    Id id = root;
    const char* name = nullptr;
    g_variant_get_child(array.get(), index, "(i&s@vu)", &id, &name, nullptr, nullptr);
    if (has(id)) {
      events.emplace_back(id, name);
    } else {
      unknown.push_back(id);
    }
  }
  if (events.empty() && !unknown.empty()) {
    refuseUnknown(unknown.front(), invocation);
    return;
  }
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(@ai)", arrayFrom(unknown)));
  // The first event may destroy this menu.
  auto chooseIfAlive = lifetime_.guard(
      [this](const std::pair<Id, std::string>& event) { choose(event.first, event.second); });
  for (const auto& event : events)
    chooseIfAlive(event);
}

void DBusMenu::aboutToShow(GVariant* parameters, GDBusMethodInvocation* invocation) {
  Id id = root;
  g_variant_get(parameters, "(i)", &id);
  if (refuseUnknown(id, invocation)) return;
  // No update is needed: every change has been announced with LayoutUpdated.
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(b)", FALSE));
}

void DBusMenu::aboutToShowGroup(GVariant* parameters, GDBusMethodInvocation* invocation) {
  const GVariantPtr array(g_variant_get_child_value(parameters, 0));
  std::vector<Id> unknown = idsFrom(array.get());
  std::erase_if(unknown, [this](Id id) { return has(id); });
  g_dbus_method_invocation_return_value(
      invocation, g_variant_new("(@ai@ai)", arrayFrom({}), arrayFrom(unknown)));
}

}  // namespace navora
