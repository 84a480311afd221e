#include "hosts/linux/installation/Appcast.h"

#include <algorithm>

#include <libsoup/soup.h>
#include <pugixml.hpp>

#include "hosts/linux/installation/AppcastFormat.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr std::size_t maximumVersionLength = 100;

// Versions become parts of file names and are shown to the user.
bool isVersion(std::string_view text) {
  return !text.empty() && text.size() <= maximumVersionLength &&
         std::ranges::all_of(text, [](char c) {
           return g_ascii_isalnum(c) ||
                  std::string_view("._-+ ()").find(c) != std::string_view::npos;
         });
}

std::optional<Date> readDate(const std::string& text) {
  GDateTime* date = soup_date_time_new_from_http_string(text.c_str());
  if (date == nullptr) return std::nullopt;
  const auto seconds = static_cast<double>(g_date_time_to_unix(date));
  g_date_time_unref(date);
  return dateFromSecondsSince1970(seconds);
}

// Converts the items of one document.
class ItemReader {
 public:
  ItemReader(std::string prefix, const Url& address)
      : prefix_(std::move(prefix)), address_(address) {}

  // Returns std::nullopt for an item that is for other systems or not valid.
  std::optional<AppcastEntry> read(const pugi::xml_node& item) const {
    const pugi::xml_node enclosure = linuxEnclosure(item);
    if (!enclosure && (item.child("enclosure") || element(item, "os") != "linux"))
      return std::nullopt;
    AppcastEntry entry;
    if (!readVersions(item, enclosure, entry) || !readLink(item, entry) ||
        !readConditions(item, entry)) {
      return std::nullopt;
    }
    if (enclosure) {
      entry.archive = readArchive(enclosure);
      if (!entry.archive) return std::nullopt;
    } else {
      if (!entry.link) return std::nullopt;
      entry.informational.forAll = true;
    }
    return entry;
  }

 private:
  std::string name(std::string_view local) const { return prefix_ + std::string(local); }

  std::string element(const pugi::xml_node& parent, std::string_view local) const {
    return std::string(AppcastFormat::bare(parent.child(name(local).c_str()).text().get()));
  }
  std::string attribute(const pugi::xml_node& node, std::string_view local) const {
    return std::string(AppcastFormat::bare(node.attribute(name(local).c_str()).value()));
  }

  pugi::xml_node linuxEnclosure(const pugi::xml_node& item) const {
    for (const pugi::xml_node& enclosure : item.children("enclosure")) {
      if (attribute(enclosure, "os") == "linux") return enclosure;
    }
    return {};
  }

  bool readVersions(const pugi::xml_node& item, const pugi::xml_node& enclosure,
                    AppcastEntry& entry) const {
    const auto ofEnclosureOrItem = [&](std::string_view local) {
      const std::string own = attribute(enclosure, local);
      return own.empty() ? element(item, local) : own;
    };
    entry.version = ofEnclosureOrItem("version");
    entry.displayVersion = ofEnclosureOrItem("shortVersionString");
    if (entry.displayVersion.empty()) entry.displayVersion = entry.version;
    return isVersion(entry.version) && isVersion(entry.displayVersion);
  }

  bool readLink(const pugi::xml_node& item, AppcastEntry& entry) const {
    const std::string_view text = AppcastFormat::bare(item.child("link").text().get());
    if (text.empty()) return true;
    entry.link = address_.resolve(text);
    return entry.link.has_value();
  }

  bool readConditions(const pugi::xml_node& item, AppcastEntry& entry) const {
    entry.minimumSystemVersion = element(item, "minimumSystemVersion");
    entry.channel = element(item, "channel");
    entry.isCritical = static_cast<bool>(item.child(name("criticalUpdate").c_str()));
    if (const auto date = AppcastFormat::bare(item.child("pubDate").text().get()); !date.empty()) {
      entry.published = readDate(std::string(date));
      // Without a date, a phased release would be offered to all users at once.
      if (!entry.published) return false;
    }
    readInformational(item, entry.informational);
    const std::string interval = element(item, "phasedRolloutInterval");
    if (interval.empty()) return true;
    const auto seconds = wholeNumber<std::uint32_t>(interval);
    if (seconds) entry.phasedRolloutInterval = std::chrono::seconds(*seconds);
    return seconds.has_value();
  }

  void readInformational(const pugi::xml_node& item, InformationalUpdate& informational) const {
    const pugi::xml_node node = item.child(name("informationalUpdate").c_str());
    if (!node) return;
    // Variables, because children() keeps a pointer to the name.
    const std::string versionName = name("version");
    const std::string belowVersionName = name("belowVersion");
    for (const pugi::xml_node& version : node.children(versionName.c_str()))
      informational.versions.emplace_back(AppcastFormat::bare(version.text().get()));
    for (const pugi::xml_node& version : node.children(belowVersionName.c_str()))
      informational.belowVersions.emplace_back(AppcastFormat::bare(version.text().get()));
    informational.forAll = informational.versions.empty() && informational.belowVersions.empty();
  }

  std::optional<UpdateArchive> readArchive(const pugi::xml_node& enclosure) const {
    const auto plain = [&](const char* name) {
      return AppcastFormat::bare(enclosure.attribute(name).value());
    };
    auto url = address_.resolve(plain("url"));
    const auto length = wholeNumber<std::uint64_t>(plain("length"));
    const auto signature = readSignature(attribute(enclosure, "edSignature"));
    if (!url || !length || *length == 0 || !signature) return std::nullopt;
    return UpdateArchive{*std::move(url), *length, *signature};
  }

  const std::string prefix_;
  const Url& address_;
};

// Returns the document's prefix for the namespace of the update format, with the colon.
std::optional<std::string> namespacePrefix(const pugi::xml_node& root) {
  constexpr std::string_view declaration = "xmlns:";
  constexpr std::string_view xmlNamespace = AppcastFormat::xmlNamespace;
  for (const pugi::xml_attribute& attribute : root.attributes()) {
    const std::string_view name = attribute.name();
    if (name.starts_with(declaration) && attribute.value() == xmlNamespace)
      return std::string(name.substr(declaration.size())) + ":";
  }
  return std::nullopt;
}

bool declaresDocumentType(const pugi::xml_document& document) {
  return std::ranges::any_of(document.children(), [](const pugi::xml_node& node) {
    return node.type() == pugi::node_doctype;
  });
}

}  // namespace

Expected<std::vector<AppcastEntry>, std::string> readAppcast(std::string_view text,
                                                             const Url& address) {
  pugi::xml_document document;
  const auto parsed = document.load_buffer(
      text.data(), text.size(), pugi::parse_default | pugi::parse_doctype, pugi::encoding_utf8);
  if (!parsed) return Unexpected("The feed is not XML: " + std::string(parsed.description()));
  if (declaresDocumentType(document))
    return Unexpected(std::string("The feed declares a document type"));
  const pugi::xml_node root = document.child("rss");
  const pugi::xml_node channel = root.child("channel");
  if (!channel) return Unexpected(std::string("The feed has no channel"));

  std::vector<AppcastEntry> entries;
  const auto prefix = namespacePrefix(root);
  if (!prefix) return entries;
  const ItemReader reader(*prefix, address);
  for (const pugi::xml_node& item : channel.children("item")) {
    if (auto entry = reader.read(item)) entries.push_back(*std::move(entry));
  }
  return entries;
}

}  // namespace navora
