#pragma once

#include <filesystem>
#include <map>
#include <string>

#include <httplib.h>

#include "service/storage/Storage.h"

namespace navora::service {

// Serves the pages and their assets from a directory. Files are read for each request, so that an
// edit shows after a reload.
class Pages {
 public:
  struct Settings {
    std::filesystem::path directory;
    std::string headInsertion;          // Markup inserted at the end of each page's head.
    std::string contentSecurityPolicy;  // Sent with each page.
  };

  Pages(Settings settings, Storage& storage);

  // Registers "/" and "/assets/...". The object must outlive the server.
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
