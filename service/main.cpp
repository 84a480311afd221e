#include <csignal>
#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "service/Service.h"
#include "service/ServiceOptions.h"

int main(int count, char** values) {
  using navora::service::Service;
  using navora::service::ServiceOptions;

  const auto parsed = ServiceOptions::parse(std::vector<std::string>(values + 1, values + count));
  if (std::holds_alternative<ServiceOptions::Help>(parsed)) {
    std::cout << ServiceOptions::usage();
    return 0;
  }
  if (const auto* mistake = std::get_if<ServiceOptions::Mistake>(&parsed)) {
    std::cerr << "navora-service: " << mistake->message << "\nTry --help.\n";
    return 2;
  }

  // Block the signals before any thread starts, so that only sigwait() receives them.
  sigset_t endings;
  sigemptyset(&endings);
  sigaddset(&endings, SIGTERM);
  sigaddset(&endings, SIGINT);
  pthread_sigmask(SIG_BLOCK, &endings, nullptr);
  std::signal(SIGPIPE, SIG_IGN);

  Service service(std::get<ServiceOptions>(parsed));
  if (const auto problem = service.start()) {
    std::cerr << "navora-service: " << *problem << "\n";
    return 1;
  }
  std::cout << "navora-service listening on " << service.address() << std::endl;

  int signal = 0;
  sigwait(&endings, &signal);
  service.stop();
  return 0;
}
