#pragma once

#include <httplib.h>

namespace navora::service {

/// True when a page of another origin made the request. Requests without an Origin header do not
/// come from a page's script or form and are not foreign.
inline bool comesFromAnotherOrigin(const httplib::Request& request) {
  return request.has_header("Origin") &&
         request.get_header_value("Origin") != "http://" + request.get_header_value("Host");
}

}  // namespace navora::service
