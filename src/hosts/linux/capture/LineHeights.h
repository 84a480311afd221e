#pragma once

#include <functional>
#include <vector>

#include <gtkmm/textbuffer.h>
#include <sigc++/connection.h>

namespace navora {

// Remembers the height of each line (paragraph) of a text buffer, so that only the lines that
// changed are measured again.
class LineHeights {
 public:
  explicit LineHeights(const Glib::RefPtr<Gtk::TextBuffer>& buffer);
  ~LineHeights();
  LineHeights(const LineHeights&) = delete;
  LineHeights& operator=(const LineHeights&) = delete;

  // Forgets the height of one line or of all.
  void forget(int line);
  void forgetAll();
  // Returns the height of all lines, or a value > `enough` if they are higher than that. Calls
  // `measure` with the number of each line whose height it needs and does not know.
  int sum(double enough, const std::function<int(int line)>& measure);

 private:
  void didInsert(int line, int newLines);
  void willErase(int firstLine, int lastLine);

  static constexpr int unknown = -1;

  std::vector<int> heights_;
  std::vector<sigc::connection> connections_;
};

}  // namespace navora
