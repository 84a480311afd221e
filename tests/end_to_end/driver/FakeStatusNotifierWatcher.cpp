#include "end_to_end/driver/FakeStatusNotifierWatcher.h"

#include <algorithm>
#include <cstring>

#include "tests/support/Wait.h"

namespace navora::driver {
namespace {

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char* watcherPath = "/StatusNotifierWatcher";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* menuInterface = "com.canonical.dbusmenu";

constexpr const char* introspection = R"(
<node><interface name='org.kde.StatusNotifierWatcher'>
  <method name='RegisterStatusNotifierItem'><arg type='s' direction='in'/></method>
  <method name='RegisterStatusNotifierHost'><arg type='s' direction='in'/></method>
  <property name='RegisteredStatusNotifierItems' type='as' access='read'/>
  <property name='IsStatusNotifierHostRegistered' type='b' access='read'/>
  <property name='ProtocolVersion' type='i' access='read'/>
  <signal name='StatusNotifierItemRegistered'><arg type='s'/></signal>
</interface></node>)";

using MenuEntry = FakeStatusNotifierWatcher::MenuEntry;

// Parses a layout of type (ia{sv}av), as com.canonical.dbusmenu defines it.
MenuEntry toMenuEntry(GVariant* layout) {
  MenuEntry entry;
  GVariant* properties = nullptr;
  GVariant* children = nullptr;
  g_variant_get(layout, "(i@a{sv}@av)", &entry.id, &properties, &children);
  const Variant propertiesOwner(properties);
  const Variant childrenOwner(children);
  const char* label = "";
  const char* type = "standard";
  gboolean enabled = TRUE;
  gboolean visible = TRUE;
  g_variant_lookup(properties, "label", "&s", &label);
  g_variant_lookup(properties, "type", "&s", &type);
  g_variant_lookup(properties, "enabled", "b", &enabled);
  g_variant_lookup(properties, "visible", "b", &visible);
  entry.label = label;
  entry.type = type;
  entry.enabled = enabled != FALSE;
  entry.visible = visible != FALSE;
  for (gsize index = 0; index < g_variant_n_children(children); ++index) {
    GVariant* child = nullptr;
    g_variant_get_child(children, index, "v", &child);
    const Variant owner(child);
    if (g_variant_is_of_type(child, G_VARIANT_TYPE("(ia{sv}av)")) == FALSE) {
      throw TestError("A child of a menu has the type " +
                      std::string(g_variant_get_type_string(child)));
    }
    entry.children.push_back(toMenuEntry(child));
  }
  return entry;
}

const MenuEntry* find(const std::vector<MenuEntry>& entries, const std::string& label) {
  for (const MenuEntry& entry : entries) {
    if (!entry.visible) continue;
    if (entry.label == label) return &entry;
    if (const MenuEntry* deeper = find(entry.children, label)) return deeper;
  }
  return nullptr;
}

void demandType(const Variant& value, const char* type, const std::string& what) {
  if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE(type)) == FALSE) {
    throw TestError(what + " has the type " + g_variant_get_type_string(value.get()) +
                    " instead of " + type);
  }
}

}  // namespace

FakeStatusNotifierWatcher::FakeStatusNotifierWatcher(const std::string& sessionBusAddress)
    : bus_(sessionBusAddress),
      service_(std::make_unique<BusService>(
          sessionBusAddress, watcherName, watcherPath, introspection,
          [this](const std::string& method, GVariant* parameters,
                 GDBusMethodInvocation* invocation) { answer(method, parameters, invocation); })) {}

FakeStatusNotifierWatcher::~FakeStatusNotifierWatcher() = default;

void FakeStatusNotifierWatcher::answer(const std::string& method, GVariant* parameters,
                                       GDBusMethodInvocation* invocation) {
  const char* text = nullptr;
  if (method == "RegisterStatusNotifierItem") {
    g_variant_get(parameters, "(&s)", &text);
    registerItem(text, invocation);
    g_dbus_method_invocation_return_value(invocation, nullptr);
  } else if (method == "Get") {
    g_variant_get(parameters, "(&s&s)", nullptr, &text);
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(v)", property(text)));
  } else if (method == "GetAll") {
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE_VARDICT);
    for (const char* name :
         {"RegisteredStatusNotifierItems", "IsStatusNotifierHostRegistered", "ProtocolVersion"})
      g_variant_builder_add(&properties, "{sv}", name, property(name));
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(a{sv})", &properties));
  } else {
    g_dbus_method_invocation_return_value(invocation, nullptr);
  }
}

// Programs register a bus name, or an object path of the calling connection.
void FakeStatusNotifierWatcher::registerItem(const std::string& service,
                                             GDBusMethodInvocation* invocation) {
  const bool isPath = service.starts_with('/');
  const Item item = isPath ? Item{g_dbus_method_invocation_get_sender(invocation), service}
                           : Item{service, "/StatusNotifierItem"};
  const std::lock_guard lock(mutex_);
  registrations_.push_back(service);
  if (std::ranges::find(items_, item) == items_.end()) items_.push_back(item);
  g_dbus_connection_emit_signal(g_dbus_method_invocation_get_connection(invocation), nullptr,
                                watcherPath, watcherName, "StatusNotifierItemRegistered",
                                g_variant_new("(s)", (item.owner + item.path).c_str()), nullptr);
}

GVariant* FakeStatusNotifierWatcher::property(const std::string& name) const {
  if (name == "IsStatusNotifierHostRegistered") return g_variant_new_boolean(TRUE);
  if (name == "ProtocolVersion") return g_variant_new_int32(0);
  GVariantBuilder list;
  g_variant_builder_init(&list, G_VARIANT_TYPE_STRING_ARRAY);
  const std::lock_guard lock(mutex_);
  for (const Item& item : items_)
    g_variant_builder_add(&list, "s", (item.owner + item.path).c_str());
  return g_variant_builder_end(&list);
}

std::vector<std::string> FakeStatusNotifierWatcher::registrations() const {
  const std::lock_guard lock(mutex_);
  return registrations_;
}

std::vector<FakeStatusNotifierWatcher::Item> FakeStatusNotifierWatcher::items() {
  std::vector<Item> items;
  {
    const std::lock_guard lock(mutex_);
    items = items_;
  }
  std::erase_if(items, [this](const Item& item) { return !bus_.nameHasOwner(item.owner); });
  return items;
}

FakeStatusNotifierWatcher::Item FakeStatusNotifierWatcher::waitForItem() {
  waitUntil([this] { return !items().empty(); }, "a status item is registered");
  return items().front();
}

Variant FakeStatusNotifierWatcher::itemProperty(const Item& item, const std::string& name) {
  Variant value = bus_.tryProperty(item.owner, item.path, itemInterface, name);
  if (!value) throw TestError("The status item has no property " + name);
  return value;
}

std::string FakeStatusNotifierWatcher::textProperty(const Item& item, const std::string& name) {
  const Variant value = itemProperty(item, name);
  demandType(value, "s", name);
  return g_variant_get_string(value.get(), nullptr);
}

std::vector<FakeStatusNotifierWatcher::Pixmap> FakeStatusNotifierWatcher::pixmaps(
    const Item& item, const std::string& name) {
  const Variant value = itemProperty(item, name);
  demandType(value, "a(iiay)", name);
  std::vector<Pixmap> pixmaps;
  for (gsize index = 0; index < g_variant_n_children(value.get()); ++index) {
    Pixmap pixmap;
    GVariant* bytes = nullptr;
    g_variant_get_child(value.get(), index, "(ii@ay)", &pixmap.width, &pixmap.height, &bytes);
    const Variant owner(bytes);
    gsize length = 0;
    const auto* data =
        static_cast<const std::uint8_t*>(g_variant_get_fixed_array(bytes, &length, 1));
    pixmap.bytes.assign(data, data + length);
    pixmaps.push_back(std::move(pixmap));
  }
  return pixmaps;
}

std::string FakeStatusNotifierWatcher::menuPath(const Item& item) {
  const Variant path = bus_.tryProperty(item.owner, item.path, itemInterface, "Menu");
  if (!path) return {};
  demandType(path, "o", "Menu");
  return g_variant_get_string(path.get(), nullptr);
}

std::vector<MenuEntry> FakeStatusNotifierWatcher::menu(const Item& item) {
  const std::string path = menuPath(item);
  constexpr std::int32_t root = 0;
  constexpr std::int32_t everything = -1;
  // Programs that populate menus on demand do so now; others need not implement AboutToShow.
  bus_.tryCall({item.owner, path, menuInterface, "AboutToShow"}, g_variant_new("(i)", root));
  const Variant reply =
      bus_.call({item.owner, path, menuInterface, "GetLayout"},
                g_variant_new("(ii@as)", root, everything, g_variant_new_strv(nullptr, 0)));
  demandType(reply, "(u(ia{sv}av))", "The menu's layout");
  const Variant layout(g_variant_get_child_value(reply.get(), 1));
  return toMenuEntry(layout.get()).children;
}

void FakeStatusNotifierWatcher::activate(const Item& item, std::int32_t x, std::int32_t y) {
  bus_.call({item.owner, item.path, itemInterface, "Activate"}, g_variant_new("(ii)", x, y));
}

void FakeStatusNotifierWatcher::choose(const Item& item, std::int32_t entry) {
  constexpr std::uint32_t noTime = 0;
  bus_.call({item.owner, menuPath(item), menuInterface, "Event"},
            g_variant_new("(isvu)", entry, "clicked", g_variant_new_int32(0), noTime));
}

void FakeStatusNotifierWatcher::choose(const Item& item, const std::string& label) {
  const auto entries = menu(item);
  const MenuEntry* entry = find(entries, label);
  if (entry == nullptr || !entry->enabled)
    throw TestError("The status menu offers no “" + label + "”");
  choose(item, entry->id);
}

}  // namespace navora::driver
