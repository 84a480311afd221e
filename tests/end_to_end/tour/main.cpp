// Plays the application's main features on a virtual desktop, as a person would use them, and
// leaves a numbered screenshot and a line of text for each.
#include <exception>
#include <filesystem>
#include <iostream>

#include "end_to_end/tour/Tour.h"

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) {
    std::cerr << "usage: navora-tour FOLDER\n";
    return 2;
  }
  try {
    navora::driver::Tour(std::filesystem::absolute(arguments[1])).play();
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "The tour ended early: " << failure.what() << "\n";
    return 1;
  }
}
