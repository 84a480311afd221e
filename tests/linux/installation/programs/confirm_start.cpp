// Confirms its start to the installer, if there is one, as the application does.
#include <cstdlib>
#include <string>

#include <unistd.h>

int main() {
  const char* number = std::getenv("NAVORA_UPDATE_STARTED");
  if (number == nullptr) return EXIT_SUCCESS;
  const char byte = 1;
  return ::write(std::atoi(number), &byte, 1) == 1 ? EXIT_SUCCESS : EXIT_FAILURE;
}
