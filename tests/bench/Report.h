#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace navora::bench {

// One kind of figure, measured on both programs in turn: the n-th of each belong together.
struct Comparison {
  std::string label;  // with its unit
  std::vector<double> navora = {};
  std::vector<double> surf = {};
};

// Median, least and greatest of each program, and the median of the pairs' ratios.
void printTable(std::ostream& out, const std::string& title,
                const std::vector<Comparison>& comparisons);

}  // namespace navora::bench
