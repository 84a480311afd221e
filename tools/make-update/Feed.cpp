#include "make-update/Feed.h"

#include <sstream>
#include <string_view>

#include <pugixml.hpp>

namespace navora {
namespace {

constexpr const char* updateNamespace = "http://www.andymatuschak.org/xml-namespaces/sparkle";

pugi::xml_node makeChannel(pugi::xml_document& document) {
  auto declaration = document.append_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "utf-8";
  auto root = document.append_child("rss");
  root.append_attribute("version") = "2.0";
  root.append_attribute("xmlns:sparkle") = updateNamespace;
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

bool isForLinux(const pugi::xml_node& item) {
  return std::string_view(item.child("enclosure").attribute("sparkle:os").value()) == "linux";
}

void removeVersion(pugi::xml_node& channel, const std::string& version) {
  for (auto item = channel.child("item"); item;) {
    const auto next = item.next_sibling("item");
    if (isForLinux(item) && item.child("sparkle:version").text().get() == version)
      channel.remove_child(item);
    item = next;
  }
}

}  // namespace

std::optional<std::string> addToFeed(const std::string& feed, const FeedItem& item) {
  pugi::xml_document document;
  if (!feed.empty() && !document.load_buffer(feed.data(), feed.size(),
                                             pugi::parse_default | pugi::parse_declaration)) {
    return std::nullopt;
  }
  auto channel = feed.empty() ? makeChannel(document) : document.child("rss").child("channel");
  if (!channel) return std::nullopt;
  removeVersion(channel, item.version);
  const auto first = channel.child("item");
  fill(first ? channel.insert_child_before("item", first) : channel.append_child("item"), item);
  std::ostringstream text;
  document.save(text, "  ", pugi::format_default, pugi::encoding_utf8);
  return text.str();
}

}  // namespace navora
