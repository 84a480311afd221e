#include "hosts/linux/TextUndo.h"

#include <utility>

namespace navora {

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
  add({true, end - static_cast<int>(text.size()), text, action_});
}

void TextUndo::willDelete(const Gtk::TextIter& begin, const Gtk::TextIter& end) {
  if (applying_ || begin == end) return;
  add({false, begin.get_offset(), begin.get_text(end), action_});
}

void TextUndo::add(Change change) {
  undone_.clear();
  if (done_.empty() || !mergeTyping(done_.back(), change)) done_.push_back(std::move(change));
}

// A character that continues the word before it belongs to it; a new word begins a new change.
bool TextUndo::mergeTyping(Change& last, const Change& next) {
  if (!last.isInsertion || !next.isInsertion || next.text.size() != 1) return false;
  if (next.offset != last.offset + static_cast<int>(last.text.size())) return false;
  const auto isBlank = [](gunichar character) { return g_unichar_isspace(character) != FALSE; };
  const gunichar previous = *last.text.rbegin();
  if (next.text[0] == '\n' || (isBlank(previous) && !isBlank(next.text[0]))) return false;
  last.text += next.text;
  last.action = next.action;
  return true;
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
  while (!from.empty() && from.back().action == action) {
    apply(from.back(), forwards);
    to.push_back(std::move(from.back()));
    from.pop_back();
  }
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
