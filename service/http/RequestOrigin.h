#pragma once

#include <httplib.h>

namespace navora::service {

// Returns whether a page of another origin made the request. A request without an Origin header was
// not made by a page's script or form and is not foreign.
inline bool comesFromAnotherOrigin(const httplib::Request& request) {
  return request.has_header("Origin") &&
         request.get_header_value("Origin") != "http://" + request.get_header_value("Host");
}

}  // namespace navora::service
