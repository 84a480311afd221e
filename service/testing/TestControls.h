#pragma once

#include <string>

#include "service/http/Routes.h"
#include "service/storage/Storage.h"
#include "service/testing/DriverBroker.h"
#include "service/testing/FaultRules.h"
#include "service/testing/HttpMessage.h"
#include "service/testing/RequestLog.h"

namespace navora::service {

// The test controls below "/__test/": the log of requests, faults, scripts in pages, and changes to
// the stored data.
class TestControls {
 public:
  TestControls(Storage& storage, const TelemetryLog& telemetry, std::string defaultAccount);

  RequestLog& log() { return log_; }
  FaultRules& faults() { return faults_; }

  // Returns the bytes of the reply. `connection` tells whether a waiting client is still connected.
  std::string answer(const WireRequest& request, const Connection& connection);

 private:
  std::string requests(const WireRequest& request, const Connection& connection);
  std::string faultRules(const WireRequest& request);
  std::string driverScript();
  std::string driver(const WireRequest& request, const Connection& connection);
  std::string nextScript(const std::string& name, const WireRequest& request,
                         const Connection& connection);
  std::string evaluate(const std::string& name, const Json& body, const Connection& connection);
  std::string changeUser(const WireRequest& request);
  std::string captures(const WireRequest& request);
  std::string moveSessions(const WireRequest& request);
  std::string setCookies(const WireRequest& request);

  // Returns the user that "?account=NAME" names, or the first account.
  User namedUser(const WireRequest& request);

  Storage& storage_;
  const TelemetryLog& telemetry_;
  std::string defaultAccount_;
  RequestLog log_;
  FaultRules faults_;
  DriverBroker broker_;
};

}  // namespace navora::service
