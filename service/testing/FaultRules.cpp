#include "service/testing/FaultRules.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace navora::service {
namespace {

constexpr std::size_t sizeLimit = 64 * 1024 * 1024;

// Reads the members of one JSON object and records whether any of them was invalid.
class Members {
 public:
  Members(const Json& object, std::initializer_list<const char*> known) : object_(object) {
    valid_ = object.is_object();
    if (!valid_) return;
    for (const auto& [name, value] : object.items()) {
      valid_ = valid_ && std::any_of(known.begin(), known.end(),
                                     [&name = name](const char* each) { return name == each; });
    }
  }

  bool valid() const { return valid_; }
  bool has(const char* name) const { return object_.is_object() && object_.contains(name); }

  std::string text(const char* name, std::string fallback) {
    if (!has(name)) return fallback;
    if (const auto value = textMember(object_, name)) return *value;
    valid_ = false;
    return fallback;
  }

  std::size_t number(const char* name, std::size_t most) {
    if (has(name) && object_[name].is_number_unsigned() &&
        object_[name].get<std::uint64_t>() <= most) {
      return object_[name].get<std::size_t>();
    }
    valid_ = false;
    return 0;
  }

  void requireTrue(const char* name) { valid_ = valid_ && object_[name] == true; }

  bool flag(const char* name) {
    if (!has(name)) return false;
    if (object_[name].is_boolean()) return object_[name].get<bool>();
    valid_ = false;
    return false;
  }

  HeaderList headers(const char* name) {
    HeaderList list;
    if (!has(name)) return list;
    valid_ = valid_ && object_[name].is_array();
    for (const Json& pair : valid_ ? object_[name] : Json::array()) {
      if (!pair.is_array() || pair.size() != 2 || !pair[0].is_string() || !pair[1].is_string()) {
        valid_ = false;
        break;
      }
      list.emplace_back(pair[0], pair[1]);
    }
    return list;
  }

 private:
  const Json& object_;
  bool valid_;
};

std::chrono::milliseconds duration(Members& members, const char* name) {
  return std::chrono::milliseconds(members.number(name, 600000));
}

Fault redirectFault(Members& members) {
  const int status = members.has("status") ? static_cast<int>(members.number("status", 399)) : 302;
  return AnswerFault{status,
                     {{"Location", members.text("redirect", "")}},
                     "",
                     "text/plain",
                     members.flag("process")};
}

Fault answerFault(Members& members) {
  const int status = static_cast<int>(members.number("status", 599));
  HeaderList headers = members.headers("headers");
  std::string body = members.text("body", "");
  return AnswerFault{status, std::move(headers), std::move(body),
                     members.text("contentType", "application/json"), members.flag("process")};
}

std::optional<Fault> dropFault(Members& members) {
  const std::string moment = members.text("drop", "");
  if (moment == "before") return DropFault{DropFault::Moment::before, 0};
  if (moment == "after") return DropFault{DropFault::Moment::after, 0};
  if (moment != "during") return std::nullopt;
  return DropFault{DropFault::Moment::during, members.number("bytes", sizeLimit)};
}

std::optional<Fault> valid(const Members& members, std::optional<Fault> fault) {
  return members.valid() ? std::move(fault) : std::nullopt;
}

std::optional<Fault> parseFault(const Json& json) {
  const auto has = [&](const char* name) { return json.is_object() && json.contains(name); };
  if (has("redirect")) {
    Members members(json, {"redirect", "status", "process"});
    Fault fault = redirectFault(members);
    return valid(members, std::move(fault));
  }
  if (has("status")) {
    Members members(json, {"status", "headers", "body", "contentType", "process"});
    Fault fault = answerFault(members);
    return valid(members, std::move(fault));
  }
  if (has("delay")) {
    Members members(json, {"delay"});
    Fault fault = DelayFault{duration(members, "delay")};
    return valid(members, std::move(fault));
  }
  if (has("drop")) {
    Members members(json, {"drop", "bytes"});
    std::optional<Fault> fault = dropFault(members);
    return valid(members, std::move(fault));
  }
  if (has("oversize")) {
    Members members(json, {"oversize", "process"});
    const std::size_t bytes = members.number("oversize", sizeLimit);
    Fault fault = OversizeFault{bytes, members.flag("process")};
    return valid(members, std::move(fault));
  }
  if (has("slow")) {
    Members members(json["slow"], {"bytes", "interval"});
    const std::size_t bytes = members.number("bytes", sizeLimit);
    Fault fault = SlowFault{bytes, duration(members, "interval")};
    return bytes > 0 && json.size() == 1 ? valid(members, std::move(fault)) : std::nullopt;
  }
  if (has("hang")) {
    Members members(json, {"hang", "process"});
    members.requireTrue("hang");
    Fault fault = HangFault{members.flag("process")};
    return valid(members, std::move(fault));
  }
  if (has("garbage")) {
    Members members(json, {"garbage"});
    members.requireTrue("garbage");
    return valid(members, GarbageFault{});
  }
  return std::nullopt;
}

}  // namespace

std::optional<FaultRule> FaultRule::parse(const Json& json) {
  Members members(json, {"method", "path", "times", "action"});
  if (!members.valid() || !members.has("action")) return std::nullopt;
  FaultRule rule;
  rule.method = members.text("method", "");
  rule.path = members.text("path", "");
  if (members.has("times")) {
    if (!json["times"].is_number_integer()) return std::nullopt;
    rule.times = json["times"].get<int>();
  }
  auto fault = parseFault(json["action"]);
  if (!members.valid() || !rule.path.starts_with("/") || rule.times == 0 || rule.times < -1 ||
      !fault) {
    return std::nullopt;
  }
  rule.fault = *std::move(fault);
  return rule;
}

void FaultRules::add(FaultRule rule) {
  const std::lock_guard lock(mutex_);
  rules_.push_back(std::move(rule));
}

void FaultRules::clear() {
  const std::lock_guard lock(mutex_);
  rules_.clear();
  ++generation_;
}

std::optional<Fault> FaultRules::take(const std::string& method, const std::string& path) {
  const std::lock_guard lock(mutex_);
  const auto rule = std::find_if(rules_.begin(), rules_.end(), [&](const FaultRule& each) {
    return each.path == path && (each.method.empty() || each.method == method);
  });
  if (rule == rules_.end()) return std::nullopt;
  Fault fault = rule->fault;
  if (rule->times > 0 && --rule->times == 0) rules_.erase(rule);
  return fault;
}

}  // namespace navora::service
