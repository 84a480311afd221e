#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace navora::bench {

// One kind of figure, measured on both programs alternately: the n-th figures form a pair.
struct Comparison {
  std::string label;  // with its unit
  std::vector<double> navora = {};
  std::vector<double> surf = {};
};

// Prints each program's median, minimum and maximum, and the median of the pairs' ratios.
void printTable(std::ostream& out, const std::string& title,
                const std::vector<Comparison>& comparisons);

}  // namespace navora::bench
