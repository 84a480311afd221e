#pragma once

#include <filesystem>
#include <map>
#include <string>

#include <httplib.h>

#include "service/storage/Storage.h"

namespace navora::service {

/// Serves the pages and what they are made of from a directory, read afresh for every request so
/// that an edited file shows after a reload.
class Pages {
 public:
  struct Settings {
    std::filesystem::path directory;
    std::string headInsertion;          ///< Markup put at the end of every page's head.
    std::string contentSecurityPolicy;  ///< Sent with every page.
  };

  Pages(Settings settings, Storage& storage);

  /// "/" and "/assets/...". The object must outlive the server's run.
  void addRoutes(httplib::Server& server);

  void showLogin(const httplib::Request& request, httplib::Response& response,
                 const std::string& error) const;

 private:
  void showApplication(const httplib::Request& request, httplib::Response& response) const;
  void showAsset(const std::string& name, httplib::Response& response) const;
  void showPage(const std::string& name, std::map<std::string, std::string> values,
                httplib::Response& response) const;

  Settings settings_;
  Storage& storage_;
};

}  // namespace navora::service
