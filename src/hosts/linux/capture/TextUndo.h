#pragma once

#include <string>
#include <vector>

#include <glibmm/ustring.h>
#include <gtkmm/textbuffer.h>
#include <sigc++/connection.h>

namespace navora {

// Undo and redo for a GTK 3 text buffer, which has none. Characters typed or deleted one by one are
// grouped into words; any other change is one step. undo() and redo() are one user action of the
// buffer each.
class TextUndo {
 public:
  explicit TextUndo(Glib::RefPtr<Gtk::TextBuffer> buffer);
  ~TextUndo();
  TextUndo(const TextUndo&) = delete;
  TextUndo& operator=(const TextUndo&) = delete;

  // Reverts the latest step; does nothing if there is none.
  void undo();
  // Repeats the step that was undone last, if the buffer has not changed since.
  void redo();
  // Discards all steps.
  void forget();

 private:
  struct Change {
    bool isInsertion = true;
    // The position of `text` in the buffer after the insertion or before the deletion, in
    // characters.
    int offset = 0;
    Glib::ustring text;
    // The user action it belongs to. All changes of one action are undone together, such as the
    // deletion and the insertion that replace a selection.
    int action = 0;
    // Made one character at a time, so that the next character may be merged into it.
    bool isByCharacters = false;
  };

  void didInsert(const Gtk::TextIter& position, const Glib::ustring& text);
  void willDelete(const Gtk::TextIter& begin, const Gtk::TextIter& end);
  void add(Change change);
  static bool merge(Change& last, const Change& next);
  static bool mergeTyping(Change& last, const Change& next);
  static bool mergeDeleting(Change& last, const Change& next);
  void apply(const Change& change, bool forwards);
  // Applies all changes of the last action of `from`, moving them to `to`.
  void move(std::vector<Change>& from, std::vector<Change>& to, bool forwards);

  Glib::RefPtr<Gtk::TextBuffer> buffer_;
  std::vector<Change> done_;
  std::vector<Change> undone_;
  int action_ = 0;
  bool applying_ = false;
  std::vector<sigc::connection> connections_;
};

}  // namespace navora
