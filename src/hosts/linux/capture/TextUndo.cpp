#include "hosts/linux/capture/TextUndo.h"

#include <utility>

namespace navora {
namespace {

bool isBlank(gunichar character) {
  return g_unichar_isspace(character) != FALSE;
}

// Returns whether a new word or line begins between two adjacent characters.
bool separates(gunichar left, gunichar right) {
  return right == '\n' || (isBlank(left) && !isBlank(right));
}

}  // namespace

TextUndo::TextUndo(Glib::RefPtr<Gtk::TextBuffer> buffer) : buffer_(std::move(buffer)) {
  connections_ = {
      buffer_->signal_begin_user_action().connect([this] { ++action_; }),
      buffer_->signal_insert().connect([this](const Gtk::TextIter& position,
                                              const Glib::ustring& text,
                                              int) { didInsert(position, text); }),
      buffer_->signal_erase().connect(
          [this](const Gtk::TextIter& begin, const Gtk::TextIter& end) { willDelete(begin, end); },
          false),
  };
}

TextUndo::~TextUndo() {
  for (auto& connection : connections_)
    connection.disconnect();
}

void TextUndo::didInsert(const Gtk::TextIter& position, const Glib::ustring& text) {
  if (applying_ || text.empty()) return;
  const int end = position.get_offset();
  const int length = static_cast<int>(text.size());
  add({true, end - length, text, action_, length == 1});
}

void TextUndo::willDelete(const Gtk::TextIter& begin, const Gtk::TextIter& end) {
  if (applying_ || begin == end) return;
  const int length = end.get_offset() - begin.get_offset();
  add({false, begin.get_offset(), begin.get_text(end), action_, length == 1});
}

void TextUndo::add(Change change) {
  undone_.clear();
  if (done_.empty() || !merge(done_.back(), change)) done_.push_back(std::move(change));
}

// The merged change keeps the action it began in, so that text typed over a selection is undone
// together with the deletion of the selection.
bool TextUndo::merge(Change& last, const Change& next) {
  if (last.isInsertion != next.isInsertion) return false;
  if (!last.isByCharacters || !next.isByCharacters) return false;
  return next.isInsertion ? mergeTyping(last, next) : mergeDeleting(last, next);
}

// Merges a character that directly follows the last change and does not begin a new word.
bool TextUndo::mergeTyping(Change& last, const Change& next) {
  if (next.offset != last.offset + static_cast<int>(last.text.size())) return false;
  if (separates(*last.text.rbegin(), next.text[0])) return false;
  last.text += next.text;
  return true;
}

// Merges a character deleted with BackSpace (before the last change) or Delete (at its position).
bool TextUndo::mergeDeleting(Change& last, const Change& next) {
  const gunichar character = next.text[0];
  if (next.offset == last.offset - 1 && !separates(character, last.text[0])) {
    last.text = next.text + last.text;
    last.offset = next.offset;
    return true;
  }
  if (next.offset == last.offset && !separates(*last.text.rbegin(), character)) {
    last.text += next.text;
    return true;
  }
  return false;
}

void TextUndo::undo() {
  move(done_, undone_, false);
}

void TextUndo::redo() {
  move(undone_, done_, true);
}

void TextUndo::move(std::vector<Change>& from, std::vector<Change>& to, bool forwards) {
  if (from.empty()) return;
  const int action = from.back().action;
  applying_ = true;
  buffer_->begin_user_action();
  while (!from.empty() && from.back().action == action) {
    apply(from.back(), forwards);
    to.push_back(std::move(from.back()));
    from.pop_back();
  }
  buffer_->end_user_action();
  applying_ = false;
}

void TextUndo::apply(const Change& change, bool forwards) {
  const auto begin = buffer_->get_iter_at_offset(change.offset);
  if (change.isInsertion == forwards) {
    buffer_->place_cursor(buffer_->insert(begin, change.text));
  } else {
    const int length = static_cast<int>(change.text.size());
    buffer_->place_cursor(
        buffer_->erase(begin, buffer_->get_iter_at_offset(change.offset + length)));
  }
}

void TextUndo::forget() {
  done_.clear();
  undone_.clear();
}

}  // namespace navora
