#include "bench/Report.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <sstream>

namespace navora::bench {

namespace {

constexpr int labelWidth = 44;
constexpr int columnWidth = 10;

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::string fixed(double value, int digits) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(digits) << value;
  return text.str();
}

void printFigures(std::ostream& out, const std::vector<double>& values) {
  const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
  for (double figure : {median(values), *least, *greatest}) {
    out << std::setw(columnWidth) << fixed(figure, 1);
  }
}

// Skips pairs whose divisor is 0, as for an idle program; returns "-" if no pair is left.
std::string medianRatio(const Comparison& comparison) {
  std::vector<double> ratios;
  const std::size_t pairs = std::min(comparison.navora.size(), comparison.surf.size());
  for (std::size_t pair = 0; pair < pairs; ++pair) {
    if (comparison.surf[pair] > 0) {
      ratios.push_back(comparison.navora[pair] / comparison.surf[pair]);
    }
  }
  return ratios.empty() ? "-" : fixed(median(ratios), 2);
}

void printHeader(std::ostream& out, const std::string& title) {
  out << '\n' << std::left << std::setw(labelWidth) << title << std::right;
  for (const char* name : {"Navora", "min", "max", "surf", "min", "max", "ratio"}) {
    out << std::setw(columnWidth) << name;
  }
  out << '\n';
}

}  // namespace

void printTable(std::ostream& out, const std::string& title,
                const std::vector<Comparison>& comparisons) {
  printHeader(out, title);
  for (const Comparison& comparison : comparisons) {
    if (comparison.navora.empty() || comparison.surf.empty()) continue;
    out << std::left << std::setw(labelWidth) << comparison.label << std::right;
    printFigures(out, comparison.navora);
    printFigures(out, comparison.surf);
    out << std::setw(columnWidth) << medianRatio(comparison) << '\n';
  }
  out.flush();
}

}  // namespace navora::bench
