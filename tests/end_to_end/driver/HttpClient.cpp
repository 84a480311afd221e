#include "end_to_end/driver/HttpClient.h"

#include <httplib.h>

namespace navora::driver {

namespace {

httplib::Client clientFor(const std::string& origin, std::chrono::milliseconds timeout) {
  httplib::Client client(origin);
  client.set_read_timeout(timeout);
  client.set_connection_timeout(std::chrono::seconds(5));
  return client;
}

HttpReply checked(const httplib::Result& result, const std::string& what) {
  if (!result) throw DriverError("No answer to " + what + ": " + to_string(result.error()));
  return {result->status, result->body};
}

}  // namespace

HttpClient::HttpClient(std::string origin) : origin_(std::move(origin)) {
  if (origin_.ends_with('/')) origin_.pop_back();
}

HttpReply HttpClient::get(const std::string& target, std::chrono::milliseconds timeout) {
  return checked(clientFor(origin_, timeout).Get(target), "GET " + target);
}

HttpReply HttpClient::post(const std::string& target, const std::string& json,
                           std::chrono::milliseconds timeout) {
  return checked(clientFor(origin_, timeout).Post(target, json, "application/json"),
                 "POST " + target);
}

HttpReply HttpClient::remove(const std::string& target) {
  return checked(clientFor(origin_, defaultTimeout()).Delete(target), "DELETE " + target);
}

}  // namespace navora::driver
