#pragma once

#include <string>
#include <vector>

#include <glibmm/ustring.h>
#include <gtkmm/textbuffer.h>
#include <sigc++/connection.h>

namespace navora {

// Undo and redo for a text buffer, which GTK 3 does not have. Typing is undone by words and so is
// deleting character by character; everything else by the piece that was changed at once. For the
// buffer undo and redo are one user action each.
class TextUndo {
 public:
  explicit TextUndo(Glib::RefPtr<Gtk::TextBuffer> buffer);
  ~TextUndo();
  TextUndo(const TextUndo&) = delete;
  TextUndo& operator=(const TextUndo&) = delete;

  bool canUndo() const { return !done_.empty(); }
  bool canRedo() const { return !undone_.empty(); }
  void undo();
  void redo();
  // Nothing that was done until now can come back.
  void forget();

 private:
  // Characters of `text` are at `offset`, in characters, after an insertion and before a deletion.
  struct Change {
    bool isInsertion = true;
    int offset = 0;
    Glib::ustring text;
    // Made within one action of the user's, such as a replacement of the selection.
    int action = 0;
    // Came character by character, so that the next one may belong to it.
    bool isByCharacters = false;
  };

  void didInsert(const Gtk::TextIter& position, const Glib::ustring& text);
  void willDelete(const Gtk::TextIter& begin, const Gtk::TextIter& end);
  void add(Change change);
  static bool merge(Change& last, const Change& next);
  static bool mergeTyping(Change& last, const Change& next);
  static bool mergeDeleting(Change& last, const Change& next);
  void apply(const Change& change, bool forwards);
  // Moves all changes of one action over.
  void move(std::vector<Change>& from, std::vector<Change>& to, bool forwards);

  Glib::RefPtr<Gtk::TextBuffer> buffer_;
  std::vector<Change> done_;
  std::vector<Change> undone_;
  int action_ = 0;
  bool applying_ = false;
  std::vector<sigc::connection> connections_;
};

}  // namespace navora
