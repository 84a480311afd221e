#include "make-update/Feed.h"

#include <sstream>
#include <string_view>

#include <pugixml.hpp>

#include "hosts/linux/installation/AppcastFormat.h"

namespace navora {
namespace {

pugi::xml_node makeChannel(pugi::xml_document& document) {
  auto declaration = document.append_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "utf-8";
  auto root = document.append_child("rss");
  root.append_attribute("version") = "2.0";
  root.append_attribute("xmlns:sparkle") = AppcastFormat::xmlNamespace;
  auto channel = root.append_child("channel");
  channel.append_child("title").text() = "Navora";
  return channel;
}

void addText(pugi::xml_node& parent, const char* name, const std::string& text) {
  if (!text.empty()) parent.append_child(name).text() = text.c_str();
}

void addEnclosure(pugi::xml_node& parent, const FeedItem& item) {
  auto enclosure = parent.append_child("enclosure");
  enclosure.append_attribute("url") = item.archiveUrl.c_str();
  enclosure.append_attribute("length") = std::to_string(item.archiveLength).c_str();
  enclosure.append_attribute("type") = "application/octet-stream";
  enclosure.append_attribute("sparkle:os") = "linux";
  enclosure.append_attribute("sparkle:edSignature") = item.archiveSignature.c_str();
}

void fill(pugi::xml_node node, const FeedItem& item) {
  addText(node, "title", item.version);
  addText(node, "link", item.link);
  addText(node, "pubDate", item.published);
  addText(node, "sparkle:version", item.version);
  addText(node, "sparkle:shortVersionString", item.version);
  addText(node, "sparkle:minimumSystemVersion", item.minimumSystemVersion);
  addText(node, "sparkle:channel", item.channel);
  if (item.phasedRolloutInterval) {
    addText(node, "sparkle:phasedRolloutInterval",
            std::to_string(item.phasedRolloutInterval->count()));
  }
  if (item.isCritical) node.append_child("sparkle:criticalUpdate");
  if (item.isInformational) node.append_child("sparkle:informationalUpdate");
  addEnclosure(node, item);
}

std::string_view elementText(const pugi::xml_node& item, const char* name) {
  return AppcastFormat::bare(item.child(name).text().get());
}

bool isForLinux(const pugi::xml_node& enclosure) {
  return AppcastFormat::bare(enclosure.attribute("sparkle:os").value()) == "linux";
}

// Returns the enclosure's version, or else the item's.
std::string_view versionOf(const pugi::xml_node& item, const pugi::xml_node& enclosure) {
  const auto own = AppcastFormat::bare(enclosure.attribute("sparkle:version").value());
  return own.empty() ? elementText(item, "sparkle:version") : own;
}

// Removes the item's enclosures of `version` for Linux, and the item if none for other systems is
// left.
void removeVersion(pugi::xml_node& channel, pugi::xml_node& item, const std::string& version) {
  const bool isOnlyAnnounced = !item.child("enclosure");
  if (isOnlyAnnounced && (elementText(item, "sparkle:os") != "linux" ||
                          elementText(item, "sparkle:version") != version)) {
    return;
  }
  for (auto enclosure = item.child("enclosure"); enclosure;) {
    const auto next = enclosure.next_sibling("enclosure");
    if (isForLinux(enclosure) && versionOf(item, enclosure) == version)
      item.remove_child(enclosure);
    enclosure = next;
  }
  if (!item.child("enclosure")) channel.remove_child(item);
}

void removeVersion(pugi::xml_node& channel, const std::string& version) {
  for (auto item = channel.child("item"); item;) {
    const auto next = item.next_sibling("item");
    removeVersion(channel, item, version);
    item = next;
  }
}

bool isFeed(const pugi::xml_node& root) {
  return root.child("channel") &&
         root.attribute("xmlns:sparkle").value() == std::string_view(AppcastFormat::xmlNamespace);
}

}  // namespace

std::optional<std::string> addToFeed(const std::string& feed, const FeedItem& item) {
  pugi::xml_document document;
  if (!feed.empty() && !document.load_buffer(feed.data(), feed.size(),
                                             pugi::parse_default | pugi::parse_declaration)) {
    return std::nullopt;
  }
  if (!feed.empty() && !isFeed(document.child("rss"))) return std::nullopt;
  auto channel = feed.empty() ? makeChannel(document) : document.child("rss").child("channel");
  removeVersion(channel, item.version);
  const auto first = channel.child("item");
  fill(first ? channel.insert_child_before("item", first) : channel.append_child("item"), item);
  std::ostringstream text;
  document.save(text, "  ", pugi::format_default, pugi::encoding_utf8);
  return text.str();
}

}  // namespace navora
