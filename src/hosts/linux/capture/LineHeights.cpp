#include "hosts/linux/capture/LineHeights.h"

#include <algorithm>

namespace navora {

LineHeights::LineHeights(const Glib::RefPtr<Gtk::TextBuffer>& buffer)
    : heights_(static_cast<std::size_t>(buffer->get_line_count()), unknown) {
  connections_ = {
      // `end` is the end of the inserted text.
      buffer->signal_insert().connect([this](const Gtk::TextIter& end, const Glib::ustring&, int) {
        const int newLines = end.get_buffer()->get_line_count() - static_cast<int>(heights_.size());
        didInsert(end.get_line() - newLines, newLines);
      }),
      buffer->signal_erase().connect(
          [this](const Gtk::TextIter& begin, const Gtk::TextIter& end) {
            willErase(begin.get_line(), end.get_line());
          },
          false),
  };
}

LineHeights::~LineHeights() {
  for (auto& connection : connections_)
    connection.disconnect();
}

void LineHeights::didInsert(int line, int newLines) {
  forget(line);
  heights_.insert(heights_.begin() + line + 1, static_cast<std::size_t>(newLines), unknown);
}

void LineHeights::willErase(int firstLine, int lastLine) {
  heights_.erase(heights_.begin() + firstLine + 1, heights_.begin() + lastLine + 1);
  forget(firstLine);
}

void LineHeights::forget(int line) {
  heights_[static_cast<std::size_t>(line)] = unknown;
}

void LineHeights::forgetAll() {
  std::ranges::fill(heights_, unknown);
}

int LineHeights::sum(double enough, const std::function<int(int line)>& measure) {
  int total = 0;
  for (std::size_t line = 0; line < heights_.size() && total <= enough; ++line) {
    if (heights_[line] == unknown) heights_[line] = measure(static_cast<int>(line));
    total += heights_[line];
  }
  return total;
}

}  // namespace navora
